// SPDX-License-Identifier: Apache-2.0
#include "tests/sandbox/RunProgram.h"
#include "tests/support/TestServer.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace quorvelkit::sandbox::test {
namespace {

using quorvelkit::test::TestServer;

// Each server answers the login with an error, the configuration with its own URL, and the rest
// with the given body. Tracing sends the same requests.
TEST(QuorvelAnswersTest, UnusualAnswersAreDescribed) {
  const std::string program = QUORVEL, html = "Content-Type: text/html\r\n",
                    ends = " --from 40.4523,-38.2804 --to 40.4469,-38.1872";
  const std::tuple<int, std::string, std::string, ProgramRun> cases[] = {
      {414, "", "", {"reverse 1,2", 1, "failed: requested URL too long (status 414)"}},
      {502, "<html>", html, {"reverse 1,2", 1, "failed: bad gateway (status 502)"}},
      {200, "<html>", html, {"suggest x --near 1,2", 1, "/suggest sent text/html with status 200"}},
      {200, "<html>", html, {"route" + ends, 1, "/v4/route sent text/html with status 200"}},
      {400,
       R"({"message":"\u001B[31mr\u009bed\u202E\n1\u20282"})",
       "",
       {"reverse 1,2", 1, "\uFFFD[31mr\uFFFDed 1 2 (status 400)"}},
      {200,
       R"({"candidates":[{"Address":"\u202EA\u0085B","score":1e300,"location":{"x":1,"y":91}}]})",
       "",
       {"candidates x --near 1,2", 0, "\nunknown  unknown  A B\n"}},
      {200,
       R"({"address":{"Match_addr":"","City":"Oz"}})",
       "",
       {"reverse 1,2 | head -n 1", 0, "city  Oz\n"}},
      {200,
       R"({"distance":1e300,"duration":-1,"points":[{"d":1,"turn":{"instruct":"a"}}]})",
       "",
       {"route" + ends, 0, "unknown distance, unknown time, 1 direction\n"}},
      {200,
       R"({"distance":0,"duration":0,"points":[{"d":-1,"turn":{}},{"d":1,"turn":{}},{"d":1,"turn":{}}]})",
       "",
       {"route" + ends, 0,
        "< 50 ft, < 1 min, 3 directions\n\nto next  direction  street  road\nunknown\n< 50 ft\n"}}};
  for (const auto& [status, body, header, expected] : cases) {
    std::mutex mutex;
    std::vector<std::string> targets;
    const TestServer server(
        [&, status = status, body = body, header = header](const auto& received, auto& connection) {
          const std::lock_guard lock(mutex);
          targets.push_back(received.target.substr(0, received.target.find("time=")));
          if (received.method == "POST") return connection.answer(500, "no login");
          if (!received.target.ends_with("/configuration.json"))
            return connection.answer(status, body, header);
          const std::string url = "http://" + received.value("Host");
          connection.answer(200, R"({"quorvel-navigation-root-url":")" + url +
                                     R"(","quorvel-find-root-url":")" + url + "\"}");
        });
    const auto takeTargets = [&] {
      const std::lock_guard lock(mutex);
      return std::exchange(targets, {});
    };
    const std::string backend = " --backend " + server.url("");
    const auto& [arguments, exitCode, text] = expected;
    const std::size_t pipe = std::min(arguments.find(" |"), arguments.size());
    const std::string command = ' ' + arguments.substr(0, pipe) + backend;
    expectEach(program, {{command + arguments.substr(pipe), exitCode, text}});
    const auto untraced = takeTargets();
    expectEach(program,
               {{command + " --trace", exitCode, exitCode == 0 ? "\n  status 500" : text}});
    EXPECT_EQ(takeTargets(), untraced) << command;
    const Output output = run(program + command + " --json");
    EXPECT_EQ(output.out, body.empty() ? "" : body + '\n') << command;
    EXPECT_EQ(output.exitCode, exitCode) << command;
  }
}

TEST(QuorvelAnswersTest, HTMLIsNoConfiguration) {
  const TestServer server([](const auto&, auto& connection) {
    connection.answer(200, "<html>", "Content-Type: text/html\r\n");
  });
  expectEach(QUORVEL,
             {{" reverse 1,2", 1, "/configuration.json sent text/html with status 200"},
              {" reverse 1,2", 1, "The answer is no configuration: " + server.url("")}},
             " --backend " + server.url(""));
}

}  // namespace
}  // namespace quorvelkit::sandbox::test
