// Values of the library's datatypes: from text to a typed value, from one datatype to another, and
// back to text. Each routine is looked up once and then called with formats that are ready.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "date_values.hpp"
#include "tvxcomn/context.h"
#include "type_names.hpp"

namespace tvx::tool {

struct CloseContext {
  void operator()(comn_context* context) const { comn_context_close(context); }
};
using Context = std::unique_ptr<comn_context, CloseContext>;

// A context without localisation: English names, built-in character attributes. Throws Failure.
[[nodiscard]] Context open_context();

// The destination of a conversion.
struct Value {
  std::vector<char> storage;  // grows to what the largest value needed
  int32_t length = 0;         // bytes delivered

  [[nodiscard]] std::string_view bytes() const;
};

// Whether a value has no bytes at all. Such values exist for text, binary and varying types, and
// the library takes none of them as a source.
[[nodiscard]] bool is_empty(int32_t code, std::string_view value);

// A date format code in which dates are written as text; without one it is that of the context.
using Style = std::optional<int32_t>;

// One step from a datatype to another.
class Conversion {
public:
  // `flags` are the format flags of the destination. A destination without a maxlength gets room
  // for whatever the source may become. With a style, dates are written as text in the form of that
  // date format code.
  Conversion(comn_context* context, const DataType& source, const DataType& destination,
             uint32_t flags = 0, Style style = {});

  [[nodiscard]] bool exists() const { return routine_ != nullptr; }

  // Converts a value that is not empty and at most kLargestValue bytes long. Returns the library's
  // result code; the value's length is 0 when the library set none.
  [[nodiscard]] int32_t run(std::string_view source, Value& destination);

  static constexpr std::size_t kLargestValue = std::size_t{16} * 1024 * 1024;

private:
  int32_t write_date(std::string_view source, Value& destination);

  comn_context* context_;
  comn_conversion* routine_;
  const DateType* styled_ = nullptr;  // the source, when it is written in a style
  int32_t style_ = 0;
  comn_datafmt source_{};
  comn_datafmt destination_{};
  bool room_follows_source_;
};

// A typed value as text: the bytes themselves for text types, the way back to char for all others.
class TextForm {
public:
  TextForm(comn_context* context, int32_t code, Style style = {});

  [[nodiscard]] bool exists() const;

  // Returns the result code of the way back; `text` is set when it succeeded and lives until the
  // next call.
  [[nodiscard]] int32_t of(std::string_view value, std::string_view& text);

private:
  int32_t code_;
  Conversion to_char_;
  Value buffer_;
};

// Text to a datatype and back to text, as it is done with every field of a column.
class RoundTrip {
public:
  // Throws Failure when the type has no way from or back to char, with the types that have both.
  RoundTrip(comn_context* context, const DataType& type, Style style = {});

  struct Outcome {
    int32_t result;         // of the step that failed, else of the last
    std::string_view text;  // when both steps succeeded; until the next call
  };

  // Converts a text of 1 to Conversion::kLargestValue bytes.
  [[nodiscard]] Outcome convert(std::string_view text);

private:
  Conversion from_char_;
  TextForm text_form_;
  Value typed_;
};

// The names of the types to which `source` converts, in the order of their codes; "no type" when
// there is none.
[[nodiscard]] std::string destinations_of(comn_context* context, int32_t source);

}  // namespace tvx::tool
