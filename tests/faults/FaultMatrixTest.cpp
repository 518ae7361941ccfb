// SPDX-License-Identifier: Apache-2.0
// Runs every service call against every row of the fault table, with the real session.
#include "tests/faults/FaultTable.h"
#include "tests/faults/Scripts.h"
#include "tests/kit/FakeServer.h"
#include "tests/support/Resolver.h"

#include <QuorvelKit/QVConfiguration.h>
#include <QuorvelKit/QVFind.h>
#include <QuorvelKit/QVNavigation.h>
#include <QuorvelKit/QuorvelKit.h>
#include <QuorvelPlatform/URLError.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <thread>

namespace quorvelkit {
namespace {

using namespace quorvelkit::test;

// A request with secrets in it and with the changes of a row.
template <class Request>
struct TestedRequest : Request {
  using Request::Request;
  const Fault* fault = nullptr;

  bool includeAccessToken() const override { return true; }
  std::optional<URLRequest> request() override {
    auto made = Request::request();
    if (!made) return made;
    made->setValue("canary-authorization", "Authorization");
    made->setValue("own=canary-cookie", "Cookie");
    for (const char* lineEnd : {"\r\n", "\r", "\n "}) {
      made->setValue(std::string("a") + lineEnd + "Smuggled: 1", "X-Own");
      made->addValue("1", std::string("X-Own: a") + lineEnd + "Smuggled");
    }
    made->setValue(std::string("a\0Smuggled", 10), "X-Own");
    if (fault != nullptr && fault->conditions.timeout.count() > 0)
      made->setTimeoutInterval(fault->conditions.timeout);
    return made;
  }
};

using Handler = std::function<void(std::shared_ptr<QVBaseResponse>)>;

// A service call: the domain of its errors, and the function that starts it.
struct Service {
  const char* responseName;
  std::function<std::shared_ptr<URLSessionDataTask>(const Fault*, Handler)> start;
  bool isPost = false;
};

constexpr Coordinate here{1, 2}, there{3, 4};

template <class Request, class Response, class... Arguments>
Service service(const char* responseName,
                std::shared_ptr<URLSessionDataTask> (*call)(std::shared_ptr<Request>,
                                                            QVCompletionHandler<Response>),
                Arguments... arguments) {
  return {responseName,
          [=](const Fault* fault, Handler handler) {
            const auto request = std::make_shared<TestedRequest<Request>>(arguments...);
            request->fault = fault;
            return call(request, std::move(handler));
          },
          std::is_same_v<Request, QVLoginRequest>};
}

const Service route = service<QVRouteRequest>("QVRouteResponse", &QVNavigation::route, here, there);
const Service candidates = service<QVAddressCandidatesRequest>(
    "QVAddressCandidatesResponse", &QVFind::addressCandidates, "a", here);
const Service suggestions =
    service<QVSuggestRequest>("QVSuggestResponse", &QVFind::suggest, "a", here);
const Service reverseGeocoding =
    service<QVReverseGeocodeRequest>("QVReverseGeocodeResponse", &QVFind::reverseGeocode, here);
const Service login =
    service<QVLoginRequest, QVLoginResponse>("QVLoginResponse", &QVBackendless::login);
const Service configuration = service<QVConfigurationRequest, QVConfigurationResponse>(
    "QVConfigurationResponse", &QVConfiguration::get);

class FaultMatrixTest : public testing::Test {
 protected:
  const FaultTable table;
  const std::thread::id mainThread = std::this_thread::get_id();
  // libcurl would write the TLS keys of its connections to this file.
  const std::string keyFile = testing::TempDir() + "/keys-" + std::to_string(getpid());
  std::list<int> handlerRuns;
  std::ostringstream printed;

  FaultMatrixTest() {
    URLSessionConfiguration::setDefault({.timeoutIntervalForRequest = std::chrono::minutes(1),
                                         .maximumBodySize = FaultTable::bodyLimit,
                                         .maximumDocumentSize = FaultTable::documentLimit,
                                         .caFile = table.certificates().caFile()});
    QuorvelKit::setAccessToken("canary-access-token");
    setenv("SSLKEYLOGFILE", keyFile.c_str(), 1);
  }

  // Checks all calls of the test: each handler ran exactly once, and no secret was printed or sent
  // to the other server or to a file.
  ~FaultMatrixTest() override {
    MainQueue::main().runPending();
    EXPECT_FALSE(std::filesystem::exists(keyFile));
    EXPECT_EQ(std::getenv("SSLKEYLOGFILE"), keyFile);
    for (const int runs : handlerRuns)
      EXPECT_EQ(runs, 1);
    for (const char* canary : {"canary", "kvm40972", "D41F06A3"}) {
      EXPECT_EQ(printed.str().find(canary), std::string::npos) << "was printed:\n" << printed.str();
      EXPECT_EQ(table.requestsToOtherServer().find(canary), std::string::npos)
          << table.requestsToOtherServer();
    }
  }

  std::shared_ptr<QVBaseResponse> deliver(const Service& service, const Fault* fault) {
    int& runs = handlerRuns.emplace_back(0);
    std::shared_ptr<QVBaseResponse> delivered;
    service.start(fault, [&, this](std::shared_ptr<QVBaseResponse> response) {
      EXPECT_EQ(std::this_thread::get_id(), mainThread);
      ++runs;
      delivered = std::move(response);
    });
    EXPECT_EQ(delivered, nullptr) << "delivered inside the call";
    EXPECT_TRUE(runMainQueueUntil([&] { return delivered != nullptr; }));
    return delivered;
  }

