// Exact arithmetic by decNumber. Its numbers have an exponent each, so only the digits that a
// result has too many and the quotient are brought to a scale.
#define DECNUMDIGITS 160
extern "C" {
#include <decNumber.h>
}

#include "peers/whole.hpp"

namespace tvx::bench::peers {
namespace {

decNumber* native(Exact& number) {
  return reinterpret_cast<decNumber*>(&number);
}

const decNumber* native(const Exact& number) {
  return reinterpret_cast<const decNumber*>(&number);
}

decContext make_context() {
  decContext made;
  decContextDefault(&made, DEC_INIT_BASE);
  made.traps = 0;
  made.digits = DECNUMDIGITS;
  made.round = DEC_ROUND_DOWN;
  return made;
}

decContext context = make_context();

template <auto operate>
void run(const Exact& a, const Exact& b, const Scaling& scaling, Exact& result) {
  decNumber* const value = native(result);
  operate(value, native(a), native(b), &context);
  if (scaling.dropped == 0) return;
  decNumber pattern;
  decNumberZero(&pattern);
  pattern.exponent = -scaling.scale;
  decNumberQuantize(value, value, &pattern, &context);
}

void divide(const Exact& a, const Exact& b, const Scaling& scaling, Exact& result) {
  decNumber dividend;
  decNumberCopy(&dividend, native(a));
  dividend.exponent += scaling.scale;
  decNumberDivideInteger(native(result), &dividend, native(b), &context);
  native(result)->exponent -= scaling.scale;
}

int32_t compare(const Exact& a, const Exact& b, const Scaling&) {
  decNumber order;
  decNumberCompare(&order, native(a), native(b), &context);
  if (decNumberIsZero(&order)) return 0;
  return decNumberIsNegative(&order) ? -1 : 1;
}

void read(const char* text, int32_t, Exact& number) {
  decNumberFromString(native(number), text, &context);
}

int32_t write(const Exact& number, int32_t scale, char* out) {
  const decNumber* const value = native(number);
  constexpr int32_t kSmallestPlain = -6;  // below that the text has an exponent
  if (value->exponent + value->digits - 1 >= kSmallestPlain && !decNumberIsZero(value)) {
    decNumberToString(value, out);
    return static_cast<int32_t>(std::strlen(out));
  }
  decNumber whole;
  decNumberCopy(&whole, value);
  whole.exponent = 0;
  if (decNumberIsZero(value)) whole.bits &= static_cast<uint8_t>(~DECNEG);
  char digits[DECNUMDIGITS + 14];
  decNumberToString(&whole, digits);
  return insert_point(digits, scale, out);
}

Exact* create() {
  auto* const number = new decNumber;
  decNumberZero(number);
  return reinterpret_cast<Exact*>(number);
}

}  // namespace

const ExactPeer& dec_number() {
  static const ExactPeer peer{"decNumber",
                              create,
                              run<decNumberAdd>,
                              run<decNumberSubtract>,
                              run<decNumberMultiply>,
                              divide,
                              compare,
                              read,
                              write};
  return peer;
}

}  // namespace tvx::bench::peers
