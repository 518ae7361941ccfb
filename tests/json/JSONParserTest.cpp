// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/JSON.h>

#include <gmock/gmock.h>
#include <tests/support/JSONOracle.h>

#include <cmath>
#include <iterator>
#include <random>
#include <sstream>

namespace quorvelkit {
namespace {

using namespace std::string_literals;

// Parses a text; absent on failure.
std::optional<JSON> parsed(const std::string& text, std::string* problem = nullptr) {
  std::optional<Error> error;
  JSON json(Data(text), JSONReadingOptions::allowFragments, &error);
  if (error && problem) *problem = error->localizedDescription();
  return error ? std::nullopt : std::optional(std::move(json));
}

// Both parsers must accept the same texts and return equal values.
void expectLikeOracle(const std::string& text) {
  ASSERT_EQ(parsed(text), parsedByOracle(text)) << testing::PrintToString(text);
}

const char* const sampleText = R"( {"points" : [ {"lat":39.3002,"lon":-76.5403,"t":0.5e1,"d":1E-2,
  "edge":12,"node":-3,"turn":{"dir":"left","say":"Links \"ab\" \u00e9\ud83d\ude00\/\\\b\f\n\r\t"}},
  {"lat":1,"lon":2,"t":3,"d":4,"edge":5,"node":6}, true, false, null, [], {}, "", "größe €😀",
  18446744073709551615, -9223372036854775808, 123456789012345678901234567890]} )";

// The parser has a faster function for numbers that are not near the end of the document.
const std::string spaces(64, ' ');

