// The list manager apart from its operations, which lists_model_test has: the hash function, what
// is printed, properties, spare elements, memory that runs out, broken usage.
#include <signal.h>

#include <functional>
#include <string>
#include <string_view>
#include <tuple>

#include "list_heap.hpp"
#include "runtime/list_hash.hpp"
#include "support/failing_heap.hpp"
#include "tvxcomn/diagnosis.h"

namespace tvx::test {
namespace {

using namespace std::literals;

constexpr int32_t kKinds[] = {LM_ORDERED, LM_HASH_CHAINED, LM_HASH_OPEN, LM_QUEUE, LM_STACK};

bool is_table(int32_t kind) {
  return kind == LM_HASH_CHAINED || kind == LM_HASH_OPEN;
}

// What reading a property gives.
struct Read {
  int32_t result = 0;
  int64_t value = 0;
  int32_t length = -7;
  bool operator==(const Read&) const = default;
};

// The properties of a list or a context.
template <class Record, auto property>
struct Properties {
  Record* record;

  int32_t operate(int32_t action, int32_t number, int64_t value = 0, int32_t length = CS_UNUSED) {
    return property(record, action, number, &value, length, nullptr);
  }
  Read get(int32_t number, int32_t length = CS_UNUSED) {
    Read read;
    read.result = property(record, LM_GET, number, &read.value, length, &read.length);
    return read;
  }
  int32_t set(int32_t number, int64_t value) { return operate(LM_SET, number, value); }
  int32_t reset(int32_t number) { return property(record, LM_RESET, number, nullptr, 0, nullptr); }
};

Properties<lm_list, lm_list_prop> of(lm_list* list) {
  return {list};
}
Properties<lm_context, lm_property> of(lm_context* context) {
  return {context};
}

// Inserts under a key of one byte in a table, at the tail of an ordered list.
int32_t insert(lm_list* list, const char* key, void* data = nullptr) {
  const bool has_keys = is_table(static_cast<int32_t>(of(list).get(LM_LIST_KIND).value));
  void* const argument = has_keys ? const_cast<char*>(key) : nullptr;
  return lm_list_op(list, LM_INSERT, argument, has_keys ? 1 : LM_AT_TAIL, data, nullptr);
}

struct Lists : testing::Test {
  ListHeap heap;
  ListContext owner{heap};
  lm_context* context = owner.context;
};

TEST_F(Lists, HashFunction) {
  // clang-format off
  const std::pair<std::string_view, uint32_t> rows[] = {
      {"", 0}, {"a", 1633311322}, {"b", 1650088538}, {"ab", 1633835610}, {"abc", 1633837914},
      {"abcdefgh", 2023671004}, {"abcdefghi", 3628912166}, {"abcdefghijklmno", 3000676978},
      {"\0\0\0\0a"sv, 1633311322}, {"abcd\0\0\0\0"sv, 322461044}, {"abcd\0\0\0\0e"sv, 746576926},
      {"abcdefgh\0\0\0\0ijkl"sv, 3629965112}, {"abcdefgh\0\0\0\0ijklmnop"sv, 3000677000},
      {"\x80", 2153405018}, {"a\x80", 4286601818}, {"ab\x80", 4294934618},
      {"\xFF\xFF\xFF\xFFx", 2019187253}, {"\x01\x80\x02\x03""abc", 1323478473},
  };
  // clang-format on
  for (const auto& [key, hash] : rows) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(key.data());
    EXPECT_EQ(hash, runtime::hash_key(bytes, key.size())) << testing::PrintToString(key);
  }
}

TEST_F(Lists, Printing) {
  lm_list* const table = owner.make(LM_HASH_CHAINED);
  lm_function* const print = [](void* text) {
    comn_debug_print("%s ", static_cast<char*>(text));
    return static_cast<char*>(text)[0] == '!' ? 0 : 7;
  };
  const auto expect = [&](const std::string& text, int32_t result, int32_t operation, char* key) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(result, lm_list_op(table, operation, key, 1, nullptr, nullptr));
    EXPECT_EQ(text, testing::internal::GetCapturedStdout());
  };
  const std::string empty = "\n***Chain empty***\n", two = empty + empty;
  char a[] = "a", b[] = "b", c[] = "c", data[][3] = {"A", "B", "A2", "!"};
  expect("", CS_FAIL, LM_PRINT_ALL, nullptr);  // no function
  expect("\nNULL\n", CS_FAIL, LM_APPLY, nullptr);
  of(table).set(LM_LIST_FUNCTION, reinterpret_cast<int64_t>(print));
  insert(table, a, data[0]);
  insert(table, b, data[1]);
  insert(table, a, data[2]);
  expect(two + "\nKeys:\na a \nData:\nA2 A \n" + two + two + empty + "\nKeys:\nb \nData:\nB \n" +
             empty,
         CS_SUCCEED, LM_PRINT_ALL, nullptr);
  expect("B ", CS_SUCCEED, LM_APPLY, b);
  expect("A2 ", CS_SUCCEED, LM_APPLY, nullptr);
  expect("", LM_NOT_FOUND, LM_APPLY, c);
  lm_list_op(table, LM_SET_DATA, nullptr, 0, data[3], nullptr);
  expect(two + "\nKeys:\na a \nData:\n! ", CS_FAIL, LM_PRINT_ALL, nullptr);
  expect("! ", CS_FAIL, LM_APPLY, nullptr);
}

