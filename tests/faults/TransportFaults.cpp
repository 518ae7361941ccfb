// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/FaultTable.h"
#include "tests/faults/Scripts.h"
#include "tests/support/Call.h"

#include <openssl/ssl.h>

#include <algorithm>
#include <stdexcept>

namespace quorvelkit::test {

void FaultTable::addConnecting() {
  // The server works; only the connection to it fails.
  const auto row = [](const char* name, std::string root, Expected expected,
                      std::chrono::milliseconds timeout = 0ms) {
    return Fault{
        name, goodServer(), std::move(expected), {.root = std::move(root), .timeout = timeout}};
  };
  const auto at = [](int port) { return "http://127.0.0.1:" + std::to_string(port); };
  Fault offline = row("no network", "http://unknown.test", fails(E::notConnectedToInternet));
  offline.conditions.isOffline = true;
  add("connecting",
      {
          row("unknown name", "http://unknown.test", fails(E::cannotFindHost)),
          row("name server does not answer", "http://later.test", fails(E::cannotFindHost)),
          offline,
          row("refused", at(unusedPort()), fails(E::cannotConnectToHost)),
          row("stall in name resolution", "http://slow.test", fails(E::timedOut), shortTimeout),
          row("stall in connect", at(deafPort()), fails(E::timedOut), shortTimeout),
          row("first of two addresses refused", "http://second.test:PORT", answers(200)),
      });
}

void FaultTable::addTLS() {
  const auto row = [](const char* name, TestServer::Script script, Expected expected,
                      const char* certificate = "good") {
    return Fault{name, std::move(script), std::move(expected), {.certificate = certificate}};
  };
  // A server that does not speak TLS.
  const auto plain = [](const char* name, TestServer::Script script, std::int64_t code,
                        std::chrono::milliseconds timeout = 0ms) {
    const Conditions conditions = {.root = "https://127.0.0.1:PORT", .timeout = timeout};
    return Fault{name, std::move(script), fails(code), conditions};
  };
  const auto resetting = [](Connection& connection) {
    connection.take(1);
    connection.reset();
  };
  const auto untrusted = fails(E::serverCertificateUntrusted),
             unknownRoot = fails(E::serverCertificateHasUnknownRoot);
  // A server with a bad certificate must not receive a request.
  const auto unused = [](Connection& connection) {
    if (connection.read()) throw std::logic_error("A server that is not trusted got a request.");
  };
  constexpr auto failed = E::secureConnectionFailed;
  Fault oldVersion = row("no common version", unused, fails(failed));
  oldVersion.conditions.highestTLSVersion = TLS1_1_VERSION;
  Fault wrongName = row("certificate for the address only", unused, untrusted);
  wrongName.conditions.root = "https://one.test:PORT";
  add("TLS",
      {
          row("trusted", goodServer(), answers(200)),
          row("expired", unused, fails(E::serverCertificateHasBadDate), "expired"),
          row("not yet valid", unused, fails(E::serverCertificateNotYetValid), "not-yet-valid"),
          row("wrong host", unused, untrusted, "other-host"),
          wrongName,
          row("unknown authority", unused, unknownRoot, "untrusted"),
          row("self-signed", unused, untrusted, "self-signed"),
          oldVersion,
          plain("HTTP instead of TLS", sendThen(goodAnswer, Ending::stall, false), failed),
          plain("closed instead of a handshake", sendThen("", Ending::close, false), failed),
          plain("reset in the handshake", resetting, failed),
          plain("stall in the handshake", sendThen("", Ending::stall, false), E::timedOut,
                shortTimeout),
          row("closed instead of an answer", sendAndClose(""), fails(E::networkConnectionLost)),
          row("reset in the body", sendThen(shortBody, Ending::reset),
              fails(E::networkConnectionLost)),
          row("body until close, without close_notify", sendAndClose(ok + "\r\n{}"), answers(200)),
          row("complete body, without close_notify", sendAndClose(goodAnswer), answers(200)),
      });
}

void FaultTable::addEarlyEnds() {
  const std::string interim = "HTTP/1.1 100 Continue\r\n\r\n", incompleteHeader = ok + "A: b\r\n";
  std::vector<Fault> rows = {
      {"closed at once", sendThen("", Ending::close, false), fails(E::networkConnectionLost)}};
  const std::pair<const char*, std::string> moments[] = {
      {"instead of an answer", ""},
      {"in the status line", "HTTP/1.1 20"},
      {"in the header block", incompleteHeader},
      {"in a header line", ok + "Content-Le"},
      {"after an interim answer", interim},
      {"after the header block", header(200, "Content-Length: 9\r\n\r\n")},
      {"in the body", shortBody},
      {"in a chunk", okChunked + "\r\n9\r\nbod"},
      {"before the last chunk", okChunked + "\r\n3\r\nbod\r\n"},
      {"in the trailer", okChunked + "\r\n2\r\n{}\r\n0\r\nTrail"},
      {"in a gzip body", okGzip + "Content-Length: 28\r\n\r\n" + helloGzip.substr(0, 19)},
  };
  for (const auto& [moment, bytes] : moments) {
    rows.push_back(
        {std::string("closed ") + moment, sendAndClose(bytes), fails(E::networkConnectionLost)});
    rows.push_back({std::string("reset ") + moment, sendThen(bytes, Ending::reset),
                    fails(E::networkConnectionLost)});
    rows.push_back({std::string("stall ") + moment,
                    sendThen(bytes, Ending::stall),
                    fails(E::timedOut),
                    {.timeout = shortTimeout}});
  }
  add("early end", std::move(rows));
}

void FaultTable::addConnectionReuse() {
  const auto second = [](const char* name, TestServer::Script script, Expected expected,
                         std::optional<Expected> expectedOfPost = std::nullopt) {
    return Fault{name,
                 onSecondRequest(std::move(script)),
                 std::move(expected),
                 {.reusesConnection = true, .expectedOfPost = std::move(expectedOfPost)}};
  };
  // Something happens on the connection between two requests.
  const auto between = [](const char* name, auto event, const char* certificate = "") {
    const IdleEvent idleEvent;
    return Fault{name,
                 onSecondRequest([=](Connection& connection) {
                   idleEvent.answered.get();
                   event(connection);
                   idleEvent.ready.set(true);
                   goodServer()(connection);
                 }),
                 answers(200),
                 {.certificate = certificate, .reusesConnection = true, .idleEvent = idleEvent}};
  };
  const std::string staleAnswer = withLength(header(500), "of no request");
  const auto sendStaleAnswer = [=](Connection& connection) { connection.send(staleAnswer); };
  const auto staleAnswerAfterBody = [=](Connection& connection) {
    connection.read();
    connection.send(connection.number > 1 ? goodAnswer : goodAnswer + staleAnswer);
    goodServer()(connection);
  };
  const auto lost = fails(E::networkConnectionLost);
  add("idle connection",
      {
          between("closed between requests", [](Connection& c) { c.close(); }),
          between("reset between requests", [](Connection& c) { c.reset(); }),
          between("answer without a request", sendStaleAnswer),
          between("answer without a request, over TLS", sendStaleAnswer, "good"),
          {"second answer after the body",
           staleAnswerAfterBody,
           answers(200),
           {.reusesConnection = true}},
          second("closed instead of an answer", sendAndClose(""), answers(200)),
          second("reset instead of an answer", sendThen("", Ending::reset), answers(200)),
          second("closed in the status line", sendAndClose("HTTP/1.1 2"), answers(200)),
          second("closed in the body", sendAndClose(shortBody), lost, answers(200)),
      });
}

// The answer takes longer than the time-out, but some bytes arrive all the time.
void FaultTable::addSlowAnswers() {
  static constexpr auto timeout = 500ms, pause = 5ms;
  // Sends the start at once, the middle in small pieces, and the end after the time-out.
  const auto row = [](const char* name, const std::string& start, const std::string& middle,
                      std::size_t pieceSize, const std::string& end, const std::string& body) {
    const auto script = [=](Connection& connection) {
      if (!connection.read()) return;
      connection.send(start);
      std::string_view left = middle;
      repeatUntilTimeout(timeout, pause, [&] {
        connection.send(left.substr(0, pieceSize));
        left.remove_prefix(std::min(pieceSize, left.size()));
      });
      connection.send(std::string(left) + end);
    };
    return Fault{name, script, answers(200, body), {.timeout = timeout}};
  };
  const std::string spaces(5000, ' '), line = "A: b\r\n";
  std::string lines;
  while (lines.size() < 900 * line.size())
    lines += line;
  add("slow answer",
      {
          row("in the header block", ok, lines, line.size(), goodAnswer.substr(ok.size()), "{}"),
          row("in the body", header(200, "Content-Length: 5002\r\n\r\n"), spaces, 1, "{}",
              spaces + "{}"),
      });
}

void FaultTable::addHTTP2() {
  using namespace http2;
  const auto row = [](const char* name, TestServer::Script script, Expected expected,
                      std::chrono::milliseconds timeout = 0ms) {
    return Fault{name,
                 std::move(script),
                 std::move(expected),
                 {.certificate = "good", .http2 = true, .timeout = timeout}};
  };
  const auto lost = fails(E::networkConnectionLost);
  const auto loses = [&](const char* name, const std::string& frames) {
    return row(name, answering(frames), lost);
  };
  constexpr int noError = 0, internalError = 2, refusedStream = 7, cancel = 8;
  const std::string body = frame(data, endStream, "{}"), part = frame(data, 0, "{");
  add("HTTP/2",
      {
          row("complete", answering(http2::ok() + body), answers(200)),
          loses("stream reset instead of an answer", reset(internalError)),
          loses("stream refused", reset(refusedStream)),
          loses("stream reset after the header block", http2::ok() + reset(internalError)),
          loses("stream reset in the body", http2::ok() + part + reset(cancel)),
          loses("stream reset, without an error", http2::ok() + part + reset(noError)),
          row("GOAWAY instead of an answer",
              answering(frame(goAway, 0, std::string(8, '\0'), 0), false), lost),
          row("closed in the body", answering(http2::ok() + part, false), lost),
          row("stall in the body", answering(http2::ok() + part), fails(E::timedOut), shortTimeout),
          loses("shorter than its length", http2::ok(9) + body),
          loses("longer than its length", http2::ok(1) + body),
          loses("body without a header block", body),
          loses("invalid header block", frame(headers, endHeaders, "\xff\xff\xff\xff\xff")),
          loses("frame larger than allowed", frame(data, 0, std::string(20'000, 'x'))),
          row("HTTP/1.1 instead", sendThen(goodAnswer, Ending::stall, false), lost),
      });
}

}  // namespace quorvelkit::test