  void print(const QVBaseResponse& response) {
    if (response.task()) printed << response.task()->originalRequest() << '\n';
    if (response.response()) printed << response.response()->url() << '\n';
    if (!response.error()) return;
    printed << *response.error() << ' ' << response.error()->localizedDescription() << '\n';
    for (const auto& [key, text] : response.error()->userInfo())
      printed << key << '=' << text << '\n';
  }

  void check(const Service& service, const Fault& fault, const QVBaseResponse& response) {
    print(response);
    const Expected& expected = service.isPost && fault.conditions.expectedOfPost
                                   ? *fault.conditions.expectedOfPost
                                   : fault.expected;
    const auto& error = response.error();
    ASSERT_EQ(error ? error->code() : 0, expected.code)
        << (error ? error->localizedDescription() : response.data()->view());
    if (expected.code < 0) {
      EXPECT_EQ(error->domain(), URLError::domain);
      EXPECT_FALSE(response.data());
      EXPECT_FALSE(response.response());
      EXPECT_FALSE(response.json());
      return;
    }
    ASSERT_TRUE(response.data());
    EXPECT_EQ(response.data()->view(), expected.body);
    EXPECT_EQ(dynamic_cast<const HTTPURLResponse&>(*response.response()).statusCode(),
              expected.status);
    if (!error) return;
    EXPECT_EQ(error->domain(), std::string("QuorvelKit.") + service.responseName);
    EXPECT_EQ(error->localizedDescription(), expected.description);
  }

  // Runs one row. `configureRoot` tells the library the root URL of the row's server, `afterwards`
  // runs while the server still exists.
  void run(const Service& service, const Fault& fault,
           const std::function<void(const std::string& root)>& configureRoot,
           const std::function<void()>& afterwards = nullptr) {
    SCOPED_TRACE(std::string(service.responseName) + ", " + fault.group + ": " + fault.name);
    std::optional<TestServer::TLS> tls;
    if (!fault.conditions.certificate.empty()) {
      tls = table.certificates().tls(fault.conditions.certificate);
      tls->highestVersion = fault.conditions.highestTLSVersion;
      tls->http2 = fault.conditions.http2;
    }
    const TestServer server(fault.script, tls);
    std::string root = fault.conditions.root.empty() ? server.url("") : fault.conditions.root;
    if (const std::size_t at = root.find("PORT"); at != std::string::npos)
      root.replace(at, 4, std::to_string(server.port()));
    configureRoot(root);
    if (fault.conditions.reusesConnection) {
      EXPECT_EQ(deliver(service, nullptr)->error(), std::nullopt);
      configureRoot(root);
    }
    if (fault.conditions.idleEvent) {
      fault.conditions.idleEvent->answered.set(true);
      fault.conditions.idleEvent->ready.get();
    }
    online = !fault.conditions.isOffline;
    check(service, fault, *deliver(service, &fault));
    online = true;
    if (afterwards) afterwards();
  }

  void runAll(const Service& service) {
    for (const Fault& fault : table.rows())
      run(service, fault, [](const std::string& root) { configure(roots(root, root)); });
  }

  // Checks that route and search calls drop their handlers if the configuration cannot be loaded.
  void expectDroppedHandlers() {
    const auto witness = std::make_shared<int>();
    for (const Service* service : {&route, &candidates, &suggestions, &reverseGeocoding}) {
      EXPECT_EQ(service->start(nullptr, [witness](const auto&) { ADD_FAILURE() << "handler ran"; }),
                nullptr);
    }
    EXPECT_TRUE(runMainQueueUntil([&] { return witness.use_count() == 1; }))
        << "handler was not dropped";
  }
};

TEST_F(FaultMatrixTest, Route) { runAll(route); }
TEST_F(FaultMatrixTest, Candidates) { runAll(candidates); }
TEST_F(FaultMatrixTest, Suggestions) { runAll(suggestions); }
TEST_F(FaultMatrixTest, ReverseGeocoding) { runAll(reverseGeocoding); }

TEST_F(FaultMatrixTest, Configuration) {
  for (const Fault& fault : table.rows()) {
    run(
        configuration, fault,
        [](const std::string& root) {
          QVBackendless::setUserToken("canary-user-token-36-characters-long");
          QVConfiguration::setCachedResponse(nullptr);
          QVBackendless::setBaseURL(root);
        },
        [&] {
          expectDroppedHandlers();
          QVConfiguration::setCachedResponse(nullptr);
          if (fault.needsOnlyServer() && !fault.conditions.http2) expectDroppedHandlers();
        });
  }
}

TEST_F(FaultMatrixTest, Login) {
  for (const Fault& fault : table.rows()) {
    QVBackendless::setUserToken("stale");
    run(
        login, fault, [](const std::string& root) { QVBackendless::setBaseURL(root); },
        [&] {
          EXPECT_EQ(QVBackendless::userToken(), "");
          QVConfiguration::setCachedResponse(nullptr);
          if (fault.needsOnlyServer() && !fault.conditions.http2) expectDroppedHandlers();
        });
  }
}

}  // namespace
}  // namespace quorvelkit
