// The list manager: hash tables with keys of 16 bytes, appending to an ordered list, walks.
#include "tvxcomn/lists.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>

#include "peers/lists.hpp"
#include "suite.hpp"

namespace tvx::bench {
namespace {

lm_context* lists() {
  static lm_context* const context = [] {
    lm_context* created = nullptr;
    if (lm_initlm(LM_LEAST_VERSION, "bench", CS_NULLTERM, &created) != CS_SUCCEED) std::abort();
    return created;
  }();
  return context;
}

// ---- Sides: what ours and the peer's do, under the same names ----------------------------------

constexpr int32_t kKeyLength = 16;
using Key = std::array<char, kKeyLength>;

std::string_view view(const Key& key) {
  return {key.data(), key.size()};
}

struct OurTable {
  static lm_list* create(size_t size) {
    auto hash_size = static_cast<int32_t>(size);
    lm_list* list = nullptr;
    lm_property(lists(), LM_SET, LM_CONTEXT_HASH_SIZE, &hash_size, sizeof hash_size, nullptr);
    if (lm_list_alloc(lists(), LM_HASH_CHAINED, "", 0, &list) != CS_SUCCEED) std::abort();
    return list;
  }
  static void insert(lm_list* list, Key& key) {
    lm_list_op(list, LM_INSERT, key.data(), kKeyLength, &key, nullptr);
  }
  static void* find(lm_list* list, Key& key) {
    void* data = nullptr;
    return lm_list_op(list, LM_FIND, key.data(), kKeyLength, nullptr, &data) == CS_SUCCEED
               ? data
               : nullptr;
  }
  static void drop(lm_list* list) { lm_list_drop(list, LM_DROP_ELEMENTS); }
};

struct PeerTable {
  static peers::Table* create(size_t size) { return peers::create_table(size); }
  static void insert(peers::Table* table, Key& key) { peers::insert(table, view(key), &key); }
  static void* find(peers::Table* table, Key& key) { return peers::find(table, view(key)); }
  static void drop(peers::Table* table) { peers::drop(table); }
};

struct OurList {
  static lm_list* create(size_t) {
    lm_list* list = nullptr;
    if (lm_list_alloc(lists(), LM_ORDERED, "", 0, &list) != CS_SUCCEED) std::abort();
    return list;
  }
  static void insert(lm_list* list, Key& key) {
    lm_list_op(list, LM_INSERT, nullptr, LM_AT_TAIL, &key, nullptr);
  }
  static void drop(lm_list* list) { lm_list_drop(list, LM_DROP_ELEMENTS); }
};

struct PeerList {
  static peers::List* create(size_t) { return peers::create_list(); }
  static void insert(peers::List* list, Key& key) { peers::append(list, &key); }
  static void drop(peers::List* list) { peers::drop(list); }
};

// ---- Inserting and finding ---------------------------------------------------------------------

using Keys = std::shared_ptr<std::vector<Key>>;

Keys random_keys(size_t count) {
  std::mt19937_64 generator(16);
  auto keys = std::make_shared<std::vector<Key>>(count);
  for (Key& key : *keys)
    for (char& byte : key) byte = static_cast<char>(generator());
  return keys;
}

// Keys as names have them: a few letters and a number.
Keys numbered_keys(size_t count) {
  auto keys = std::make_shared<std::vector<Key>>(count);
  for (size_t i = 0; i < count; ++i) {
    char text[sizeof(Key) + 1];
    std::snprintf(text, sizeof text, "entry%011zu", i);
    std::copy_n(text, sizeof(Key), (*keys)[i].begin());
  }
  return keys;
}

// Inserts one key after the other, with a new container whenever all are in.
template <class Side>
auto insert_each(const Keys& keys) {
  using Container = decltype(Side::create(0));
  return [keys, container = Container{}, next = size_t{0}](size_t) mutable {
    if (next == keys->size()) {
      Side::drop(std::exchange(container, nullptr));
      next = 0;
    }
    if (container == nullptr) container = Side::create(keys->size());
    Side::insert(container, (*keys)[next]);
    return ++next;
  };
}

template <class Side>
auto filled(const Keys& keys) {
  const auto container = Side::create(keys->size());
  for (Key& key : *keys) Side::insert(container, key);
  return container;
}

// Finds keys from all over the table: the values are the strides from one to the next.
template <class Side>
auto find_any(const Keys& keys) {
  return [keys, container = filled<Side>(keys), at = size_t{0}](size_t stride) mutable {
    at = (at + stride) % keys->size();
    return Side::find(container, (*keys)[at]);
  };
}

void compare_tables(Suite& suite, const std::string& kind, const Keys& keys) {
  const auto strides = random_integers<size_t>();
  const auto title = [&](const char* operation) {
    return operation + std::to_string(keys->size()) + kind;
  };
  suite.compare({title("table insert, "), 1.0}, strides, std::equal_to<>(),
                insert_each<OurTable>(keys), Peer{"unordered_map", insert_each<PeerTable>(keys)});
  suite.compare({title("table find, "), 1.0}, strides, std::equal_to<>(), find_any<OurTable>(keys),
                Peer{"unordered_map", find_any<PeerTable>(keys)});
}

// ---- Ordered lists -----------------------------------------------------------------------------

void compare_appending(Suite& suite, size_t count) {
  const Keys keys = random_keys(count);
  suite.compare({"list append, " + std::to_string(count), 1.0}, random_integers<size_t>(),
                std::equal_to<>(), insert_each<OurList>(keys),
                Peer{"std::list", insert_each<PeerList>(keys)});
}

size_t visits = 0;

int32_t visit(void*) {
  ++visits;
  return 1;
}

void compare_walks(Suite& suite) {
  constexpr size_t kLength = 1000;
  const Keys keys = random_keys(kLength);
  int32_t (*volatile const function)(void*) = visit;  // not to be inlined on either side

  const auto by_next = [function, keys, list = filled<OurList>(keys)](size_t) {
    void* data = nullptr;
    visits = 0;
    lm_list_op(list, LM_FIRST, nullptr, CS_UNUSED, nullptr, &data);
    do {
      function(data);
    } while (lm_list_op(list, LM_NEXT, nullptr, CS_UNUSED, nullptr, &data) == CS_SUCCEED);
    return visits;
  };
  const auto by_apply = [function, keys, list = filled<OurList>(keys)](size_t) {
    visits = 0;
    lm_list_op(list, LM_APPLY_ALL, nullptr, CS_UNUSED, reinterpret_cast<void*>(function), nullptr);
    return visits;
  };
  const auto theirs = [function, keys, list = filled<PeerList>(keys)](size_t) {
    visits = 0;
    peers::apply(list, function);
    return visits;
  };
  const auto walks = random_integers<size_t>();
  suite.compare({"list walk of 1000 by LM_NEXT", 4.0}, walks, std::equal_to<>(), by_next,
                Peer{"std::list", theirs});
  suite.compare({"list walk of 1000 by LM_APPLY_ALL", 2.0}, walks, std::equal_to<>(), by_apply,
                Peer{"std::list", theirs});
}

}  // namespace

void compare_lists(Suite& suite) {
  for (const size_t count : {1'000u, 100'000u}) {
    compare_tables(suite, " random keys", random_keys(count));
    compare_tables(suite, " numbered keys", numbered_keys(count));
  }
  for (const size_t count : {1'000u, 100'000u}) compare_appending(suite, count);
  compare_walks(suite);
}

}  // namespace tvx::bench
