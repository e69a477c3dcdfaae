#!/usr/bin/env python3
"""Fails when a source file includes a layer it must not see.

Dependencies point down only: apps -> standalone -> host <- plug-in, and
every layer may use ge/ and io/ (files replaced whole), which use nothing else. The plug-in (frame, geom, commands, reports,
formula, image) never includes standalone/ or apps/; standalone/ never
includes the plug-in; host/ sees only itself, ge/ and io/; ge/ and io/ only themselves.
tests/, bench/ and fuzz/ wire layers together and may include anything.

  check_layers.py [ROOT]     check the tree at ROOT (default: the repository)
  check_layers.py --self-test  check that planted violations are found
"""
import os
import re
import sys
import tempfile

PLUGIN = {"frame", "geom", "commands", "reports", "formula", "image"}
LAYERS = {"ge": "ge", "io": "io", "host": "host", "standalone": "standalone", "apps": "apps"}
LAYERS.update({name: "plugin" for name in PLUGIN})
ALLOWED = {
    "ge": {"ge"},
    "io": {"io"},
    "host": {"host", "ge", "io"},
    "plugin": {"plugin", "host", "ge", "io"},
    "standalone": {"standalone", "host", "ge", "io"},
    "apps": {"apps", "standalone", "plugin", "host", "ge", "io"},
}
SOURCE_SUFFIXES = (".h", ".hpp", ".cpp", ".cc", ".c")
INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]')


def layer_of(relative_path):
    top = relative_path.split("/", 1)[0]
    return LAYERS.get(top)


def target_of(include, including_dir, root):
    """The layer an include names, or None when it is not one of ours."""
    if "/" not in include.strip("./"):
        return None  # a header beside the including file stays in its layer
    if include.startswith("."):
        resolved = os.path.normpath(os.path.join(including_dir, include))
        include = os.path.relpath(resolved, root).replace(os.sep, "/")
    return layer_of(include)


def violations(root):
    found = []
    for top in sorted(LAYERS):
        base = os.path.join(root, top)
        for folder, _, files in os.walk(base):
            for name in sorted(files):
                if not name.endswith(SOURCE_SUFFIXES):
                    continue
                path = os.path.join(folder, name)
                relative = os.path.relpath(path, root).replace(os.sep, "/")
                layer = layer_of(relative)
                with open(path, encoding="utf-8", errors="replace") as source:
                    for number, line in enumerate(source, 1):
                        m = INCLUDE.match(line)
                        if not m:
                            continue
                        target = target_of(m.group(1), folder, root)
                        if target and target not in ALLOWED[layer]:
                            found.append(f"{relative}:{number}: {layer} must not include {m.group(1)}")
    return found


def self_test():
    planted = {
        "commands/a.cpp": '#include "standalone/db/database.h"\n',
        "formula/b.h": '#include <apps/corvane/x.h>\n',
        "host/c.h": '#include "frame/output.h"\n',
        "ge/d.h": '#include "host/entity.h"\n',
        "standalone/e.cpp": '#include "commands/commands.h"\n',
        "frame/f.cpp": '#include "../standalone/kernel/nurbs.h"\n',
        "io/g.cpp": '#include "ge/point.h"\n',
    }
    allowed = {
        "commands/ok.cpp": '#include "frame/output.h"\n#include "host/entity.h"\n#include "local.h"\n',
        "standalone/ok.cpp": '#include "host/entity.h"\n#include <vector>\n',
        "reports/ok.cpp": '#include "io/replace_file.h"\n',
        "tests/ok.cpp": '#include "standalone/db/database.h"\n#include "commands/commands.h"\n',
    }
    with tempfile.TemporaryDirectory() as root:
        for relative, text in {**planted, **allowed}.items():
            path = os.path.join(root, relative)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "w", encoding="utf-8") as f:
                f.write(text)
        reported = {v.split(":", 1)[0] for v in violations(root)}
    missed = set(planted) - reported
    wrong = reported - set(planted)
    for path in sorted(missed):
        print(f"self-test: violation in {path} not reported")
    for path in sorted(wrong):
        print(f"self-test: {path} reported but allowed")
    if missed or wrong:
        return 1
    print(f"self-test: {len(planted)} planted violations found, {len(allowed)} allowed files passed")
    return 0


def main(argv):
    if argv[1:] == ["--self-test"]:
        return self_test()
    root = argv[1] if len(argv) > 1 else os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
    found = violations(os.path.abspath(root))
    for v in found:
        print(v, file=sys.stderr)
    if found:
        print(f"{len(found)} include(s) cross the layers the wrong way", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
