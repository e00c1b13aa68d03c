// Memory for lists, given to them by the routines of the interface: counts its blocks, runs out on
// demand, and keeps released blocks readable for a while, so that the use of a freed record is the
// library's to find.
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
    EXPECT_EQ(0u, live());
    for (void* block : released_) std::free(block);
  }

  // The n-th allocation from now on gives null; none does for n below 1.
  void fail_at(long nth) { failing_ = nth > 0 ? nth : -1; }
  bool failed() const { return failing_ == 0; }
  size_t live() const { return live_.size(); }

  static void* allocate(size_t size, void* user) {
    auto& heap = *static_cast<ListHeap*>(user);
    if (heap.failing_ > 0 && --heap.failing_ == 0) return nullptr;
    return std::memset(*heap.live_.insert(std::malloc(size)).first, '"', size);
  }

  static void release(void* block, void* user) {
    auto& heap = *static_cast<ListHeap*>(user);
    if (heap.live_.erase(block) != 1) ADD_FAILURE() << "released twice";
    heap.released_.push_back(block);
    if (heap.released_.size() < 1000) return;
    for (void* old : heap.released_) std::free(old);
    heap.released_.clear();
  }

private:
  long failing_ = -1;
  std::unordered_set<void*> live_;
  std::vector<void*> released_;
};

// A context with that memory, which ends with its lists.
struct ListContext {
  lm_context* context = nullptr;

  explicit ListContext(ListHeap& heap) {
    EXPECT_EQ(CS_SUCCEED, lm_initlm_ex(1100, "tests", CS_NULLTERM, &context, ListHeap::allocate,
                                       ListHeap::release, &heap));
  }
  ListContext(const ListContext&) = delete;
  ListContext& operator=(const ListContext&) = delete;
  ~ListContext() { EXPECT_EQ(CS_SUCCEED, lm_exit(context, LM_DROP_LISTS)); }

  lm_list* make(int32_t kind, const char* name = "list") const {
    lm_list* list = nullptr;
    EXPECT_EQ(CS_SUCCEED, lm_list_alloc(context, kind, name, CS_NULLTERM, &list));
    return list;
  }
};

inline void* as_data(size_t number) {
  return reinterpret_cast<void*>(number);
}

// The data of all elements, in the order of LM_APPLY_ALL.
inline std::vector<void*> contents(lm_list* list) {
  static std::vector<void*> visited;
  visited.clear();
  lm_function* const visit = [](void* data) {
    visited.push_back(data);
    return 1;
  };
  EXPECT_EQ(1, lm_list_op(list, LM_APPLY_ALL, nullptr, 0, reinterpret_cast<void*>(visit), nullptr));
  return visited;
}

}  // namespace tvx::test
