// Bytes as hexadecimal text and back, and the copy of a short text.
#include "tvxcomn/binary.h"

#include <functional>
#include <string>

#include "conversion.hpp"
#include "peers/binary.hpp"
#include "suite.hpp"

namespace tvx::bench {
namespace {

constexpr int32_t kCopied = 32;

// Where in a common store the bytes of a value begin, so that all of them stay in the cache.
struct Place {
  int32_t first;

  friend std::ostream& operator<<(std::ostream& out, const Place& place) {
    return out << "at " << place.first;
  }
};

std::vector<Place> places() {
  return random_values(
      [](auto& generator) { return Place{static_cast<int32_t>(generator() % 1024)}; });
}

const std::string& random_bytes() {
  static const std::string bytes = [] {
    std::string all;
    for (const auto word : random_integers<uint64_t>())
      all.append(reinterpret_cast<const char*>(&word), sizeof word);
    return all;
  }();
  return bytes;
}

const std::string& random_digits() {
  static const std::string digits =
      peers::absl_bytes_to_hex(random_bytes().data(), static_cast<int32_t>(random_bytes().size()));
  return digits;
}

constexpr auto kSameText = [](const auto& ours, const auto& theirs) {
  return ours.view() == theirs;
};

// A conversion of `length` bytes between two kinds of value.
template <int32_t capacity>
auto convert(comn_conversion* routine, const std::string& store, int32_t from, int32_t to,
             int32_t length) {
  return [routine, bytes = store.data(), in = format_of(from, length),
          out = format_of(to, capacity), conversion_context = context()](const Place& place) {
    TextOf<capacity> result;
    routine(conversion_context, &in, bytes + place.first, &out, result.bytes, &result.length);
    return result;
  };
}

template <int32_t length>
void compare_hexadecimal(Suite& suite, double wanted) {
  const std::string bytes = std::to_string(length) + " bytes";
  const auto written = [from = random_bytes().data()](const Place& place) {
    return peers::absl_bytes_to_hex(from + place.first, length);
  };
  suite.compare(
      {bytes + " to hexadecimal", wanted}, places(), kSameText,
      convert<2 * length>(comn_bintochar, random_bytes(), TVX_TYPE_BIN, TVX_TYPE_CHAR, length),
      Peer{"absl", written});
  const auto read = [from = random_digits().data()](const Place& place) {
    return peers::absl_hex_to_bytes(from + place.first, 2 * length);
  };
  suite.compare(
      {bytes + " from hexadecimal", wanted}, places(), kSameText,
      convert<length>(comn_chartobin, random_digits(), TVX_TYPE_CHAR, TVX_TYPE_BIN, 2 * length),
      Peer{"absl", read});
}

}  // namespace

void compare_binary(Suite& suite) {
  compare_hexadecimal<16>(suite, 1.0);
  compare_hexadecimal<256>(suite, 1.0);
  compare_hexadecimal<4096>(suite, 0.5);
  const auto copy = [](comn_conversion* routine) {
    return convert<kCopied>(routine, random_bytes(), TVX_TYPE_CHAR, TVX_TYPE_CHAR, kCopied);
  };
  suite.compare({"char copy of 32 bytes", 2.0}, places(), std::equal_to<>(), copy(comn_chartochar),
                Peer{"memcpy", copy(peers::copy_with_memcpy)});
}

}  // namespace tvx::bench
