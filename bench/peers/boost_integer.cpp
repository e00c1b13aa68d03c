// Exact arithmetic by integers of a fixed size from Boost.Multiprecision.
#include <array>
#include <boost/multiprecision/cpp_int.hpp>
#include <functional>

#include "peers/whole.hpp"

namespace tvx::bench::peers {
namespace {

namespace mp = boost::multiprecision;

template <unsigned bits>
using Integer =
    mp::number<mp::cpp_int_backend<bits, bits, mp::signed_magnitude, mp::unchecked, void>,
               mp::et_off>;
using Narrow = Integer<256>;
using Wide = Integer<512>;

Narrow& native(Exact& number) {
  return reinterpret_cast<Narrow&>(number);
}

const Narrow& native(const Exact& number) {
  return reinterpret_cast<const Narrow&>(number);
}

template <class Number>
const Number& power(int32_t digits) {
  static const auto powers = [] {
    std::array<Number, kGreatestTen + 1> made;
    Number next = 1;
    for (Number& each : made) {
      each = next;
      next *= 10;
    }
    return made;
  }();
  return powers[static_cast<size_t>(digits)];
}

template <class Number>
Number multiplied(const Narrow& value, int32_t digits) {
  return digits == 0 ? Number(value) : Number(Number(value) * power<Number>(digits));
}

template <class Number, class Operate>
Narrow operated(const Exact& a, const Exact& b, const Scaling& scaling) {
  const Number value = Operate()(multiplied<Number>(native(a), scaling.left),
                                 multiplied<Number>(native(b), scaling.right));
  return Narrow(scaling.dropped == 0 ? value : Number(value / power<Number>(scaling.dropped)));
}

template <class Operate>
void run(const Exact& a, const Exact& b, const Scaling& scaling, Exact& result) {
  if (scaling.left == 0 && scaling.right == 0 && scaling.dropped == 0) {
    native(result) = Operate()(native(a), native(b));
  } else {
    native(result) = scaling.wide ? operated<Wide, Operate>(a, b, scaling)
                                  : operated<Narrow, Operate>(a, b, scaling);
  }
}

int32_t compare(const Exact& a, const Exact& b, const Scaling& scaling) {
  if (scaling.left == 0 && scaling.right == 0) {
    const int order = native(a).compare(native(b));
    return (order > 0) - (order < 0);
  }
  const int order = multiplied<Narrow>(native(a), scaling.left)
                        .compare(multiplied<Narrow>(native(b), scaling.right));
  return (order > 0) - (order < 0);
}

void read(const char* text, int32_t length, Exact& number) {
  char digits[kExactCapacity];
  remove_point(text, length, digits);
  const bool negative = digits[0] == '-';
  const char* first = digits + (negative ? 1 : 0);
  while (first[0] == '0' && first[1] != '\0') ++first;  // it would mark octal digits
  native(number).assign(first);
  if (negative) native(number).backend().negate();
}

int32_t write(const Exact& number, int32_t scale, char* out) {
  return insert_point(native(number).str().c_str(), scale, out);
}

Exact* create() {
  return reinterpret_cast<Exact*>(new Narrow);
}

}  // namespace

const ExactPeer& boost_integer() {
  static const ExactPeer peer{"Boost",
                              create,
                              run<std::plus<>>,
                              run<std::minus<>>,
                              run<std::multiplies<>>,
                              run<std::divides<>>,
                              compare,
                              read,
                              write};
  return peer;
}

}  // namespace tvx::bench::peers
