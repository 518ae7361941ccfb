// SPDX-License-Identifier: Apache-2.0
#include "tests/sandbox/RunProgram.h"
#include "tests/support/TestServer.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <utility>

namespace quorvelkit::sandbox::test {
namespace {

using quorvelkit::test::Connection, quorvelkit::test::ReceivedRequest, quorvelkit::test::TestServer;
using testing::HasSubstr;

std::string answerLine(int line, const std::string& text) {
  return "{\"line\":" + std::to_string(line) + ",\"answer\":{\"suggestions\":[{\"text\":\"" + text +
         "\"}] }}\n";
}

// A find server. The searched text says how it answers.
class BatchTest : public testing::Test {
 protected:
  void answer(const ReceivedRequest& received, Connection& connection) {
    const std::string url = "http://" + received.value("Host");
    const std::size_t begin = received.target.find("?text=");
    if (begin == std::string::npos)
      return connection.answer(200, R"({"quorvel-find-root-url":")" + url + "\"}");
    const std::size_t end = std::min(received.target.find('&', begin), received.target.size());
    const std::string text = received.target.substr(begin + 6, end - begin - 6);
    std::unique_lock lock(mutex_);
    const int count = ++requests_[text];
    if (text == "afterquick") changed_.wait(lock, [this] { return quickIsAnswered_; });
    lock.unlock();
    if (text == "hang" && count == 1) return connection.stall();
    if (text == "busy" && count < 3) return connection.answer(429, "busy", "Retry-After: 0\r\n");
    if (text == "reset" && count == 1) return connection.reset();
    if (text == "wrong") return connection.answer(400, R"({"message":"no, \"wrong\""})");
    if (text == "html") return connection.answer(200, "<html>");
    connection.answer(200, "{\"suggestions\":[{\"text\":\"" + text + "\"}]\n}");
    lock.lock();
    quickIsAnswered_ |= text == "quick";
    changed_.notify_all();
  }

