// What tests of the interface share: contexts, formats, memory that runs out; and calls between
// guarded values that show all they do: result code, output length, every byte of the destination.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>

#include "support/failing_heap.hpp"
#include "support/guarded_buffer.hpp"
#include "tvxcomn/tvxcomn.h"

namespace tvx::test {

using Context = std::unique_ptr<comn_context, int32_t (*)(comn_context*)>;

// A context without localisation.
inline Context open_context() {
  comn_context* context = nullptr;
  EXPECT_EQ(CS_SUCCEED, comn_context_open(nullptr, COMN_CONTEXT_NO_LOCALISATION, &context));
  return {context, comn_context_close};
}

inline comn_context* shared_context() {
  static const Context context = open_context();
  return context.get();
}

inline comn_datafmt format_of(int32_t datatype, int32_t maxlength = 0, uint32_t flags = 0) {
  comn_datafmt format{};
  format.datatype = datatype;
  format.maxlength = maxlength;
  format.format = flags;
  return format;
}

// Calls `attempt(n)`, which lets an operation's n-th allocation fail, for n = 1, 2 and so on, until
// its result is no longer CS_MEM_ERROR. Every attempt has to release all that it allocated.
template <class Attempt>
void fail_each_allocation(Attempt attempt) {
  const long before = live_blocks();
  long n = 1;
  for (int32_t result = CS_MEM_ERROR; result == CS_MEM_ERROR; ++n) {
    result = attempt(n);
    EXPECT_EQ(before, live_blocks()) << "allocation " << n;
  }
  EXPECT_GT(n, 2) << "nothing is allocated";
}

// What a destination and an output length hold before the call.
constexpr char kUntouched = '\xA5';
constexpr int32_t kNoLength = -77'777;

inline std::string untouched(size_t size) {
  return std::string(size, kUntouched);
}

struct Outcome {
  int32_t code = 0;
  int32_t length = kNoLength;
  std::string bytes;
  bool operator==(const Outcome&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << "code " << outcome.code << ", length " << outcome.length << ", bytes "
             << testing::PrintToString(outcome.bytes);
}

// As much of the value as goes into the destination, and nothing else, with success.
inline Outcome delivered(std::string_view value, std::integral auto room) {
  const std::string bytes(value.substr(0, static_cast<size_t>(room)));
  return {CS_SUCCEED, static_cast<int32_t>(bytes.size()),
          bytes + untouched(static_cast<size_t>(room) - bytes.size())};
}

template <class T>
std::string bytes_of(T value) {
  return {reinterpret_cast<const char*>(&value), sizeof value};
}

// A varchar or varbin record; what the text leaves of it holds `filler`.
inline std::string varchar_record(std::string_view text, char filler = '\0') {
  std::string record = bytes_of(static_cast<uint16_t>(text.size()));
  record += text.substr(0, 256);
  record.resize(sizeof(comn_varchar), filler);
  return record;
}

// The exported routine of that name; null when there is none.
template <class Routine = comn_conversion>
Routine* exported(const std::string& name) {
  return reinterpret_cast<Routine*>(dlsym(RTLD_DEFAULT, name.c_str()));
}

using Call = std::function<int32_t(void* source, void* destination, int32_t* length)>;

// Makes the call three times: with the values right in front of an inaccessible page, right behind
// one, and at odd addresses between two sentinels. All three must do the same.
inline Outcome observe(std::string_view source, size_t room, const Call& call) {
  constexpr size_t kAccessible = 1 << 16;  // whole pages, more than any test asks for
  static GuardedBuffer sources(kAccessible), destinations(kAccessible);
  Outcome first;
  for (const size_t place : {0u, 1u, 2u}) {
    const bool at_end = place == 0;
    const size_t margin = at_end ? 0 : place - 1;
    uint8_t* const from = sources.data() + (at_end ? kAccessible - source.size() : margin);
    uint8_t* const to = destinations.data() + (at_end ? kAccessible - room : margin);
    std::copy(source.begin(), source.end(), from);
    std::memset(to - margin, kUntouched, room + 2 * margin);

    Outcome outcome;
    outcome.code = call(from, to, &outcome.length);
    outcome.bytes.assign(reinterpret_cast<const char*>(to), room);
    if (at_end) first = outcome;
    const bool source_kept = std::memcmp(source.data(), from, source.size()) == 0;
    const bool sentinels_kept = margin == 0 || (to[-1] == 0xA5 && to[room] == 0xA5);
    if (outcome != first || !source_kept || !sentinels_kept)
      ADD_FAILURE() << "at place " << place << ": " << outcome << "; source kept: " << source_kept
                    << "; nothing written around: " << sentinels_kept;
  }
  return first;
}

// Converts with data formats. The destination is as large as its datatype and its format say.
inline Outcome convert(comn_conversion* routine, const comn_datafmt& from, std::string_view source,
                       const comn_datafmt& to) {
  const int32_t room = std::max(comn_typelen(to.datatype, to.maxlength), to.maxlength);
  return observe(source, static_cast<size_t>(room),
                 [&](void* value, void* destination, int32_t* length) {
                   return routine(shared_context(), &from, value, &to, destination, length);
                 });
}

// Converts with the routine that the table holds for the two formats.
inline Outcome convert(const comn_datafmt& from, std::string_view source, const comn_datafmt& to) {
  return convert(com_conv_func(shared_context(), from.datatype, to.datatype), from, source, to);
}

inline comnb_context bare_context(uint32_t flags, const com_charattr* attributes = nullptr) {
  comnb_context context{};
  context.flags = flags;
  context.attributes = attributes;
  return context;
}

// Converts with descriptors; the destination's maximum length is its size.
inline Outcome convert_bare(comnb_conversion* routine, const comnb_context& context,
                            std::string_view source, size_t room) {
  return observe(source, room, [&](void* value, void* destination, int32_t* length) {
    comnb_value from{}, to{};
    from.length = from.maxlength = static_cast<int32_t>(source.size());
    from.data = value;
    to.length = *length;
    to.maxlength = static_cast<int32_t>(room);
    to.data = destination;
    const int32_t code = routine(&context, &from, &to);
    *length = to.length;
    return code;
  });
}

// At most `maximum` bytes of the null value of a datatype, in a destination of `room` bytes.
inline Outcome null_value(comn_context* context, const comn_datafmt& format, int32_t room,
                          int32_t maximum) {
  return observe("", static_cast<size_t>(room), [&](void*, void* out, int32_t* length) {
    return com_null_get(context, &format, out, maximum, length);
  });
}

// What becomes of a field of `capacity` bytes, terminators and blanks of one unit each: `field`
// holds the bytes and the length that the conversion delivered, which wanted to deliver `wanted`.
inline Outcome complete(Outcome field, int32_t wanted, int32_t capacity, uint32_t flags,
                        int32_t unit = 1) {
  const bool terminate = (flags & CS_FORMAT_TERMINATE) != 0;
  const bool zeros = (flags & CS_FORMAT_ZEROFILL) != 0, blanks = (flags & CS_FORMAT_BLANKFILL) != 0;
  const bool cut = capacity < wanted + (terminate ? unit : 0);
  const auto put = [&](int32_t at, int32_t end, char first) {
    for (int32_t i = at; i < end; ++i)
      field.bytes[static_cast<size_t>(i)] = (i - at) % unit == 0 ? first : '\0';
  };
  field.code = cut ? CS_CONV_OVERFLOW : zeros && blanks ? CS_CONV_BADFORMAT : CS_SUCCEED;
  if (field.code == CS_SUCCEED && (zeros || blanks)) {
    const int32_t rest = blanks ? (capacity - field.length) % unit : 0;
    put(field.length, capacity - rest, blanks ? ' ' : '\0');
    field.length = capacity;
  } else if (field.code == CS_SUCCEED && terminate) {
    put(field.length, field.length + unit, '\0');
    field.length += unit;
  }
  // A terminator at the end of what is cut or filled with blanks.
  const int32_t last_unit = capacity / unit * unit - unit;
  if (terminate && last_unit >= 0 && (cut || (blanks && !zeros)))
    put(last_unit, last_unit + unit, '\0');
  return field;
}

}  // namespace tvx::test
