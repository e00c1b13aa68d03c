// Lists of every kind beside a slow model of them, under random operations, memory that runs out,
// changes of the spare count and of the hash size. After every operation the result and the current
// data must be the model's, and regularly all the elements.
#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>

#include "list_heap.hpp"

namespace tvx::test {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kOperations = 50'000;
#else
constexpr int kOperations = 1'000'000;
#endif

using Random = std::mt19937;

// What an operation does to the model: its result, and the data that is current after it.
struct Outcome {
  int32_t result;
  void* current;
};

// ---- Ordered lists, queues and stacks ----------------------------------------------------------

// Positions are indices, -1 for none: the first is the list's own, the others those of cursors.
struct RingModel {
  int32_t kind;
  std::vector<void*> data{};
  std::vector<int> positions = std::vector<int>(4, -1);

  Outcome insert(int& position, int32_t place, void* value) {
    if (kind == LM_QUEUE) place = LM_AT_TAIL;
    if (kind == LM_STACK) place = LM_AT_HEAD;
    const bool beside = place == LM_BEFORE_CURRENT || place == LM_AFTER_CURRENT;
    if (beside && position < 0) return at(position, CS_FAIL);
    const int index = place == LM_AT_HEAD   ? 0
                      : place == LM_AT_TAIL ? static_cast<int>(data.size())
                                            : position + (place == LM_AFTER_CURRENT ? 1 : 0);
    for (int& other : positions) other += other >= index ? 1 : 0;
    data.insert(data.begin() + index, value);
    position = index;
    return at(position, CS_SUCCEED);
  }

  Outcome erase(int& position) {
    const int index = kind == LM_ORDERED ? position : data.empty() ? -1 : 0;
    if (index < 0) return at(position, CS_FAIL);
    data.erase(data.begin() + index);
    const int neighbour = data.empty() ? -1 : std::max(index - 1, 0);
    for (int& other : positions) {
      if (other == index) {
        other = &other == &positions[0] ? neighbour : -1;  // a cursor may not be used any more
      } else if (other > index) {
        --other;
      }
    }
    position = neighbour;
    return at(position, CS_SUCCEED);
  }

  Outcome operate(int32_t operation, int& position, int32_t place, void* value) {
    const int last = static_cast<int>(data.size()) - 1;
    switch (operation) {
      case LM_INSERT:
        return insert(position, place, value);
      case LM_DELETE:
        return erase(position);
      case LM_SET_DATA:
        if (position >= 0) data[static_cast<size_t>(position)] = value;
        return at(position, position >= 0 ? CS_SUCCEED : CS_FAIL);
      case LM_NEXT:
        return position >= 0 && position < last ? at(++position, CS_SUCCEED)
                                                : at(position, CS_FAIL);
      case LM_PREVIOUS:
        return position > 0 ? at(--position, CS_SUCCEED) : at(position, CS_FAIL);
      case LM_CURRENT:
        if (kind != LM_ORDERED) position = std::min(last, 0);
        return at(position, CS_SUCCEED);
      case LM_FIRST:
        return at(position = std::min(last, 0), CS_SUCCEED);
      case LM_LAST:
        return at(position = last, CS_SUCCEED);
      default:
        return at(position, CS_FAIL);
    }
  }

