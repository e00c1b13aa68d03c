// Exported functions of money.h.
#include "tvxcomn/money.h"

#include <algorithm>

#include "api/exports.hpp"
#include "api/money_served.hpp"
#include "convert/money_conversion.hpp"

using namespace tvx::convert;
namespace num = tvx::numeric;
namespace rt = tvx::runtime;

namespace {

// An amount type as it lies in the callers' memory.
Money load(const comn_money* value) {
  return num::load_money(value);
}
SmallMoney load(const int32_t* value) {
  return {*value};
}
void store(comn_money* value, Money amount) {
  num::store_money(value, amount);
}
void store(int32_t* value, SmallMoney amount) {
  *value = amount.count;
}

// Stores the amount of a result and gives its status.
template <class Stored, class Amount>
MoneyStatus deliver(Stored* destination, const MoneyResult<Amount>& result) {
  store(destination, result.value);
  return result.status;
}

// Checks and trace points take the line of the exported function.

MoneyStatus step(comn_money* value, int64_t steps, int32_t line = __builtin_LINE()) {
  rt::require_pointer(value, __FILE__, line);
  return deliver(value, num::step(load(value), steps));
}

MoneyStatus scale(comn_money* value, uint32_t multiplier, int32_t addend,
                  int32_t line = __builtin_LINE()) {
  rt::require_pointer(value, __FILE__, line);
  return deliver(value, num::scale(load(value), multiplier, addend));
}

int32_t take_digit(comn_money* value, char* digit, int32_t line = __builtin_LINE()) {
  rt::require_pointers({value, digit}, __FILE__, line);
  const auto [quotient, remainder] = num::divide_by_integer(load(value), 10);
  *digit = static_cast<char>('0' + remainder);
  store(value, quotient);
  return quotient.count != 0 ? 1 : 0;
}

template <class Stored>
int32_t compare(const Stored* a, const Stored* b, int32_t line = __builtin_LINE()) {
  rt::require_pointers({a, b}, __FILE__, line);
  const auto left = load(a).count;
  const auto right = load(b).count;
  return left < right ? -1 : left > right ? 1 : 0;
}

char* write(Money value, char* buffer, int32_t length, int32_t flags) {
  const MoneyText text(value, num::money_format(flags));
  if (text.length() > length) return nullptr;
  char* const begin = buffer + (length - text.length());
  text.write(begin);
  return begin;
}

char* write(const comn_money* value, char* buffer, int32_t length, int32_t flags,
            int32_t line = __builtin_LINE()) {
  rt::require_pointers({value, buffer}, __FILE__, line);
  return write(load(value), buffer, length, flags);
}

char* write(const int32_t* value, char* buffer, int32_t length, int32_t flags,
            int32_t line = __builtin_LINE()) {
  rt::require_pointers({value, buffer}, __FILE__, line);
  return write(num::widen(load(value)), buffer, length, flags);
}

// The two forms in which an operation reports: the status itself, and the result code.
int32_t status(MoneyStatus status) {
  return static_cast<int32_t>(status);
}

int32_t traced_code(MoneyStatus status, int32_t line = __builtin_LINE()) {
  return rt::traced(result_code(status), __FILE__, line);
}

}  // namespace

// ---- Arithmetic --------------------------------------------------------------------------------

#define BINARY(name, Stored, report, operation)                               \
  extern "C" int32_t name(const Stored* a, const Stored* b, Stored* result) { \
    rt::require_pointers({a, b, result});                                     \
    return report(deliver(result, operation(load(a), load(b))));              \
  }
#define UNARY(name, Stored, report, operation)                         \
  extern "C" int32_t name(const Stored* source, Stored* destination) { \
    rt::require_pointers({source, destination});                       \
    return report(deliver(destination, operation(load(source))));      \
  }

BINARY(com__mnyadd, comn_money, status, num::add)
BINARY(com__mnysub, comn_money, status, num::subtract)
BINARY(com__mnymul, comn_money, status, num::multiply)
BINARY(com__mnydiv, comn_money, status, num::divide)
BINARY(com__mnyadd4, int32_t, status, num::add)
BINARY(com__mnysub4, int32_t, status, num::subtract)
BINARY(com__mnymul4, int32_t, status, num::multiply)
BINARY(com__mnydiv4, int32_t, status, num::divide)
UNARY(com__mnyminus, comn_money, status, num::negate)
UNARY(com__mnyminus4, int32_t, status, num::negate)
UNARY(com__mnycopy, comn_money, status, num::money_done)

