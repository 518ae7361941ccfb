// SPDX-License-Identifier: Apache-2.0
#include "Problem.h"

#include "ServerText.h"

#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/URLError.h>

#include <algorithm>
#include <cstddef>

using namespace quorvelkit;

namespace {

constexpr std::size_t maxQuoteLength = 300;

bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// Returns the "message" of a JSON error body, else the start of the body. The phrase of the status
/// replaces HTML and an empty text.
std::string serverMessage(const Error& error) {
  std::string text = error.localizedDescription();
  if (auto message = JSON::parse(text)["message"].string()) text = *std::move(message);
  const std::size_t begin = text.find_first_not_of(" \t\r\n");
  if (begin == std::string::npos || text[begin] == '<')
    return std::string(HTTPURLResponse::localizedString(static_cast<int>(error.code())));
  if (text.size() > maxQuoteLength) {
    std::size_t end = text.find_last_of(' ', maxQuoteLength);
    if (end == std::string::npos) end = maxQuoteLength;
    while ((static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
      --end;
    text.resize(end);
    text += "...";
  }
  return printable(text);
}

}  // namespace

std::optional<std::string> problemOf(const QVBaseResponse& response) {
  const auto& error = response.error();
  if (!error) return std::nullopt;
  if (error->domain() == URLError::domain) {
    const auto technical = error->technicalDescription();
    return error->localizedDescription() + (technical ? "\n  " + printable(*technical) : "");
  }
  return serverMessage(*error) + " (status " + std::to_string(error->code()) + ")";
}

std::string problemOf(const QVNotSent& notSent, const Server& server) {
  const std::string name = server.name;
  const std::string itsOperator = "Its operator must set " + std::string(server.key);
  switch (notSent.reason()) {
    case QVNotSent::Reason::noRootURL:
      return "The backend's configuration names no " + name + ". " + itsOperator + '.';
    case QVNotSent::Reason::noURL:
      return "The root URL of the " + name + " in the backend's configuration is no URL. " +
             itsOperator + " to a URL.";
    default: return printable(notSent.error().localizedDescription());
  }
}

bool isJSONObject(const QVBaseResponse& response) {
  return response.json() && response.json()->type() == JSON::Type::dictionary;
}

std::string answerText(const QVBaseResponse& response) {
  const auto* const answer = dynamic_cast<const HTTPURLResponse*>(response.response().get());
  if (answer == nullptr) return "there is none";
  std::string text = urlText(answer->url());
  text.erase(std::min(text.find('?'), text.size()));
  const bool isEmpty = !response.data() || isBlank(response.data()->view());
  const std::string type = printable(answer->mimeType().value_or("text of no type"));
  return text + " sent " + (isEmpty ? "nothing" : type) + " with status " +
         std::to_string(answer->statusCode());
}
