// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/Calls/QVNotSent.h>
#include <QuorvelKit/QVAddressCandidatesRequest.h>
#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVFindWireFormat_p.h>
#include <QuorvelKit/QVReverseGeocodeRequest.h>
#include <QuorvelKit/QVRouteRequest.h>
#include <QuorvelKit/QVSuggestRequest.h>

#include <string>
#include <utility>

namespace quorvelkit {

namespace {

template <class... Requests>
bool isAnyOf(const QVBaseRequest& request) {
  return (... || (dynamic_cast<const Requests*>(&request) != nullptr));
}

// Returns false if the configuration lacks the root URL of the server that the request needs.
bool hasNeededRootURL(const QVBaseRequest& request, const QVConfigurationResponse& configuration) {
  if (isAnyOf<QVRouteRequest>(request)) return configuration.quorvelNavigationRootURL().has_value();
  if (isAnyOf<QVAddressCandidatesRequest, QVSuggestRequest, QVReverseGeocodeRequest>(request))
    return configuration.quorvelFindRootURL().has_value();
  return true;
}

std::string descriptionOf(QVNotSent::Reason reason) {
  using enum QVNotSent::Reason;
  switch (reason) {
    case unusableBaseURL: return "The base URL of the backend is not usable.";
    case noConfiguration: return "No configuration is loaded.";
    case configurationFailed: return "The configuration could not be loaded";
    case noRootURL: return "The configuration does not name the server for this request.";
    case noURL: return "The request has no valid URL.";
    case handlerDropped: break;
  }
  return "The completion handler of the call was dropped.";
}

}  // namespace

QVNotSent::QVNotSent(Reason reason, std::optional<Error> configurationError)
    : reason_(reason), configurationError_(std::move(configurationError)) {}

QVNotSent QVNotSent::reasonFor(QVBaseRequest& request) try {
  const auto configuration = QVConfiguration::cachedResponse();
  if (!configuration && !QVBackendless::isUsableBaseURL())
    return QVNotSent(Reason::unusableBaseURL);
  if (request.url()) return QVNotSent(Reason::handlerDropped);
  if (isAnyOf<QVConfigurationRequest, QVLoginRequest>(request))
    return QVNotSent(Reason::unusableBaseURL);
  if (!configuration) return QVNotSent(Reason::noConfiguration);
  if (configuration->error()) return QVNotSent(Reason::configurationFailed, configuration->error());
  return QVNotSent(hasNeededRootURL(request, *configuration) ? Reason::noURL : Reason::noRootURL);
} catch (...) {
  return QVNotSent(Reason::handlerDropped);  // An exception from url() drops the handler.
}

Error QVNotSent::error() const {
  std::string text = descriptionOf(reason_);
  if (reason_ == Reason::configurationFailed) {
    // The description is the body of the answer, which can be empty.
    std::string cause = configurationError_ ? configurationError_->localizedDescription() : "";
    if (cause.empty() && configurationError_)
      cause = "error " + std::to_string(configurationError_->code());
    text += cause.empty() ? "." : ": " + cause;
  }
  return Error::described(std::string(domain), static_cast<std::int64_t>(reason_), std::move(text));
}

}  // namespace quorvelkit
