// The key table is the output of a generator with a fixed start, so that nothing is hidden in it.
#include "wire/key_table.hpp"

namespace tvx::wire {
namespace {

// SplitMix64: G. Steele, D. Lea, C. Flood, "Fast splittable pseudorandom number generators" (2014).
constexpr uint64_t next_word(uint64_t& state) {
  state += 0x9E3779B97F4A7C15;
  uint64_t word = state;
  word = (word ^ (word >> 30)) * 0xBF58476D1CE4E5B9;
  word = (word ^ (word >> 27)) * 0x94D049BB133111EB;
  return word ^ (word >> 31);
}

// The words' bytes, lowest first, fill the rows one after the other.
constexpr KeyTable make_key_table() {
  KeyTable table{};
  uint64_t state = 0;
  uint64_t word = 0;
  size_t left = 0;  // bytes of the word
  for (auto& row : table) {
    for (uint8_t& byte : row) {
      if (left == 0) {
        word = next_word(state);
        left = sizeof word;
      }
      byte = static_cast<uint8_t>(word);
      word >>= 8;
      --left;
    }
  }
  return table;
}

}  // namespace

constinit const KeyTable key_table = make_key_table();

}  // namespace tvx::wire
