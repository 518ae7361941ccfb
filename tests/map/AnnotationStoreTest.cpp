// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/AnnotationStore_p.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace quorvelkit::test {

namespace {

int operations = 0;

// Counts its hash and comparison operations.
struct Item {
  int number;
  bool operator==(const Item& other) const {
    ++operations;
    return number == other.number;
  }
};
struct ItemHash {
  std::size_t operator()(const Item& item) const {
    ++operations;
    return static_cast<std::size_t>(item.number);
  }
};
using Store = AnnotationStore<Item, int, ItemHash>;

TEST(AnnotationStoreTest, NumberOfOperationsIsLinear) {
  constexpr int count = 20000, perItem = 10;
  Store store;
  for (int i = 0; i < count; ++i) {
    EXPECT_FALSE(store.contains({i}));
    EXPECT_TRUE(store.add({i}, -i));
  }
  EXPECT_LE(operations, perItem * count);
  operations = 0;
  EXPECT_FALSE(store.add({count / 2}, 0));
  store.remove({store.items().begin(), store.items().begin() + count / 2});
  EXPECT_LE(operations, perItem * count);
  EXPECT_EQ(store.items().size(), std::size_t{count / 2});
  EXPECT_EQ(store.items().front().number, count / 2);
  EXPECT_EQ(store.appearances().back(), 1 - count);
  store.remove(store.items());
  EXPECT_TRUE(store.items().empty() && store.appearances().empty());
}

}  // namespace

}  // namespace quorvelkit::test
