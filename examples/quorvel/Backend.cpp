// SPDX-License-Identifier: Apache-2.0
#include "Backend.h"

#include "Arguments.h"
#include "Problem.h"
#include "ServerText.h"

#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVResponseKey.h>
#include <QuorvelPlatform/HTTPURLResponse.h>

#include <ostream>

using namespace quorvelkit;

namespace {

/// Requests the configuration without a login. QVConfiguration::get logs in by itself, but does not
/// return the response of the login, which --trace prints.
class ConfigurationAlone : public QVBaseService {
 public:
  static std::shared_ptr<URLSessionDataTask> get(
      std::shared_ptr<QVConfigurationRequest> request,
      QVCompletionHandler<QVConfigurationResponse> completionHandler) {
    QVCallSteps<QVConfigurationResponse> steps;
    steps.prepare = [](const auto& proceed) { proceed(); };
    steps.makeHTTPRequest = [request] {
      auto httpRequest = request->request();
      const std::string header(rawValue(QVResponseKey::userToken));
      if (httpRequest) httpRequest->setValue(QVBackendless::userToken(), header);
      return httpRequest;
    };
    return call(std::move(request), std::move(completionHandler), std::move(steps));
  }
};

using LoginFunction = std::shared_ptr<URLSessionDataTask> (*)(std::shared_ptr<QVLoginRequest>,
                                                              QVCompletionHandler<QVLoginResponse>);

std::string backendHint() {
  const auto url = URL::parse(QVBackendless::baseURL());
  return "\nThe backend is " + (url ? urlText(*url) : "not set") +
         ". Choose another with --backend URL, or start quorvel-sandbox on this machine.";
}

/// Returns why there is no configuration, if there is none.
std::optional<std::string> configurationProblem(const QVCallResult<QVLoginResponse>& login,
                                                const QVConfigurationResponse& configuration) {
  if (const auto problem = problemOf(configuration)) {
    const auto loginProblem = problemOf(*login);
    return loginProblem ? "The login failed: " + *loginProblem
                        : "The configuration was not loaded: " + *problem;
  }
  if (isJSONObject(configuration)) return std::nullopt;
  return "The answer is no configuration: " + answerText(configuration) + '.';
}

}  // namespace

void Backend::addOptions(CLI::App& command) {
  command.add_option("--backend", url_, "Scheme, host and port of the backend service")
      ->check(checkBackendURL);
  command.add_flag("--trace", traces_, "Print each exchange with a server");
}

std::optional<std::string> Backend::load(std::ostream& trace, const QVCallOptions& options) const {
  QVBackendless::setBaseURL(url_);
  if (auto fault = checkBackendURL(url_); !fault.empty()) return "--backend: " + fault;
  const auto login = call<QVLoginRequest, LoginFunction>(
      trace, &QVBackendless::login, std::make_shared<QVLoginRequest>(), options);
  // The configuration is requested also if the login failed: some backends need none.
  const auto configuration =
      call(trace, &ConfigurationAlone::get, std::make_shared<QVConfigurationRequest>(), options);
  if (const auto& notSent = configuration.notSent())
    return notSent->error().localizedDescription() + backendHint();
  if (auto problem = configurationProblem(login, *configuration)) return *problem + backendHint();
  QVConfiguration::setCachedResponse(configuration.response());
  return std::nullopt;
}

void Backend::traceExchange(std::ostream& trace, const QVBaseResponse& response) const {
  if (!traces_ || !response.task()) return;
  const URLRequest& request = response.task()->originalRequest();
  trace << request.httpMethod() << ' ' << request.url() << "\n  ";
  const auto answer = std::dynamic_pointer_cast<const HTTPURLResponse>(response.response());
  if (answer) {
    const std::size_t size = response.data() ? response.data()->size() : 0;
    trace << "status " << answer->statusCode() << ", " << size
          << (size == 1 ? " byte\n" : " bytes\n");
  } else {
    trace << "no answer\n";
  }
}
