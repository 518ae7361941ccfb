// SPDX-License-Identifier: Apache-2.0
#include "Backend.h"

#include "Await.h"

#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelKit/QVBaseService.h>
#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/URLError.h>

#include <algorithm>
#include <ostream>

using namespace quorvelkit;

namespace {

constexpr std::size_t maxQuoteLength = 300;

/// Returns the "message" of a JSON error body, else the start of the body.
std::string serverMessage(const Error& error) {
  std::string text = error.localizedDescription();
  if (auto message = JSON::parse(text)["message"].string()) return *message;
  if (text.size() > maxQuoteLength) {
    text.resize(std::min(text.find_last_of(' ', maxQuoteLength), maxQuoteLength));
    text += "...";
  }
  return text;
}

std::string backendHint() {
  return "\nThe backend is " + QVBackendless::baseURL() +
         ". Choose another with --backend URL, or start quorvel-sandbox on this machine.";
}

}  // namespace

void Backend::addOptions(CLI::App& command) {
  command.add_option("--backend", url_, "Scheme, host and port of the backend service");
  command.add_flag("--trace", traces_, "Print each exchange with a server");
}

std::optional<std::string> Backend::load(std::ostream& trace) const {
  QVBackendless::setBaseURL(url_);
  // With an unusable URL no request is sent and no handler runs.
  if (!QVBackendless::isUsableBaseURL()) {
    return "The backend's URL is not usable: it needs http or https, and a host, as in "
           "http://127.0.0.1:8080.";
  }
  if (traces_) {
    // Loading the configuration logs in by itself, but does not return the response of the login.
    const auto login =
        await<QVLoginResponse>([](auto handler) { QVBackendless::login(std::move(handler)); });
    traceExchange(trace, *login);
    if (const auto problem = errorText(*login))
      return "The login failed: " + *problem + backendHint();
  }
  QVBaseService::loadConfiguration([] { MainQueue::main().stop(); });
  MainQueue::main().run();
  const auto configuration = QVConfiguration::cachedResponse();
  if (traces_) traceExchange(trace, *configuration);
  if (const auto problem = errorText(*configuration)) {
    return "The configuration was not loaded: " + *problem + backendHint();
  }
  return std::nullopt;
}

void Backend::traceExchange(std::ostream& trace, const QVBaseResponse& response) const {
  if (!traces_ || !response.task()) return;
  const URLRequest& request = response.task()->originalRequest();
  trace << request.httpMethod() << ' ' << request.url().absoluteString() << "\n  ";
  const auto answer = std::dynamic_pointer_cast<const HTTPURLResponse>(response.response());
  if (answer) {
    const std::size_t size = response.data() ? response.data()->size() : 0;
    trace << "status " << answer->statusCode() << ", " << size
          << (size == 1 ? " byte\n" : " bytes\n");
  } else {
    trace << "no answer\n";
  }
}

std::optional<std::string> Backend::errorText(const QVBaseResponse& response) {
  const auto& error = response.error();
  if (!error) return std::nullopt;
  if (error->domain() == URLError::domain) {
    const auto technical = error->technicalDescription();
    return error->localizedDescription() + (technical ? "\n  " + *technical : "");
  }
  return serverMessage(*error) + " (status " + std::to_string(error->code()) + ")";
}
