// Exact arithmetic by GMP's integers.
#include <gmp.h>

#include <array>

#include "peers/whole.hpp"

namespace tvx::bench::peers {
namespace {

mpz_ptr native(Exact& number) {
  return reinterpret_cast<mpz_ptr>(&number);
}

mpz_srcptr native(const Exact& number) {
  return reinterpret_cast<mpz_srcptr>(&number);
}

struct Integer {
  Integer() { mpz_init(value); }
  mpz_t value;
};

using Powers = std::array<Integer, kGreatestTen + 1>;

Powers make_powers() {
  Powers powers;
  for (size_t i = 0; i < powers.size(); ++i) mpz_ui_pow_ui(powers[i].value, 10, i);
  return powers;
}

const Powers kPowers = make_powers();
Integer left_room;
Integer right_room;

mpz_srcptr power(int32_t digits) {
  return kPowers[static_cast<size_t>(digits)].value;
}

mpz_srcptr multiplied(mpz_srcptr value, int32_t digits, mpz_ptr room) {
  if (digits == 0) return value;
  mpz_mul(room, value, power(digits));
  return room;
}

template <auto operate>
void run(const Exact& a, const Exact& b, const Scaling& scaling, Exact& result) {
  const mpz_ptr value = native(result);
  operate(value, multiplied(native(a), scaling.left, left_room.value),
          multiplied(native(b), scaling.right, right_room.value));
  if (scaling.dropped != 0) mpz_tdiv_q(value, value, power(scaling.dropped));
}

int32_t compare(const Exact& a, const Exact& b, const Scaling& scaling) {
  const int order = mpz_cmp(multiplied(native(a), scaling.left, left_room.value),
                            multiplied(native(b), scaling.right, right_room.value));
  return (order > 0) - (order < 0);
}

void read(const char* text, int32_t length, Exact& number) {
  char digits[kExactCapacity];
  remove_point(text, length, digits);
  mpz_set_str(native(number), digits, 10);
}

int32_t write(const Exact& number, int32_t scale, char* out) {
  char digits[kExactCapacity];
  mpz_get_str(digits, 10, native(number));
  return insert_point(digits, scale, out);
}

Exact* create() {
  return reinterpret_cast<Exact*>((new Integer)->value);
}

}  // namespace

const ExactPeer& gmp() {
  static const ExactPeer peer{"GMP",           create,  run<mpz_add>, run<mpz_sub>, run<mpz_mul>,
                              run<mpz_tdiv_q>, compare, read,         write};
  return peer;
}

}  // namespace tvx::bench::peers
