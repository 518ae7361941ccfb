// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelKit/QVClassName_p.h>
#include <QuorvelKit/QuorvelKit.h>
#include <QuorvelPlatform/DoubleText.h>

#include <ostream>
#include <typeinfo>
#include <utility>

namespace quorvelkit {

namespace {

std::string queryText(const Value& value) {
  const auto number = value.storedNumber();
  if (number && number->storage() == Number::Storage::float64) {
    return defaultText(number->doubleValue());
  }
  return JSON(value)
      .rawString(TextEncoding::utf8, JSONWritingOptions::none)
      .value_or(std::string());
}

}  // namespace

QVBaseRequest::~QVBaseRequest() = default;

const std::optional<ValueMap>& QVBaseRequest::parameters() const { return parameters_; }
void QVBaseRequest::setParameters(std::optional<ValueMap> parameters) {
  parameters_ = std::move(parameters);
}

bool QVBaseRequest::includeAccessToken() const { return false; }
std::optional<URL> QVBaseRequest::url() { return std::nullopt; }

std::int64_t QVBaseRequest::retryCount() const { return retryCount_; }
void QVBaseRequest::setRetryCount(std::int64_t retryCount) { retryCount_ = retryCount; }
std::int64_t QVBaseRequest::maxNumberOfRetries() const { return maxNumberOfRetries_; }
void QVBaseRequest::setMaxNumberOfRetries(std::int64_t maxNumberOfRetries) {
  maxNumberOfRetries_ = maxNumberOfRetries;
}

std::optional<URLRequest> QVBaseRequest::request() {
  auto ownURL = url();
  if (!ownURL) return std::nullopt;
  URLRequest httpRequest(*std::move(ownURL));
  if (includeAccessToken()) {
    httpRequest.addValue(QuorvelKit::accessToken().value_or(std::string()), "AccessToken");
  }
  return httpRequest;
}

std::optional<URLRequest> QVBaseRequest::deleteRequest() {
  auto httpRequest = request();
  if (httpRequest) httpRequest->setHTTPMethod("DELETE");
  return httpRequest;
}

std::optional<URLRequest> QVBaseRequest::postRequest() {
  auto httpRequest = request();
  if (!httpRequest) return std::nullopt;
  httpRequest->setHTTPMethod("POST");
  const auto& values = parameters();
  if (!values) return httpRequest;
  if (auto body = JSON(*values).rawData()) {
    httpRequest->setValue("application/json", "Content-Type");
    httpRequest->setValue(std::to_string(body->size()), "Content-Length");
    httpRequest->setHTTPBody(*std::move(body));
  }
  return httpRequest;
}

std::string QVBaseRequest::requestString() {
  setParamAdded(false);
  std::string query;
  const auto& values = parameters();
  if (!values) return query;
  for (const auto& [key, value] : *values) {
    query += joiner();
    query += key;
    query += '=';
    query += queryText(value);
  }
  return query;
}

bool QVBaseRequest::paramAdded() const { return paramAdded_; }
void QVBaseRequest::setParamAdded(bool paramAdded) { paramAdded_ = paramAdded; }

std::string QVBaseRequest::joiner() {
  const char* const text = paramAdded() ? "&" : "?";
  setParamAdded(true);
  return text;
}

std::ostream& operator<<(std::ostream& out, const QVBaseRequest& request) {
  out << qualifiedClassName(typeid(request));
  const auto& values = request.parameters();
  if (!values) return out;
  for (const auto& [key, value] : *values)
    out << ' ' << key << "=...";
  return out;
}

std::optional<URL> QVBaseRequest::resourceURL(std::string_view rootURL, std::string_view path,
                                              ValueMap parameters) {
  setParameters(std::move(parameters));
  std::string text(rootURL);
  text += path;
  text += requestString();
  return URL::parse(text);
}

}  // namespace quorvelkit
