#include "value_conversion.hpp"

#include <algorithm>
#include <cstring>

#include "failure.hpp"
#include "result_names.hpp"
#include "tvxcomn/dispatch.h"

namespace tvx::tool {

namespace {

constexpr DataType kChar{TVX_TYPE_CHAR};

// More than the fixed-size types and the text of any number or date take, so that a library that
// writes a fixed-size value into a type of open size (int20, the locators) stays inside.
constexpr std::size_t kRoomOfAnyFixedType = 1024;

// No conversion makes more of a byte than two hexadecimal digits or one UTF-16 code unit.
constexpr std::size_t kLargestGrowth = 2;

// All digits of a money value behind the point. What the format does not ask for is rounded off, in
// text and on the way to 8-byte integers, which goes through text.
constexpr int32_t kMoneyDigits = 4;

bool is_money(int32_t code) {
  return code == TVX_TYPE_MONEY || code == TVX_TYPE_MNY4;
}

int32_t usual_precision(int32_t source, int32_t destination) {
  if (is_exact_numeric(destination)) return CS_TAKE_FROM_SOURCE;
  return is_money(source) ? kMoneyDigits : 0;
}

comn_datafmt source_format(const DataType& type) {
  comn_datafmt format{};
  format.datatype = type.code;
  return format;
}

comn_datafmt destination_format(const DataType& type, uint32_t flags, int32_t source) {
  comn_datafmt format{};
  format.datatype = type.code;
  format.format = flags;
  format.maxlength = type.maxlength.value_or(comn_typelen(type.code, 0));
  format.precision = type.precision.value_or(usual_precision(source, type.code));
  format.scale = type.scale.value_or(is_exact_numeric(type.code) ? CS_TAKE_FROM_SOURCE : 0);
  return format;
}

std::string list_types(const std::vector<int32_t>& codes) {
  std::string list;
  for (const int32_t code : codes) {
    if (!list.empty()) list += ", ";
    list += type_name(code);
  }
  return list.empty() ? "no type" : list;
}

bool makes_round_trip(comn_context* context, int32_t code) {
  return com_conv_func(context, TVX_TYPE_CHAR, code) != nullptr && TextForm(context, code).exists();
}

std::string round_trip_types(comn_context* context) {
  std::vector<int32_t> codes;
  for (int32_t code = 0; code < kTypeCount; ++code) {
    if (makes_round_trip(context, code)) codes.push_back(code);
  }
  return list_types(codes);
}

}  // namespace

Context open_context() {
  comn_context* context = nullptr;
  const int32_t result = comn_context_open(nullptr, COMN_CONTEXT_NO_LOCALISATION, &context);
  if (result != CS_SUCCEED) {
    throw Failure("the library does not start: " + result_name(result));
  }
  return Context(context);
}

std::string_view Value::bytes() const {
  const auto delivered = static_cast<std::size_t>(std::max(length, 0));
  return {storage.data(), std::min(delivered, storage.size())};
}

bool is_empty(int32_t code, std::string_view value) {
  if (code == TVX_TYPE_VARCHAR || code == TVX_TYPE_VARBIN) {
    uint16_t length = 0;
    std::memcpy(&length, value.data(), std::min(value.size(), sizeof length));
    return length == 0;
  }
  return has_open_size(code) && code != TVX_TYPE_NULL23 && value.empty();
}

Conversion::Conversion(comn_context* context, const DataType& source, const DataType& destination,
                       uint32_t flags, Style style)
    : context_(context),
      routine_(com_conv_func(context, source.code, destination.code)),
      source_(source_format(source)),
      destination_(destination_format(destination, flags, source.code)),
      room_follows_source_(has_open_size(destination.code) && !destination.maxlength) {
  if (!style || !is_text(destination.code)) return;
  styled_ = date_type(source.code);
  style_ = *style;
}

int32_t Conversion::run(std::string_view source, Value& destination) {
  source_.maxlength = static_cast<int32_t>(source.size());
  if (room_follows_source_) {
    destination_.maxlength =
        static_cast<int32_t>(kLargestGrowth * source.size() + kRoomOfAnyFixedType);
  }
  const std::size_t room =
      std::max(static_cast<std::size_t>(destination_.maxlength), kRoomOfAnyFixedType);
  if (destination.storage.size() < room) destination.storage.resize(room);
  destination.length = 0;
  if (styled_ != nullptr) return write_date(source, destination);
  return routine_(context_, &source_, source.data(), &destination_, destination.storage.data(),
                  &destination.length);
}

int32_t Conversion::write_date(std::string_view source, Value& destination) {
  const comnb_context context = style_context(style_, destination_.format);
  comnb_value from{};
  from.length = static_cast<int32_t>(source.size());
  from.data = const_cast<char*>(source.data());  // which is only read
  comnb_value to{};
  to.maxlength = destination_.maxlength;
  to.data = destination.storage.data();
  const int32_t result = styled_->write(&context, &from, &to);
  destination.length = to.length;
  return result;
}

TextForm::TextForm(comn_context* context, int32_t code, Style style)
    : code_(code), to_char_(context, DataType{code}, kChar, 0, style) {}

bool TextForm::exists() const {
  return is_text(code_) || to_char_.exists();
}

int32_t TextForm::of(std::string_view value, std::string_view& text) {
  if (is_text(code_) || is_empty(code_, value)) {
    text = is_text(code_) ? value : std::string_view();
    return CS_SUCCEED;
  }
  const int32_t result = to_char_.run(value, buffer_);
  if (succeeded(result)) text = buffer_.bytes();
  return result;
}

RoundTrip::RoundTrip(comn_context* context, const DataType& type, Style style)
    : from_char_(context, kChar, type), text_form_(context, type.code, style) {
  if (from_char_.exists() && text_form_.exists()) return;
  const std::string name(type_name(type.code));
  throw Failure("there is no conversion from " +
                (from_char_.exists() ? name + " back to char" : "char to " + name) +
                "; use one of " + round_trip_types(context));
}

RoundTrip::Outcome RoundTrip::convert(std::string_view text) {
  Outcome outcome{};
  outcome.result = from_char_.run(text, typed_);
  if (succeeded(outcome.result)) outcome.result = text_form_.of(typed_.bytes(), outcome.text);
  return outcome;
}

std::string destinations_of(comn_context* context, int32_t source) {
  std::vector<int32_t> codes;
  for (int32_t code = 0; code < kTypeCount; ++code) {
    if (com_conv_func(context, source, code) != nullptr) codes.push_back(code);
  }
  return list_types(codes);
}

}  // namespace tvx::tool
