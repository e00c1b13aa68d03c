#include "support/failing_heap.hpp"

#include <atomic>
#include <cstdlib>
#include <cstring>

#include "tvxcomn/support.h"

namespace {

std::atomic<long> total_calls{0};
std::atomic<long> failing_call{0};
std::atomic<long> live{0};

bool fails() {
  return ++total_calls == failing_call;
}

void* counted(void* block) {
  if (block != nullptr) ++live;
  return block;
}

}  // namespace

void* comn_malloc(size_t size) {
  if (fails()) return nullptr;
  void* block = counted(std::malloc(size));
  // Fresh memory is often zero by luck; filled, its use shows.
  if (block != nullptr) std::memset(block, '"', size);
  return block;
}

void* comn_calloc(size_t count, size_t size) {
  return fails() ? nullptr : counted(std::calloc(count, size));
}

void* comn_realloc(void* block, size_t size) {
  if (fails()) return nullptr;
  // Told before the call, after which the old block may no longer be looked at.
  const bool was_live = block != nullptr;
  void* moved = std::realloc(block, size);
  if (moved != nullptr && !was_live) ++live;
  // The C library releases the block and gives null when the size is 0.
  if (moved == nullptr && was_live && size == 0) --live;
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
