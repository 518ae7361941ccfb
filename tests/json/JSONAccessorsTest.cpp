// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/JSON.h>

#include <gmock/gmock.h>
#include <tests/support/JSONOracle.h>

#include <limits>

namespace quorvelkit {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(JSONAccessorsTest, EveryTypeConvertsToBoolTextAndNumber) {
  using Type = JSON::Type;
  struct Row {
    JSON json;
    bool truth;
    const char* text;
    double number;
  };
  std::vector<Row> rows = {
      {5, true, "5", 5},          {0, false, "0", 0},           {2.5, true, "2.5", 2.5},
      {1, true, "1", 1},          {true, true, "true", 1},      {false, false, "false", 0},
      {nan, true, "nan", nan},    {"12", true, "12", 12},       {"12.9", true, "12.9", 12.9},
      {"1e3", true, "1e3", 1000}, {"12abc", true, "12abc", 12}, {"abc", false, "abc", 0},
      {"", false, "", 0},         {nullptr, false, "", 0}};
  for (const JSON& other :
       {JSON::makeArray({1}), JSON::makeDictionary({{"a", 1}}), JSON(Value::unsupported(1))})
    rows.push_back({other, false, "", 0});
  for (const auto& [json, truth, text, number] : rows) {
    SCOPED_TRACE(json.description());
    const Type type = json.type();
    const bool isNumber = type == Type::number || type == Type::bool_;
    EXPECT_EQ(json.boolValue(), truth);
    EXPECT_EQ(json.bool_(), type == Type::bool_ ? std::optional(truth) : std::nullopt);
    EXPECT_EQ(json.stringValue(), text);
    EXPECT_EQ(json.string(),
              type == Type::string ? std::optional<std::string>(text) : std::nullopt);
    EXPECT_EQ(json.number().has_value(), isNumber);
    EXPECT_EQ(json.numberValue().isBool(), type == Type::bool_);
    EXPECT_EQ(json.double_().has_value(), isNumber);
    EXPECT_THAT(json.double_().value_or(number), testing::NanSensitiveDoubleEq(number));
    EXPECT_THAT(json.doubleValue(), testing::NanSensitiveDoubleEq(number));
    EXPECT_EQ(json.null_().has_value(), type == Type::null);
    EXPECT_EQ(json.array().has_value(), type == Type::array);
    EXPECT_EQ(json.arrayObject().has_value(), type == Type::array);
    EXPECT_EQ(json.arrayValue().size(), type == Type::array ? 1U : 0U);
    EXPECT_EQ(json.dictionary().has_value(), type == Type::dictionary);
    EXPECT_EQ(json.dictionaryObject().has_value(), type == Type::dictionary);
    EXPECT_EQ(json.dictionaryValue().contains("a"), type == Type::dictionary);
  }
}

TEST(JSONAccessorsTest, BoolOfTextDependsOnFirstSignificantCharacter) {
  for (const char* text : {"true", "True", "T", "t", "yes", "Yes", "Y", "1", "9", "007", "+1", "-1",
                           " \t\n1", " +00t", "1abc", "yellow"}) {
    EXPECT_TRUE(JSON(text).boolValue()) << text;
  }
  for (const char* text :
       {"false", "no", "0", "", " ", "000", "-0", "+-1", "- 1", "x1", "n", "++1"}) {
    EXPECT_FALSE(JSON(text).boolValue()) << text;
  }
}

// Tests both setters of an accessor, and an absent value for the optional one.
template <class T>
void expectWrites(auto setOptional, auto setValue, const T& value, std::string_view description) {
  static_assert(!std::is_invocable_v<decltype(setOptional), JSON, T> &&
                    !std::is_invocable_v<decltype(setValue), JSON, T>,
                "a setter must not change a temporary");
  JSON json = JSON::makeArray({});
  (json.*setOptional)(value);
  EXPECT_EQ(json.description(), description);
  (json.*setOptional)(std::nullopt);
  EXPECT_EQ(json.type(), JSON::Type::null);
  (json.*setValue)(value);
  EXPECT_EQ(json.description(), description);
}

TEST(JSONAccessorsTest, IntegerAccessorsClampThenKeepLowBits) {
  constexpr std::uint64_t lowest = 9223372036854775808U;
  const struct {
    JSON json;
    std::int64_t integer;
    std::uint64_t natural;
  } cases[] = {{12.9, 12, 12},
               {-12.9, -12, 18446744073709551604U},
               {300, 300, 300},
               {4294967296, 4294967296, 4294967296},
               {1e19, INT64_MAX, 10000000000000000000U},
               {9223372036854775808.0, INT64_MAX, lowest},
               {18446744073709551616.0, INT64_MAX, UINT64_MAX},
               {-1e300, INT64_MIN, lowest},
               {UINT64_MAX, INT64_MAX, UINT64_MAX},
               {infinity, INT64_MAX, UINT64_MAX},
               {nan, 0, 0},
               {true, 1, 1},
               {"12.9", 12, 12},
               {"-300", -300, 18446744073709551316U},
               {"18446744073709551615", INT64_MAX, UINT64_MAX},
               {"1e100", INT64_MAX, UINT64_MAX},
               {"-1e100", INT64_MIN, lowest},
               {"1e-100", 0, 0},
               {nullptr, 0, 0}};
  const auto expect = [&](auto read, auto readValue, auto set, auto setValue) {
    using T = std::invoke_result_t<decltype(readValue), JSON>;
    for (const auto& [json, integer, natural] : cases) {
      SCOPED_TRACE(json.description());
      const bool present = json.type() == JSON::Type::number || json.type() == JSON::Type::bool_;
      // Smaller types keep the low bits.
      const auto expected =
          static_cast<T>(std::is_signed_v<T> ? static_cast<std::uint64_t>(integer) : natural);
      EXPECT_EQ((json.*readValue)(), expected);
      EXPECT_EQ((json.*read)(), present ? std::optional(expected) : std::nullopt);
    }
    using Limits = std::numeric_limits<T>;
    const T extreme = std::is_signed_v<T> ? Limits::min() : Limits::max();
    expectWrites<T>(set, setValue, extreme, std::to_string(extreme));
  };
  expect(&JSON::int_, &JSON::intValue, &JSON::setInt, &JSON::setIntValue);
  expect(&JSON::uInt, &JSON::uIntValue, &JSON::setUInt, &JSON::setUIntValue);
  expect(&JSON::int8, &JSON::int8Value, &JSON::setInt8, &JSON::setInt8Value);
  expect(&JSON::uInt8, &JSON::uInt8Value, &JSON::setUInt8, &JSON::setUInt8Value);
  expect(&JSON::int16, &JSON::int16Value, &JSON::setInt16, &JSON::setInt16Value);
  expect(&JSON::uInt16, &JSON::uInt16Value, &JSON::setUInt16, &JSON::setUInt16Value);
  expect(&JSON::int32, &JSON::int32Value, &JSON::setInt32, &JSON::setInt32Value);
  expect(&JSON::uInt32, &JSON::uInt32Value, &JSON::setUInt32, &JSON::setUInt32Value);
  expect(&JSON::int64, &JSON::int64Value, &JSON::setInt64, &JSON::setInt64Value);
  expect(&JSON::uInt64, &JSON::uInt64Value, &JSON::setUInt64, &JSON::setUInt64Value);
}

TEST(JSONAccessorsTest, SettersStoreValuesAndAbsentValuesBecomeNull) {
  expectWrites<bool>(&JSON::setBool, &JSON::setBoolValue, true, "true");
  expectWrites<std::string>(&JSON::setString, &JSON::setStringValue, "text", "text");
  expectWrites<double>(&JSON::setDouble, &JSON::setDoubleValue, 2.5, "2.5");
  expectWrites<float>(&JSON::setFloat, &JSON::setFloatValue, 0.5F, "0.5");
  expectWrites<Number>(&JSON::setNumber, &JSON::setNumberValue, trueNumber, "true");
  expectWrites<std::vector<JSON>>(&JSON::setArray, &JSON::setArrayValue, {"a"}, "[\n  \"a\"\n]");
  expectWrites<JSONMap>(&JSON::setDictionary, &JSON::setDictionaryValue, {{"a", 1}},
                        "{\n  \"a\": 1\n}");
  static_assert(!std::is_invocable_v<decltype(&JSON::setArrayObject), JSON, ValueArray> &&
                !std::is_invocable_v<decltype(&JSON::setDictionaryObject), JSON, ValueMap> &&
                !std::is_invocable_v<decltype(&JSON::setNull), JSON, Null> &&
                !std::is_invocable_v<decltype(&JSON::setURL), JSON, std::optional<URL>>);
  JSON json = 1;
  json.setString({});
  EXPECT_EQ(json, nullptr);
  json.setStringValue({});
  EXPECT_EQ(json, "");
  json.setArrayObject(ValueArray{1});
  EXPECT_EQ(json, JSON::makeArray({1}));
  json.setNull(std::nullopt);
  EXPECT_EQ(json, nullptr);
  json.setURL(URL::parse("http://a/b"));
  EXPECT_EQ(json, "http://a/b");
  json.setURL(std::nullopt);
  EXPECT_EQ(json, nullptr);
}

TEST(JSONAccessorsTest, StringsAreReadAsURLsAndFloats) {
  EXPECT_EQ(JSON("https://example.com/a b?q=ü").url()->absoluteString(),
            "https://example.com/a%20b?q=%C3%BC");
  EXPECT_EQ(JSON("50%").url()->absoluteString(), "50%25");
  for (const JSON& json : {JSON(""), JSON("\xFF"), JSON(1), JSON()})
    EXPECT_EQ(json.url(), std::nullopt);
  EXPECT_EQ(JSON(0.1).float_(), 0.1F);
  EXPECT_EQ(JSON("0.1").floatValue(), 0.1F);
}

// The relation is '<', '=' or 'n' (unequal and unordered).
void expectRelation(const JSON& a, const JSON& b, char relation) {
  SCOPED_TRACE(a.description() + " and " + b.description());
  const bool less = relation == '<', same = relation == '=';
  EXPECT_EQ(a == b, same);
  EXPECT_EQ(b == a, same);
  EXPECT_EQ(a < b, less);
  EXPECT_EQ(a <= b, same || less);
  EXPECT_FALSE(a > b || b < a);
  EXPECT_EQ(a >= b, same);
}

TEST(JSONAccessorsTest, OnlyValuesOfSameTypeAreEqualOrOrdered) {
  const std::pair<char, std::string> pairs[] = {
      {'<', R"([[1, 2], [9007199254740992.0, 9007199254740993], ["a", "b"], ["a", "ab"],
                ["z", "é"]])"},
      {'=', R"([[1, 1.0], ["", ""], [true, true], [null, null], [[1], [1.0]], [[null], [null]],
                [{"a": 1, "b": [1, 2]}, {"b": [1, 2.0], "a": 1}]])"},
      {'n', R"([[1, true], [0, false], [1, "1"], [true, false], [null, false], [[1], [2]],
                [[1], [true]], [{"a": 1, "b": 2}, {"a": 1, "c": 2}], [{"a": 1, "b": 2}, {"a": 1}]])"}};
  for (const auto& [relation, text] : pairs) {
    // Frozen and mutable values must compare alike.
    const JSON parsed = JSON::parse(text), built = parsedByOracle(text).value();
    ASSERT_GE(parsed.size(), 5U);
    for (std::size_t i = 0; i < parsed.size(); ++i) {
      for (const auto& [left, right] : {std::pair{parsed, parsed}, {parsed, built}, {built, built}})
        expectRelation(left[i][0], right[i][1], relation);
    }
    expectRelation(parsed, parsed, '=');
    expectRelation(nullptr, parsed["x"], '=');
  }
  expectRelation(nan, nan, '=');
  expectRelation(nan, -infinity, '<');
  const JSON unknown(Value::unsupported(1));
  expectRelation(unknown, unknown, 'n');
  expectRelation(unknown, nullptr, 'n');
}

}  // namespace
}  // namespace quorvelkit
