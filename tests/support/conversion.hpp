// Calls one conversion between guarded values and shows everything that it did: its result code,
// the output length and every byte of its destination. Beside it the completion of fields, in plain
// steps, for tests that compute what such a call should show.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <map>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "support/guarded_buffer.hpp"
#include "tvxcomn/tvxcomn.h"

namespace tvx::test {

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

inline std::string hex(std::string_view bytes) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<uint8_t>(c);
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

inline std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << "code " << outcome.code << ", length " << outcome.length << ", bytes "
             << hex(outcome.bytes);
}

template <class T>
std::string bytes_of(T value) {
  return {reinterpret_cast<const char*>(&value), sizeof value};
}

template <class T>
T value_of(std::string_view bytes) {
  T value;
  if (bytes.size() != sizeof value) throw std::length_error("value_of");
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

// A varchar or varbin record; what the text leaves of it holds `filler`.
inline std::string varchar_record(std::string_view text, char filler = '\0') {
  std::string record = bytes_of(static_cast<uint16_t>(text.size()));
  record += text.substr(0, 256);
  record.resize(sizeof(comn_varchar), filler);
  return record;
}

// A context without localisation, closed at the end.
class Context {
public:
  Context() {
    if (comn_context_open(nullptr, COMN_CONTEXT_NO_LOCALISATION, &context_) != CS_SUCCEED)
      throw std::runtime_error("comn_context_open");
  }
  ~Context() { comn_context_close(context_); }
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;
  comn_context* get() const { return context_; }

private:
  comn_context* context_ = nullptr;
};

inline comn_context* shared_context() {
  static const Context context;
  return context.get();
}

inline comn_datafmt format_of(int32_t datatype, int32_t maxlength = 0, uint32_t flags = 0) {
  comn_datafmt format{};
  format.datatype = datatype;
  format.maxlength = maxlength;
  format.format = flags;
  return format;
}

// The exported routine of that name; null when there is none.
template <class Routine>
Routine* exported(const std::string& name) {
  return reinterpret_cast<Routine*>(dlsym(RTLD_DEFAULT, name.c_str()));
}

// Runs `call(source, destination, &length)` three times: with the values right in front of an
// inaccessible page, right behind one, and at odd addresses between two sentinels. All three must
// do the same.
template <class Call>
Outcome observe(std::string_view source, size_t room, Call call) {
  using Guard = GuardedBuffer::Guard;
  struct Place {
    Guard guard;
    size_t margin;
  };
  static constexpr Place kPlaces[] = {
      {Guard::kBehind, 0}, {Guard::kBefore, 0}, {Guard::kBefore, 1}};
  struct Buffers {
    std::unique_ptr<GuardedBuffer> source, destination;
  };
  using BuffersByPlace = std::array<Buffers, std::size(kPlaces)>;
  static std::map<std::pair<size_t, size_t>, BuffersByPlace> kept;  // mapping pages takes its time
  BuffersByPlace& places = kept[{source.size(), room}];

  Outcome first;
  for (size_t i = 0; i < std::size(kPlaces); ++i) {
    const auto [guard, margin] = kPlaces[i];
    Buffers& buffers = places[i];
    if (buffers.source == nullptr) {
      buffers.source = std::make_unique<GuardedBuffer>(source.size() + margin, 0, guard);
      buffers.destination = std::make_unique<GuardedBuffer>(room + 2 * margin, 0, guard);
    }
    uint8_t* const from = buffers.source->data() + margin;
    uint8_t* const block = buffers.destination->data();
    std::copy(source.begin(), source.end(), from);
    std::memset(block, kUntouched, buffers.destination->size());

    Outcome outcome;
    outcome.code = call(from, block + margin, &outcome.length);
    outcome.bytes.assign(reinterpret_cast<const char*>(block + margin), room);
    if (i == 0) first = outcome;
    const bool source_kept = std::memcmp(source.data(), from, source.size()) == 0;
    const bool sentinels_kept = margin == 0 || (block[0] == 0xA5 && block[room + 1] == 0xA5);
    if (outcome != first || !source_kept || !sentinels_kept)
      ADD_FAILURE() << "at place " << i << ": " << outcome << "; source kept: " << source_kept
                    << "; nothing written around: " << sentinels_kept;
  }
  return first;
}

// Converts with data formats. The destination is as large as its format says.
inline Outcome convert(comn_conversion* routine, const comn_datafmt& from, std::string_view source,
                       const comn_datafmt& to) {
  const int32_t room = comn_typelen(to.datatype, to.maxlength);
  return observe(source, static_cast<size_t>(room),
                 [&](const void* source_value, void* destination, int32_t* length) {
                   return routine(shared_context(), &from, source_value, &to, destination, length);
                 });
}

// Converts a value with the routine that the table holds for the two formats.
inline Outcome convert(const comn_datafmt& from, std::string_view source, const comn_datafmt& to) {
  comn_conversion* const routine = com_conv_func(shared_context(), from.datatype, to.datatype);
  if (routine == nullptr) throw std::invalid_argument("no such conversion");
  return convert(routine, from, source, to);
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
  return observe(source, room, [&](void* source_value, void* destination, int32_t* length) {
    comnb_value from{}, to{};
    from.length = from.maxlength = static_cast<int32_t>(source.size());
    from.data = source_value;
    to.length = *length;
    to.maxlength = static_cast<int32_t>(room);
    to.data = destination;
    const int32_t code = routine(&context, &from, &to);
    *length = to.length;
    return code;
  });
}

// ---- Completion ----

// What becomes of a field of `capacity` bytes, terminators and blanks of one unit each: `done`
// holds the bytes and the length that the conversion delivered, which wanted to deliver `wanted`.
inline Outcome complete(Outcome done, int32_t wanted, int32_t capacity, uint32_t flags,
                        int32_t unit = 1) {
  const bool terminate = (flags & CS_FORMAT_TERMINATE) != 0;
  const auto put = [&](int32_t begin, int32_t end, char first) {
    for (int32_t i = begin; i < end; ++i)
      done.bytes[static_cast<size_t>(i)] = (i - begin) % unit == 0 ? first : '\0';
  };
  const int32_t last_unit = (capacity - unit) / unit * unit;

  if (capacity < wanted + (terminate ? unit : 0)) {
    if (terminate && capacity >= unit) put(last_unit, last_unit + unit, '\0');
    done.code = CS_CONV_OVERFLOW;
    return done;
  }
  done.code = CS_SUCCEED;
  const uint32_t fill = flags & (CS_FORMAT_ZEROFILL | CS_FORMAT_BLANKFILL);
  if (fill == (CS_FORMAT_ZEROFILL | CS_FORMAT_BLANKFILL)) {
    done.code = CS_CONV_BADFORMAT;
  } else if (fill == CS_FORMAT_ZEROFILL) {
    put(done.length, capacity, '\0');
    done.length = capacity;
  } else if (fill == CS_FORMAT_BLANKFILL) {
    put(done.length, done.length + (capacity - done.length) / unit * unit, ' ');
    if (terminate) put(last_unit, last_unit + unit, '\0');
    done.length = capacity;
  } else if (terminate) {
    put(done.length, done.length + unit, '\0');
    done.length += unit;
  }
  return done;
}

// A number written to a char destination of that capacity.
inline Outcome number_field(std::string_view text, int32_t capacity, uint32_t flags) {
  const auto wanted = static_cast<int32_t>(text.size());
  const bool terminate = (flags & CS_FORMAT_TERMINATE) != 0;
  Outcome field{CS_CONV_OVERFLOW, std::min(wanted, capacity),
                untouched(static_cast<size_t>(capacity))};
  if (capacity >= wanted + (terminate ? 1 : 0)) {
    field.bytes.replace(0, text.size(), text);
    return complete(field, wanted, capacity, flags);
  }
  if (capacity < 2) return field;
  field.bytes.replace(0, 2, std::string_view("*\0", 2));
  field.length = 1;
  field = complete(field, 1, capacity, flags);
  field.code = CS_CONV_OVERFLOW;
  return field;
}

}  // namespace tvx::test
