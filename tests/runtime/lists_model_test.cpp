// Lists of every kind beside a slow model of them: random operations, memory that runs out, changes
// of the spare count and of the hash size. After every operation the result and the data of the
// position must be the model's, and regularly all the elements.
#include <algorithm>
#include <list>
#include <optional>
#include <random>
#include <string>

#include "list_heap.hpp"
#include "support/sanitizers.hpp"

namespace tvx::test {
namespace {

constexpr int kOperations = kAddressSanitizer || kThreadSanitizer ? 20'000 : 1'000'000;

// The hash function as it is told: a word is held until the next one comes.
uint32_t reference_hash(const std::string& key) {
  uint32_t hash = 0;
  std::optional<uint32_t> held;
  for (size_t at = 0; at < key.size(); at += 4) {
    uint32_t word = 0;
    for (size_t i = at; i < at + 4; ++i) {
      const char byte = i < key.size() ? key[i] : 'Z';
      word = (word * 256) | static_cast<uint32_t>(static_cast<signed char>(byte));
    }
    const bool is_padded = at + 4 > key.size();
    if (held) {
      hash = hash == 0 ? *held * 37 + word : (hash * 37 + *held) * 37 + word;
      held.reset();
    } else if (is_padded) {
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

// Every kind is a row of buckets: one for lists without keys, the chains, the slots.
struct Model {
  int32_t kind;
  std::vector<std::list<Item>> buckets = std::vector<std::list<Item>>(is_table() ? 10 : 1);
  std::vector<bool> ever_used = std::vector<bool>(10);
  Item* current = nullptr;
  Item* cursors[3] = {};

  bool is_table() const { return kind == LM_HASH_CHAINED || kind == LM_HASH_OPEN; }

  std::vector<Item*> all() {
    std::vector<Item*> items;
    for (auto& bucket : buckets)
      for (Item& item : bucket) items.push_back(&item);
    return items;
  }

  // The buckets that a key may be in, in the order of the search.
  std::vector<size_t> searched(const std::string& key) const {
    const auto size = static_cast<uint32_t>(buckets.size());
    const uint32_t hash = reference_hash(key);
    if (kind == LM_HASH_CHAINED) return {hash % size};
    std::vector<size_t> slots;
    for (uint32_t i = 0; i < size; ++i)
      slots.push_back((size_t{hash % size} + hash * 7 % (size - 1) + 1 + i) % size);
    return slots;
  }

  Item* find(const std::string& key) {
    for (const size_t index : searched(key)) {
      if (kind == LM_HASH_OPEN && !ever_used[index]) return nullptr;
      for (Item& item : buckets[index])
        if (*item.key == key) return &item;
    }
    return nullptr;
  }

  int32_t insert_key(const Item& item) {
    for (const size_t index : searched(*item.key)) {
      if (kind == LM_HASH_OPEN && !buckets[index].empty()) continue;
      ever_used[index] = true;
      current = &buckets[index].emplace_front(item);
      return CS_SUCCEED;
    }
    return CS_FAIL;
  }

  int32_t insert_at(Item*& position, int32_t place, void* data) {
    auto& row = buckets[0];
    const bool is_beside = place == LM_BEFORE_CURRENT || place == LM_AFTER_CURRENT;
    if (kind == LM_ORDERED && is_beside && position == nullptr) return CS_FAIL;
    auto at = row.begin();
    if (kind == LM_QUEUE || (kind == LM_ORDERED && place == LM_AT_TAIL)) {
      at = row.end();
    } else if (kind == LM_ORDERED && is_beside) {
      while (&*at != position) ++at;
      if (place == LM_AFTER_CURRENT) ++at;
    }
    position = &*row.insert(at, Item{nullptr, data});
    return CS_SUCCEED;
  }

  void erase(const Item* item, Item*& position) {
    for (auto& bucket : buckets) {
      auto at = std::find_if(bucket.begin(), bucket.end(), [=](Item& i) { return &i == item; });
      if (at == bucket.end()) continue;
      const bool is_front = at == bucket.begin();
      at = bucket.erase(at);
      position = bucket.empty() ? nullptr : is_front ? &bucket.front() : &*--at;
    }
    if (current == item) current = position;
    for (Item*& cursor : cursors)
      if (cursor == item) cursor = nullptr;  // it may not be used any more
  }

  int32_t step(Item*& position, size_t distance) {
    const auto items = all();
    const auto at = std::find(items.begin(), items.end(), position);
    const size_t to = static_cast<size_t>(at - items.begin()) + distance;
    if (position == nullptr || to >= items.size()) return CS_FAIL;
    position = items[to];
    return CS_SUCCEED;
  }

  int32_t operate(int32_t operation, Item*& position, const std::string* key, int32_t place,
                  void* data) {
    const auto items = all();
    Item* const head = items.empty() ? nullptr : items.front();
    const bool at_head = kind == LM_QUEUE || kind == LM_STACK;
    Item* target = key != nullptr ? find(*key) : position;
    if (operation == LM_DELETE && at_head) target = head;
    const int32_t found = target != nullptr ? CS_SUCCEED : key != nullptr ? LM_NOT_FOUND : CS_FAIL;
    switch (operation) {
      case LM_INSERT:
        return key != nullptr ? insert_key({key, data}) : insert_at(position, place, data);
      case LM_DELETE:
        if (target != nullptr) erase(target, position);
        return found;
      case LM_FIND:
        if (key != nullptr && target != nullptr) position = target;
        return key != nullptr ? found : CS_FAIL;
      case LM_SET_DATA:
        if (target != nullptr) target->data = data;
        return found;
      case LM_NEXT:
        return step(position, 1);
      case LM_PREVIOUS:
        return step(position, static_cast<size_t>(-1));
      case LM_LAST:
        position = items.empty() ? nullptr : items.back();
        return CS_SUCCEED;
      default:
        if (operation == LM_FIRST || at_head) position = head;
        return CS_SUCCEED;
    }
  }

  int32_t rebuild(size_t size) {
    if (!is_table() || (kind == LM_HASH_OPEN && size < std::max<size_t>(2, all().size())))
      return CS_FAIL;
    const auto old = std::exchange(buckets, std::vector<std::list<Item>>(size));
    ever_used.assign(size, false);
    for (const auto& bucket : old)
      for (const Item& item : bucket) insert_key(item);
    return CS_SUCCEED;
  }
};

class ListModel : public testing::TestWithParam<int32_t> {
protected:
  std::mt19937 random_{static_cast<unsigned>(GetParam())};
  ListHeap heap_;
  ListContext context_{heap_};
  lm_list* list_ = context_.make(GetParam());
  Model model_{GetParam()};
  lm_element* cursors_[3] = {};
  std::string keys_[30];

  size_t below(size_t limit) { return random_() % limit; }

  // Pairs of keys that differ in one byte but not in their hash: the sign of the byte behind it
  // covers it. Some have a zero word, which makes another such pair of the first two.
  void SetUp() override {
    for (size_t i = 0; i < 30; i += 2) {
      std::string& key = keys_[i];
      key.resize(2 + below(17));
      for (char& byte : key) byte = static_cast<char>(random_());
      if (key.size() >= 4 && below(2) == 0) key.replace(below(key.size() / 4) * 4, 4, 4, '\0');
      const size_t at = below((key.size() + 2) / 4) * 4;
      key[at + 1] = '\x81';
      keys_[i + 1] = key;
      ++keys_[i + 1][at];
    }
    keys_[0].clear();
    keys_[1].assign(4, '\0');
  }

  void operate(size_t number) {
    const int32_t towards_middle = model_.all().size() < 20 ? LM_INSERT : LM_DELETE;
    const int32_t operation =
        below(4) == 0 ? towards_middle : LM_INSERT + static_cast<int32_t>(below(9));
    constexpr int32_t places[] = {LM_AT_HEAD, LM_AT_TAIL, LM_BEFORE_CURRENT, LM_AFTER_CURRENT};
    int32_t length = places[below(4)];
    const std::string* key = nullptr;
    void* argument = nullptr;
    Item** cursor = nullptr;
    if (model_.is_table() && (operation == LM_INSERT || operation == LM_FIND || below(2) == 0)) {
      key = &keys_[below(30)];
      argument = const_cast<char*>(key->data());
      length = static_cast<int32_t>(key->size());
    } else if (!model_.is_table() && below(4) > 0) {
      const size_t walker = below(3);
      cursor = &model_.cursors[walker];
      if (below(8) == 0) *cursor = nullptr;
      if (*cursor == nullptr) cursors_[walker] = nullptr;
      argument = &cursors_[walker];
    }
    const bool is_own = cursor == nullptr || *cursor == nullptr;
    Item*& position = is_own ? model_.current : *cursor;

    heap_.fail_at(below(16) == 0 ? 1 : -1);
    void* out = as_data(1);
    const int32_t result = lm_list_op(list_, operation, argument, length, as_data(number), &out);
    const int32_t expected =
        heap_.failed() ? CS_MEM_ERROR
                       : model_.operate(operation, position, key, length, as_data(number));
    if (is_own && cursor != nullptr) *cursor = position;
    ASSERT_EQ(expected, result) << number << ": " << operation;
    ASSERT_EQ(position != nullptr ? position->data : nullptr, out) << number << ": " << operation;
  }

  void set_properties() {
    auto size = static_cast<int32_t>(1 + below(24)), spares = static_cast<int32_t>(below(10));
    const size_t live = heap_.live();
    heap_.fail_at(static_cast<long>(below(32)));
    const int32_t result = lm_list_prop(list_, LM_SET, LM_LIST_HASH_SIZE, &size, 4, nullptr);
    ASSERT_EQ(heap_.failed() ? CS_MEM_ERROR : model_.rebuild(static_cast<size_t>(size)), result);
    if (heap_.failed()) {
      ASSERT_EQ(live, heap_.live());
    }
    heap_.fail_at(-1);
    ASSERT_EQ(CS_SUCCEED, lm_list_prop(list_, LM_SET, LM_LIST_SPARES, &spares, 4, nullptr));
  }

  void compare_all() {
    std::vector<void*> data;
    for (const Item* item : model_.all()) data.push_back(item->data);
    ASSERT_EQ(data, contents(list_));
  }
};

TEST_P(ListModel, AgreesWithTheList) {
  for (int i = 1; i <= kOperations && !HasFatalFailure(); ++i) {
    operate(static_cast<size_t>(i));
    if (heap_.failed() || i % 32 == 0) compare_all();
    if (i % 64 == 0) set_properties();
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, ListModel,
                         testing::Values(LM_ORDERED, LM_HASH_CHAINED, LM_HASH_OPEN, LM_QUEUE,
                                         LM_STACK));

}  // namespace
}  // namespace tvx::test
