// What fuzz targets share. A target is LLVMFuzzerTestOneInput, a function of any bytes, in a file
// of its own: it calls the interface and stops the program when a promise is broken; what the
// sanitizers see they stop by themselves. Sources and destinations lie in heap blocks of exactly
// their size, so that they see every byte beyond.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "tvxcomn/tvxcomn.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace tvx::fuzz {

inline void expect(bool promise, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  if (promise) return;
  std::fprintf(stderr, "%s:%d: a promise is broken\n", file, line);
  std::abort();
}

// Takes an input to pieces from its front; an input that is used up gives zeros.
class Input {
public:
  Input(const uint8_t* data, size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

  template <class T>
  T take() {
    T value{};
    std::memcpy(&value, rest_.data(), std::min(sizeof value, rest_.size()));
    rest_.remove_prefix(std::min(sizeof value, rest_.size()));
    return value;
  }
  // One of `count` numbers from 0 on.
  int32_t choose(int32_t count) { return take<uint16_t>() % count; }
  [[nodiscard]] std::string_view rest() const { return rest_; }

private:
  std::string_view rest_;
};

class Block {
public:
  explicit Block(size_t size) : bytes_(new char[size]), size_(size) {}
  // The bytes, cut off or followed by zeros.
  Block(std::string_view bytes, size_t size) : Block(size) {
    std::memset(data(), 0, size);
    bytes.copy(data(), size);
  }
  [[nodiscard]] char* data() const { return bytes_.get(); }
  [[nodiscard]] std::string_view view() const { return {data(), size_}; }

private:
  std::unique_ptr<char[]> bytes_;
  size_t size_;
};

inline comn_context* context() {
  static comn_context* const opened = [] {
    comn_context* created = nullptr;
    expect(comn_context_open(nullptr, COMN_CONTEXT_NO_LOCALISATION, &created) == CS_SUCCEED);
    return created;
  }();
  return opened;
}

inline comn_datafmt format_of(int32_t datatype, int32_t maxlength = 0) {
  comn_datafmt format{};
  format.datatype = datatype;
  format.maxlength = maxlength;
  return format;
}

// Bytes that a value of a format takes: as many as the format says where texts are concerned, of
// which comn_typelen tells the unit, and eight of an int20.
inline size_t size_of(const comn_datafmt& format) {
  if (format.datatype == TVX_TYPE_INT20) return 8;
  if (format.datatype == TVX_TYPE_UNICHAR) return static_cast<size_t>(format.maxlength);
  return static_cast<size_t>(comn_typelen(format.datatype, format.maxlength));
}

struct Result {
  int32_t code;
  std::string value;  // as many bytes as were reported, of the destination's
};

// Converts by the routine of the table; the pair must have one.
inline Result convert(const comn_datafmt& in, std::string_view source, const comn_datafmt& out) {
  const size_t room = size_of(out);
  const Block from(source, source.size());
  const Block to(room);
  int32_t length = 0;
  const int32_t code = com_conv_func(context(), in.datatype, out.datatype)(
      context(), &in, from.data(), &out, to.data(), &length);
  if (code != CS_SUCCEED) return {code, {}};
  expect(length >= 0 && static_cast<size_t>(length) <= room);
  return {code, std::string(to.view().substr(0, static_cast<size_t>(length)))};
}

inline Result from_text(std::string_view text, const comn_datafmt& out) {
  return convert(format_of(TVX_TYPE_CHAR, static_cast<int32_t>(text.size())), text, out);
}
inline Result to_text(int32_t datatype, std::string_view value) {
  constexpr int32_t kRoom = 2000;
  comn_datafmt out = format_of(TVX_TYPE_CHAR, kRoom);
  out.precision = 4;  // all digits of money
  return convert(format_of(datatype, static_cast<int32_t>(value.size())), value, out);
}

// Reads a text as a type; the text that is written of it must read as a value that is written the
// same.
inline void expect_round_trip(std::string_view text, const comn_datafmt& format) {
  if (text.empty()) return;  // broken usage
  const Result read = from_text(text, format);
  if (read.code != CS_SUCCEED || read.value.empty()) return;
  const Result written = to_text(format.datatype, read.value);
  expect(written.code == CS_SUCCEED);
  const Result again = from_text(written.value, format);
  expect(again.code == CS_SUCCEED);
  expect(to_text(format.datatype, again.value).value == written.value);
}

}  // namespace tvx::fuzz
