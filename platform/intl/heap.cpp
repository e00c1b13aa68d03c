// The one heap of all the stack's libraries. They call these functions rather than the C library's,
// so that a block may be released by another library than the one that allocated it.
#include <cstdlib>

#include "tvxcomn/support.h"

void* comn_malloc(size_t size) {
  return std::malloc(size);
}

void* comn_calloc(size_t count, size_t size) {
  return std::calloc(count, size);
}

void* comn_realloc(void* block, size_t size) {
  return std::realloc(block, size);
}

void comn_free(void* block) {
  std::free(block);
}
