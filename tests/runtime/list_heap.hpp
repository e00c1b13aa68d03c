// Memory for lists, given to them by the routines of the interface: counts its blocks, runs out
// on demand, and keeps released blocks readable, so that the use of a freed record is the library's
// to find.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <unordered_set>
#include <vector>

#include "tvxcomn/lists.h"

namespace tvx::test {

class ListHeap {
public:
  ListHeap() = default;
  ListHeap(const ListHeap&) = delete;
  ListHeap& operator=(const ListHeap&) = delete;
  ~ListHeap() {
    EXPECT_TRUE(live_.empty()) << live_.size() << " blocks never released";
    for (void* block : released_) std::free(block);
  }

  // The n-th allocation from now on gives null; none does for n below 1.
  void fail_at(long nth) { failing_ = nth; }
  // Whether the allocation that was to fail was asked for.
  bool failed() const { return failing_ == 0; }
  size_t live() const { return live_.size(); }

  static void* allocate(size_t size, void* user) {
    auto& heap = *static_cast<ListHeap*>(user);
    if (heap.failing_ > 0 && --heap.failing_ == 0) return nullptr;
    void* const block = std::malloc(size);
    heap.live_.insert(block);
    return std::memset(block, '"', size);
  }

  static void release(void* block, void* user) {
    auto& heap = *static_cast<ListHeap*>(user);
    if (heap.live_.erase(block) != 1) ADD_FAILURE() << "released twice";
    heap.released_.push_back(block);
    if (heap.released_.size() < kKept) return;
    for (void* old : heap.released_) std::free(old);
    heap.released_.clear();
  }

private:
  static constexpr size_t kKept = 1000;
  long failing_ = -1;
  std::unordered_set<void*> live_;
  std::vector<void*> released_;
};

// A context with that memory, which ends with its lists.
class ListContext {
public:
  explicit ListContext(ListHeap& heap) {
    EXPECT_EQ(CS_SUCCEED, lm_initlm_ex(1100, "tests", CS_NULLTERM, &context_, ListHeap::allocate,
                                       ListHeap::release, &heap));
  }
  ListContext(const ListContext&) = delete;
  ListContext& operator=(const ListContext&) = delete;
  ~ListContext() { EXPECT_EQ(CS_SUCCEED, lm_exit(context_, LM_DROP_LISTS)); }

  operator lm_context*() const { return context_; }

  lm_list* make(int32_t kind, const char* name = "list") const {
    lm_list* list = nullptr;
    EXPECT_EQ(CS_SUCCEED, lm_list_alloc(context_, kind, name, CS_NULLTERM, &list));
    return list;
  }

private:
  lm_context* context_ = nullptr;
};

// The data of all elements, in the order of LM_APPLY_ALL.
inline std::vector<void*> contents(lm_list* list) {
  static std::vector<void*> visited;
  visited.clear();
  lm_function* const visit = [](void* data) {
    visited.push_back(data);
    return 1;
  };
  EXPECT_EQ(CS_SUCCEED, lm_list_op(list, LM_APPLY_ALL, nullptr, CS_UNUSED,
                                   reinterpret_cast<void*>(visit), nullptr));
  return visited;
}

inline void* as_data(uintptr_t number) {
  return reinterpret_cast<void*>(number);
}

template <class Value>
Value property(lm_list* list, int32_t number) {
  Value value{};
  const bool is_read_only = number != LM_LIST_HASH_SIZE && number != LM_LIST_SPARES;
  lm_list_prop(list, LM_GET, number, &value, is_read_only ? CS_UNUSED : int32_t{sizeof value},
               nullptr);
  return value;
}

}  // namespace tvx::test
