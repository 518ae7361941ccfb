// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/JSON.h>

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <sstream>

namespace quorvelkit {
namespace {

using namespace std::string_literals;

TEST(JSONOutputTest, WritesCompactPrettyAndSortedText) {
  const JSON json =
      JSON::parse(R"({"b":[1,2.5,"\u00e9\"\\\n\u0001\u007f/"],"a":{},"c":[],"":null})");
  EXPECT_EQ(json.rawData()->view(),
            "{\"b\":[1,2.5,\"\xC3\xA9\\\"\\\\\\n\\u0001\x7F/\"],\"a\":{},\"c\":[],\"\":null}");
  EXPECT_EQ(json.rawString(), json.description());
  EXPECT_EQ(json.description(),
            "{\n  \"b\": [\n    1,\n    2.5,\n    \"\xC3\xA9\\\"\\\\\\n\\u0001\x7F/\"\n  ],\n"
            "  \"a\": {},\n  \"c\": [],\n  \"\": null\n}");
  EXPECT_THAT(
      std::string(
          json.rawData(JSONWritingOptions::sortedKeys | JSONWritingOptions::prettyPrinted)->view()),
      testing::StartsWith("{\n  \"\": null,\n  \"a\": {},"));
  std::ostringstream out;
  out << json;
  EXPECT_EQ(out.str(), json.description());
}

TEST(JSONOutputTest, EscapesAtEveryOffset) {
  const std::pair<std::string, const char*> cases[] = {
      {"\"", R"(\")"},          {"\\", R"(\\)"},   {"\x1F", R"(\u001f)"},
      {"\0"s, R"(\u0000)"},     {"\t", R"(\t)"},   {"/", "/"},
      {"\xC3\xA9", "\xC3\xA9"}, {"\xC3", nullptr}, {"\xC3\"", nullptr},
  };
  for (const auto& [text, written] : cases) {
    for (std::size_t before = 0; before < 20; ++before) {
      const std::string left(before, 'a'), right(20 - before, '!');
      const auto data = JSON::makeArray({left + text + right + text}).rawData();
      ASSERT_EQ(data.has_value(), written != nullptr) << before;
      if (!data) continue;
      EXPECT_EQ(data->view(), "[\"" + left + written + right + written + "\"]");
    }
  }
}

TEST(JSONOutputTest, RejectsValuesThatJSONCannotRepresent) {
  std::vector<JSON> refused = {
      1, "text", true, JSON(), JSON(ValueMap{{"\xC3", 1}}), JSON(Value::unsupported(1))};
  for (const Value& leaf : {Value(std::numeric_limits<double>::infinity()), Value(std::nan("")),
                            Value(Decimal::notANumber()), Value("\xFF"), Value::unsupported(1)})
    refused.push_back(JSON::makeDictionary({{"a", JSON::makeArray({leaf})}}));
  for (const JSON& json : refused) {
    std::optional<Error> error;
    EXPECT_EQ(json.rawData(JSONWritingOptions::none, &error), std::nullopt);
    EXPECT_EQ(error, Error::described(std::string(ErrorDomain), 490, "JSON is invalid"));
    EXPECT_EQ(json.description() == "unknown", !json.empty() || json.type() == JSON::Type::unknown);
  }
  EXPECT_EQ(JSON::makeArray({Decimal::parse("1e100"), -0.0, UINT64_MAX}).rawData()->view(),
            "[1e+100,-0,18446744073709551615]");
}

TEST(JSONOutputTest, RawStringDecodesBytesWithEncoding) {
  for (const JSON& scalar : {JSON("t\xC3\xA9"), JSON(42), JSON(2.5), JSON(true), JSON()})
    EXPECT_EQ(scalar.rawString(TextEncoding::utf32), scalar.description());
  EXPECT_EQ(JSON(Value::unsupported(1)).rawString(), std::nullopt);
  const JSON accented = JSON::makeArray({"\xC3\xA9"});
  const auto decoded = [](const JSON& json, TextEncoding encoding) {
    return json.rawString(encoding, JSONWritingOptions::none);
  };
  EXPECT_EQ(decoded(accented, TextEncoding::utf8), "[\"\xC3\xA9\"]");
  EXPECT_EQ(decoded(accented, TextEncoding::ascii), std::nullopt);
  EXPECT_EQ(decoded(accented, TextEncoding::isoLatin1), "[\"\xC3\x83\xC2\xA9\"]");
  EXPECT_EQ(decoded(JSON::makeArray({1}), TextEncoding::ascii), "[1]");
  EXPECT_EQ(decoded(JSON::makeArray({}), TextEncoding::utf16BigEndian), "\u5B5D");
}

TEST(JSONOutputTest, DecodesValidBytesOfEachEncoding) {
  using E = TextEncoding;
  const std::tuple<std::string, E, const char*> texts[] = {
      {"\0a\x20\xAC"s, E::utf16, "a\u20AC"},
      {"\xFE\xFF\0a"s, E::utf16, "a"},
      {"\xFF\xFE\x61\0"s, E::utf16, "a"},
      {"\xFE\xFF\0a"s, E::utf16BigEndian, "\uFEFFa"},
      {"a\0"s, E::utf16LittleEndian, "a"},
      {"\x3D\xD8\0\xDE"s, E::utf16LittleEndian, "\U0001F600"},
      {"\0\0\0a"s, E::utf32, "a"},
      {"\0\0\xFE\xFF\0\0\0a"s, E::utf32, "a"},
      {"\xFF\xFE\0\0\x61\0\0\0"s, E::utf32, "a"},
      {"\0\1\xF6\0"s, E::utf32BigEndian, "\U0001F600"},
      {"\0\xF6\1\0"s, E::utf32LittleEndian, "\U0001F600"},
      {"\xE9"s, E::isoLatin1, "\u00E9"}};
  for (const auto& [bytes, encoding, text] : texts)
    EXPECT_EQ(decodedText(bytes, encoding), text) << static_cast<int>(encoding);
  for (const std::string& bytes : {"\xD8\x3D"s, "\xD8\x3D\0a"s, "\xDE\0"s, "\0"s})
    EXPECT_EQ(decodedText(bytes, E::utf16BigEndian), std::nullopt) << testing::PrintToString(bytes);
  for (const std::string& bytes : {"\0\x11\0\0"s, "\0\0\xD8\0"s, "\0\0\0"s})
    EXPECT_EQ(decodedText(bytes, E::utf32BigEndian), std::nullopt) << testing::PrintToString(bytes);
  EXPECT_FALSE(decodedText("\xE9", E::utf8) || decodedText("\x80", E::ascii));
  for (int encoding = 0; encoding <= static_cast<int>(E::utf32LittleEndian); ++encoding)
    EXPECT_EQ(decodedText("", static_cast<E>(encoding)), "");
}

}  // namespace
}  // namespace quorvelkit
