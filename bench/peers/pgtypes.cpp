// Exact arithmetic by the numerics of ecpg's pgtypes, whose sums and products are exact and whose
// quotients are rounded four digits behind the scale asked for. A digit is a byte there, so digits
// too many are cut off without arithmetic.
#include <pgtypes_numeric.h>

#include <algorithm>
#include <cstdlib>

#include "peers/whole.hpp"

namespace tvx::bench::peers {
namespace {

numeric* native(Exact& number) {
  return reinterpret_cast<numeric*>(&number);
}

// It takes no constant numbers, but changes none.
numeric* native(const Exact& number) {
  return native(const_cast<Exact&>(number));
}

void cut_off(numeric& value, int32_t scale) {
  value.dscale = scale;
  value.ndigits = std::clamp(value.weight + 1 + scale, 0, value.ndigits);
  if (value.ndigits == 0) value.sign = NUMERIC_POS;
}

template <auto operate>
void run(const Exact& a, const Exact& b, const Scaling& scaling, Exact& result) {
  operate(native(a), native(b), native(result));
  if (scaling.dropped != 0) cut_off(*native(result), scaling.scale);
}

// With four digits more than its own four, what it rounds up does not reach the digits kept.
void divide(const Exact& a, const Exact& b, const Scaling& scaling, Exact& result) {
  numeric& dividend = *native(a);
  const int scale = dividend.dscale;
  dividend.dscale = scaling.scale + 4;
  PGTYPESnumeric_div(&dividend, native(b), native(result));
  dividend.dscale = scale;
  cut_off(*native(result), scaling.scale);
}

int32_t compare(const Exact& a, const Exact& b, const Scaling&) {
  return PGTYPESnumeric_cmp(native(a), native(b));
}

// The number is read into memory of its own, which takes the place of the old one's.
void read(const char* text, int32_t, Exact& number) {
  numeric* const made = PGTYPESnumeric_from_asc(const_cast<char*>(text), nullptr);
  std::swap(*native(number), *made);
  PGTYPESnumeric_free(made);
}

int32_t write(const Exact& number, int32_t scale, char* out) {
  char* const text = PGTYPESnumeric_to_asc(native(number), scale);
  const size_t length = std::strlen(text);
  std::memcpy(out, text, length);
  std::free(text);
  return static_cast<int32_t>(length);
}

Exact* create() {
  return reinterpret_cast<Exact*>(PGTYPESnumeric_new());
}

}  // namespace

const ExactPeer& pgtypes() {
  static const ExactPeer peer{"pgtypes",
                              create,
                              run<PGTYPESnumeric_add>,
                              run<PGTYPESnumeric_sub>,
                              run<PGTYPESnumeric_mul>,
                              divide,
                              compare,
                              read,
                              write};
  return peer;
}

}  // namespace tvx::bench::peers