// Numbers, escapes and invalid documents.
TEST(JSONParserTest, AgreesWithOtherParserOnSmallTexts) {
  const std::string zeros(400, '0');
  std::vector<std::string> texts = {
      "0." + zeros + "1e400", '1' + zeros + "e-400", '1' + zeros, "[]\0"s, "\"\0\""s,
      "\xFE\xFF\0[\0]"s};
  for (const char* text : {"", " ", "1 2", "[1 2]", "{\"a\" 1}", "{\"a\":1 \"b\":2}", "\"\n\"",
                           "\xEF\xBB\xBF", "\xEF\xBB\xBF\t\r\n true ", "{\"\xFF\":1}"})
    texts.emplace_back(text);
  // The limits of UTF-8 and of strings.
  std::istringstream strings(
      "\xC2\x80\xDF\xBF \xE0\xA0\x80\xEF\xBF\xBF \xED\x9F\xBF\xEE\x80\x80 "
      "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF \xC0\x80 \xC1\xBF \xE0\x9F\xBF "
      "\xED\xA0\x80 \xED\xBF\xBF \xF0\x8F\xBF\xBF \xF4\x90\x80\x80 \x7F \x1F "
      "\xF5\x80\x80\x80 \x80 a\xC3 \xE2\x82 \xF0\x9F\x98 \xC3\x28 \xE2\x28\xA1 \xFF");
  for (std::string bytes; strings >> bytes;)
    texts.push_back('"' + bytes + '"');
  std::istringstream words(
      R"(0 -0 -0.0 3 3.0 9223372036854775807 -9223372036854775808 9223372036854775808
         18446744073709551615 18446744073709551616 36893488147419103232 -9223372036854775809 0.1
         12345678901.25 123456789012345678 0.1234567890123456 0.12345678901234567
         1.2345678901234567890123456789e1
         9007199254740993.0 123456789012345678.5 1e22 1e23 1.7976931348623157e308 5e-324
         2.2250738585072011e-308 1e-400 -1e-400 0e999999999999999999999 1e-99999999999999999999
         nul truex True NaN Infinity - +1 01 -01 1. .5 1e 1e+ 0x10 1e400 -1e400 1e309 [1e999]
         1e99999999999999999999 [ ] [1 [1,] [,1] [1} []// { } {"a"} {"a":} {"a":1,} {a:1} {1:2}
         {"a":1] {"a":1,"\ 'a' " "a "\ "\x" "\u12" "\u12g4" "\ud800" "\udc00" "\ud800\u0041"
         "\ud800x" "\u0000\u007f\u0080\u07ff\u0800\uffff\ud800\udc00\uDBFF\uDFFF")");
  texts.insert(texts.end(), std::istream_iterator<std::string>(words), {});
  for (const std::string& text : texts) {
    SCOPED_TRACE(testing::PrintToString(text));
    const std::optional<JSON> expected = parsedByOracle(text);
    std::string problem;
    for (const auto& found : {parsed(text, &problem), parsed(text + spaces)}) {
      ASSERT_EQ(found, expected);
      if (!found || !found->number()) continue;
      EXPECT_EQ(found->number()->storage(), expected->number()->storage());
      EXPECT_EQ(std::signbit(found->doubleValue()), std::signbit(expected->doubleValue()));
    }
    EXPECT_EQ(problem.find(" at byte ") == problem.npos, expected.has_value()) << problem;
  }
}

TEST(JSONParserTest, DuplicateKeyKeepsFirstPositionAndLastValue) {
  EXPECT_EQ(parsed(R"({"a":1,"b":2,"a":{"a":3,"a":4},"c":5,"b":6})")
                ->rawString(TextEncoding::utf8, JSONWritingOptions::none),
            R"({"a":{"a":4},"b":6,"c":5})");
  EXPECT_EQ(parsed(R"({"\u0061":1,"a":2})")->size(), 1U);
  // Sizes around those from which a map has a hash table or an index, and more keys than the parser
  // has bits for; frozen and mutable maps.
  for (const int count : {1, 16, 17, 63, 64, 65, 130, 1000, 20000}) {
    std::string text;
    for (int i = 0; i < 2 * count; ++i)
      text += ",\"key" + std::to_string(i % count * 7919) + "\":" + std::to_string(i);
    const JSON map = parsed('{' + text.substr(1) + '}').value();
    JSON changed = map;
    changed.set("added", -1);
    ASSERT_EQ(map.size(), static_cast<std::size_t>(count));
    ASSERT_EQ(changed.size(), map.size() + 1);
    for (int i = 0; i < count; ++i) {
      const std::string key = "key" + std::to_string(i * 7919);
      ASSERT_EQ(map[key], count + i);
      ASSERT_EQ(changed[key], count + i);
      ASSERT_EQ(map[JSONIndex::dictionary(static_cast<std::size_t>(i))].first, key);
      ASSERT_FALSE(map[key + "x"].exists());
    }
    EXPECT_FALSE(map["added"].exists());
  }
}

TEST(JSONParserTest, FindsMembersAtEveryPosition) {
  // "turn" and "conn", and "points" and "x", share a look-up hint.
  const std::string keys[] = {"a", "points", "x", "turn", "conn", "providerUrl", "reviewCount"};
  std::mt19937 random(42);
  for (int round = 0; round < 2000; ++round) {
    std::string text;
    for (auto maps = 1 + random() % 4; maps > 0; --maps) {
      std::string members;
      for (auto count = random() % 6; count > 0; --count)
        members += ",\"" + keys[random() % 7] + "\":" + std::to_string(random() % 100);
      text += ",{" + members.substr(members.empty() ? 0 : 1) + "}";
    }
    text = "[" + text.substr(1) + "]";
    const JSON found = parsed(text).value();
    const JSON expected = parsedByOracle(text).value();
    for (std::size_t map = 0; map < expected.size(); ++map) {
      for (const std::string& key : keys)
        ASSERT_EQ(found[map][key].number(), expected[map][key].number()) << key << " in " << text;
    }
  }
}

TEST(JSONParserTest, WrongKeyPredictionsAreDetected) {
  // The key after "x" alternates, so that the parser makes wrong predictions.
  const std::string keys[] = {"a",        "ab",        "abcdefg", "abcdefgh",     "abcdefghi",
                              "abcdefgX", "abcdefghX", "a\\\"",   "a\\\\",        "\\u0061b",
                              "",         "\\u00e9",   "\u00E9e", "abcdefgh\\\"", "abcdefghij"};
  for (const std::string& first : keys) {
    for (const std::string& second : keys) {
      const std::string one = "{\"x\":0,\"" + first + "\":1}";
      const std::string two = "{\"x\":0,\"" + second + "\":2}";
      expectLikeOracle("[" + one + "," + two + "," + one + "," + one + "]");
    }
  }
  EXPECT_FALSE(parsed(R"([{"x":0,"a\"":1},{"x":0,"a"":1}])"));
  EXPECT_FALSE(parsed(R"([{"x":0,"abcdefgh":1},{"x":0,"abcdefgh)"));
}

TEST(JSONParserTest, AgreesWithOtherParserOnTruncationsAndBitFlips) {
  const std::string text = sampleText;
  ASSERT_NO_FATAL_FAILURE(expectLikeOracle(text));
  for (std::size_t i = 0; i < text.size(); ++i) {
    ASSERT_NO_FATAL_FAILURE(expectLikeOracle(text.substr(0, i)));
    std::string flipped = text;
    for (const unsigned bit : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
      flipped[i] = static_cast<char>(static_cast<unsigned char>(text[i]) ^ (1U << bit));
      ASSERT_NO_FATAL_FAILURE(expectLikeOracle(flipped));
    }
  }
}

}  // namespace
}  // namespace quorvelkit
