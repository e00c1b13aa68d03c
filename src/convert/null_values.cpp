// Null values.
#include "convert/null_values.hpp"

#include <algorithm>
#include <array>
#include <cstring>

#include "convert/completion.hpp"
#include "numeric/precision.hpp"
#include "tvxcomn/support.h"

namespace tvx::convert {
namespace {

// The step that follows a delivered null value.
enum class Step : int32_t { kText = 1, kBinary = 2, kNone = 3, kUtf16 = 4 };

// The built-in null value of a code: a few leading bytes, then zeros.
struct Default {
  int32_t length;
  Step step;
  std::array<uint8_t, 4> lead;
};

constexpr Default empty(Step step) {
  return {0, step, {}};
}
constexpr Default zeros(int32_t length) {
  return {length, Step::kNone, {}};
}

constexpr Default kNumericNull{35, Step::kNone, {18}};  // precision 18
// A locator record begins with the marker of a valid one, -779.
constexpr Default kLocatorNull{48, Step::kNone, {0xF5, 0xFC, 0xFF, 0xFF}};
constexpr Default kUnicodeNull{1, Step::kUtf16, {}};
// The 4-byte date and money types have more bytes than they store; delivery is cut to the caller's.
constexpr Default kShortNull = zeros(8);

constexpr std::array<Default, kDatatypes> kDefaults{
    /*  0 char */ empty(Step::kText),
    /*  1 bin */ empty(Step::kText),
    /*  2 char2 */ empty(Step::kBinary),
    /*  3 bin3 */ empty(Step::kBinary),
    /*  4 text */ empty(Step::kText),
    /*  5 image */ empty(Step::kBinary),
    /*  6 i1 */ zeros(1),
    /*  7 i2 */ zeros(2),
    /*  8 i4 */ zeros(4),
    /*  9 flt4 */ zeros(4),
    /* 10 flt8 */ zeros(8),
    /* 11 bit */ zeros(1),
    /* 12 datetime */ zeros(8),
    /* 13 date4 */ kShortNull,
    /* 14 money */ zeros(8),
    /* 15 mny4 */ kShortNull,
    /* 16 num */ kNumericNull,
    /* 17 num17 */ kNumericNull,
    /* 18 varchar */ zeros(258),
    /* 19 varbin */ zeros(258),
    /* 20 int20 */ zeros(8),
    /* 21 char21 */ empty(Step::kText),
    /* 22 char22 */ empty(Step::kText),
    /* 23 null23 */ zeros(4),
    /* 24 */ zeros(2),
    /* 25 unichar */ kUnicodeNull,
    /* 26 */ zeros(4),
    /* 27 datea */ zeros(4),
    /* 28 timea */ zeros(4),
    /* 29 unichar29 */ kUnicodeNull,
    /* 30 i8 */ zeros(8),
    /* 31 ui2 */ zeros(2),
    /* 32 ui4 */ zeros(4),
    /* 33 ui8 */ zeros(8),
    /* 34 char34 */ empty(Step::kText),
    /* 35 bigdatetime */ zeros(8),
    /* 36 bigtime */ zeros(8),
    /* 37 locator37 */ kLocatorNull,
    /* 38 locator38 */ kLocatorNull,
    /* 39 locator39 */ kLocatorNull,
};

// A value of its own on the heap; empty without a block.
struct Value {
  uint8_t* bytes;
  int32_t length;

  void drop() {
    comn_free(bytes);
    *this = {};
  }

  // Replaces the value by room for `new_length` bytes; on failure there is no value.
  bool allocate(int32_t new_length) {
    drop();
    if (new_length == 0) return true;
    bytes = static_cast<uint8_t*>(comn_malloc(static_cast<size_t>(new_length)));
    if (bytes == nullptr) return false;
    length = new_length;
    return true;
  }

  bool assign(const void* source, int32_t new_length) {
    if (!allocate(new_length)) return false;
    if (new_length > 0) std::memcpy(bytes, source, static_cast<size_t>(new_length));
    return true;
  }
};

struct TableEntry {
  Value value;
  Step step;

