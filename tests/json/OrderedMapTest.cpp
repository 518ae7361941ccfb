// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Value.h>

#include <gmock/gmock.h>

#include <map>
#include <random>

namespace quorvelkit {
namespace {

TEST(OrderedMapTest, KeepsTheOrderOfKeys) {
  ValueMap map{{"b", 1}, {"a", 2}, {"b", 3}};
  map["c"] = "x";
  map.set("a", 5);
  ASSERT_EQ(map.size(), 3U);
  EXPECT_EQ(map.at(0).first, "b");
  EXPECT_EQ(map.at(0).second, Value(3));
  EXPECT_EQ(map.at(1).second, Value(5));
  EXPECT_EQ(map.at(2).first, "c");
  EXPECT_EQ(map.find("d"), nullptr);
  EXPECT_TRUE(map.erase("b"));
  EXPECT_FALSE(map.erase("b"));
  EXPECT_EQ(map, (ValueMap{{"c", "x"}, {"a", 5.0}}));
  EXPECT_NE(map, (ValueMap{{"c", "x"}, {"d", 5}}));
  EXPECT_NE(map, (ValueMap{{"c", "x"}}));
}

TEST(OrderedMapTest, BehavesLikeAMapOfAnySize) {
  std::mt19937 random(7);
  OrderedMap<int> map;
  std::map<std::string, int, std::less<>> model;
  for (int i = 0; i < 20000; ++i) {
    const std::string key = std::to_string(random() % 300);
    const auto value = static_cast<int>(random());
    if (random() % 4 == 0) {
      ASSERT_EQ(map.erase(key), model.erase(key) == 1);
    } else {
      map.set(key, value);
      model[key] = value;
    }
    ASSERT_EQ(map.size(), model.size());
    const std::string other = std::to_string(random() % 300);
    const auto found = model.find(other);
    const int* const value2 = map.find(other);
    ASSERT_EQ(value2 != nullptr, found != model.end());
    ASSERT_EQ(value2 ? *value2 : 0, found != model.end() ? found->second : 0);
  }
}

}  // namespace
}  // namespace quorvelkit
