"""Reads a drawing with linked connectors with ezdxf: the ZORL_DICT
dictionary and its reactor objects, the shapes' reactor handles, and ezdxf's
audit. Prints one fact per line."""
import sys

import ezdxf

doc = ezdxf.readfile(sys.argv[1])
root = doc.rootdict
links = root.get("ZORL_DICT")
if links is None:
    print("no ZORL_DICT")
    sys.exit(1)
objects = [links[key] for key in links.keys()]
print("entries %d" % len(objects))
print("types %s" % ",".join(sorted({o.dxftype() for o in objects})))
handles = {o.dxf.handle for o in objects}
print("owners %s" % ("ok" if all(o.dxf.owner == links.dxf.handle for o in objects) else "wrong"))
watched = 0
for e in doc.modelspace():
    reactors = set(e.reactors.get()) if e.reactors else set()
    if reactors & handles:
        watched += 1
print("watched shapes %d" % watched)
auditor = doc.audit()
print("audit errors %d fixes %d" % (len(auditor.errors), len(auditor.fixes)))
for entry in auditor.errors + auditor.fixes:
    print("  %s" % entry.message)
