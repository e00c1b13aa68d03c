// Conversions among scalars, found in the routine table and called for every value, beside the
// least that a table and a call can cost.
#include <array>
#include <cstring>
#include <iterator>

#include "conversion.hpp"
#include "peers/peers.hpp"
#include "suite.hpp"
#include "tvxcomn/dispatch.h"

namespace tvx::bench {
namespace {

constexpr size_t kCodes = 40;
using Formats = std::array<comn_datafmt, kCodes>;  // by datatype code

struct Value {
  int32_t source;
  int32_t destination;
  uint64_t storage;  // the source value begins at its first byte

  friend std::ostream& operator<<(std::ostream& out, const Value& value) {
    return out << "datatype " << value.source << " to " << value.destination;
  }
};

struct Result {
  uint64_t storage;
  int32_t length;
  int32_t code;
};

// A pair of datatypes and its source values: whole numbers below 2^bits, all of which the
// destination holds.
struct Pair {
  int32_t source;
  int32_t destination;
  int bits;
  uint64_t (*store)(uint64_t number);
};

template <class Number>
uint64_t store_as(uint64_t number) {
  const auto value = static_cast<Number>(number);
  uint64_t storage = 0;
  std::memcpy(&storage, &value, sizeof value);
  return storage;
}

constexpr Pair kPairs[] = {
    {TVX_TYPE_I4, TVX_TYPE_I1, 8, store_as<int32_t>},
    {TVX_TYPE_I8, TVX_TYPE_I4, 31, store_as<int64_t>},
    {TVX_TYPE_I2, TVX_TYPE_I8, 15, store_as<int16_t>},
    {TVX_TYPE_UI4, TVX_TYPE_I2, 15, store_as<uint32_t>},
    {TVX_TYPE_I4, TVX_TYPE_FLT8, 31, store_as<int32_t>},
    {TVX_TYPE_UI8, TVX_TYPE_FLT4, 63, store_as<uint64_t>},
    {TVX_TYPE_FLT8, TVX_TYPE_I4, 31, store_as<double>},
    {TVX_TYPE_FLT4, TVX_TYPE_UI2, 16, store_as<float>},
};

// Every pair in a run of its own, so that calls through the table are as predictable as they are
// for a column of values. With a bit more, a narrower destination does not hold every other value.
template <int extra_bits>
std::vector<Value> values() {
  size_t drawn = 0;
  return random_values([&](auto& generator) {
    const Pair& pair = kPairs[drawn++ * std::size(kPairs) / kValues];
    const uint64_t number = generator() >> (64 - pair.bits - extra_bits);
    return Value{pair.source, pair.destination, pair.store(number)};
  });
}

Formats all_formats() {
  Formats formats;
  for (size_t code = 0; code < kCodes; ++code)
    formats[code] = format_of(static_cast<int32_t>(code), 8);
  return formats;
}

template <class Lookup>
auto convert_with(Lookup look_up) {
  static const Formats formats = all_formats();
  return [look_up, conversion_context = context()](const Value& value) {
    Result result;
    comn_conversion* const routine = look_up(value.source, value.destination);
    result.code =
        routine(conversion_context, &formats[static_cast<size_t>(value.source)], &value.storage,
                &formats[static_cast<size_t>(value.destination)], &result.storage, &result.length);
    return result;
  };
}

}  // namespace

void compare_scalar_pairs(Suite& suite) {
  const auto ours = convert_with([conversion_context = context()](int32_t source, int32_t to) {
    return com_conv_func(conversion_context, source, to);
  });
  const auto empty = convert_with([table = peers::routine_table()](int32_t source, int32_t to) {
    return peers::look_up(table, source, to);
  });
  // The peer converts nothing, so there is only our own result to look at.
  const auto in_range = [](const Result& result, const Result&) {
    return result.code == CS_SUCCEED;
  };
  const auto converted = [](const Result& result, const Result&) {
    return result.code == CS_SUCCEED || result.code == CS_CONV_OVERFLOW;
  };
  suite.compare({"scalar pairs", 2.0}, values<0>(), in_range, ours,
                Peer{"lookup and empty routine", empty});
  suite.compare({"scalar pairs, half out of range", kInformative}, values<1>(), converted, ours,
                Peer{"lookup and empty routine", empty});
}

}  // namespace tvx::bench
