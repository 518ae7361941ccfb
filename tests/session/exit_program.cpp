// SPDX-License-Identifier: Apache-2.0
// Exits, in one of several scenarios, while data tasks are running. The exit status is 0 unless a
// Forbidden object was destroyed or its handler ran.
//   exit_program SCENARIO URL CA_FILE
// The server must answer URL + "quick" and send nothing for URL + "stall".
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

// Captured by handlers that must neither run nor be destroyed.
struct Forbidden {
  ~Forbidden() { _exit(10); }
};

void startForbidden(URLSession& session, const std::string& url) {
  session
      .dataTask(requestFor(url),
                [forbidden = std::make_shared<Forbidden>()](auto, auto, auto) { _exit(11); })
      ->resume();
}

void startStalledTasks(URLSession& session, const std::string& url) {
  for (int i = 0; i < 5; ++i)
    startForbidden(session, url + "stall");
}

struct ExitInProtocol : URLProtocol {
  void startLoading(const URLRequest&, std::shared_ptr<URLProtocolClient>) override { exit(0); }
  void stopLoading() override {}
};

// Destroyed after the session threads have stopped. Starts tasks then if it has a URL.
struct StaticObject {
  std::shared_ptr<URLSession> session;
  std::string url;
  ~StaticObject() {
    if (!url.empty()) startStalledTasks(*session, url);
  }
};

// Returns 0 if the running call ends only in the parent process, with this code.
int forkWhileRunning(const std::shared_ptr<URLSession>& session, const std::string& url,
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

// This program tests a child that starts threads after a fork with threads. The default wait of one
// second at exit is not necessary, since the session threads have ended by then.
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() { return "die_after_fork=0:atexit_sleep_ms=50"; }

int main(int, char** arguments) {
  const std::string scenario = arguments[1], url = arguments[2];
  static StaticObject staticObject;
  const auto session = URLSession::make({.caFile = arguments[3]});
  if (scenario == "name" || scenario == "fork-name") {
    startForbidden(*session, "http://slow.test/");
    slowName->asked.get();
  }
  if (scenario.ends_with("threadless")) threadsLeft = 0;
  if (scenario == "fork-threadless") return forkWhileRunning(session, url, URLError::unknown);
  if (scenario.starts_with("fork")) return forkWhileRunning(session, url, URLError::cancelled);
  if (scenario == "idle") {
    staticObject.session = session;
  } else {
    startStalledTasks(*session, url);
  }
  if (scenario == "threadless") return 0;
  if (scenario == "protocol") {
    URLProtocol::registerFactory([](const URLRequest& request) {
      return request.url().scheme() == "leave" ? std::make_unique<ExitInProtocol>() : nullptr;
    });
    send(requestFor("leave:now"), session);
  }
  if (send(requestFor(url + "quick"), session).status() != 200) return 16;
  if (scenario == "handler") {
    Call(requestFor(url + "quick"), session, [] { exit(0); }).task->resume();
    pause();
  }
  if (scenario == "late") {
    staticObject.session = session;
    staticObject.url = url;
  }
  return 0;
}
