// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/JSON.h>

#include <gmock/gmock.h>

#include <variant>

namespace application {

// An application's own types of keys: all three ways to define one.
struct Member {
  const char* name;
  quorvelkit::JSONKey jsonKey() const { return quorvelkit::JSONKey::key(name); }
};
struct Position {
  int index;
};
quorvelkit::JSONKey jsonKey(const Position& position) {
  return quorvelkit::JSONKey::index(position.index);
}
enum class Field { a, list };
constexpr quorvelkit::KeyView keyView(Field field) { return field == Field::a ? "a" : "list"; }

}  // namespace application

namespace quorvelkit {
namespace {

using application::Field;
using application::Member;
using application::Position;

template <class T>
concept SubscriptsJSON = requires(const JSON json, T t) {
  json[t];
};
static_assert(SubscriptsJSON<unsigned char> && SubscriptsJSON<std::size_t>);
static_assert(!SubscriptsJSON<bool> && !SubscriptsJSON<char> && !SubscriptsJSON<double> &&
              !SubscriptsJSON<std::nullptr_t>);
static_assert(!std::is_constructible_v<KeyView, std::nullptr_t> &&
              !std::is_constructible_v<JSONKey, std::nullptr_t>);

// Assignments and writes. They must not compile for a temporary.
template <class J>
concept IsAssigned = requires(J json, const Value object) {
  static_cast<J>(json) = 5;
}
|| requires(J json, const JSON other) { static_cast<J>(json) = other; }
|| requires(J json, JSON other) { static_cast<J>(json) = std::move(other); };
template <class J>
concept IsWrittenTo = requires(J json) {
  static_cast<J>(json).set("k", 1);
}
|| requires(J json) { static_cast<J>(json).set(0, 1); }
|| requires(J json) { static_cast<J>(json).set({"k", 0}, 1); }
|| requires(J json, JSONPath path) { static_cast<J>(json).set(path, 1); }
|| requires(J json, Member member) { static_cast<J>(json).set(member, 1); }
|| requires(J json) { static_cast<J>(json).setObject(1); };
static_assert(IsAssigned<JSON&> && IsWrittenTo<JSON&>);
static_assert(!IsAssigned<JSON&&> && !IsWrittenTo<JSON&&> && !std::is_assignable_v<Value, Value>);
static_assert(std::regular<JSON> && std::swappable<JSON> && std::assignable_from<JSON&, int>);

JSON sample() {
  return JSON::parse(R"({"a":{"b":[10,20,{"c":"deep"}]},"list":[1,2],"n":null,"s":"text"})");
}
// An equal value with mutable containers only.
JSON changedSample() {
  JSON json = sample();
  json.set({"a", "b", 2, "c"}, "other");
  json.set({"a", "b", 2, "c"}, "deep");
  json.set({"list", 0}, 1);
  return json;
}

TEST(JSONSubscriptTest, ReadReturnsValueOrFirstError) {
  const std::string longKey(100, 'k');
  const std::tuple<std::vector<JSONKey>, std::int64_t, std::string> cases[] = {
      {{"x"}, 500, "Dictionary[\"x\"] does not exist"},
      {{"twelve chars"}, 500, "Dictionary[\"twelve chars\"] does not exist"},
      {{"thirteen chrs"}, 500, "Dictionary[\"thirteen chrs\"] does not exist"},
      {{longKey}, 500, "Dictionary[\"" + longKey + "\"] does not exist"},
      {{0}, 901, "Array[0] failure, It is not an array"},
      {{"s", "k"}, 901, "Dictionary[\"k\"] failure, It is not an dictionary"},
      {{"n", 3}, 901, "Array[3] failure, It is not an array"},
      {{"list", 2}, 900, "Array[2] is out of bounds"},
      {{"list", -1}, 900, "Array[-1] is out of bounds"},
      {{"list", UINT64_MAX}, 900, "Array[9223372036854775807] is out of bounds"},
      // Further steps keep the error of the first step that failed.
      {{"x", 0, "y"}, 500, "Dictionary[\"x\"] does not exist"},
      {{"list", 5, longKey}, 900, "Array[5] is out of bounds"},
      {{"s", longKey, 1}, 901, "Dictionary[\"" + longKey + "\"] failure, It is not an dictionary"},
  };
  for (const JSON& json : {sample(), changedSample()}) {
    EXPECT_EQ(json[std::vector<JSONKey>()], sample());
    EXPECT_EQ((json[{"a", "b", 2, "c"}]), "deep");
    // A temporary value passes on its reference; the result outlives it.
    EXPECT_EQ(JSON(json)["a"]["b"][2]["c"], "deep");
    EXPECT_EQ(JSON(json)["a"]["b"][1], 20);
    EXPECT_EQ(json["n"].error(), std::nullopt);
    for (const auto& [path, code, message] : cases) {
      SCOPED_TRACE(message);
      JSON stepwise = json, moved = json;
      for (const JSONKey& step : path) {
        stepwise = stepwise[step];
        moved = step.kind() == JSONKey::Case::key ? std::move(moved)[step.key()]
                                                  : std::move(moved)[step.index()];
      }
      for (const JSON& read : {json[path], stepwise, moved}) {
        EXPECT_EQ(read, JSON());
        EXPECT_EQ(read.exists(), code != 500);
        EXPECT_EQ(read.error(), Error::described(std::string(ErrorDomain), code, message));
      }
    }
  }
}

TEST(JSONSubscriptTest, AcceptsEveryTypeOfStep) {
  const JSON json = sample();
  const std::string key = "list";
  EXPECT_EQ(json[key][0], 1);
  EXPECT_EQ(json[std::string_view(key)][std::size_t{1}], 2);
  EXPECT_EQ(json[Field::list][std::int64_t{0}], 1);
  EXPECT_EQ(json[Member{"list"}][Position{1}], 2);
  EXPECT_EQ((json[{Field::a, Member{"b"}, Position{1}}]), 20);
  EXPECT_EQ((json[{"list", 2}].error()->code()), 900)
      << "a path, not the first two characters of a text";
  JSON copy = json, list = json[Field::list];
  list.set(Position{0}, 6);
  copy.set(Member{"list"}, list);
  EXPECT_EQ(copy[Field::list][0], 6);
}

TEST(JSONSubscriptTest, WriteChangesOnlyContainersThatFit) {
  using Path = std::vector<JSONKey>;
  const JSON failed = sample()["x"];
  const JSON unknown(Value::unsupported(1));
  const struct {
    const char* text;
    std::variant<std::string, int, Path> step;
    JSON value;
    const char* result;
  } cases[] = {
      {"{}", "a", 1, R"({"a":1})"},
      {R"({"a":1,"b":2})", "a", "x", R"({"a":"x","b":2})"},
      {"[1,2]", 1, true, "[1,true]"},
      {"[1,2]", 2, 3, "[1,2]"},
      {"[1,2]", "a", 3, "[1,2]"},
      {R"({"a":1})", 0, 3, R"({"a":1})"},
      {R"({"a":1})", -1, 3, R"({"a":1})"},
      // A value with an error is not stored; by a path it is stored as null.
      {R"({"a":1})", "a", failed, R"({"a":1})"},
      {R"({"a":1})", "a", unknown, R"({"a":1})"},
      {"[1]", 0, failed, "[1]"},
      {"[1]", -1, failed, "[1]"},
      {R"({"a":1})", Path{"a"}, failed, R"({"a":null})"},
      {R"({"a":[1]})", Path{"a", 0}, unknown, R"({"a":[null]})"},
      {R"({"a":{}})", Path{"a", "b"}, 1, R"({"a":{"b":1}})"},
      {"{}", Path{"a", "b"}, 1, "{}"},
      {R"({"a":5})", Path{"a", "b"}, 1, R"({"a":5})"},
      {"[1,2]", Path{5}, 1, "[1,2]"},
      {"[[1],2]", Path{0, 0}, 9, "[[9],2]"},
      {"[[1],2]", Path{-1, 0}, 9, "[[1],2]"},
      {"[[1],2]", Path{}, 9, "[[1],2]"},
      {"[{\"a\":[]}]", Path{0, "a", 0}, 9, "[{\"a\":[]}]"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.result);
    const auto write = [&](JSON& json) {
      std::visit([&](const auto& step) { json.set(step, c.value); }, c.step);
    };
    JSON json = JSON::parse(c.text);
    const JSON untouched = json;
    write(json);
    EXPECT_EQ(json.rawString(TextEncoding::utf8, JSONWritingOptions::none), c.result);
    EXPECT_EQ(untouched, JSON::parse(c.text));
    // The same for a mutable container with two owners.
    JSON again = JSON::parse(c.text);
    if (again.type() == JSON::Type::array) again.set(0, again[0]);
    if (again.type() == JSON::Type::dictionary) again.setDictionaryObject(again.dictionaryObject());
    const JSON shared = again;
    write(again);
    EXPECT_EQ(again, json);
    EXPECT_EQ(shared, untouched);
  }
  JSON array = JSON::parse("[1,[2]]");
  EXPECT_DEATH(array.set(-1, 5), "Index out of range");
  EXPECT_DEATH(array.set({-1}, 5), "Index out of range");
  EXPECT_DEATH(array.set({1, -1}, 5), "Index out of range");
  // A value can be stored in itself.
  array.set({1, 0}, array);
  EXPECT_EQ(array, JSON::parse("[1,[[1,[2]]]]"));
  array.set(0, array);
  EXPECT_EQ(array[0], JSON::parse("[1,[[1,[2]]]]"));
}

TEST(JSONSubscriptTest, ArgumentsMayBePartsOfTheValue) {
  // This value is the only owner of its document.
  JSON numbers = JSON::parse(R"({"first key":1,"b":2})");
  numbers.set(numbers.view().memberAt(0).first, 3);
  EXPECT_EQ(numbers, JSON::parse(R"({"first key":3,"b":2})"));
  JSON nested = JSON::parse(R"({"first key":{"b":1}})");
  nested.set({"first key", nested.view().memberAt(0).second.memberAt(0).first}, 3);
  EXPECT_EQ(nested, JSON::parse(R"({"first key":{"b":3}})"));
  for (JSON (*const make)() : {&sample, &changedSample}) {
    JSON json = make();
    json.set(json.view().memberAt(0).first, 1);
    EXPECT_EQ(json["a"], 1);

    json = make();
    json.set(*json.view().member("s")->text(), 2);
    json.set("s", *json.view().member("s")->text());
    json.set(*json.view().member("s")->text(), json["text"]);
    EXPECT_EQ(json.rawString(TextEncoding::utf8, JSONWritingOptions::none),
              R"({"a":{"b":[10,20,{"c":"deep"}]},"list":[1,2],"n":null,"s":"text","text":2})");

    json = make();
    json.set({json.view().memberAt(0).first, "b", 2}, json["a"]);
    json = json[{"a", "b"}];
    EXPECT_EQ(json[2], sample()["a"]);
    json.set(0, json[2]);
    json.set(2, Value(json.view().element(1)));
    EXPECT_EQ(json, JSON::makeArray({sample()["a"], 20, 20}));
    json.setStringValue(json.stringValue() + "x");
    EXPECT_EQ(json, "x");
  }
}

}  // namespace
}  // namespace quorvelkit