TEST_F(Lists, PropertiesOfLists) {
  of(context).set(LM_CONTEXT_SPARES, 3);
  for (const int32_t kind : kKinds) {
    lm_list* const list = owner.make(kind, "name");
    insert(list, "a");
    const Read ten{1, 10, 4}, refused{0, 0, 0};
    EXPECT_EQ((Read{1, kind, 4}), of(list).get(LM_LIST_KIND));
    EXPECT_EQ((Read{1, 1, 4}), of(list).get(LM_LIST_COUNT));
    EXPECT_EQ((Read{1, reinterpret_cast<int64_t>(context), 8}), of(list).get(LM_LIST_CONTEXT));
    EXPECT_EQ((Read{1, 0x656D616E, 6}), of(list).get(LM_LIST_NAME, 6));  // 5 bytes and a zero
    EXPECT_EQ((Read{1, 0, 6}), of(list).get(LM_LIST_NAME, 5));
    EXPECT_EQ(1, of(list).set(LM_LIST_VALUE, 77));
    EXPECT_EQ((Read{1, 77, 8}), of(list).get(LM_LIST_VALUE));
    EXPECT_EQ(1, of(list).reset(LM_LIST_VALUE));
    EXPECT_EQ((Read{1, 0, 8}), of(list).get(LM_LIST_VALUE));

    for (const int32_t size : {0, 1, -1, 2, 3}) {
      const bool is_allowed = is_table(kind) && size >= (kind == LM_HASH_OPEN ? 2 : 1);
      EXPECT_EQ(is_allowed, of(list).set(LM_LIST_HASH_SIZE, size)) << kind << ", " << size;
    }
    EXPECT_EQ(is_table(kind), of(list).reset(LM_LIST_HASH_SIZE));
    EXPECT_EQ(is_table(kind) ? ten : refused, of(list).get(LM_LIST_HASH_SIZE));

    EXPECT_EQ((Read{1, kind == LM_HASH_OPEN ? 0 : 3, 4}), of(list).get(LM_LIST_SPARES));
    EXPECT_EQ(1, of(list).set(LM_LIST_SPARES, 1));
    EXPECT_EQ(0, of(list).set(LM_LIST_SPARES, -1));
    EXPECT_EQ((Read{1, 1, 4}), of(list).get(LM_LIST_SPARES));
    EXPECT_EQ(1, of(list).reset(LM_LIST_SPARES));
    EXPECT_EQ((Read{1, 3, 4}), of(list).get(LM_LIST_SPARES));
  }
}

