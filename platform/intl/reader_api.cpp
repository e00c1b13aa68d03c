// The C interface of the localisation-file reader: it keeps the scanner and the file's text in the
// caller's record.
#include <cstdint>
#include <new>
#include <type_traits>

#include "datetime_section.hpp"
#include "errors.hpp"
#include "load_file.hpp"
#include "scanner.hpp"
#include "tvxcomn/support.h"

namespace tvx::intl {
namespace {

// Stands in the first word of an open reader, so that one that is zeroed, closed or was never
// opened is recognised.
constexpr uint64_t kOpenMark = 0x7265616465722121;

// What the words behind the mark hold.
struct OpenReader {
  char* block;
  Scanner scanner;
};

static_assert(sizeof(uint64_t) + sizeof(OpenReader) <= sizeof(intl_reader));
static_assert(alignof(OpenReader) <= alignof(intl_reader));
static_assert(std::is_trivially_copyable_v<OpenReader>);
static_assert(std::is_trivially_destructible_v<OpenReader>);

// Null when the reader is not open.
OpenReader* opened(intl_reader* reader) {
  if (reader == nullptr || reader->opaque[0] != kOpenMark) return nullptr;
  return std::launder(reinterpret_cast<OpenReader*>(&reader->opaque[1]));
}

char* step(intl_reader* reader, int32_t* status, char* (Scanner::*next)()) {
  int32_t ignored;
  if (status == nullptr) status = &ignored;
  OpenReader* open = opened(reader);
  if (open == nullptr) {
    *status = error_number(ErrorKind::kNotOpen);
    return nullptr;
  }
  char* text = (open->scanner.*next)();
  *status = open->scanner.error() != 0 ? open->scanner.error() : open->scanner.has_value() ? 1 : 0;
  return text;
}

}  // namespace
}  // namespace tvx::intl

using namespace tvx::intl;

int32_t intl_open(const char* path, intl_reader* reader) {
  if (reader == nullptr) return error_number(ErrorKind::kBadArgument);
  reader->opaque[0] = 0;
  if (path == nullptr) return error_number(ErrorKind::kBadArgument);
  LoadedFile file;
  if (const int32_t error = load_file(path, file); error < 0) return error;
  char* block = file.text.release();
  new (&reader->opaque[1]) OpenReader{block, Scanner(block, file.size)};
  reader->opaque[0] = kOpenMark;
  return 0;
}

char* intl_nextsection(intl_reader* reader, int32_t* status) {
  return step(reader, status, &Scanner::next_section);
}

char* intl_nextentry(intl_reader* reader, int32_t* status) {
  return step(reader, status, &Scanner::next_entry);
}

char* intl_nextvalue(intl_reader* reader, int32_t* status) {
  return step(reader, status, &Scanner::next_value);
}

int32_t intl_close(intl_reader* reader) {
  if (reader == nullptr) return error_number(ErrorKind::kBadArgument);
  if (OpenReader* open = opened(reader)) comn_free(open->block);
  reader->opaque[0] = 0;
  return 0;
}

int32_t intl_datetime(intl_reader* reader, intl_datetime_record* record) {
  if (record == nullptr) return error_number(ErrorKind::kBadArgument);
  OpenReader* open = opened(reader);
  if (open == nullptr) return error_number(ErrorKind::kNotOpen);
  return read_datetime_section(open->scanner, *record);
}
