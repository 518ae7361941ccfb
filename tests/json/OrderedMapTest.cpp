// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Value.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace quorvelkit {
namespace {

TEST(OrderedMapTest, KeepsInsertionOrder) {
  using Pair = std::pair<std::string, int>;
  std::mt19937 random(7);
  OrderedMap<int> map;
  std::vector<Pair> model;
  for (int i = 0; i < 20000; ++i) {
    const std::string key = std::to_string(random() % 300);
    auto found = std::ranges::find(model, key, &Pair::first);
    const bool isThere = found != model.end();
    ASSERT_EQ(map.find(key) ? *map.find(key) : -1, isThere ? found->second : -1);
    if (random() % 4 == 0) {
      ASSERT_EQ(map.erase(key), isThere);
      if (isThere) model.erase(found);
    } else {
      map.set(key, i);
      if (!isThere) found = model.insert(found, {key, i});
      found->second = i;
    }
    ASSERT_EQ(map.size(), model.size());
    ASSERT_TRUE(i % 100 != 0 || std::equal(map.begin(), map.end(), model.begin(), model.end()));
  }
  // Equality ignores the order.
  OrderedMap<int> reversed;
  for (auto pair = model.rbegin(); pair != model.rend(); ++pair)
    reversed[pair->first] = pair->second;
  EXPECT_EQ(map, reversed);
  ++reversed[model.front().first];
  EXPECT_NE(map, reversed);
}

}  // namespace
}  // namespace quorvelkit