TEST_F(Lists, PropertiesOfContexts) {
  const auto expect_current = [&](lm_list* list) {
    const Read expected{1, reinterpret_cast<int64_t>(list), 8};
    EXPECT_EQ(expected, of(context).get(LM_CONTEXT_CURRENT));
  };
  expect_current(nullptr);
  EXPECT_EQ((Read{0, 0, 0}), of(context).get(LM_CONTEXT_CURRENT_NAME, 8));
  EXPECT_EQ((Read{1, 1100, 4}), of(context).get(LM_CONTEXT_VERSION));
  lm_list* const one = owner.make(CS_UNUSED, "one");
  lm_list* const once = owner.make(LM_STACK, "once");
  lm_list* const two = owner.make(LM_QUEUE, "two");
  EXPECT_EQ((Read{1, LM_ORDERED, 4}), of(one).get(LM_LIST_KIND));
  EXPECT_EQ((Read{1, 3, 4}), of(context).get(LM_CONTEXT_LISTS));
  expect_current(two);
  // The newest list whose name begins so; the zero tells "one" from "once".
  const std::pair<std::string, lm_list*> names[] = {
      {"on", once}, {"one\0"s, one}, {"t", two}, {"one", one}};
  for (const auto& [name, list] : names) {
    EXPECT_EQ(1,
              lm_property(context, LM_SET, LM_CONTEXT_CURRENT_NAME, const_cast<char*>(name.data()),
                          static_cast<int32_t>(name.size()), nullptr));
    expect_current(list);
  }
  EXPECT_EQ((Read{1, 0x656E6F, 5}), of(context).get(LM_CONTEXT_CURRENT_NAME, 8));
  EXPECT_EQ(1, of(context).reset(LM_CONTEXT_CURRENT_NAME));
  for (lm_list* list : {one, two, once}) {
    expect_current(list == one ? two : list);
    EXPECT_EQ(1, lm_list_drop(list, CS_UNUSED));
  }
  expect_current(nullptr);

  lm_list* list = nullptr;
  for (const auto& [number, initial, bad, good] :
       {std::tuple{LM_CONTEXT_HASH_SIZE, 10, 0, 1}, {LM_CONTEXT_SPARES, 0, -1, 4}}) {
    EXPECT_EQ((Read{1, initial, 4}), of(context).get(number));
    EXPECT_EQ(0, of(context).set(number, bad));
    EXPECT_EQ(1, of(context).set(number, good));
    EXPECT_EQ((Read{1, good, 4}), of(context).get(number));
  }
  EXPECT_EQ(0, lm_list_alloc(context, LM_HASH_OPEN, "", 0, &list));  // of hash size 1
  EXPECT_EQ(1, of(context).reset(LM_CONTEXT_HASH_SIZE));
  EXPECT_EQ(1, lm_list_alloc(context, LM_HASH_OPEN, "", 0, &list));
  EXPECT_EQ((Read{1, 0, 1}), of(list).get(LM_LIST_NAME, 1));
}

TEST_F(Lists, SpareElementsAndDropping) {
  ListHeap own;
  lm_list* list = nullptr;
  ASSERT_EQ(1, lm_list_alloc_ex(context, LM_QUEUE, "x", 1, &list, ListHeap::allocate,
                                ListHeap::release, &own));
  const size_t bare = own.live();
  of(list).set(LM_LIST_SPARES, 2);
  // Each operation, and the elements that are allocated then.
  const std::pair<int32_t, size_t> steps[] = {{LM_INSERT, 2}, {LM_INSERT, 2}, {LM_INSERT, 3},
                                              {LM_DELETE, 3}, {LM_DELETE, 3}, {LM_DELETE, 2},
                                              {LM_DELETE, 2}, {LM_INSERT, 2}};
  for (const auto& [operation, elements] : steps) {
    lm_list_op(list, operation, nullptr, 0, nullptr, nullptr);
    EXPECT_EQ(bare + elements, own.live()) << operation;
  }
  // Each spare count, the allocation that fails, the result, and the elements: one is in the list.
  const std::tuple<int32_t, long, int32_t, size_t> counts[] = {
      {5, 0, 1, 5}, {4, 0, 1, 4}, {10, 3, CS_MEM_ERROR, 1},
      {4, 0, 1, 1}, {5, 0, 1, 2}, {0, 0, 1, 1}};
  for (const auto& [count, failing, result, elements] : counts) {
    own.fail_at(failing);
    EXPECT_EQ(result, of(list).set(LM_LIST_SPARES, count));
    EXPECT_EQ(bare + elements, own.live()) << count;
  }
  EXPECT_EQ(0, lm_list_drop(list, CS_UNUSED));
  EXPECT_EQ(0, lm_exit(context, CS_UNUSED));
  EXPECT_EQ((Read{1, 1, 4}), of(list).get(LM_LIST_COUNT));
  EXPECT_EQ(1, lm_list_drop(list, LM_DROP_ELEMENTS));
  EXPECT_EQ(0u, own.live());
}