BINARY(comn_mnyadd, comn_money, traced_code, num::add)
BINARY(comn_mnysub, comn_money, traced_code, num::subtract)
BINARY(comn_mnymul, comn_money, traced_code, num::multiply)
BINARY(comn_mnydivide, comn_money, traced_code, num::divide)
BINARY(comn_mny4add, int32_t, traced_code, num::add)
BINARY(comn_mny4sub, int32_t, traced_code, num::subtract)
BINARY(comn_mny4mul, int32_t, traced_code, num::multiply)
BINARY(comn_mny4divide, int32_t, traced_code, num::divide)
UNARY(comn_mnyminus, comn_money, traced_code, num::negate)
UNARY(comn_mny4minus, int32_t, traced_code, num::negate)
UNARY(comn_mnycopy, comn_money, traced_code, num::money_done)
UNARY(comn_mny4copy, int32_t, traced_code, num::money_done)

extern "C" {

int32_t com__mnyinc(comn_money* value) {
  return status(step(value, 1));
}

int32_t comn_mnyinc(comn_money* value) {
  return traced_code(step(value, 1));
}

int32_t comn_mnydec(comn_money* value) {
  return traced_code(step(value, -1));
}

int32_t com__mnyscale(comn_money* value, uint32_t multiplier, int32_t addend) {
  return status(scale(value, multiplier, addend));
}

int32_t comn_mnyscale(comn_money* value, uint32_t multiplier, int32_t addend) {
  return traced_code(scale(value, multiplier, addend));
}

int32_t com__mnyrem(const comn_money*, const comn_money*, comn_money*) {
  return status(MoneyStatus::kOverflow);
}

int32_t com__mnyrem4(const int32_t*, const int32_t*, int32_t*) {
  return status(MoneyStatus::kOverflow);
}

int32_t comn_mnycmp(const comn_money* a, const comn_money* b) {
  return compare(a, b);
}

int32_t comn_mny4cmp(const int32_t* a, const int32_t* b) {
  return compare(a, b);
}

void comn_mnyzero(comn_money* value) {
  rt::require_pointer(value);
  store(value, Money{0});
}

void comn_mny4zero(int32_t* value) {
  rt::require_pointer(value);
  store(value, SmallMoney{0});
}

void comn_mnymaxpos(comn_money* value) {
  rt::require_pointer(value);
  store(value, num::kLargestMoney);
}

void comn_mnymaxneg(comn_money* value) {
  rt::require_pointer(value);
  store(value, num::kMostNegativeMoney);
}

// ---- Digits ------------------------------------------------------------------------------------

int32_t comn_mnydown(comn_money* value, int32_t divisor) {
  rt::require_pointer(value);
  const uint32_t low_bits = static_cast<uint32_t>(divisor) & 0xFFFF;
  if (low_bits == 0) return 0;
  const auto [quotient, remainder] = num::divide_by_integer(load(value), low_bits);
  store(value, quotient);
  return static_cast<int32_t>(remainder);
}

int32_t comn_mnyinit(comn_money* value, int32_t digits) {
  rt::require_pointer(value);
  constexpr int32_t all_digits = 19;  // of 2^63, which rounds off to 1 with all of them dropped
  const Money amount = load(value);
  const uint64_t power = num::power_of_ten(std::clamp(digits, 0, all_digits));
  const uint64_t rounded = digits > all_digits ? 0 : num::round_off(magnitude(amount), power);
  store(value, num::signed_money(rounded, false));
  return amount.count < 0 ? -1 : 0;
}

int32_t com__mnyndigit(comn_money* value, char* digit) {
  return take_digit(value, digit);
}

int32_t comn_mnyndigit(comn_money* value, char* digit) {
  return take_digit(value, digit);
}

void comn_mnyxdiv(const comn_money* dividend, const comn_money* divisor, comn_money* quotient) {
  rt::require_pointers({dividend, divisor, quotient});
  const uint32_t number = divisor->low;
  store(quotient, number == 0 ? Money{0} : num::divide_by_integer(load(dividend), number).quotient);
}

// ---- Other forms of an amount ------------------------------------------------------------------

int32_t com__mny4tomny(const int32_t* source, comn_money* destination) {
  rt::require_pointers({source, destination});
  store(destination, num::widen(load(source)));
  return status(MoneyStatus::kDone);
}

int32_t com__mnytoflt8(const comn_money* value, int32_t /*length*/, double* destination) {
  rt::require_pointers({value, destination});
  *destination = num::double_of_money(load(value));
  return sizeof *destination;
}

int32_t com__flt8tomny(const double* source, int32_t length, comn_money* destination,
                       int32_t /*ignored*/) {
  rt::require_pointer(destination);
  store(destination, Money{0});
  if (source == nullptr || length == 0) return sizeof *source;
  const auto amount = num::money_of_double(*source);
  if (amount.status != MoneyStatus::kDone) return -1;
  store(destination, amount.value);
  return sizeof *source;
}

char* com__mnytochar(const comn_money* value, char* buffer, int32_t length, int32_t flags) {
  return write(value, buffer, length, flags);
}

char* com__mny4tochar(const int32_t* value, char* buffer, int32_t length, int32_t flags) {
  return write(value, buffer, length, flags);
}

char* com_cvtmnytochar(const comn_money* value, char* buffer, int32_t length, int32_t flags) {
  return write(value, buffer, length, flags);
}

char* com_cvtmny4tochar(const int32_t* value, char* buffer, int32_t length, int32_t flags) {
  return write(value, buffer, length, flags);
}

char* com_precmnytochar(const comn_money* value, char* buffer, int32_t length, int32_t flags,
                        int32_t digits) {
  return write(value, buffer, length,
               flags | static_cast<int32_t>(static_cast<uint32_t>(digits) << 8));
}

int32_t com__mnyfromchar_mb(comn_money* value, const char* text, int32_t length,
                            int32_t /*ignored*/, const com_charattr* attributes) {
  rt::require_pointer(value);
  if (length > 0) rt::require_pointer(text);
  const auto amount = num::parse_money(text, length, attributes);
  store(value, amount.status == MoneyStatus::kDone ? amount.value : Money{0});
  return status(amount.status);
}

}  // extern "C"