  Outcome at(int position, int32_t result) const {
    return {result, position < 0 ? nullptr : data[static_cast<size_t>(position)]};
  }
};

void run_ring(int32_t kind) {
  ListHeap heap;
  const ListContext context(heap);
  lm_list* const list = context.make(kind);
  RingModel model{kind};
  lm_element* cursors[4] = {};  // the first is not used
  Random random(static_cast<unsigned>(kind));
  for (int i = 1; i <= kOperations; ++i) {
    const bool shrinks = model.data.size() > 40;
    const auto operation = static_cast<int32_t>(
        random() % 4 == 0 ? (shrinks ? LM_DELETE : LM_INSERT) : LM_INSERT + random() % 9);
    const size_t walker = random() % 4;
    const int32_t places[] = {LM_AT_HEAD, LM_AT_TAIL, LM_BEFORE_CURRENT, LM_AFTER_CURRENT};
    const int32_t place = places[random() % 4];
    void* const key = walker == 0 ? nullptr : static_cast<void*>(&cursors[walker]);
    if (walker != 0 && random() % 8 == 0) model.positions[walker] = -1;
    for (size_t w = 1; w < 4; ++w)
      if (model.positions[w] < 0) cursors[w] = nullptr;

    heap.fail_at(random() % 16 == 0 ? 1 : -1);
    void* current = as_data(1);
    const int32_t result = lm_list_op(list, operation, key, place, as_data(size_t(i)), &current);
    const bool own = walker == 0 || model.positions[walker] < 0;
    int& position = model.positions[own ? 0 : walker];
    const Outcome expected = heap.failed()
                                 ? model.at(position, CS_MEM_ERROR)
                                 : model.operate(operation, position, place, as_data(size_t(i)));
    if (own) model.positions[walker] = position;
    ASSERT_EQ(expected.result, result) << "operation " << i << ": " << operation;
    ASSERT_EQ(expected.current, current) << "operation " << i << ": " << operation;
    if (heap.failed() || i % 32 == 0) ASSERT_EQ(model.data, contents(list)) << i;
    if (random() % 256 == 0) {
      auto spares = static_cast<int32_t>(random() % 10);
      heap.fail_at(-1);
      ASSERT_EQ(CS_SUCCEED, lm_list_prop(list, LM_SET, LM_LIST_SPARES, &spares, 4, nullptr));
    }
  }
}

TEST(ListModel, Ordered) {
  run_ring(LM_ORDERED);
}
TEST(ListModel, Queue) {
  run_ring(LM_QUEUE);
}
TEST(ListModel, Stack) {
  run_ring(LM_STACK);
}

// ---- Hash tables -------------------------------------------------------------------------------

// The hash function as it is told: words are held, and combined with the next one.
uint32_t reference_hash(const std::string& key) {
  uint32_t hash = 0;
  std::optional<uint32_t> held;
  for (size_t at = 0; at < key.size(); at += 4) {
    uint32_t word = 0;
    for (size_t i = at; i < at + 4; ++i) {
      const char byte = i < key.size() ? key[i] : 'Z';
      word = (word * 256) | static_cast<uint32_t>(static_cast<signed char>(byte));
    }
    const bool is_last = at + 4 > key.size();
    if (held) {
      hash = hash == 0 ? *held * 37 + word : (hash * 37 + *held) * 37 + word;
      held.reset();
    } else if (is_last) {
      hash = hash * 37 + word;
    } else if (word != 0) {
      held = word;
    }
  }
  return held ? hash * 37 + *held : hash;
}

struct Item {
  const std::string* key;
  void* data;
};

// A slot of an open-addressing table is a bucket of at most one item.
struct TableModel {
  bool is_open;
  std::vector<std::vector<Item>> buckets = std::vector<std::vector<Item>>(10);
  std::vector<bool> ever_used = std::vector<bool>(10);
  size_t count = 0;
  struct Place {
    size_t bucket, index;
  };
  std::optional<Place> current{};

  // The buckets that a key may be in, in the order in which they are searched.
  std::vector<size_t> probed(const std::string& key) const {
    const auto size = static_cast<uint32_t>(buckets.size());
    const uint32_t hash = reference_hash(key);
    if (!is_open) return {hash % size};
    std::vector<size_t> order;
    const size_t start = size_t{hash % size} + (hash * 7) % (size - 1) + 1;
    for (size_t i = 0; i < size; ++i) order.push_back((start + i) % size);
    return order;
  }

  int32_t insert(const Item& item) {
    for (const size_t bucket : probed(*item.key)) {
      if (is_open && !buckets[bucket].empty()) continue;
      buckets[bucket].insert(buckets[bucket].begin(), item);
      ever_used[bucket] = true;
      current = Place{bucket, 0};
      ++count;
      return CS_SUCCEED;
    }
    return CS_FAIL;
  }

  std::optional<Place> find(const std::string& key) const {
    for (const size_t bucket : probed(key)) {
      if (is_open && !ever_used[bucket]) break;
      for (size_t i = 0; i < buckets[bucket].size(); ++i)
        if (*buckets[bucket][i].key == key) return Place{bucket, i};
    }
    return std::nullopt;
  }

  int32_t erase(const Place place) {
    auto& bucket = buckets[place.bucket];
    bucket.erase(bucket.begin() + static_cast<ptrdiff_t>(place.index));
    --count;
    if (bucket.empty()) {
      current.reset();
    } else {
      current = Place{place.bucket, place.index == 0 ? 0 : place.index - 1};
    }
    return CS_SUCCEED;
  }

  std::vector<Place> places() const {
    std::vector<Place> all;
    for (size_t b = 0; b < buckets.size(); ++b)
      for (size_t i = 0; i < buckets[b].size(); ++i) all.push_back({b, i});
    return all;
  }

  int32_t step(int direction) {
    const auto all = places();
    for (size_t i = 0; current && i < all.size(); ++i) {
      if (all[i].bucket != current->bucket || all[i].index != current->index) continue;
      const size_t to = i + static_cast<size_t>(direction);
      if (to >= all.size()) return CS_FAIL;
      current = all[to];
      return CS_SUCCEED;
    }
    return CS_FAIL;
  }

