// The bitmap tracer the plug-in starts for its "trace with the external
// tracer" route. It takes that tracer's command line,
//   PICTURE -color-count 2 -output-format dxf -output-file OUT.dxf
// (options in any order, before or after the picture), reads the picture in
// two colours and writes the outlines of its dark areas as DXF.
// Exit codes: 0 written, 1 the picture or the output failed, 2 a wrong command line.
#include <cstdio>
#include <cstring>
#include <string>
#include <variant>

#include "dxf_outlines.h"
#include "image/outline_trace.h"
#include "image/picture.h"
#include "io/replace_file.h"

namespace {

constexpr const char* kUsage =
    "usage: autotrace PICTURE -color-count 2 -output-format dxf -output-file OUT.dxf\n"
    "Traces the dark areas of PICTURE (BMP, PNG, JPEG or GIF) read in two colours and\n"
    "writes their outlines as closed polylines to OUT.dxf, one drawing unit per pixel.\n";

struct CommandLine {
  std::string input, output;
};

// The options of the command line; a message and nothing when they are wrong.
std::variant<CommandLine, std::string> parse(int argc, char** argv) {
  CommandLine cl;
  for (int i = 1; i < argc; ++i) {
    std::string arg = argv[i];
    if (arg == "-help" || arg == "--help") return std::string();
    if (arg.size() > 1 && arg[0] == '-') {
      if (i + 1 >= argc) return "option " + arg + " needs a value";
      std::string value = argv[++i];
      if (arg == "-color-count") {
        if (value != "2") return "only -color-count 2 is traced, not " + value;
      } else if (arg == "-output-format") {
        if (value != "dxf") return "only -output-format dxf is written, not " + value;
      } else if (arg == "-output-file") {
        cl.output = value;
      } else {
        return "unknown option " + arg;
      }
    } else if (cl.input.empty()) {
      cl.input = arg;
    } else {
      return "more than one picture: " + cl.input + " and " + arg;
    }
  }
  if (cl.input.empty()) return std::string("no picture given");
  if (cl.output.empty()) return std::string("no -output-file given");
  return cl;
}

const char* reasonOf(const image::LoadError& e) {
  switch (e.failure) {
    case image::LoadFailure::kCannotOpen: return std::strerror(e.systemError);
    case image::LoadFailure::kTooLarge: return "the picture has too many pixels";
    default: return "not a BMP, PNG, JPEG or GIF picture, or a damaged one";
  }
}

}  // namespace

int main(int argc, char** argv) {
  auto parsed = parse(argc, argv);
  if (const std::string* message = std::get_if<std::string>(&parsed)) {
    if (!message->empty()) std::fprintf(stderr, "autotrace: %s\n", message->c_str());
    std::fputs(kUsage, message->empty() ? stdout : stderr);
    return message->empty() ? 0 : 2;
  }
  const CommandLine& cl = std::get<CommandLine>(parsed);
  image::LoadResult loaded = image::loadPicture(cl.input);
  if (const auto* error = std::get_if<image::LoadError>(&loaded)) {
    std::fprintf(stderr, "autotrace: %s: %s\n", cl.input.c_str(), reasonOf(*error));
    return 1;
  }
  std::vector<image::Outline> outlines = image::traceOutlines(std::get<image::Picture>(loaded));
  try {
    io::replaceFile(cl.output, tracer::outlinesDxf(outlines));
  } catch (const io::FileWriteError& e) {
    std::fprintf(stderr, "autotrace: %s\n", e.what());
    return 1;
  }
  return 0;
}
