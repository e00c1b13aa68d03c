#include "datetime_section.hpp"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <span>
#include <string_view>

namespace tvx::intl {
namespace {

// The readers of single keys leave an error in the scanner, which then gives no more keys and
// values.

// Null, and an error, when the entry has no further value.
const char* required_value(Scanner& scanner) {
  if (!scanner.has_value()) scanner.fail(ErrorKind::kTooFewValues, scanner.text_line());
  return scanner.next_value();
}

void read_text(Scanner& scanner, std::span<char> slot) {
  const char* value = required_value(scanner);
  if (value == nullptr) return;
  const size_t length = scanner.value_length();
  if (length == 0) return scanner.fail(ErrorKind::kTextEmpty, scanner.text_line());
  if (length >= slot.size()) return scanner.fail(ErrorKind::kTextTooLong, scanner.text_line());
  if (std::strlen(value) < length) return scanner.fail(ErrorKind::kZeroInText, scanner.text_line());
  std::memcpy(slot.data(), value, length + 1);
}

template <size_t count, size_t size>
void read_names(Scanner& scanner, char (&names)[count][size]) {
  for (auto& name : names) read_text(scanner, name);
}

// Reads one of some words; the number is the word's index. Any other word is an error of the given
// kind.
void read_word(Scanner& scanner, std::span<const std::string_view> words, ErrorKind kind,
               int32_t& number) {
  const char* value = required_value(scanner);
  if (value == nullptr) return;
  const std::string_view word(value, scanner.value_length());
  const auto found = std::find(words.begin(), words.end(), word);
  if (found == words.end()) return scanner.fail(kind, scanner.text_line());
  number = static_cast<int32_t>(found - words.begin());
}

void read_first_day(Scanner& scanner, intl_datetime_record& record) {
  constexpr std::string_view kWords[] = {"1", "2", "3", "4", "5", "6", "7"};
  read_word(scanner, kWords, ErrorKind::kBadFirstDay, record.first_day);
  ++record.first_day;
}

void read_twelve_hour(Scanner& scanner, intl_datetime_record& record) {
  constexpr std::string_view kWords[] = {"0", "1", "no", "yes"};
  read_word(scanner, kWords, ErrorKind::kBadTwelveHour, record.twelve_hour);
  record.twelve_hour %= 2;
}

struct Key {
  std::string_view name;
  ErrorKind missing;
  void (*read)(Scanner&, intl_datetime_record&);
};

constexpr Key kKeys[] = {
    {"months", ErrorKind::kNoMonths, [](Scanner& s, auto& r) { read_names(s, r.months); }},
    {"short_months", ErrorKind::kNoShortMonths,
     [](Scanner& s, auto& r) { read_names(s, r.short_months); }},
    {"days", ErrorKind::kNoDays, [](Scanner& s, auto& r) { read_names(s, r.days); }},
    {"first_day", ErrorKind::kNoFirstDay, read_first_day},
    {"date_order", ErrorKind::kNoDateOrder,
     [](Scanner& s, auto& r) { read_text(s, r.date_order); }},
    {"twelve_hour", ErrorKind::kNoTwelveHour, read_twelve_hour},
};

}  // namespace

int32_t read_datetime_section(Scanner& scanner, intl_datetime_record& record) {
  const int32_t section_line = scanner.text_line();
  intl_datetime_record filled{};
  bool seen[std::size(kKeys)]{};
  while (const char* name = scanner.next_entry()) {
    const auto key = std::find_if(std::begin(kKeys), std::end(kKeys),
                                  [&](const Key& k) { return k.name == name; });
    if (key == std::end(kKeys)) {
      scanner.fail(ErrorKind::kUnknownKey, scanner.text_line());
      break;
    }
    bool& key_seen = seen[key - kKeys];
    if (key_seen) scanner.fail(ErrorKind::kKeyTwice, scanner.text_line());
    key_seen = true;
    key->read(scanner, filled);
    if (scanner.has_value()) scanner.fail(ErrorKind::kTooManyValues, scanner.text_line());
  }
  for (size_t i = 0; i < std::size(kKeys); ++i) {
    if (!seen[i]) scanner.fail(kKeys[i].missing, section_line);
  }
  if (scanner.error() == 0) record = filled;
  return scanner.error();
}

}  // namespace tvx::intl
