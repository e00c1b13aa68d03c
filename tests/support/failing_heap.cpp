#include "support/failing_heap.hpp"

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>

#include "tvxcomn/support.h"

namespace {

std::atomic<long> total_calls{0}, failing_call{0}, live{0};

}  // namespace

void* comn_malloc(size_t size) {
  if (++total_calls == failing_call) return nullptr;
  void* const block = std::malloc(size);
  if (block == nullptr) return nullptr;
  ++live;
  // Fresh memory is often zero by luck; filled, its use shows.
  return std::memset(block, '"', size);
}

void* comn_calloc(size_t count, size_t size) {
  void* const block = comn_malloc(count * size);
  return block == nullptr ? nullptr : std::memset(block, 0, count * size);
}

// Always moves the block, so that a pointer into the old one shows.
void* comn_realloc(void* block, size_t size) {
  void* const moved = comn_malloc(size);
  if (moved == nullptr || block == nullptr) return moved;
  std::memcpy(moved, block, std::min(size, malloc_usable_size(block)));
  comn_free(block);
  return moved;
}

void comn_free(void* block) {
  if (block != nullptr) --live;
  std::free(block);
}

namespace tvx::test {

FailingHeap::FailingHeap(long nth) {
  total_calls = 0;
  failing_call = nth;
}

FailingHeap::~FailingHeap() {
  failing_call = 0;
}

long FailingHeap::calls() const {
  return total_calls;
}

long live_blocks() {
  return live;
}

}  // namespace tvx::test
