// Ownership of a block of the library's heap.
#pragma once

#include <memory>

#include "tvxcomn/support.h"

namespace tvx::base {

struct HeapFree {
  void operator()(void* block) const noexcept { comn_free(block); }
};

// A block of comn_malloc and its kin, which its owner gives back.
template <class T>
using HeapBlock = std::unique_ptr<T, HeapFree>;

}  // namespace tvx::base
