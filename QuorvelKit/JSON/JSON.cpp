// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Failure_p.h>
#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelKit/JSON/Parser_p.h>
#include <QuorvelKit/JSON/ValueAccess_p.h>

namespace quorvelkit {

using detail::ValueAccess;
using detail::ValueTag;

std::optional<JSON::Type> JSON::typeFromRawValue(std::int64_t rawValue) noexcept {
  if (rawValue < 0 || rawValue > static_cast<int>(Type::unknown)) return std::nullopt;
  return static_cast<Type>(rawValue);
}

JSON::JSON(const Data& data, JSONReadingOptions options, std::optional<Error>* error) {
  std::string problem;
  std::optional<Value> value = detail::parseDocument(data, problem);
  if (value && options != JSONReadingOptions::allowFragments && !ValueAccess::isArray(*value) &&
      !ValueAccess::isMap(*value)) {
    problem = "The document is neither an array nor a map";
    value.reset();
  }
  if (error) {
    *error = value ? std::nullopt
                   : std::optional(Error::described(std::string(ErrorDomain), ErrorInvalidJSON,
                                                    std::move(problem)));
  }
  if (value) value_ = *std::move(value);
}

JSON JSON::parse(std::string_view text, JSONReadingOptions options, std::optional<Error>* error) {
  return JSON(Data(std::string(text)), options, error);
}

JSON::JSON(const std::vector<JSON>& elements) {
  ValueArray array;
  array.reserve(elements.size());
  for (const JSON& element : elements)
    array.push_back(element.object());
  value_ = Value(std::move(array));
}

JSON::JSON(const JSONMap& members) {
  ValueMap map;
  map.reserve(members.size());
  for (const auto& [key, member] : members)
    map.set(key, member.object());
  value_ = Value(std::move(map));
}

JSON JSON::makeArray(std::initializer_list<Value> elements) { return Value(ValueArray(elements)); }

JSON JSON::makeDictionary(std::initializer_list<std::pair<std::string, Value>> members) {
  return Value(ValueMap(members));
}

std::optional<JSON> JSON::fromRawValue(Value object) {
  JSON json(std::move(object));
  return json.type() == Type::unknown ? std::nullopt : std::optional(std::move(json));
}

JSON::Type JSON::type() const noexcept {
  if (ValueAccess::tag(value_) == ValueTag::unknown) return Type::unknown;
  switch (value_.kind()) {
    case ValueView::Kind::null: return Type::null;
    case ValueView::Kind::boolean: return Type::bool_;
    case ValueView::Kind::number: return Type::number;
    case ValueView::Kind::text: return Type::string;
    case ValueView::Kind::array: return Type::array;
    case ValueView::Kind::map: return Type::dictionary;
    case ValueView::Kind::unsupported: break;
  }
  return Type::unknown;
}

std::optional<Error> JSON::error() const { return detail::failureError(value_); }

bool JSON::exists() const noexcept { return !detail::isNotExist(value_); }

void JSON::becomeUnknown() noexcept {
  value_ = Value();
  ValueAccess::bits(value_) = detail::ValueBits::make(0, ValueTag::unknown);
}

}  // namespace quorvelkit
