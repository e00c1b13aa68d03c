// Runs a target once over each file of the folders named: what fuzzing once found stays a test.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "target.hpp"

int main(int argc, char** argv) {
  int inputs = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      std::ifstream file(entry.path(), std::ios::binary);
      const std::string bytes{std::istreambuf_iterator<char>(file), {}};
      const tvx::fuzz::Block block(bytes, bytes.size());
      LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(block.data()), bytes.size());
      ++inputs;
    }
  }
  std::cout << inputs << " inputs\n";
  return inputs > 0 ? 0 : 1;
}