// ---- Conversions -------------------------------------------------------------------------------

#define CONVERSION(S, D) TVX_EXPORT_CONVERSION(comn_##S##to##D, money_routine<type::S, type::D>)
#define BARE(S, D) TVX_EXPORT_BARE(comnb_##S##to##D, bare_money_routine<type::S, type::D>)
#define FROM_TEXT(T, D) \
  TVX_EXPORT_CONVERSION(comn_##T##to##D, text_to_money<type::text_##T, type::D>)
#define BARE_FROM_TEXT(T, D) TVX_EXPORT_BARE(comnb_##T##to##D, bare_text_to_money<type::D>)
#define TO_TEXT(S, T) TVX_EXPORT_CONVERSION(comn_##S##to##T, money_to_text<type::S, type::text_##T>)
#define BARE_TO_TEXT(S, T) \
  TVX_EXPORT_BARE(comnb_##S##to##T, bare_money_to_text<type::S, type::text_##T>)

TVX_MONEY_PAIRS(CONVERSION)
TVX_MONEY_PAIRS(BARE)
TVX_UNSIGNED_TO_MONEY(BARE)
BARE(bit, money)
BARE(bit, mny4)
TVX_TEXT_TO_MONEY(FROM_TEXT)
TVX_TEXT_TO_MONEY(BARE_FROM_TEXT)
TVX_MONEY_TO_TEXT(TO_TEXT)
TVX_MONEY_TO_TEXT(BARE_TO_TEXT)

#define FROM_NUM(D) TVX_EXPORT_CONVERSION(comn_numto##D, num_to_money<type::D>)
#define BARE_FROM_NUM(D) TVX_EXPORT_BARE(comnb_numto##D, bare_num_to_money<type::D>)
#define TO_NUM(S) TVX_EXPORT_CONVERSION(comn_##S##tonum, money_to_num<type::S>)
#define BARE_TO_NUM(S) TVX_EXPORT_BARE(comnb_##S##tonum, bare_money_to_num<type::S>)

TVX_MONEY_TYPES(FROM_NUM)
TVX_MONEY_TYPES(BARE_FROM_NUM)
TVX_MONEY_TYPES(TO_NUM)
TVX_MONEY_TYPES(BARE_TO_NUM)
