// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelKit/JSON/ValueAccess_p.h>
#include <QuorvelPlatform/PercentEncoding.h>

namespace quorvelkit {

namespace {

// Implements boolValue() of a text.
bool parseBool(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
  text.remove_prefix(std::min(start, text.size()));
  if (!text.empty() && (text[0] == '+' || text[0] == '-')) text.remove_prefix(1);
  const std::size_t first = text.find_first_not_of('0');
  return first != std::string_view::npos &&
         std::string_view("YyTt123456789").find(text[first]) != std::string_view::npos;
}

}  // namespace

bool JSON::boolValue() const {
  if (const std::optional<std::string_view> text = value_.text()) return parseBool(*text);
  const std::optional<Number> stored = number();
  return stored && stored->boolValue();
}

std::optional<std::string> JSON::string() const {
  const std::optional<std::string_view> text = value_.text();
  return text ? std::optional(std::string(*text)) : std::nullopt;
}

std::string JSON::stringValue() const {
  if (const std::optional<std::string_view> text = value_.text()) return std::string(*text);
  if (const std::optional<bool> truth = bool_()) return *truth ? "true" : "false";
  const std::optional<Number> stored = number();
  return stored ? stored->text() : std::string();
}

Number JSON::numberValue() const {
  if (const std::optional<std::string_view> text = value_.text()) {
    const Decimal decimal = Decimal::parse(*text);
    return decimal.isNotANumber() ? Decimal() : decimal;
  }
  return number().value_or(Number(0.0));
}

std::optional<Null> JSON::null_() const noexcept {
  return type() == Type::null ? std::optional(Null()) : std::nullopt;
}

std::optional<URL> JSON::url() const {
  const std::optional<std::string_view> text = value_.text();
  if (!text) return std::nullopt;
  const std::optional<std::string> encoded = percentEncodedForQuery(*text);
  return encoded ? URL::parse(*encoded) : std::nullopt;
}

void JSON::setURL(const std::optional<URL>& value) & {
  setObject(value ? Value(value->absoluteString()) : Value());
}

std::optional<std::vector<JSON>> JSON::array() const {
  if (type() != Type::array) return std::nullopt;
  std::vector<JSON> elements;
  elements.reserve(size());
  for (std::size_t i = 0; i < size(); ++i)
    elements.push_back(JSON(value_.element(i)));
  return elements;
}

void JSON::setArray(const std::optional<std::vector<JSON>>& value) & {
  *this = value ? JSON(*value) : JSON();
}

std::optional<JSONMap> JSON::dictionary() const {
  if (type() != Type::dictionary) return std::nullopt;
  JSONMap members;
  members.reserve(size());
  for (std::size_t i = 0; i < size(); ++i) {
    const auto [key, member] = value_.memberAt(i);
    members.set(key, JSON(member));
  }
  return members;
}

void JSON::setDictionary(const std::optional<JSONMap>& value) & {
  *this = value ? JSON(*value) : JSON();
}

}  // namespace quorvelkit
