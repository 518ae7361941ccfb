// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Value.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace quorvelkit {
namespace {

TEST(OrderedMapTest, KeepsInsertionOrder) {
  std::mt19937 random(7);
  OrderedMap<int> map;
  std::vector<std::pair<std::string, int>> model;
  const auto findInModel = [&](const std::string& key) {
    return std::find_if(model.begin(), model.end(), [&](auto& pair) { return pair.first == key; });
  };
  for (int i = 0; i < 20000; ++i) {
    const std::string key = std::to_string(random() % 300);
    const auto found = findInModel(key);
    const bool isThere = found != model.end();
    ASSERT_EQ(map.find(key) ? std::optional(*map.find(key)) : std::nullopt,
              isThere ? std::optional(found->second) : std::nullopt);
    if (random() % 4 == 0) {
      ASSERT_EQ(map.erase(key), isThere);
      if (isThere) model.erase(found);
    } else {
      map.set(key, i);
      if (!isThere) model.emplace_back(key, i);
      findInModel(key)->second = i;
    }
    ASSERT_THAT(map, testing::SizeIs(model.size()));
    ASSERT_TRUE(i % 100 != 0 || std::equal(map.begin(), map.end(), model.begin(), model.end()));
  }
}

TEST(OrderedMapTest, EqualityIgnoresOrder) {
  ValueMap map{{"c", 1}, {"c", 2}};
  map["a"] = 5;
  map["c"] = "x";
  EXPECT_EQ(map, (ValueMap{{"a", 5.0}, {"c", "x"}}));
  EXPECT_NE(map, (ValueMap{{"c", "x"}, {"d", 5}}));
  EXPECT_NE(map, (ValueMap{{"c", "x"}}));
}

}  // namespace
}  // namespace quorvelkit
