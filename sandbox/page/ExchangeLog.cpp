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
constexpr std::size_t shownOfSecret = 4;

std::string shortened(std::string_view secret) {
  return std::string(secret.substr(0, std::min(shownOfSecret, secret.size() / 4))) + "\u2026";
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

/// Replaces what is no printable ASCII character, so that the text can be a part of a JSON
/// document.
std::string printable(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
  return text;
}

/// Shortens the values of secret members of a JSON object. Keeps other bodies of answers, which
/// this program has written; a request body that is no JSON object is left out.
std::string shownBody(const std::string& body, bool isAnswer) {
  JSON document = JSON::parse(body);
  std::string shown = body;
  if (document.type() == JSON::Type::dictionary) {
    bool changed = false;
    for (const auto& [name, value] : JSON(document)) {
      if (!value.string() || !isSecret(name)) continue;
      document.set(name, shortened(value.stringValue()));
      changed = true;
    }
    if (changed) shown = document.rawData()->view();
  } else if (!isAnswer && !body.empty()) {
    return "(" + std::to_string(body.size()) + " bytes that are no JSON object)";
  }
  if (shown.size() <= maximumBodySize) return shown;
  std::size_t end = maximumBodySize;
  // Does not cut a character of several bytes.
  while ((static_cast<unsigned char>(shown[end]) & 0xC0U) == 0x80U)
    --end;
  return shown.substr(0, end) + "\u2026 (" + std::to_string(shown.size() - end) + " bytes more)";
}

}  // namespace

void ExchangeLog::add(const HTTPRequest& request, const HTTPAnswer& answer) {
  ValueArray fields;
  for (const auto& [name, value] : request.fields) {
    const std::string text = isSecret(name) ? shortened(value) : value;
    fields.push_back(JSON::makeArray({printable(name), isSecret(name) ? text : printable(text)}));
  }
  const JSON exchange = JSON::makeDictionary(
      {{"request", JSON::makeDictionary({{"method", printable(request.method)},
                                         {"target", printable(request.target)},
                                         {"fields", Value(std::move(fields))},
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
