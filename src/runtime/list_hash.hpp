// The hash function of the tables. Which bucket a key is in decides the order in which callers see
// the elements of a table, so every step of it is fixed.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tvx::runtime {

// Four bytes joined by OR into a big-endian word, each with its sign extended: a byte of 128 or
// more sets all bits above its own.
constexpr uint32_t key_word(uint8_t b0, uint8_t b1, uint8_t b2, uint8_t b3) {
  const auto extended = [](uint8_t byte) {
    return static_cast<uint32_t>(static_cast<int8_t>(byte));
  };
  return extended(b0) << 24 | extended(b1) << 16 | extended(b2) << 8 | extended(b3);
}

// The words of the key are the digits of a number to the base 37, modulo 2^32. They are taken in
// pairs, and a zero is passed over where the first word of a pair is due. The bytes that are left
// at the end make a word together with letters Z.
constexpr uint32_t hash_key(const uint8_t* key, size_t length) {
  constexpr uint32_t base = 37;
  constexpr uint8_t pad = 'Z';
  uint32_t hash = 0;
  const auto next_word = [&] {
    const uint32_t word = key_word(key[0], key[1], key[2], key[3]);
    key += 4;
    length -= 4;
    return word;
  };

  while (length >= 8) {
    const uint32_t first = next_word();
    // Both digits at once: only one step waits for the pair before.
    if (first != 0) [[likely]]
      hash = hash * (base * base) + (first * base + next_word());
  }
  if (length >= 4) {
    const uint32_t word = next_word();
    if (word != 0) hash = hash * base + word;
  }
  if (length > 0) {
    hash =
        hash * base + key_word(key[0], length > 1 ? key[1] : pad, length > 2 ? key[2] : pad, pad);
  }
  return hash;
}

}  // namespace tvx::runtime
