// Runs a target on files, for compilers without a fuzzing engine and for the tests.
//
//   TARGET [-OPTION...] FILE_OR_DIRECTORY...    options are the engine's and do nothing here

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/fuzzing.h"

namespace {

std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) return {path};
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(path)) files.push_back(entry.path());
  return files;
}

bool Replay(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file) return false;
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::size_t count = 0;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument[0] == '-') continue;
    for (const std::filesystem::path& path : FilesOf(argument)) {
      if (!Replay(path)) {
        std::cerr << "cannot read " << path << '\n';
        return 1;
      }
      ++count;
    }
  }
  std::cout << count << " inputs replayed\n";
  return count == 0 ? 1 : 0;
}
