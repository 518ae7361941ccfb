// SPDX-License-Identifier: Apache-2.0
// Every service call against every row of the fault table, through the real session.
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

#include <sstream>
#include <thread>

namespace quorvelkit {
namespace {

using namespace quorvelkit::test;

// A request of the library as an application may use it: with secrets, and as a row wants it.
template <class Request>
struct Tried : Request {
  using Request::Request;
  const Fault* fault = nullptr;

  bool includeAccessToken() const override { return true; }
  std::optional<URLRequest> request() override {
    auto made = Request::request();
    if (!made) return made;
    made->setValue("canary-authorization", "Authorization");
    made->setValue("own=canary-cookie", "Cookie");
    if (fault != nullptr && fault->way.patience.count() > 0)
      made->setTimeoutInterval(fault->way.patience);
    if (fault != nullptr && fault->way.change) fault->way.change(*made);
    return made;
  }
};

using Handler = std::function<void(std::shared_ptr<QVBaseResponse>)>;

// A kind of call: what it is called in errors, and how it starts.
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
            const auto request = std::make_shared<Tried<Request>>(arguments...);
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
  // One for all tests of a process, as is the session.
  static std::unique_ptr<const FaultTable> theTable;
  static void SetUpTestSuite() { theTable = std::make_unique<FaultTable>(); }
  static void TearDownTestSuite() { theTable.reset(); }

  const FaultTable& table = *theTable;
  const std::thread::id mainThread = std::this_thread::get_id();
  std::list<int> handlerRuns;
  std::ostringstream said;

  FaultMatrixTest() {
    URLSessionConfiguration settings;
    settings.caFile = table.certificates().caFile();
    settings.maximumBodySize = FaultTable::bodyLimit;
    settings.maximumDocumentSize = FaultTable::documentLimit;
    settings.timeoutIntervalForRequest = std::chrono::minutes(1);
    URLSessionConfiguration::setDefault(settings);
    QuorvelKit::setAccessToken("canary-access-token");
  }

  // What was delivered, exactly once and on the main thread, shows in the end.
  ~FaultMatrixTest() override {
    MainQueue::main().runPending();
    for (const int runs : handlerRuns)
      EXPECT_EQ(runs, 1);
    for (const char* canary : {"canary", "kvm40972", "D41F06A3"}) {
      EXPECT_EQ(said.str().find(canary), std::string::npos) << "was printed:\n" << said.str();
      EXPECT_EQ(table.heardElsewhere().find(canary), std::string::npos) << table.heardElsewhere();
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
    if (response.task()) said << response.task()->originalRequest() << '\n';
    if (response.response()) said << response.response()->url() << '\n';
    if (!response.error()) return;
    said << *response.error() << ' ' << response.error()->localizedDescription() << '\n';
    for (const auto& [key, text] : response.error()->userInfo())
      said << key << '=' << text << '\n';
  }

  void check(const Service& service, const Fault& fault, const QVBaseResponse& response) {
    print(response);
    const Expected& expected =
        service.isPost && fault.way.ofPost ? *fault.way.ofPost : fault.expected;
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

  // Runs a row; `pointAt` tells the library where the row's server is, `alsoDo` what to try on it.
  void run(const Service& service, const Fault& fault,
           const std::function<void(const std::string& root)>& pointAt,
           const std::function<void()>& alsoDo = nullptr) {
    SCOPED_TRACE(std::string(service.responseName) + ", " + fault.phase + ": " + fault.name);
    std::optional<TestServer::TLS> tls;
    if (!fault.way.certificate.empty()) {
      tls = table.certificates().tls(fault.way.certificate);
      tls->highestVersion = fault.way.highestTLSVersion;
      tls->http2 = fault.way.http2;
    }
    const TestServer server(fault.script, tls);
    std::string root = fault.way.root.empty() ? server.url("") : fault.way.root;
    if (const std::size_t at = root.find("PORT"); at != std::string::npos)
      root.replace(at, 4, std::to_string(server.port()));
    pointAt(root);
    if (fault.way.isSecond) {
      EXPECT_EQ(deliver(service, nullptr)->error(), std::nullopt);
      pointAt(root);
    }
    if (fault.way.meeting) {
      fault.way.meeting->answered.set(true);
      fault.way.meeting->ready.get();
    }
    online = !fault.way.isOffline;
    check(service, fault, *deliver(service, &fault));
    online = true;
    if (alsoDo) alsoDo();
  }

  void runAll(const Service& service) {
    for (const Fault& fault : table.rows())
      run(service, fault, [](const std::string& root) { configure(roots(root, root)); });
  }

  // No route or search call delivers anything when loading the configuration came, or comes, to
  // nothing.
  void expectSilence() {
    const auto witness = std::make_shared<int>();
    for (const Service* service : {&route, &candidates, &suggestions, &reverseGeocoding}) {
      EXPECT_EQ(service->start(nullptr, [witness](const auto&) { ADD_FAILURE() << "it spoke"; }),
                nullptr);
    }
    EXPECT_TRUE(runMainQueueUntil([&] { return witness.use_count() == 1; })) << "something waits";
  }
};

std::unique_ptr<const FaultTable> FaultMatrixTest::theTable;

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
          expectSilence();
          QVConfiguration::setCachedResponse(nullptr);
          if (fault.isPlain() && !fault.way.http2) expectSilence();
        });
  }
}

TEST_F(FaultMatrixTest, Login) {
  for (const Fault& fault : table.rows()) {
    QVBackendless::setUserToken("stale");
    run(login, fault, [](const std::string& root) { QVBackendless::setBaseURL(root); });
    EXPECT_EQ(QVBackendless::userToken(), "");
  }
}

// The first call of a process goes through the fault to log in, and to a server that keeps those
// out who did not.
TEST_F(FaultMatrixTest, CallsBehindAFailedLogin) {
  const TestServer strict([](const ReceivedRequest& received, Connection& to) {
    received.value("user-token").empty() ? to.answer(401, "who") : to.answer(200, "{}");
  });
  struct Strict : QVConfigurationRequest {
    explicit Strict(std::string url) : url_(std::move(url)) {}
    std::optional<URL> url() override { return URL::parse(url_); }
    std::string url_;
  };
  const Service load{"QVConfigurationResponse", [&](const Fault*, Handler handler) {
                       return QVConfiguration::get(std::make_shared<Strict>(strict.url()),
                                                   std::move(handler));
                     }};
  for (const Fault& fault : table.rows()) {
    if (!fault.isPlain()) continue;
    Fault behind = fault;
    behind.expected = answers(401, "who");
    run(load, behind, [](const std::string& root) {
      QVConfiguration::setCachedResponse(nullptr);
      QVBackendless::setBaseURL(root);
    });
    expectSilence();
  }
}

}  // namespace
}  // namespace quorvelkit
