// Makes allocations of the stack's heap fail in a test, and counts the blocks that are out. A test
// executable that contains this file puts its own comn_malloc and kin in the place of the
// libraries'.
#pragma once

namespace tvx::test {

// While it lives, the n-th allocation from its construction on gives null; an n below 1 lets none
// fail. A reallocation is an allocation too. One at a time; allocations may come from any thread.
class FailingHeap {
public:
  explicit FailingHeap(long nth);
  ~FailingHeap();
  FailingHeap(const FailingHeap&) = delete;
  FailingHeap& operator=(const FailingHeap&) = delete;

  // The allocations asked for so far, the failed one included.
  long calls() const;
};

// The blocks allocated and not yet released in the whole process.
long live_blocks();

}  // namespace tvx::test