  bool assign_default(int32_t datatype) {
    const Default& initial = kDefaults[static_cast<size_t>(datatype)];
    step = initial.step;
    if (initial.length > value.length && !value.allocate(initial.length)) return false;
    value.length = initial.length;
    const auto length = static_cast<size_t>(initial.length);
    const size_t lead = std::min(length, initial.lead.size());
    if (length > 0) {
      std::memset(value.bytes, 0, length);
      std::memcpy(value.bytes, initial.lead.data(), lead);
    }
    return true;
  }
};

struct ListEntry {
  int32_t datatype;
  Value value;
  ListEntry* next;
};

[[nodiscard]] TableEntry& table_entry(const comn_context& context, int32_t datatype) {
  runtime::require(context.nulls != nullptr);
  return static_cast<TableEntry*>(context.nulls)[datatype];
}

[[nodiscard]] ListEntry* list_head(const comn_context& context) {
  return static_cast<ListEntry*>(context.null_list);
}

[[nodiscard]] ListEntry* find_in_list(const comn_context& context, int32_t datatype) {
  ListEntry* entry = list_head(context);
  while (entry != nullptr && entry->datatype != datatype) entry = entry->next;
  return entry;
}

[[nodiscard]] bool is_numeric(int32_t datatype) {
  return datatype == TVX_TYPE_NUM || datatype == TVX_TYPE_NUM17;
}

void copy_padded(uint8_t* to, int32_t length, const Value& value) {
  const auto copied = static_cast<size_t>(std::min(length, value.length));
  if (copied > 0) std::memcpy(to, value.bytes, copied);
  if (static_cast<size_t>(length) > copied) {
    std::memset(to + copied, 0, static_cast<size_t>(length) - copied);
  }
}

int32_t deliver_from_table(const TableEntry& entry, const comn_datafmt& format,
                           uint8_t* destination, int32_t maximum_length, int32_t& output_length) {
  const bool numeric = is_numeric(format.datatype);
  int32_t wanted = entry.value.length;
  if (numeric && numeric::is_precision(format.precision)) {
    wanted = numeric::field_length(format.precision) + 2;
  }
  output_length = std::min(maximum_length, wanted);
  copy_padded(destination, output_length, entry.value);

  if (entry.step != Step::kNone) runtime::require(format.maxlength >= 0);
  switch (entry.step) {
    case Step::kText:
      return complete_text(format, output_length, destination, output_length);
    case Step::kBinary:
      return complete_binary(format, destination, output_length);
    case Step::kUtf16:
      return complete_utf16(format, output_length, destination, output_length);
    case Step::kNone:
      break;
  }
  if (numeric) {
    if (output_length >= 1) destination[0] = static_cast<uint8_t>(format.precision);
    if (output_length >= 2) destination[1] = static_cast<uint8_t>(format.scale);
  }
  return CS_SUCCEED;
}

int32_t deliver_from_list(const Value& value, uint8_t* destination, int32_t maximum_length,
                          int32_t& output_length) {
  output_length = std::min(maximum_length, value.length);
  copy_padded(destination, output_length, value);
  if (value.length > maximum_length) return CS_CONV_OVERFLOW;
  if (value.length < maximum_length) destination[output_length++] = 0;
  return CS_SUCCEED;
}

int32_t insert_in_list(comn_context& context, int32_t datatype, const void* bytes, int32_t length) {
  auto* entry = static_cast<ListEntry*>(comn_calloc(1, sizeof(ListEntry)));
  if (entry == nullptr) return CS_MEM_ERROR;
  if (!entry->value.assign(bytes, length)) {
    comn_free(entry);
    return CS_MEM_ERROR;
  }
  entry->datatype = datatype;
  entry->next = list_head(context);
  context.null_list = entry;
  return CS_SUCCEED;
}

void remove_from_list(comn_context& context, int32_t datatype) {
  ListEntry* before = nullptr;
  for (ListEntry* entry = list_head(context); entry != nullptr; entry = entry->next) {
    if (entry->datatype == datatype) {
      if (before == nullptr) {
        context.null_list = entry->next;
      } else {
        before->next = entry->next;
      }
      entry->value.drop();
      comn_free(entry);
      return;
    }
    before = entry;
  }
}

}  // namespace

int32_t init_nulls(comn_context& context) {
  context.null_list = nullptr;
  context.null_count = kDatatypes;
  context.nulls = comn_calloc(kDatatypes, sizeof(TableEntry));
  bool complete = context.nulls != nullptr;
  for (int32_t datatype = 0; complete && datatype < kDatatypes; ++datatype) {
    complete = table_entry(context, datatype).assign_default(datatype);
  }
  if (complete) return CS_SUCCEED;
  free_nulls(context);
  return CS_MEM_ERROR;
}

void free_nulls(comn_context& context) {
  auto* table = static_cast<TableEntry*>(context.nulls);
  for (int32_t datatype = 0; table != nullptr && datatype < context.null_count; ++datatype) {
    table[datatype].value.drop();
  }
  comn_free(table);
  context.nulls = nullptr;
  context.null_count = 0;
  while (ListEntry* entry = list_head(context)) {
    context.null_list = entry->next;
    entry->value.drop();
    comn_free(entry);
  }
}

int32_t get_null(const comn_context& context, const comn_datafmt& format, void* destination,
                 int32_t maximum_length, int32_t& output_length) {
  auto* bytes = static_cast<uint8_t*>(destination);
  if (format.datatype < kDatatypes) {
    return deliver_from_table(table_entry(context, format.datatype), format, bytes, maximum_length,
                              output_length);
  }
  const ListEntry* entry = find_in_list(context, format.datatype);
  if (entry == nullptr) {
    output_length = 0;
    return CS_SUCCEED;
  }
  return deliver_from_list(entry->value, bytes, maximum_length, output_length);
}

int32_t set_null(comn_context& context, int32_t datatype, const void* value, int32_t length) {
  if (datatype < kDatatypes) {
    return table_entry(context, datatype).value.assign(value, length) ? CS_SUCCEED : CS_MEM_ERROR;
  }
  ListEntry* entry = find_in_list(context, datatype);
  if (entry == nullptr) return insert_in_list(context, datatype, value, length);
  return entry->value.assign(value, length) ? CS_SUCCEED : CS_MEM_ERROR;
}

int32_t reinstall_null(comn_context& context, int32_t datatype) {
  if (datatype >= kDatatypes) {
    remove_from_list(context, datatype);
    return CS_SUCCEED;
  }
  return table_entry(context, datatype).assign_default(datatype) ? CS_SUCCEED : CS_MEM_ERROR;
}

int32_t null_to_any(const Call& call) {
  call.require_pointers();
  runtime::require(kNullSource.contains(call.source_format->datatype));
  const comn_datafmt& format = *call.destination_format;
  runtime::require(format.datatype >= 0);
  if (format.datatype == TVX_TYPE_NULL23) return CS_SUCCEED;

  int32_t room = storage_size(format.datatype, format.maxlength);
  runtime::require(room >= 0);
  // The storage size of unichar is that of one unit; its buffer may be smaller.
  if (format.datatype == TVX_TYPE_UNICHAR) {
    runtime::require(format.maxlength >= 0);
    room = std::min(room, format.maxlength);
  }
  return get_null(*call.context, format, call.destination, room, *call.output_length);
}

}  // namespace tvx::convert
