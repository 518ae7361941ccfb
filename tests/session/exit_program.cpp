// SPDX-License-Identifier: Apache-2.0
// Leaves a process while requests are in flight, in one of several ways; ends with 0 when nothing
// was delivered or destroyed that must not be.
//   exit_program WAY URL CA_FILE
// The server must answer URL + "quick" and keep silent on URL + "stall".
#include "tests/support/Call.h"
#include "tests/support/Resolver.h"
#include "tests/support/ThreadStart.h"

#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/URLProtocol.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

using namespace quorvelkit;
using namespace quorvelkit::test;

namespace {

// The captures of a handler that must neither run nor be destroyed.
struct Forbidden {
  ~Forbidden() { _exit(10); }
};

void startForbidden(URLSession& session, const std::string& url) {
  session
      .dataTask(requestFor(url),
                [forbidden = std::make_shared<Forbidden>()](auto, auto, auto) { _exit(11); })
      ->resume();
}

void stallSome(URLSession& session, const std::string& url) {
  for (int i = 0; i < 5; ++i)
    startForbidden(session, url + "stall");
}

struct ExitInProtocol : URLProtocol {
  void startLoading(const URLRequest&, std::shared_ptr<URLProtocolClient>) override { exit(0); }
  void stopLoading() override {}
};

// Goes when the session's threads have stopped already; may start requests then.
struct LateComer {
  std::shared_ptr<URLSession> session;
  std::string url;
  ~LateComer() {
    if (!url.empty()) stallSome(*session, url);
  }
};

// Returns 0 when the call under way ends in the parent alone, with that code.
int forkInFlight(const std::shared_ptr<URLSession>& session, const std::string& url,
                 std::int64_t code) {
  const Call call(requestFor(url + "stall"), session);
  const Call suspended(requestFor(url + "quick"), session);
  call.task->resume();
  const pid_t child = fork();
  threadsLeft = INT_MAX;
  if (child == 0) {
    call.task->cancel();
    MainQueue::main().runPending();
    suspended.task->resume();
    const bool works = suspended.result().status() == 200 &&
                       send(requestFor(url + "quick"), session).status() == 200;
    exit(works && !call.isDone() ? 0 : 12);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (call.isDone() || send(requestFor(url + "quick"), session).status() != 200) return 13;
  call.task->cancel();
  if (call.result().code() != code) return 14;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 15;
}

}  // namespace

// A child that starts threads after a fork with threads is what is under test here. Waiting a
// second at each exit would show no more: the session's threads have ended by then.
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() { return "die_after_fork=0:atexit_sleep_ms=50"; }

int main(int, char** arguments) {
  const std::string way = arguments[1], url = arguments[2];
  static LateComer lateComer;
  URLSessionConfiguration configuration;
  configuration.caFile = arguments[3];
  const auto session = URLSession::make(configuration);
  if (way == "name" || way == "fork-name") {
    startForbidden(*session, "http://slow.test/");
    slowName->asked.get();
  }
  if (way.ends_with("threadless")) threadsLeft = 0;
  if (way == "fork-threadless") return forkInFlight(session, url, URLError::unknown);
  if (way.starts_with("fork")) return forkInFlight(session, url, URLError::cancelled);
  if (way == "idle") {
    lateComer.session = session;
  } else {
    stallSome(*session, url);
  }
  if (way == "threadless") return 0;
  if (way == "protocol") {
    URLProtocol::registerFactory([](const URLRequest& request) {
      return request.url().scheme() == "leave" ? std::make_unique<ExitInProtocol>() : nullptr;
    });
    send(requestFor("leave:now"), session);
  }
  if (send(requestFor(url + "quick"), session).status() != 200) return 16;
  if (way == "handler") {
    Call(requestFor(url + "quick"), session, [] { exit(0); }).task->resume();
    pause();
  }
  if (way == "late") {
    lateComer.session = session;
    lateComer.url = url;
  }
  return 0;
}
