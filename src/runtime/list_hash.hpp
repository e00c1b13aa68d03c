// The hash function of the tables. Which bucket a key is in decides the order in which callers see
// the elements of a table, so every step of it is fixed.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/bytes.hpp"

namespace tvx::runtime {

// A big-endian word of which every byte of 128 or more sets all bits above its own, as if four
// bytes had been joined by OR with their signs extended: the lowest of them decides for all.
constexpr uint32_t extend_signs(uint32_t word) {
  const uint32_t signs = word & 0x0080'8080;
  const uint32_t lowest = signs & (0 - signs);
  return word | (0 - 2 * lowest);
}

static_assert(extend_signs(0x61'5A'5A'5A) == 0x61'5A'5A'5A &&
              extend_signs(0x80'01'02'03) == 0x80'01'02'03);
static_assert(extend_signs(0x01'80'02'03) == 0xFF'80'02'03 &&
              extend_signs(0x01'80'02'83) == 0xFFFF'FF83);

// Four bytes of a key.
inline uint32_t key_word(const uint8_t* key) {
  return extend_signs(__builtin_bswap32(base::load<uint32_t>(key)));
}

// The words of the key are the digits of a number to the base 37, modulo 2^32. They are taken in
// pairs, and a zero is passed over where the first word of a pair is due. The bytes that are left
// at the end make a word together with letters Z.
inline uint32_t hash_key(const uint8_t* key, size_t length) {
  constexpr uint32_t base = 37;
  constexpr uint32_t pad = 'Z';
  uint32_t hash = 0;
  const auto next_word = [&] {
    const uint32_t word = key_word(key);
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
    const uint32_t second = length > 1 ? key[1] : pad;
    const uint32_t third = length > 2 ? key[2] : pad;
    hash = hash * base + extend_signs(uint32_t{key[0]} << 24 | second << 16 | third << 8 | pad);
  }
  return hash;
}

}  // namespace tvx::runtime
