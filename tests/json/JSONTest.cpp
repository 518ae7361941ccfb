// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/JSON.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <any>
#include <filesystem>
#include <limits>
#include <map>
#include <ranges>
#include <set>

namespace quorvelkit {
namespace {

using Type = JSON::Type;

static_assert(sizeof(JSON) == 16);
static_assert(std::ranges::forward_range<const JSON> && std::ranges::borrowed_range<JSON>);
static_assert(!std::is_constructible_v<Value, char> && !std::is_convertible_v<Data, JSON>);
static_assert(!std::is_constructible_v<Number, char> && !std::is_constructible_v<Number, wchar_t>);

// Containers convert to values explicitly only.
template <class T>
constexpr bool becomesJSONExplicitly =
    std::is_constructible_v<JSON, T> && !std::is_convertible_v<T, JSON>;
static_assert(becomesJSONExplicitly<ValueArray> && becomesJSONExplicitly<ValueMap> &&
              becomesJSONExplicitly<std::vector<JSON>> && becomesJSONExplicitly<JSONMap>);
static_assert(!std::is_convertible_v<ValueArray, Value> && !std::is_convertible_v<ValueMap, Value>);

template <class T>
concept MakesArray = requires(T range) {
  JSON::makeArray(range);
};
template <class T>
concept MakesMap = requires(T range) {
  JSON::makeDictionary(range);
};
static_assert(!MakesArray<std::string> && !MakesArray<std::filesystem::path> && !MakesArray<int> &&
              !MakesArray<JSONMap> && !MakesArray<std::vector<Data>>);
static_assert(!MakesMap<std::vector<int>> && !MakesMap<std::map<int, int>>);

JSON error900() { return JSON::makeArray({1})[7]; }

static_assert(static_cast<int>(Type::number) == 0 && static_cast<int>(Type::string) == 1 &&
              static_cast<int>(Type::bool_) == 2 && static_cast<int>(Type::array) == 3 &&
              static_cast<int>(Type::dictionary) == 4 && static_cast<int>(Type::null) == 5 &&
              static_cast<int>(Type::unknown) == 6);

TEST(JSONTest, ConvertsFromEveryKindOfObject) {
  const std::string text = "text";
  const std::tuple<JSON, Type, const char*> cases[] = {
      {JSON(), Type::null, "null"},
      {nullptr, Type::null, "null"},
      {Null(), Type::null, "null"},
      {JSON::null(), Type::null, "null"},
      {JSON::nullJSON(), Type::null, "null"},
      {true, Type::bool_, "true"},
      {1, Type::number, "1"},
      {std::numeric_limits<std::uint64_t>::max(), Type::number, "18446744073709551615"},
      {1.5F, Type::number, "1.5"},
      {Decimal::parse("0.1"), Type::number, "0.1"},
      {"literal", Type::string, "literal"},
      {text, Type::string, "text"},
      {std::string_view(text), Type::string, "text"},
      {std::optional(5), Type::number, "5"},
      {std::optional<bool>(), Type::null, "null"},
      {std::optional<JSON>("text"), Type::string, "text"},
      {JSON(ValueArray{}), Type::array, "[]"},
      {JSON(std::vector<JSON>{1, "a"}), Type::array, "[\n  1,\n  \"a\"\n]"},
      {JSON(JSONMap{{"k", 1}}), Type::dictionary, "{\n  \"k\": 1\n}"},
      {JSON::makeDictionary({{"a", 1}, {"b", 2}, {"a", JSON::makeArray({})}}), Type::dictionary,
       "{\n  \"a\": [],\n  \"b\": 2\n}"},
      {Value::unsupported(std::any(3)), Type::unknown, "unknown"},
  };
  for (const auto& [json, type, description] : cases) {
    SCOPED_TRACE(description);
    EXPECT_EQ(json.type(), type);
    EXPECT_EQ(JSON::typeFromRawValue(static_cast<int>(type)), type);
    EXPECT_EQ(json.description(), description);
    EXPECT_EQ(json.debugDescription(), description);
    EXPECT_EQ(json.error().has_value(), type == Type::unknown);
    EXPECT_TRUE(json.exists());
    EXPECT_EQ(JSON::fromRawValue(json.rawValue()), std::optional(JSON(json.object())));
  }
  EXPECT_FALSE(JSON::typeFromRawValue(-1) || JSON::typeFromRawValue(7));
}

TEST(JSONTest, ConvertsFromRanges) {
  using Map = std::map<std::string, std::vector<std::optional<double>>>;
  const Map map = {{"a", {1.5, {}}}, {"b", {}}};
  const std::vector<std::pair<const char*, int>> pairs = {{"x", 1}, {"y", 2}, {"x", 3}};
  const std::vector<JSON> list{1, "two"};
  const int numbers[] = {1, 2, 3};
  const std::pair<JSON, const char*> cases[] = {
      {JSON::makeArray(list), R"([1,"two"])"},
      {JSON::makeArray(std::vector<bool>{true, false}), "[true,false]"},
      {JSON::makeArray(numbers), "[1,2,3]"},
      {JSON::makeArray(std::set{2.5F, 1.5F}), "[1.5,2.5]"},
      {JSON::makeArray(std::vector<Map>{map, {}}), R"([{"a":[1.5,null],"b":[]},{}])"},
      {JSON::makeArray(std::vector<std::optional<std::vector<JSON>>>{list, {}}),
       R"([[1,"two"],null])"},
      {JSON::makeDictionary(map), R"({"a":[1.5,null],"b":[]})"},
      {JSON::makeDictionary(pairs), R"({"x":3,"y":2})"},
      {JSON::makeDictionary(JSONMap{{"k", 1}}), R"({"k":1})"},
      {JSON::makeDictionary(JSON::makeArray(list)), R"({"0":1,"1":"two"})"},
      {JSON::makeDictionary({{"a", std::optional(1)}, {"b", std::optional<JSON>()}}),
       R"({"a":1,"b":null})"},
  };
  for (const auto& [json, text] : cases)
    EXPECT_EQ(json.rawString(TextEncoding::utf8, JSONWritingOptions::none), text);

  // A container in braces is copied, with every compiler.
  const ValueArray objects{1, 2};
  EXPECT_EQ((std::vector<JSON>{list}), list);
  EXPECT_EQ((ValueArray{objects}), objects);
  EXPECT_EQ(JSON({1, 2}), JSON::makeArray({1, 2}));
}

TEST(JSONTest, UnsupportedValueMakesTypeUnknown) {
  JSON json(Value::unsupported(std::string("thing")));
  EXPECT_EQ(json.error()->code(), ErrorUnsupportedType);
  EXPECT_EQ(json.error()->localizedDescription(), "It is a unsupported type");
  EXPECT_TRUE(json.object().isNull());
  EXPECT_EQ(JSON::fromRawValue(Value::unsupported(1)), std::nullopt);
  // A read keeps the error; an assignment removes it.
  EXPECT_EQ(json["key"].error()->code(), ErrorUnsupportedType);
  EXPECT_EQ(json[0].error()->code(), ErrorUnsupportedType);
  json.setObject(1);
  EXPECT_EQ(json.error(), std::nullopt);

  // An array stores it; the type is unknown when the element is read.
  const JSON array = JSON::makeArray({1, Value::unsupported(7)});
  EXPECT_EQ(array[1].type(), Type::unknown);
  EXPECT_EQ((array[{1, "x"}].error()->code()), ErrorUnsupportedType);
  const ValueArray elements = array.arrayObject().value();
  EXPECT_EQ(std::any_cast<int>(*elements[1].unsupported()), 7);
  EXPECT_NE(array, array) << "an unsupported value is not equal to any value";
  // The object of an unknown value is null.
  EXPECT_EQ(JSON(array.arrayValue())[1].type(), Type::null);
}

TEST(JSONTest, ParserSetsErrorArgumentOnly) {
  constexpr auto any = JSONReadingOptions::allowFragments, none = JSONReadingOptions::none;
  const std::tuple<const char*, JSONReadingOptions, Type, bool> cases[] = {
      {"\"abc\"", any, Type::string, false}, {"null", any, Type::null, false},
      {"null", none, Type::null, true},      {"[]", none, Type::array, false},
      {"{\"a\":", any, Type::null, true},    {"\xFF", any, Type::null, true}};
  for (const auto& [text, options, type, fails] : cases) {
    SCOPED_TRACE(text);
    // Each call overwrites its error argument.
    std::optional<Error> errors[2] = {Error("before", 1), Error("before", 1)};
    for (const JSON& json : {JSON(Data(std::string(text)), options, &errors[0]),
                             JSON::parse(text, options, &errors[1])}) {
      EXPECT_EQ(json.type(), type);
      EXPECT_EQ(json.error(), std::nullopt);
    }
    for (const std::optional<Error>& error : errors) {
      ASSERT_EQ(error.has_value(), fails);
      if (!fails) continue;
      EXPECT_EQ(error->domain(), ErrorDomain);
      EXPECT_EQ(error->code(), ErrorInvalidJSON);
    }
  }
}

TEST(JSONTest, IteratesOverPairs) {
  using Pair = JSON::value_type;
  const JSON array = JSON::parse("[5,\"x\"]");
  JSON map = JSON::parse(R"({"b":1,"a":2})");
  EXPECT_THAT(array, testing::ElementsAre(Pair("0", 5), Pair("1", "x")));
  EXPECT_THAT(map, testing::ElementsAre(Pair("b", 1), Pair("a", 2)));
  map.set("c", 3);
  EXPECT_THAT(map, testing::ElementsAre(Pair("b", 1), Pair("a", 2), Pair("c", 3)));
  EXPECT_EQ(array.startIndex(), JSONIndex::array(0));
  EXPECT_EQ(array.endIndex(), JSONIndex::array(2));
  EXPECT_EQ(map[map.startIndex().next()], Pair("a", 2));
  const JSONIndex one = JSONIndex::array(1), two = JSONIndex::array(2), none = JSONIndex::null();
  EXPECT_TRUE(one < two && two > one && one != two && one == one && one <= one);
  EXPECT_TRUE(none == none && !(none < none) && none.next() == none);
  for (const JSONIndex other : {JSONIndex::dictionary(1), none})
    EXPECT_FALSE(one == other || one < other || one > other || one <= other || one >= other);
  for (const JSON& other :
       {JSON(), JSON(1), JSON("text"), JSON(true), error900(), JSON(Value::unsupported(1))}) {
    EXPECT_TRUE(other.empty());
    EXPECT_EQ(other.size(), 0U);
    EXPECT_EQ(other.startIndex(), JSONIndex::null());
    EXPECT_EQ(other.endIndex(), JSONIndex::null());
    EXPECT_TRUE(other.begin() == other.end());
    EXPECT_EQ(other[JSONIndex::null()], Pair("", JSON()));
  }
  EXPECT_DEATH(array[array.endIndex()], "Index out of range");
  EXPECT_DEATH(array[JSONIndex::dictionary(0)], "Index out of range");
}

TEST(JSONTest, WritesDuringIterationDoNotAffectTheLoop) {
  for (const char* const kind : {"frozen", "mutable"}) {
    SCOPED_TRACE(kind);
    JSON map = JSON::parse(R"({"b":1,"a":2})");
    if (kind[0] == 'm') map.set("a", 2);
    for (const auto& [key, member] : map) {
      map.set(key + "!", map.size());
      map.set(key, JSON::makeArray({member}));
    }
    EXPECT_EQ(map, JSON::parse(R"({"b":[1],"a":[2],"b!":2,"a!":3})"));
    // An iterator stays valid after its value is overwritten.
    JSON::Iterator position = map.begin();
    map = JSON();
    EXPECT_EQ(*position++, JSON::value_type("b", JSON::makeArray({1})));
    EXPECT_EQ(*position, JSON::value_type("a", JSON::makeArray({2})));
  }
  const auto isB = [](const JSON::value_type& pair) { return pair.first == "b"; };
  const auto found = std::ranges::find_if(JSON::parse(R"({"a":1,"b":[2]})"), isB);
  EXPECT_EQ(found->second[0], 2);
  EXPECT_EQ(JSON::parse("[5]").begin()->first, "0");
}

// The tests of the models contain tables of the values that each read accepts.
TEST(JSONTest, ViewsWithoutSuchAChildAreNull) {
  const JSON json = JSON::parse(R"({"a":[1]})");
  const ValueView list = json.view().memberAt(0).second;
  EXPECT_TRUE(json.view().memberAt(99).second.isNull());
  EXPECT_TRUE(json.view().element(0).isNull() && list.element(1).isNull());
  EXPECT_EQ(list.member("x"), std::nullopt);
  EXPECT_EQ(Value(Decimal::parse("1.2")).number(), 1.2);
}

}  // namespace
}  // namespace quorvelkit
