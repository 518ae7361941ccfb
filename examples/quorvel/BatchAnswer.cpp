// SPDX-License-Identifier: Apache-2.0
#include "BatchAnswer.h"

#include "ServerText.h"

#include <QuorvelKit/QVRouteResponse.h>
#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/URLError.h>

#include <algorithm>

using namespace quorvelkit;

namespace {

std::string compactText(const JSON& json) {
  return json.rawString(TextEncoding::utf8, JSONWritingOptions::none).value_or("null");
}

/// Returns a value of CSV (RFC 4180) without a line break.
std::string csvText(const Value& value) {
  std::string text = value.text() ? printable(*value.text()) : JSON(value).stringValue();
  if (text.find_first_of("\",") == std::string::npos) return text;
  for (std::size_t at = 0; (at = text.find('"', at)) != std::string::npos; at += 2)
    text.insert(at, 1, '"');
  return '"' + text + '"';
}

/// Returns a JSON text of a server in one line. White space between its values may be line breaks;
/// its strings contain none.
std::string oneLine(std::string_view json) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (json.starts_with(byteOrderMark)) json.remove_prefix(byteOrderMark.size());
  std::string text(json);
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
  return text;
}

}  // namespace

std::optional<BatchError> batchErrorOf(const BatchKind& kind,
                                       const std::shared_ptr<QVBaseResponse>& response,
                                       const std::optional<QVNotSent>& notSent) {
  if (notSent) return BatchError{problemOf(*notSent, kind.server), std::nullopt};
  if (const auto& error = response->error()) {
    BatchError described{printable(*problemOf(*response)), std::nullopt};
    if (error->domain() != URLError::domain) described.status = error->code();
    return described;
  }
  const auto* const route = dynamic_cast<const QVRouteResponse*>(response.get());
  const bool isAnswer = route != nullptr ? route->route() && !route->route()->points().empty()
                                         : isJSONObject(*response);
  if (isAnswer) return std::nullopt;
  BatchError described{std::string("This is no answer of a ") + kind.server.name + ": " +
                           answerText(*response) + '.',
                       std::nullopt};
  if (const auto* http = dynamic_cast<const HTTPURLResponse*>(response->response().get()))
    described.status = http->statusCode();
  return described;
}

std::string BatchFormatter::header() const {
  if (format_ != OutputFormat::csv) return {};
  std::string text = "line";
  for (const BatchColumn& column : columns_)
    text += ',' + std::string(column.name);
  return text + ",error";
}

std::string BatchFormatter::start(std::uint64_t line) const {
  return std::string(BatchOutput::prefix(format_)) + std::to_string(line);
}

std::string BatchFormatter::answerLine(std::uint64_t line, const QVBaseResponse& response) const {
  std::string text = start(line);
  switch (format_) {
    case OutputFormat::ndjson:
      return text + ",\"answer\":" + oneLine(response.data()->view()) + "}\n";
    case OutputFormat::csv:
      for (const BatchColumn& column : columns_)
        text += ',' + csvText(column.value(response));
      return text + ",\n";
    case OutputFormat::geoJSONSequence: break;
  }
  ValueMap properties;
  for (const BatchColumn& column : columns_)
    properties.set(column.name, column.value(response));
  return text + ",\"geometry\":" + compactText(kind_.geometry(response)) +
         ",\"properties\":" + compactText(JSON(Value(std::move(properties)))) + "}\n";
}

std::string BatchFormatter::errorLine(std::uint64_t line, const BatchError& error) const {
  const std::string text = start(line);
  if (format_ == OutputFormat::csv)
    return text + std::string(columns_.size() + 1, ',') + csvText(error.message) + '\n';
  ValueMap object{{"message", error.message}};
  if (error.status) object.set("status", *error.status);
  const JSON wrapped = JSON::makeDictionary({{"error", Value(std::move(object))}});
  const std::string written = compactText(wrapped);
  if (format_ == OutputFormat::ndjson) return text + ',' + written.substr(1) + '\n';
  return text + ",\"geometry\":null,\"properties\":" + written + "}\n";
}
