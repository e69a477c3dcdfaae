// Runs a fuzz target once over every file of a seed corpus, so the corpus is
// part of the ordinary test suite without libFuzzer.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  int files = 0;
  for (int a = 1; a < argc; ++a) {
    std::vector<fs::path> inputs;
    if (fs::is_directory(argv[a])) {
      for (const auto& e : fs::recursive_directory_iterator(argv[a]))
        if (e.is_regular_file()) inputs.push_back(e.path());
    } else {
      inputs.emplace_back(argv[a]);
    }
    for (const auto& p : inputs) {
      std::ifstream in(p, std::ios::binary);
      std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++files;
    }
  }
  std::printf("replayed %d inputs\n", files);
  return files > 0 ? 0 : 1;
}
