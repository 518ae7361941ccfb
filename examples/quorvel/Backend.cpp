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

constexpr std::size_t longestQuote = 300;

/// What a server says about a failure: the message of its JSON document, else its text.
std::string serversWords(const Error& error) {
  std::string text = error.localizedDescription();
  if (auto message = JSON::parse(text)["message"].string()) return *message;
  if (text.size() > longestQuote) {
    text.resize(std::min(text.find_last_of(' ', longestQuote), longestQuote));
    text += "...";
  }
  return text;
}

std::string howToChooseBackend() {
  return "\nThe backend asked was " + QVBackendless::baseURL() +
         ". Choose another with --backend URL; quorvel-sandbox starts one on this machine.";
}

}  // namespace

void Backend::addOptions(CLI::App& command) {
  command.add_option("--backend", url_, "Scheme, host and port of the backend service");
  command.add_flag("--trace", traces_, "Tell about each exchange with a server");
}

std::optional<std::string> Backend::load(std::ostream& trace) const {
  QVBackendless::setBaseURL(url_);
  // Without a URL nothing is sent and no handler is called.
  if (!QVBackendless::isUsableBaseURL()) {
    return "The backend's URL is not usable: it needs http or https, and a host, as in "
           "http://127.0.0.1:8080.";
  }
  if (traces_) {
    // The login is part of loading the configuration; made before, it shows its answer.
    const auto login =
        await<QVLoginResponse>([](auto handler) { QVBackendless::login(std::move(handler)); });
    traceExchange(trace, *login);
    if (const auto failed = problem(*login))
      return "Login failed: " + *failed + howToChooseBackend();
  }
  QVBaseService::loadConfiguration([] { MainQueue::main().stop(); });
  MainQueue::main().run();
  const auto configuration = QVConfiguration::cachedResponse();
  if (traces_) traceExchange(trace, *configuration);
  if (const auto failed = problem(*configuration)) {
    return "The configuration cannot be loaded: " + *failed + howToChooseBackend();
  }
  return std::nullopt;
}

void Backend::traceExchange(std::ostream& trace, const QVBaseResponse& response) const {
  if (!traces_ || !response.task()) return;
  const URLRequest& request = response.task()->originalRequest();
  trace << request.httpMethod() << ' ' << request.url().absoluteString() << "\n  ";
  const auto answer = std::dynamic_pointer_cast<const HTTPURLResponse>(response.response());
  if (answer) {
    trace << answer->statusCode() << ' ' << HTTPURLResponse::localizedString(answer->statusCode())
          << ", " << (response.data() ? response.data()->size() : 0) << " bytes\n";
  } else {
    trace << "no answer\n";
  }
}

std::optional<std::string> Backend::problem(const QVBaseResponse& response) {
  const auto& error = response.error();
  if (!error) return std::nullopt;
  if (error->domain() == URLError::domain) {
    const auto technical = error->technicalDescription();
    return error->localizedDescription() + (technical ? "\n  " + *technical : "");
  }
  return serversWords(*error) + " (status " + std::to_string(error->code()) + ")";
}
