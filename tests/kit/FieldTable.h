// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseObject.h>
#include <QuorvelPlatform/DoubleText.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quorvelkit::test {

inline std::string show(const std::string& text) { return text; }
inline std::string show(double number) { return defaultText(number); }
inline std::string show(std::int64_t number) { return std::to_string(number); }
inline std::string show(bool truth) { return truth ? "true" : "false"; }
inline std::string show(const ValueMap& map) {
  return JSON(map).rawString(TextEncoding::utf8, JSONWritingOptions::none).value_or("unwritable");
}
inline std::string show(const std::vector<std::string>& texts) {
  std::string joined = "[";
  for (const std::string& text : texts)
    joined += text + ';';
  return joined + ']';
}
template <RawRepresentable E>
std::string show(E value) {
  return std::string(rawValue(value));
}
template <class T>
std::string show(const std::optional<T>& value) {
  return value ? show(*value) : "absent";
}

/// What a property reads: the kind that its member must have.
enum class Kind { text, number, integer, boolean, texts, map, word };

/// One property of a model: the member it reads, what passes, and what it is otherwise.
template <class Model>
struct Field {
  std::string key;
  Kind kind;
  std::function<std::string(const Model&)> read;
  std::string otherwise = "absent";
};

/// Reads every property of a model from documents that have it present, absent, null and of every
/// kind that JSON has. The model's members stand inside `before` and `after`.
template <class Model>
void checkFields(const std::vector<Field<Model>>& fields, const std::string& before = "",
                 const std::string& after = "") {
  // What each kind lets pass of all values, and as what.
  const std::map<Kind, std::map<std::string, std::string>> passing = {
      {Kind::text, {{R"("a text")", "a text"}, {R"("")", ""}}},
      {Kind::number,
       {{"3", "3.0"},
        {"3.0", "3.0"},
        {"3.5", "3.5"},
        {"1e300", "1e+300"},
        {"9223372036854775808", "9.22337203685478e+18"}}},
      {Kind::integer, {{"3", "3"}, {"3.0", "3"}}},
      {Kind::boolean, {{"true", "true"}, {"false", "false"}}},
      {Kind::texts, {{R"(["a","b"])", "[a;b;]"}, {"[]", "[]"}}},
      {Kind::map, {{"{}", "{}"}, {R"({"a":1})", R"({"a":1})"}}},
      {Kind::word, {{R"("")", ""}}},
  };
  std::vector<std::string> samples = {"null", R"(["a",1])", R"("3")", R"("true")"};
  for (const auto& [kind, values] : passing) {
    for (const auto& value : values)
      samples.push_back(value.first);
  }
  const auto document = [&](const std::string& members) {
    return JSON::parse(before + "{" + members + "}" + after);
  };
  for (const Field<Model>& field : fields) {
    EXPECT_EQ(field.read(Model(document(R"("other":1)"))), field.otherwise) << field.key;
    EXPECT_EQ(field.read(Model(JSON::parse("[1]"))), field.otherwise) << field.key;
    for (const std::string& sample : samples) {
      const Model model(document('"' + field.key + "\":" + sample));
      const auto& itsPassing = passing.at(field.kind);
      const auto found = itsPassing.find(sample);
      std::string expected = found != itsPassing.end() ? found->second : field.otherwise;
      if (field.kind == Kind::text && found == itsPassing.end() && sample.front() == '"') {
        expected = sample.substr(1, sample.size() - 2);
      }
      EXPECT_EQ(field.read(model), expected) << field.key << ": " << sample;
    }
  }
}

/// A row of the table: the property's name, in the model and on the wire.
#define FIELD(Model, key, kind, property, ...)                    \
  ::quorvelkit::test::Field<Model> {                              \
    key, ::quorvelkit::test::Kind::kind, [](const Model& model) { \
      return ::quorvelkit::test::show(model.property());          \
    } __VA_OPT__(, ) __VA_ARGS__                                  \
  }

}  // namespace quorvelkit::test