  // Runs `quorvel batch suggest` with an input that printf makes.
  Output batch(const std::string& input, const std::string& arguments) const {
    return run("printf '" + input + "' | " + command(arguments));
  }
  std::string command(const std::string& arguments) const {
    return QUORVEL " batch suggest - --near 1,2 --backend " + server_.url("") + ' ' + arguments;
  }
  std::map<std::string, int> takeRequests() {
    const std::lock_guard lock(mutex_);
    return std::exchange(requests_, {});
  }
  std::string fileText() const {
    std::ifstream stream(file_);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<std::string, int> requests_;
  bool quickIsAnswered_ = false;
  const std::string file_ = testing::TempDir() + "/batch-" + std::to_string(getpid());
  const TestServer server_{
      [this](const auto& received, auto& connection) { answer(received, connection); }};
};

TEST_F(BatchTest, AnswersEachLine) {
  const std::string busyError =
      R"x({"line":1,"error":{"message":"busy (status 429)","status":429}})x";
  const std::string three = answerLine(2, "a") + answerLine(4, "b") + answerLine(5, "c");
  const std::string header = "line,suggestion,key,error\n";
  const std::tuple<std::string, std::string, int, std::string> cases[] = {
      {R"(text,near\na,"1,2"\n\n"b",\nc,)", "", 0, three},
      {R"(\357\273\277text\r\na\r\n\r\n"b"\r\nc\r\n)", "--in-flight 1 --rate 1000", 0, three},
      {R"(\n{"text":"a"}\n\n{"text":"b"}\n{"text":"c"})", "", 0, three},
      {R"(text\nx""y"\n"a"b\n"""a""\nb"\nc\n)", "", 3,
       R"({"line":2,"error":{"message":"a quotation mark is inside a value"}})"
       "\n"
       R"({"line":3,"error":{"message":"characters follow a quotation mark"}})"
       "\n" +
           answerLine(4, "%22a%22%0Ab") + answerLine(6, "c")},
      {R"({"text":["a"]}\n{}\n[]\n{"text":"\\xff"}\n{"text":"a","near":"1"}\n)", "--format csv", 3,
       header + "1,,,the value of 'text' is no text\n2,,,text is missing\n"
                "3,,,the line is no JSON object\n4,,,the line is no JSON object\n"
                "5,,,\"near: '1' is not LAT,LON in degrees, such as 39.3,-76.54\"\n"},
      {R"(text\n"a\n)", "--format csv", 3, header + "2,,,a quotation mark has no end\n"},
      {R"(text\nafterquick\nquick)", "", 0, answerLine(2, "afterquick") + answerLine(3, "quick")},
      {R"(text\nbusy)", "--retries 0 --input-format ndjson", 3,
       R"({"line":1,"error":{"message":"the line is no JSON object"}})"
       "\n"
       R"({"line":2,"error":{"message":"the line is no JSON object"}})"
       "\n"},
      {R"({"text":"busy"})", "--retries 0", 3, busyError + '\n'},
      {R"({"text":"busy"}\n{"text":"reset"})", "", 0,
       answerLine(1, "busy") + answerLine(2, "reset")},
      {R"(text\nwrong\na\n)", "--format csv --columns suggestion", 3,
       "line,suggestion,error\n2,,\"no, \"\"wrong\"\" (status 400)\"\n3,a,\n"},
      {R"({"text":"a"}\n{"text":"wrong"})", "--format geojson --columns suggestion", 3,
       "\x1E{\"type\":\"Feature\",\"id\":1,\"geometry\":null,\"properties\":{\"suggestion\":\"a\"}}"
       "\n"
       "\x1E{\"type\":\"Feature\",\"id\":2,\"geometry\":null,\"properties\":{\"error\":"
       "{\"message\":\"no, \\\"wrong\\\" (status 400)\",\"status\":400}}}\n"},
      {"text\\n", "", 0, ""}};
  for (const auto& [input, arguments, exitCode, expected] : cases) {
    const Output output = batch(input, arguments);
    EXPECT_EQ(output.out, expected) << input << output.err;
    EXPECT_EQ(output.exitCode, exitCode) << input << output.err;
  }
}

TEST_F(BatchTest, WrongArgumentsAndFailuresAreErrors) {
  const std::tuple<std::string, std::string, int, std::string> cases[] = {
      {"text\\na", ">/dev/full", 1, "cannot be written: No space left"},
      {"text\\na", "--output /dev/full", 1, "cannot be written: No space left"},
      {"text\\na", "--output /dev/full --resume", 1, "it is no file"},
      {"text\\na", "--output /nowhere/x", 1, "'/nowhere/x' cannot be opened: No such file"},
      {"txt\\na", "", 1, "names no column 'text'"},
      {"text,text\\na,b", "", 1, "names a column twice"},
      {"text\\n\\\"$(head -c 2000000 /dev/zero | tr \\\\0 a)", "", 1,
       "in line 2 has more than 1 MiB"},
      {"text\\na", "--columns key", 2, "--columns needs --format"},
      {"text\\na", "--format csv --columns key,score", 2, "no column 'score', but suggestion key"},
      {"text\\na", "--resume", 2, "--resume requires --output"},
      {"text\\na", "--in-flight 0", 2, "--in-flight"},
      {"text\\nhtml", "", 3, "0 answers, 1 error."}};
  for (const auto& [input, arguments, exitCode, text] : cases) {
    const Output output = run("printf \"" + input + "\" | " + command(arguments));
    EXPECT_EQ(output.exitCode, exitCode) << arguments;
    EXPECT_THAT(output.err, HasSubstr(text)) << arguments;
  }
  expectEach(QUORVEL, {{" batch suggest /nowhere", 1, "'/nowhere' cannot be read: No such file"},
                       {" batch fly -", 2, "fly not in {route,candidates,suggest,reverse}"}});
}

// The job ends while one request has no answer, and inside a line of the file, and is continued.
TEST_F(BatchTest, ContinuesAfterItsEnd) {
  const std::string input = "text\\na\\nhang\\nb\\n";
  const std::tuple<std::string, int, std::string> cases[] = {{"KILL", 137, "ndjson"},
                                                             {"KILL", 137, "csv --unordered"},
                                                             {"TERM", 143, "geojson --unordered"},
                                                             {"INT", 130, "csv"}};
  for (const auto& [signal, exitCode, format] : cases) {
    std::ofstream(file_).flush();
    const std::string options = "--output " + file_ + " --format " + format;
    const bool isCSV = format.starts_with("csv");
    const Output ended =
        run("{ printf '" + input + "' | env --default-signal=INT " + command(options) +
            " & pid=$!; until [ $(cat " + file_ + "* | wc -l) -ge " + (isCSV ? "3" : "2") +
            " ] || ! kill -0 $pid; do :; done; kill -" + signal + " $pid; wait $pid; }");
    EXPECT_EQ(ended.exitCode, exitCode) << ended.err;
    EXPECT_THAT(ended.err, HasSubstr(signal == "KILL" ? ""
                                                      : "Interrupted with 2 answers, 0 errors. "
                                                        "The same command with --resume"));
    const std::string before = fileText();
    std::ofstream(file_, std::ios::app)
        << before.substr(before.rfind('\n', before.size() - 2) + 1, 3);

    for (int i = 0; i < 2; ++i) {
      const Output continued = batch(input, options + " --resume");
      EXPECT_EQ(continued.exitCode, 0) << continued.err;
      EXPECT_EQ(continued.err, "");
    }
    const std::map<std::string, int> once{{"a", 1}, {"b", 1}, {"hang", 2}};
    EXPECT_EQ(takeRequests(), once) << format;
    EXPECT_NE(access((file_ + ".ahead").c_str(), F_OK), 0);
    const std::string text = fileText();
    EXPECT_THAT(text, testing::StartsWith(before));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), isCSV ? 4 : 3) << text;
    if (format == "ndjson") {
      EXPECT_EQ(text, answerLine(2, "a") + answerLine(3, "hang") + answerLine(4, "b"));
    }

    const std::string again = " --resume --output " + file_ + " --format ";
    for (const auto& [other, arguments, reason] :
         {std::tuple<std::string, std::string, std::string>{input, options, "has content"},
          {"text\\na\\n", options + " --resume", "belongs to another input"},
          {input, again + (isCSV ? "ndjson" : "csv --columns key"), "The file '" + file_}}) {
      const Output refused = batch(other, arguments);
      EXPECT_EQ(refused.exitCode, 1) << arguments;
      EXPECT_THAT(refused.err, HasSubstr(reason)) << arguments;
    }
    EXPECT_EQ(fileText(), text);
    unlink(file_.c_str());
  }
}

TEST_F(BatchTest, OtherFilesAreKept) {
  for (const std::string& path : {file_, file_ + ".ahead"}) {
    for (const std::string content : {"precious notes", "{\"lines", "precious\n"}) {
      std::ofstream(file_).flush();
      std::ofstream(path) << content;
      const Output refused = batch("text\\na", "--resume --output " + file_);
      EXPECT_EQ(refused.exitCode, 1) << content;
      EXPECT_THAT(refused.err, HasSubstr('\'' + path + "' cannot be continued"));
      std::ifstream kept(path);
      EXPECT_EQ(std::string(std::istreambuf_iterator<char>(kept), {}), content);
    }
  }
  EXPECT_THAT(batch("text\\na", "--output " + file_).err, HasSubstr(".ahead' has answers"));
  unlink((file_ + ".ahead").c_str());
  unlink(file_.c_str());
}

TEST_F(BatchTest, ShowsItsProgressOnATerminalOnly) {
  const std::string arguments = "--output " + file_;
  std::ofstream(file_ + ".in") << "text\na\n";
  const std::string quorvel = QUORVEL " batch suggest " + file_ + ".in --near 1,2 --backend " +
                              server_.url("") + " --resume " + arguments;
  const Output shown = run("script -qec '" + quorvel + "' /dev/null");
  EXPECT_THAT(shown.out, testing::ContainsRegex("\r.\\[K\\[[.]*\\] 0 %, 0 answers, 0 errors, "));
  EXPECT_THAT(shown.out, testing::EndsWith("quorvel: 1 answer, 0 errors.\r\n"));
  EXPECT_EQ(run(quorvel).err, "");
  for (const char* end : {"", ".in"})
    unlink((file_ + end).c_str());
}

}  // namespace
}  // namespace quorvelkit::sandbox::test