TEST_F(Lists, EveryAllocationCanFail) {
  of(context).set(LM_CONTEXT_SPARES, 2);
  for (const int32_t kind : kKinds) {
    lm_list *const list = owner.make(kind), *made = nullptr;
    lm_context* opened = nullptr;
    const std::function<int32_t()> attempts[] = {
        [&] { return insert(list, "a", list); },
        [&] { return insert(list, "b", context); },
        [&] { return insert(list, "a", &heap); },
        [&] { return is_table(kind) ? of(list).set(LM_LIST_HASH_SIZE, 7) : CS_SUCCEED; },
        [&] { return lm_list_alloc(context, kind, "made", 4, &made); },
        [&] {
          return lm_initlm_ex(1100, "x", 1, &opened, ListHeap::allocate, ListHeap::release, &heap);
        },
    };
    const auto seen = [&] {
      void* current = nullptr;
      lm_list_op(list, is_table(kind) ? LM_CURRENT : LM_FIND, nullptr, 0, nullptr, &current);
      return std::tuple(contents(list), current, of(list).get(LM_LIST_HASH_SIZE).value,
                        of(list).get(LM_LIST_COUNT).value, of(context).get(LM_CONTEXT_LISTS).value,
                        of(context).get(LM_CONTEXT_CURRENT).value, made, opened, heap.live());
    };
    for (const auto& attempt : attempts)
      for (int32_t n = 1, result = CS_MEM_ERROR; result == CS_MEM_ERROR; ++n) {
        const auto before = seen();
        heap.fail_at(n);
        result = attempt();
        EXPECT_EQ(heap.failed() ? CS_MEM_ERROR : CS_SUCCEED, result);
        heap.fail_at(0);
        EXPECT_TRUE(result == CS_SUCCEED || before == seen())
            << kind << ", " << &attempt - attempts;
      }
    EXPECT_EQ(1, lm_exit(opened, CS_UNUSED));
  }
}

