// SPDX-License-Identifier: Apache-2.0
#include "sandbox/page/ExchangeLog.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

namespace quorvelkit::sandbox {
namespace {

constexpr std::size_t maximumExchanges = 100;
constexpr std::size_t maximumBodySize = 20'000;
constexpr std::size_t maximumFields = 50;
constexpr std::size_t maximumFieldSize = 1'000;
constexpr std::size_t shownOfSecret = 4;

/// Returns the first bytes of a text, without a part of a character.
std::string_view beginning(std::string_view text, std::size_t size) {
  if (size >= text.size()) return text;
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U)
    --size;
  return text.substr(0, size);
}

std::string shortened(std::string_view secret) {
  return std::string(beginning(secret, std::min(shownOfSecret, secret.size() / 4))) + "\u2026";
}

/// Whether the name of a header field or of a member of a body is that of a secret.
bool isSecret(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  constexpr std::string_view words[] = {"token",    "key",           "secret",
                                        "password", "authorization", "cookie"};
  return name != "magickey" &&
         std::any_of(std::begin(words), std::end(words),
                     [&](std::string_view word) { return name.find(word) != std::string::npos; });
}

/// Returns the document with shortened values of secret members, at every depth.
JSON withoutSecrets(const JSON& json) {
  switch (json.type()) {
    case JSON::Type::array: {
      ValueArray elements;
      for (const auto& [position, element] : json)
        elements.push_back(withoutSecrets(element).object());
      return JSON(Value(std::move(elements)));
    }
    case JSON::Type::dictionary: {
      ValueMap members;
      for (const auto& [name, value] : json)
        members.set(name, isSecret(name) ? Value(shortened(value.stringValue()))
                                         : withoutSecrets(value).object());
      return JSON(Value(std::move(members)));
    }
    default: return json;
  }
}

/// Shortens the values of secret parameters of a query.
std::string withoutSecrets(const std::string& target) {
  std::string shown;
  for (std::size_t begin = 0; begin < target.size();) {
    const std::size_t end = std::min(target.find_first_of("?&", begin), target.size() - 1) + 1;
    const std::string_view part = std::string_view(target).substr(begin, end - begin);
    const std::size_t equals = part.find('=');
    if (begin > 0 && equals != part.npos && isSecret(std::string(part.substr(0, equals)))) {
      const bool hasNext = part.back() == '&' || part.back() == '?';
      shown += part.substr(0, equals + 1);
      shown += shortened(part.substr(equals + 1)) + (hasNext ? "&" : "");
    } else {
      shown += part;
    }
    begin = end;
  }
  return shown;
}

/// Shortens the secrets of a JSON document. Keeps other bodies of answers, which this program has
/// written; another body of a request is left out.
std::string shownBody(const std::string& body, bool isAnswer) {
  const JSON document = JSON::parse(body);
  std::string shown = body;
  if (document.type() == JSON::Type::dictionary || document.type() == JSON::Type::array) {
    const JSON clean = withoutSecrets(document);
    if (clean != document)
      shown = clean.rawString(TextEncoding::utf8, JSONWritingOptions::none).value_or("");
  } else if (!isAnswer && !body.empty()) {
    return std::to_string(body.size()) + " bytes that are not a JSON object";
  }
  if (shown.size() <= maximumBodySize) return shown;
  const std::string_view begun = beginning(shown, maximumBodySize);
  return std::string(begun) + "\u2026 (" + std::to_string(shown.size() - begun.size()) +
         " bytes more)";
}

/// Returns the fields by name, as [name, value].
ValueArray shownFields(const HTTPRequest& request) {
  ValueArray shown;
  for (const auto& [name, value] : request.fields) {
    if (shown.size() == maximumFields) break;
    const std::string text = printable(std::string(beginning(value, maximumFieldSize)));
    shown.push_back(JSON::makeArray({printable(name), isSecret(name) ? shortened(text) : text}));
  }
  return shown;
}

}  // namespace

void ExchangeLog::add(const HTTPRequest& request, const HTTPAnswer& answer) {
  const JSON exchange = JSON::makeDictionary(
      {{"request", JSON::makeDictionary({{"method", printable(request.method)},
                                         {"target", withoutSecrets(printable(request.target))},
                                         {"fields", Value(shownFields(request))},
                                         {"body", shownBody(request.body, false)}})},
       {"answer", JSON::makeDictionary({{"status", answer.status},
                                        {"type", answer.contentType},
                                        {"size", static_cast<std::int64_t>(answer.body.size())},
                                        {"body", shownBody(answer.body, true)}})}});
  const std::lock_guard lock(mutex_);
  exchanges_.emplace_back(++last_, exchange);
  if (exchanges_.size() > maximumExchanges) exchanges_.pop_front();
}

JSON ExchangeLog::after(std::int64_t number) const {
  ValueArray exchanges;
  const std::lock_guard lock(mutex_);
  for (const auto& [own, exchange] : exchanges_) {
    if (own > number) exchanges.push_back(exchange);
  }
  return JSON::makeDictionary({{"last", last_}, {"exchanges", Value(std::move(exchanges))}});
}

}  // namespace quorvelkit::sandbox
