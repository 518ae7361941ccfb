// SPDX-License-Identifier: Apache-2.0
#include "sandbox/HTTPServer.h"
#include "sandbox/Sandbox.h"
#include "tests/sandbox/RunProgram.h"
#include "tests/sandbox/find/SearchTown.h"

#include <gmock/gmock.h>

#include <string>

namespace quorvelkit::sandbox {
namespace {

using testing::HasSubstr;

Output quorvel(const std::string& arguments, const std::string& backend) {
  return run(std::string(QUORVEL) + ' ' + arguments + " --backend " + backend);
}

TEST(FindCommandsTest, PrintsWhatItFindsOrWhyNot) {
  Sandbox sandbox(searchTown());
  ASSERT_TRUE(sandbox.start(0));
  const std::string near = " --near 10,20";
  const struct {
    std::string arguments;
    int exitCode;
    const char* says;  // On standard output; on standard error when it fails.
  } cases[] = {
      {"candidates '100 Harbor Street'" + near, 0,
       "100 Harbor Street, Testville, Maryland, 21231\n"},
      {"candidates '100 Harbor Street'" + near, 0, "\n  100  9.9998,20.0  "},
      {"candidates 'Cafe & Muller'" + near, 0, "cafe, +1 555 0100, https://mueller.example"},
      {"candidates 'First Bank'" + near + " --extent 10.04,19,11,21", 0, "  100  10.05,20.004  "},
      {"candidates 'Harbor Street'" + near + " --extent 10.04,19,11,21", 1, "not inside --extent"},
      {"candidates x --key street.w1.150" + near, 0, "150 Harbor Street, "},
      {"candidates Atlantis" + near, 1, "There is no such place"},
      {"suggest 'Harbor P'" + near, 0, "Harbor Point, Testville"},
      {"suggest 'caf\u00E9 m\u00FC'" + near, 0, "Caf\u00E9 M\u00FCller, 133 Harbor Street"},
      {"suggest 'a&location=0,0#'" + near, 1, "Nothing"},
      {"reverse 9.9999,20.0045", 0, "150 Harbor Street, Testville, Maryland, 21231\n\n"},
      {"reverse 9.9999,20.0045", 0, "neighborhood  Harbor Point\n"},
      {"reverse -33.8,-151.2", 1, "no address within ten kilometers"},
      {"route --from '100 Harbor Street' --to 10,20.008", 0, "Arrive at your destination"},
      {"route --from '100 Harbor St' --to '200 Harbor St'" + near, 0,
       "200 Harbor St: 200 Harbor Street, Testville"},
      {"route --from Atlantis --to 10,20.008", 1, "There is no place 'Atlantis'"},
      {"route --from 'Harbor Point' --to 'First Bank'", 1, "--near"},
      {"candidates ' '" + near, 2, "is empty"},
      {"candidates \"$(printf '\\377')\"" + near, 2, "not UTF-8"},
      {"candidates x", 2, "--near is required"},
      {"candidates x --near x", 2, "is no LAT,LON"},
      {"candidates x" + near + " --extent 2,1,1,2", 2, "is no S,W,N,E"},
      {"candidates x" + near + " --extent 1,2,3", 2, "is no S,W,N,E"},
      {"reverse here", 2, "is no LAT,LON"},
  };
  for (const auto& [arguments, exitCode, says] : cases) {
    const Output output = quorvel(arguments, sandbox.url());
    EXPECT_EQ(output.exitCode, exitCode) << arguments << '\n' << output.err;
    EXPECT_THAT(exitCode == 0 ? output.out : output.err, HasSubstr(says)) << arguments;
  }
  // The answer itself, with nothing around it even when the exchanges are told.
  for (const char* command :
       {"candidates Harbor --near 10,20", "suggest Harbor --near 10,20", "reverse 10,20"}) {
    const Output output = quorvel(command + std::string(" --json --trace"), sandbox.url());
    EXPECT_EQ(JSON::parse(output.out).type(), JSON::Type::dictionary) << command;
    EXPECT_THAT(output.err, HasSubstr("/api/v1/")) << command;
  }
}

TEST(FindCommandsTest, DoesNotWaitForAServerThatNobodyNamed) {
  HTTPServer server([](const HTTPRequest& request) {
    const std::string token(36, 't');
    return HTTPAnswer::json(request.method == "POST" ? JSON::makeDictionary({{"user-token", token}})
                                                     : JSON::makeDictionary({}));
  });
  const std::string backend = "http://127.0.0.1:" + std::to_string(server.bind(0));
  server.start();
  for (const char* command : {"candidates x --near 1,2", "suggest x --near 1,2", "reverse 1,2",
                              "route --from x --to 1,2"}) {
    const Output output = quorvel(command, backend);
    EXPECT_EQ(output.exitCode, 1) << command;
    EXPECT_THAT(output.err, HasSubstr("names no find server")) << command;
  }
}

}  // namespace
}  // namespace quorvelkit::sandbox
