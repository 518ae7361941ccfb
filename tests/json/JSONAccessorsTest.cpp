// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/JSON.h>

#include <gmock/gmock.h>

#include <limits>

namespace quorvelkit {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(JSONAccessorsTest, ConvertsBetweenKinds) {
  const struct {
    JSON json;
    std::optional<bool> bool_;
    bool boolValue;
    std::optional<std::string> string;
    const char* stringValue;
    std::optional<double> number;
    double numberValue;
  } cases[] = {
      {5, {}, true, {}, "5", 5, 5},
      {0, {}, false, {}, "0", 0, 0},
      {2.5, {}, true, {}, "2.5", 2.5, 2.5},
      {1, {}, true, {}, "1", 1, 1},
      {true, true, true, {}, "true", 1, 1},
      {false, false, false, {}, "false", 0, 0},
      {nan, {}, true, {}, "nan", nan, nan},
      {"12", {}, true, "12", "12", {}, 12},
      {"12.9", {}, true, "12.9", "12.9", {}, 12.9},
      {"1e3", {}, true, "1e3", "1e3", {}, 1000},
      {"12abc", {}, true, "12abc", "12abc", {}, 12},
      {"abc", {}, false, "abc", "abc", {}, 0},
      {"", {}, false, "", "", {}, 0},
      {nullptr, {}, false, {}, "", {}, 0},
      {JSON::makeArray({1}), {}, false, {}, "", {}, 0},
      {JSON::makeDictionary({{"a", 1}}), {}, false, {}, "", {}, 0},
      {JSON(Value::unsupported(1)), {}, false, {}, "", {}, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.json.description());
    EXPECT_EQ(c.json.bool_(), c.bool_);
    EXPECT_EQ(c.json.boolValue(), c.boolValue);
    EXPECT_EQ(c.json.string(), c.string);
    EXPECT_EQ(c.json.stringValue(), c.stringValue);
    EXPECT_EQ(c.json.number().has_value(), c.number.has_value());
    EXPECT_EQ(c.json.double_().has_value(), c.number.has_value());
    EXPECT_THAT(c.json.double_().value_or(0), testing::NanSensitiveDoubleEq(c.number.value_or(0)));
    EXPECT_THAT(c.json.doubleValue(), testing::NanSensitiveDoubleEq(c.numberValue));
    const bool isWhole = c.json.type() != JSON::Type::bool_;
    EXPECT_EQ(c.json.numberValue().isBool(), !isWhole);
    EXPECT_EQ(c.json.null_().has_value(), c.json.type() == JSON::Type::null);
    EXPECT_EQ(c.json.array().has_value(), c.json.type() == JSON::Type::array);
    EXPECT_EQ(c.json.arrayValue().size(), c.json.type() == JSON::Type::array ? 1U : 0U);
    EXPECT_EQ(c.json.dictionary().has_value(), c.json.type() == JSON::Type::dictionary);
    EXPECT_EQ(c.json.dictionaryValue().contains("a"), c.json.type() == JSON::Type::dictionary);
    EXPECT_EQ(c.json.arrayObject().has_value(), c.json.array().has_value());
    EXPECT_EQ(c.json.dictionaryObject().has_value(), c.json.dictionary().has_value());
  }
}

TEST(JSONAccessorsTest, ReadsTruthFromTexts) {
  for (const char* text : {"true", "True", "T", "t", "yes", "Yes", "Y", "1", "9", "007", "+1", "-1",
                           " \t\n1", " +00t", "1abc", "yellow"}) {
    EXPECT_TRUE(JSON(text).boolValue()) << text;
  }
  for (const char* text :
       {"false", "no", "0", "", " ", "000", "-0", "+-1", "- 1", "x1", "n", "++1"}) {
    EXPECT_FALSE(JSON(text).boolValue()) << text;
  }
}

TEST(JSONAccessorsTest, ConvertsNumbersByOneRule) {
  const struct {
    JSON json;
    std::int64_t int64;
    std::uint64_t uInt64;
    std::int8_t int8;
    std::uint8_t uInt8;
    std::int32_t int32;
    std::uint16_t uInt16;
  } cases[] = {
      {12.9, 12, 12, 12, 12, 12, 12},
      {-12.9, -12, 18446744073709551604U, -12, 244, -12, 65524},
      {300, 300, 300, 44, 44, 300, 300},
      {-1, -1, UINT64_MAX, -1, 255, -1, 65535},
      {4294967296, 4294967296, 4294967296, 0, 0, 0, 0},
      {1e300, INT64_MAX, UINT64_MAX, -1, 255, -1, 65535},
      {-1e300, INT64_MIN, 9223372036854775808U, 0, 0, 0, 0},
      {UINT64_MAX, INT64_MAX, UINT64_MAX, -1, 255, -1, 65535},
      {infinity, INT64_MAX, UINT64_MAX, -1, 255, -1, 65535},
      {nan, 0, 0, 0, 0, 0, 0},
      {true, 1, 1, 1, 1, 1, 1},
      {"12", 12, 12, 12, 12, 12, 12},
      {"12.9", 12, 12, 12, 12, 12, 12},
      {"-300", -300, 18446744073709551316U, -44, 212, -300, 65236},
      {"18446744073709551615", INT64_MAX, UINT64_MAX, -1, 255, -1, 65535},
      {"1e100", INT64_MAX, UINT64_MAX, -1, 255, -1, 65535},
      {"-1e100", INT64_MIN, 9223372036854775808U, 0, 0, 0, 0},
      {"1e-100", 0, 0, 0, 0, 0, 0},
      {"abc", 0, 0, 0, 0, 0, 0},
      {nullptr, 0, 0, 0, 0, 0, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.json.description());
    const bool present = c.json.type() == JSON::Type::number || c.json.type() == JSON::Type::bool_;
    const auto expect = [&](auto value, auto optional, auto expected) {
      EXPECT_EQ(value, expected);
      EXPECT_EQ(optional, present ? std::optional(expected) : std::nullopt);
    };
    expect(c.json.int64Value(), c.json.int64(), c.int64);
    expect(c.json.intValue(), c.json.int_(), c.int64);
    expect(c.json.uInt64Value(), c.json.uInt64(), c.uInt64);
    expect(c.json.uIntValue(), c.json.uInt(), c.uInt64);
    expect(c.json.int8Value(), c.json.int8(), c.int8);
    expect(c.json.uInt8Value(), c.json.uInt8(), c.uInt8);
    expect(c.json.int16Value(), c.json.int16(), static_cast<std::int16_t>(c.uInt16));
    expect(c.json.uInt16Value(), c.json.uInt16(), c.uInt16);
    expect(c.json.int32Value(), c.json.int32(), c.int32);
    expect(c.json.uInt32Value(), c.json.uInt32(), static_cast<std::uint32_t>(c.int32));
  }
  EXPECT_EQ(JSON(1e19).int64Value(), INT64_MAX);
  EXPECT_EQ(JSON(1e19).uInt64Value(), 10000000000000000000U);
  EXPECT_EQ(JSON(0.1).float_(), 0.1F);
  EXPECT_EQ(JSON("0.1").floatValue(), 0.1F);
}

// Writes through both forms of an accessor, and null through the optional one.
template <class T, class SetOptional, class SetValue>
void expectWrites(SetOptional setOptional, SetValue setValue, const T& value,
                  const char* description) {
  JSON json = JSON::makeArray({});
  (json.*setOptional)(value);
  EXPECT_EQ(json.description(), description);
  (json.*setOptional)(std::nullopt);
  EXPECT_EQ(json.type(), JSON::Type::null);
  (json.*setValue)(value);
  EXPECT_EQ(json.description(), description);
}

TEST(JSONAccessorsTest, Writes) {
  expectWrites<bool>(&JSON::setBool, &JSON::setBoolValue, true, "true");
  expectWrites<std::string>(&JSON::setString, &JSON::setStringValue, "text", "text");
  expectWrites<double>(&JSON::setDouble, &JSON::setDoubleValue, 2.5, "2.5");
  expectWrites<float>(&JSON::setFloat, &JSON::setFloatValue, 0.5F, "0.5");
  expectWrites<std::int64_t>(&JSON::setInt, &JSON::setIntValue, INT64_MIN, "-9223372036854775808");
  expectWrites<std::uint64_t>(&JSON::setUInt, &JSON::setUIntValue, UINT64_MAX,
                              "18446744073709551615");
  expectWrites<std::int8_t>(&JSON::setInt8, &JSON::setInt8Value, -128, "-128");
  expectWrites<std::uint8_t>(&JSON::setUInt8, &JSON::setUInt8Value, 255, "255");
  expectWrites<std::int16_t>(&JSON::setInt16, &JSON::setInt16Value, -32768, "-32768");
  expectWrites<std::uint16_t>(&JSON::setUInt16, &JSON::setUInt16Value, 65535, "65535");
  expectWrites<std::int32_t>(&JSON::setInt32, &JSON::setInt32Value, -5, "-5");
  expectWrites<std::uint32_t>(&JSON::setUInt32, &JSON::setUInt32Value, UINT32_MAX, "4294967295");
  expectWrites<std::int64_t>(&JSON::setInt64, &JSON::setInt64Value, 7, "7");
  expectWrites<std::uint64_t>(&JSON::setUInt64, &JSON::setUInt64Value, 7, "7");

  expectWrites<Number>(&JSON::setNumber, &JSON::setNumberValue, trueNumber, "true");
  expectWrites<std::vector<JSON>>(&JSON::setArray, &JSON::setArrayValue, {"a"}, "[\n  \"a\"\n]");
  expectWrites<JSONMap>(&JSON::setDictionary, &JSON::setDictionaryValue, {{"a", 1}},
                        "{\n  \"a\": 1\n}");

  JSON json = 1;
  json.setArrayObject(ValueArray{1});
  EXPECT_EQ(json, JSON::makeArray({1}));
  json.setDictionaryObject(ValueMap{{"k", "v"}});
  EXPECT_EQ(json["k"], "v");
  json.setNull(Null());
  EXPECT_EQ(json, nullptr);
  json = 5;
  json.setNull(std::nullopt);
  EXPECT_EQ(json, nullptr);
}

TEST(JSONAccessorsTest, ReadsAndWritesURLs) {
  EXPECT_EQ(JSON("https://example.com/a b?q=ü").url()->absoluteString(),
            "https://example.com/a%20b?q=%C3%BC");
  EXPECT_EQ(JSON("50%").url()->absoluteString(), "50%25");
  for (const JSON& json : {JSON(""), JSON("\xFF"), JSON(1), JSON()}) {
    EXPECT_EQ(json.url(), std::nullopt);
  }
  JSON json;
  json.setURL(URL::parse("http://a/b"));
  EXPECT_EQ(json, "http://a/b");
  json.setURL(std::nullopt);
  EXPECT_EQ(json, nullptr);
}

TEST(JSONAccessorsTest, ComparesValuesOfOneKind) {
  const JSON unknown(Value::unsupported(1));
  const auto array = [](Value v) { return JSON::makeArray({std::move(v)}); };
  const JSON map = JSON::parse(R"({"a":1,"b":[1,2]})");
  using Pairs = std::vector<std::pair<JSON, JSON>>;
  const Pairs ascending = {{1, 2},     {nan, -infinity}, {9007199254740992.0, 9007199254740993},
                           {"a", "b"}, {"a", "ab"},      {"z", "\xC3\xA9"}};
  const Pairs equal = {{1, 1.0},
                       {nan, nan},
                       {"", ""},
                       {true, true},
                       {array(1), array(1.0)},
                       {array(nullptr), array(nullptr)},
                       {map, map},
                       {map, JSON::makeDictionary({{"b", JSON::makeArray({1, 2.0})}, {"a", 1}})},
                       {map["b"], JSON::parse("[1,2]")},
                       {nullptr, nullptr},
                       {nullptr, map["x"]}};
  const Pairs unrelated = {{1, true},
                           {0, false},
                           {1, "1"},
                           {true, false},
                           {array(1), array(2)},
                           {array(1), array(true)},
                           {map, JSON::parse(R"({"a":1,"c":[1,2]})")},
                           {map, JSON::parse(R"({"a":1})")},
                           {nullptr, false},
                           {unknown, unknown},
                           {unknown, nullptr}};
  for (const Pairs* pairs : {&ascending, &equal, &unrelated}) {
    for (const auto& [a, b] : *pairs) {
      SCOPED_TRACE(a.description() + " and " + b.description());
      const bool less = pairs == &ascending, same = pairs == &equal;
      EXPECT_EQ(a == b, same);
      EXPECT_EQ(b == a, same);
      EXPECT_EQ(a != b, !same);
      EXPECT_EQ(a < b, less);
      EXPECT_EQ(b > a, less);
      EXPECT_EQ(a <= b, same || less);
      EXPECT_EQ(b >= a, same || less);
      EXPECT_FALSE(a > b || b < a);
      EXPECT_EQ(a >= b, same);
    }
  }
}

}  // namespace
}  // namespace quorvelkit