  int32_t operate(int32_t operation, const std::string* key, const Item& item) {
    const auto all = places();
    const std::optional<Place> target = key != nullptr ? find(*key) : current;
    const int32_t none = key != nullptr ? LM_NOT_FOUND : CS_FAIL;
    switch (operation) {
      case LM_INSERT:
        return insert(item);
      case LM_DELETE:
        return target ? erase(*target) : none;
      case LM_FIND:
        if (target) current = target;
        return target ? CS_SUCCEED : none;
      case LM_SET_DATA:
        if (target) buckets[target->bucket][target->index].data = item.data;
        return target ? CS_SUCCEED : none;
      case LM_NEXT:
        return step(1);
      case LM_PREVIOUS:
        return step(-1);
      case LM_FIRST:
        current = all.empty() ? std::nullopt : std::optional(all.front());
        return CS_SUCCEED;
      case LM_LAST:
        current = all.empty() ? std::nullopt : std::optional(all.back());
        return CS_SUCCEED;
      default:
        return CS_SUCCEED;
    }
  }

  int32_t rebuild(size_t size) {
    if (is_open && (size < 2 || size < count)) return CS_FAIL;
    const auto old = std::move(buckets);
    buckets.assign(size, {});
    ever_used.assign(size, false);
    count = 0;
    for (const auto& bucket : old)
      for (const Item& item : bucket) insert(item);
    return CS_SUCCEED;
  }

  void* current_data() const {
    return current ? buckets[current->bucket][current->index].data : nullptr;
  }

  std::vector<void*> data() const {
    std::vector<void*> all;
    for (const auto& bucket : buckets)
      for (const Item& item : bucket) all.push_back(item.data);
    return all;
  }
};

std::vector<std::string> random_keys(Random& random) {
  std::vector<std::string> keys(30);
  for (std::string& key : keys) {
    key.resize(random() % 19);
    for (char& byte : key) byte = random() % 3 == 0 ? '\0' : static_cast<char>(random());
    if (key.size() >= 4 && random() % 3 == 0)
      key.replace(random() % (key.size() / 4) * 4, 4, 4, '\0');
  }
  return keys;
}

void run_table(int32_t kind) {
  ListHeap heap;
  const ListContext context(heap);
  lm_list* const list = context.make(kind);
  TableModel model{kind == LM_HASH_OPEN};
  Random random(static_cast<unsigned>(kind));
  const std::vector<std::string> keys = random_keys(random);
  for (int i = 1; i <= kOperations; ++i) {
    const std::string& key = keys[random() % keys.size()];
    const bool shrinks = model.count > 15;
    const auto operation = static_cast<int32_t>(
        random() % 4 == 0 ? (shrinks ? LM_DELETE : LM_INSERT) : LM_INSERT + random() % 9);
    const bool has_key = operation == LM_INSERT || operation == LM_FIND || random() % 2 == 0;
    void* const key_bytes = has_key ? const_cast<char*>(key.data()) : nullptr;
    const auto key_length = static_cast<int32_t>(has_key ? key.size() : 0);
    void* const data = as_data(static_cast<size_t>(i));

    heap.fail_at(random() % 16 == 0 ? 1 : -1);
    void* current = as_data(1);
    const int32_t result = lm_list_op(list, operation, key_bytes, key_length, data, &current);
    const int32_t expected = heap.failed()
                                 ? CS_MEM_ERROR
                                 : model.operate(operation, has_key ? &key : nullptr, {&key, data});
    ASSERT_EQ(expected, result) << "operation " << i << ": " << operation;
    ASSERT_EQ(model.current_data(), current) << "operation " << i << ": " << operation;
    bool changed = heap.failed();
    if (random() % 64 == 0) {
      auto size = static_cast<int32_t>(1 + random() % 24);
      const size_t live = heap.live();
      heap.fail_at(random() % 4 == 0 ? static_cast<long>(1 + random() % 16) : -1);
      const int32_t rebuilt = lm_list_prop(list, LM_SET, LM_LIST_HASH_SIZE, &size, 4, nullptr);
      if (heap.failed()) {
        ASSERT_EQ(live, heap.live());
        ASSERT_EQ(CS_MEM_ERROR, rebuilt);
      } else {
        ASSERT_EQ(model.rebuild(static_cast<size_t>(size)), rebuilt) << size;
      }
      changed = true;
      auto spares = static_cast<int32_t>(random() % 10);
      heap.fail_at(-1);
      ASSERT_EQ(CS_SUCCEED, lm_list_prop(list, LM_SET, LM_LIST_SPARES, &spares, 4, nullptr));
    }
    if (changed || i % 32 == 0) {
      ASSERT_EQ(model.data(), contents(list)) << i;
      ASSERT_EQ(model.buckets.size(),
                static_cast<size_t>(property<int32_t>(list, LM_LIST_HASH_SIZE)));
    }
  }
}

TEST(ListModel, ChainedTable) {
  run_table(LM_HASH_CHAINED);
}
TEST(ListModel, OpenAddressingTable) {
  run_table(LM_HASH_OPEN);
}

}  // namespace
}  // namespace tvx::test