TEST(ListsOfTheHeap, ComeFromIt) {
  const long before = live_blocks();
  lm_context* context = nullptr;
  lm_list* list = nullptr;
  EXPECT_EQ(1, lm_initlm(15'701, "x", 1, &context));
  EXPECT_EQ(1, lm_list_alloc(context, LM_HASH_CHAINED, "x", 1, &list));
  EXPECT_EQ(1, insert(list, "a"));
  EXPECT_EQ(before + 2 + 3 + 1, live_blocks());
  EXPECT_EQ(1, lm_exit(context, LM_DROP_LISTS));
  EXPECT_EQ(before, live_blocks());
}

using ListsDeathTest = Lists;

TEST_F(ListsDeathTest, BrokenUsage) {
  lm_list *const list = owner.make(LM_ORDERED), *const table = owner.make(LM_HASH_CHAINED);
  lm_list *const dropped = owner.make(LM_STACK), *made = nullptr;
  lm_list_drop(dropped, CS_UNUSED);
  lm_context* ended = nullptr;
  lm_initlm_ex(1100, "x", 1, &ended, ListHeap::allocate, ListHeap::release, &heap);
  lm_exit(ended, CS_UNUSED);
  lm_element* cursor = nullptr;
  lm_list_op(list, LM_INSERT, &cursor, LM_AT_HEAD, nullptr, nullptr);
  lm_list_op(list, LM_DELETE, nullptr, 0, nullptr, nullptr);
  char x[] = "x";
  const auto operate = [](lm_list* on, int32_t operation, void* key, int32_t length) {
    return lm_list_op(on, operation, key, length, nullptr, nullptr);
  };
  // clang-format off
  const std::function<int32_t()> null_pointers[] = {
      [&] { return lm_initlm(1100, nullptr, 1, &ended); },
      [&] { return lm_initlm(1100, x, 1, nullptr); },
      [&] { return lm_initlm_ex(1100, x, 1, &ended, nullptr, ListHeap::release, &heap); },
      [&] { return lm_list_alloc_ex(context, 13, x, 1, &made, ListHeap::allocate, nullptr, x); },
      [&] { return lm_list_alloc(context, 13, nullptr, 1, &made); },
      [&] { return lm_list_alloc(context, 13, x, 1, nullptr); },
      [&] { return lm_list_prop(list, LM_GET, LM_LIST_KIND, nullptr, CS_UNUSED, nullptr); },
      [&] { return lm_property(context, LM_SET, LM_CONTEXT_SPARES, nullptr, 4, nullptr); },
      [&] { return operate(table, LM_INSERT, nullptr, 1); },
      [&] { return operate(table, LM_FIND, nullptr, CS_UNUSED); },
  };
  const std::function<int32_t()> assertions[] = {
      [&] { return lm_initlm(1099, x, 1, &ended); }, [&] { return lm_initlm(1100, x, -1, &ended); },
      [&] { return lm_exit(context, 35); }, [&] { return lm_exit(ended, CS_UNUSED); },
      [&] { return lm_list_alloc(ended, 13, x, 1, &made); },
      [&] { return lm_list_alloc(context, 15, x, 1, &made); },
      [&] { return lm_list_alloc(context, 17, x, 1, &made); },
      [&] { return lm_list_drop(list, 36); }, [&] { return lm_list_drop(dropped, CS_UNUSED); },
      [&] { return operate(dropped, LM_FIRST, nullptr, 0); },
      [&] { return operate(list, LM_CURRENT, &cursor, 0); },  // its element is deleted
      [&] { return operate(list, 19, nullptr, 0); }, [&] { return operate(table, 32, nullptr, 0); },
      [&] { return operate(list, LM_INSERT, nullptr, 29); },
      [&] { return operate(table, LM_INSERT, x, -1); },
      [&] { return operate(table, LM_DELETE, x, -9); },
      [&] { return of(list).operate(32, 1); }, [&] { return of(list).operate(LM_GET, 1, 0, 4); },
      [&] { return of(list).operate(LM_SET, 8); }, [&] { return of(list).operate(LM_RESET, 10); },
      [&] { return of(list).operate(LM_GET, 4); }, [&] { return of(list).operate(LM_GET, 7); },
      [&] { return of(list).operate(LM_GET, 13); }, [&] { return of(context).operate(LM_GET, 8); },
      [&] { return of(context).operate(LM_SET, 1, 15); },
      [&] { return of(context).operate(LM_SET, 4); },
      [&] { return of(context).operate(LM_SET, 6, 0, 0); },
      [&] { return of(context).operate(LM_SET, 6, 0, 4); },  // no such name
  };
  // clang-format on
  const auto killed = testing::KilledBySignal(SIGABRT);
  for (const auto& call : null_pointers)
    EXPECT_EXIT(call(), killed, "Invalid NULL pointer") << &call - null_pointers;
  for (const auto& call : assertions)
    EXPECT_EXIT(call(), killed, "assertion failed") << &call - assertions;

  lm_list* const no_list = nullptr;
  EXPECT_EQ(0, operate(no_list, LM_FIRST, nullptr, 0));
  EXPECT_EQ(0, lm_list_drop(no_list, CS_UNUSED));
  EXPECT_EQ(0, lm_exit(nullptr, CS_UNUSED));
  EXPECT_EQ(0, lm_list_alloc(nullptr, LM_ORDERED, x, 1, &made));
  EXPECT_EQ((Read{0, 0, 0}), of(no_list).get(LM_LIST_KIND));
}

}  // namespace
}  // namespace tvx::test
