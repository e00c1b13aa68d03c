// The tokens of a date text, and the questions that the grammar asks about them: which is the first
// one left of a kind, is the one at a place of a kind, is any left at all. A place is one bit, and
// each kind has the set of its places, so that no question walks over the tokens.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace tvx::datetime {

enum class Kind : uint8_t {
  kNumber,        // 1 to 3 digits
  kYear,          // 4 digits
  kFiveDigits,    //
  kPacked,        // 6 or 8 digits
  kColon,         //
  kComma,         //
  kPoint,         // which is a separator, too
  kSeparator,     // "-", "/" or a point
  kIsoSeparator,  // "T"
  kMarker,        // "AM" or "PM"; value 0 or 1
  kMonth,         // value 0 to 11
};
inline constexpr size_t kKinds = 11;

// Of one token, or kNowhere.
using Place = uint32_t;
inline constexpr Place kNowhere = 0;
inline constexpr Place kFirst = 1;

// At the places before the first and behind the last token there is none.
[[nodiscard]] constexpr Place before(Place place) {
  return place >> 1;
}
[[nodiscard]] constexpr Place behind(Place place) {
  return place << 1;
}

class Tokens {
public:
  static constexpr int kCapacity = 20;
  static constexpr Place kEnd = kFirst << kCapacity;  // no token may stand here

  // The tokens are set one behind the other and then closed, at the place behind the last.
  void set(Place place, Kind kind) { of_kind_[static_cast<size_t>(kind)] |= place; }
  void set(Place place, Kind kind, int32_t value, int32_t digits = 0) {
    set(place, kind);
    contents_[index(place)] = {value, digits};
  }
  void close(Place end) {
    of_kind_[static_cast<size_t>(Kind::kSeparator)] |= of_kind(Kind::kPoint);
    left_ = end - 1;
    end_ = end;
  }

  // The first token left of a kind, and the first one but for that at kFirst.
  [[nodiscard]] Place find(Kind kind) const { return lowest(of_kind(kind) & left_); }
  [[nodiscard]] Place find_behind_first(Kind kind) const {
    return lowest(of_kind(kind) & left_ & ~kFirst);
  }

  // Tell whether the token at a place is left and of a kind, or a number of any length.
  [[nodiscard]] bool is(Place place, Kind kind) const {
    return (of_kind(kind) & left_ & place) != 0;
  }
  [[nodiscard]] bool is_number(Place place) const {
    const Place numbers = of_kind(Kind::kNumber) | of_kind(Kind::kYear) |
                          of_kind(Kind::kFiveDigits) | of_kind(Kind::kPacked);
    return (numbers & left_ & place) != 0;
  }

  // Tell whether tokens are left, or any behind a place.
  [[nodiscard]] bool any_left() const { return left_ != 0; }
  [[nodiscard]] bool any_left_behind(Place place) const { return left_ > place; }
  [[nodiscard]] bool is_last(Place place) const { return behind(place) == end_; }

  void use_up(Place place) { left_ &= ~place; }
  // Uses up the token at a place if it is of the kind.
  bool accept(Place place, Kind kind) {
    if (!is(place, kind)) return false;
    use_up(place);
    return true;
  }

  // Of a token that has them.
  [[nodiscard]] int32_t value(Place place) const { return contents_[index(place)].value; }
  [[nodiscard]] int32_t digits(Place place) const { return contents_[index(place)].digits; }

private:
  struct Content {
    int32_t value;
    int32_t digits;  // of a number
  };

  [[nodiscard]] static size_t index(Place place) {
    if (place == kNowhere) __builtin_unreachable();  // which spares a test of it
    return static_cast<unsigned>(std::countr_zero(place));
  }
  [[nodiscard]] static Place lowest(uint32_t places) { return places & (0 - places); }
  [[nodiscard]] uint32_t of_kind(Kind kind) const { return of_kind_[static_cast<size_t>(kind)]; }

  Content contents_[kCapacity];  // of the tokens that have some
  uint32_t of_kind_[kKinds]{};
  uint32_t left_ = 0;
  Place end_ = kFirst;
};

}  // namespace tvx::datetime
