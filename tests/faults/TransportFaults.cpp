// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/FaultTable.h"
#include "tests/faults/Scripts.h"
#include "tests/support/Call.h"

#include <openssl/ssl.h>

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
  Fault oldVersion = row("no common version", goodServer(), fails(E::secureConnectionFailed));
  oldVersion.conditions.highestTLSVersion = TLS1_1_VERSION;
  Fault wrongName = row("certificate for the address only", goodServer(), untrusted);
  wrongName.conditions.root = "https://one.test:PORT";
  add("TLS",
      {
          row("trusted", goodServer(), answers(200)),
          row("expired", goodServer(), fails(E::serverCertificateHasBadDate), "expired"),
          row("not yet valid", goodServer(), fails(E::serverCertificateNotYetValid),
              "not-yet-valid"),
          row("wrong host", goodServer(), untrusted, "other-host"),
          wrongName,
          row("unknown authority", goodServer(), unknownRoot, "untrusted"),
          row("self-signed", goodServer(), untrusted, "self-signed"),
          oldVersion,
          plain("HTTP instead of TLS", sendThen(goodAnswer, Ending::stall, false),
                E::secureConnectionFailed),
          plain("closed instead of a handshake", sendThen("", Ending::close, false),
                E::secureConnectionFailed),
          plain("reset in the handshake", resetting, E::secureConnectionFailed),
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

// A second call, which starts a little later and receives nothing, tells when the time-out is over.
void FaultTable::addSlowAnswers() {
  constexpr auto timeout = 500ms;
  constexpr auto pause = 5ms;
  const std::string spaces(5000, ' ');
  std::string lines;
  for (int i = 0; i < 900; ++i)
    lines += "A: b\r\n";
  // Sends the start at once, the middle in small pieces, and the end after the time-out.
  const auto sendSlowly = [=, this](std::string start, std::string middle, std::size_t pieceSize,
                                    std::string end) {
    return [=, this](Connection& connection) {
      URLRequest idleRequest = requestFor(silentServer_.url());
      idleRequest.setTimeoutInterval(timeout);
      const Call idleCall(idleRequest);
      if (!connection.read()) return;
      idleCall.task->resume();
      connection.send(start);
      std::size_t sent = 0;
      for (; !idleCall.isDone(pause) && sent + pieceSize < middle.size(); sent += pieceSize)
        connection.send(std::string_view(middle).substr(sent, pieceSize));
      idleCall.result();
      connection.send(middle.substr(sent) + end);
    };
  };
  add("slow answer", {
                         {"in the header block",
                          sendSlowly(ok, lines, 6, goodAnswer.substr(ok.size())),
                          answers(200),
                          {.timeout = timeout}},
                         {"in the body",
                          sendSlowly(header(200, "Content-Length: 5002\r\n\r\n"), spaces, 1, "{}"),
                          answers(200, spaces + "{}"),
                          {.timeout = timeout}},
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
  constexpr int noError = 0, internalError = 2, refusedStream = 7, cancel = 8;
  const auto lost = fails(E::networkConnectionLost);
  const std::string body = frame(data, endStream, "{}"), part = frame(data, 0, "{"),
                    goAwayFrame = frame(goAway, 0, std::string(8, '\0'), 0);
  add("HTTP/2",
      {
          row("complete", answering(http2::ok() + body), answers(200)),
          row("stream reset instead of an answer", answering(reset(internalError)), lost),
          row("stream refused", answering(reset(refusedStream)), lost),
          row("stream reset after the header block", answering(http2::ok() + reset(internalError)),
              lost),
          row("stream reset in the body", answering(http2::ok() + part + reset(cancel)), lost),
          row("stream reset in the body, without an error",
              answering(http2::ok() + part + reset(noError)), lost),
          row("GOAWAY instead of an answer", answering(goAwayFrame, false), lost),
          row("closed in the body", answering(http2::ok() + part, false), lost),
          row("stall in the body", answering(http2::ok() + part), fails(E::timedOut), shortTimeout),
          row("shorter than its length", answering(http2::ok(9) + body), lost),
          row("longer than its length", answering(http2::ok(1) + body), lost),
          row("body without a header block", answering(body), lost),
          row("invalid header block", answering(frame(headers, endHeaders, "\xff\xff\xff\xff\xff")),
              lost),
          row("frame larger than allowed", answering(frame(data, 0, std::string(20'000, 'x'))),
              lost),
          row("HTTP/1.1 instead", sendThen(goodAnswer, Ending::stall, false), lost),
      });
}

}  // namespace quorvelkit::test
