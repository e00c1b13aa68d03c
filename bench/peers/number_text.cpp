// Number text by the standard library and by fast_float.
#include <charconv>

#include <fast_float/fast_float.h>

#include "peers/peers.hpp"

namespace tvx::bench::peers {
namespace {

int32_t written(const char* out, const std::to_chars_result& result) {
  return result.ec == std::errc() ? static_cast<int32_t>(result.ptr - out) : 0;
}

template <class Result>
bool read_whole(const char* end, const Result& result) {
  return result.ec == std::errc() && result.ptr == end;
}

}  // namespace

int32_t std_to_chars(int32_t value, char* out, int32_t capacity) {
  return written(out, std::to_chars(out, out + capacity, value));
}

int32_t std_to_chars(int64_t value, char* out, int32_t capacity) {
  return written(out, std::to_chars(out, out + capacity, value));
}

int32_t std_to_chars(uint32_t value, char* out, int32_t capacity) {
  return written(out, std::to_chars(out, out + capacity, value));
}

int32_t std_to_chars(double value, char* out, int32_t capacity) {
  return written(out, std::to_chars(out, out + capacity, value, std::chars_format::general, 17));
}

bool std_from_chars(const char* text, int32_t length, int32_t& value) {
  return read_whole(text + length, std::from_chars(text, text + length, value));
}

bool std_from_chars(const char* text, int32_t length, int64_t& value) {
  return read_whole(text + length, std::from_chars(text, text + length, value));
}

bool std_from_chars(const char* text, int32_t length, double& value) {
  return read_whole(text + length, std::from_chars(text, text + length, value));
}

bool fast_float_from_chars(const char* text, int32_t length, double& value) {
  return read_whole(text + length, fast_float::from_chars(text, text + length, value));
}

}  // namespace tvx::bench::peers
