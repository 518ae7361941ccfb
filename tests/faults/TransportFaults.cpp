// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/FaultTable.h"
#include "tests/faults/Scripts.h"
#include "tests/support/Call.h"

#include <openssl/ssl.h>

namespace quorvelkit::test {

void FaultTable::addConnecting() {
  // All is well but the way to the server.
  const auto row = [](const char* name, std::string root, Expected expected,
                      std::chrono::milliseconds patience = 0ms) {
    return Fault{
        name, whole(), std::move(expected), {.root = std::move(root), .patience = patience}};
  };
  const auto at = [](int port) { return "http://127.0.0.1:" + std::to_string(port); };
  Fault offline = row("no network", "http://unknown.test", fails(E::notConnectedToInternet));
  offline.way.isOffline = true;
  add("connecting",
      {
          row("unknown name", "http://unknown.test", fails(E::cannotFindHost)),
          row("no name server", "http://later.test", fails(E::cannotFindHost)),
          offline,
          row("refused", at(unusedPort()), fails(E::cannotConnectToHost)),
          row("stall for a name", "http://slow.test", fails(E::timedOut), impatient),
          row("stall for a connection", at(deafPort()), fails(E::timedOut), impatient),
          row("refused by the first address only", "http://second.test:PORT", answers(200)),
      });
}

void FaultTable::addTLS() {
  const auto row = [](const char* name, TestServer::Script script, Expected expected,
                      const char* certificate = "good") {
    return Fault{name, std::move(script), std::move(expected), {.certificate = certificate}};
  };
  // A server that does not speak TLS.
  const auto plain = [](const char* name, TestServer::Script script, std::int64_t code,
                        std::chrono::milliseconds patience = 0ms) {
    const Way way = {.root = "https://127.0.0.1:PORT", .patience = patience};
    return Fault{name, std::move(script), fails(code), way};
  };
  const auto resetting = [](Connection& connection) {
    connection.take(1);
    connection.reset();
  };
  const auto untrusted = fails(E::serverCertificateUntrusted),
             unknownRoot = fails(E::serverCertificateHasUnknownRoot);
  Fault oldVersion = row("no common version", whole(), fails(E::secureConnectionFailed));
  oldVersion.way.highestTLSVersion = TLS1_1_VERSION;
  Fault wrongName = row("right address, wrong name", whole(), untrusted);
  wrongName.way.root = "https://one.test:PORT";
  add("TLS",
      {
          row("trusted", whole(), answers(200)),
          row("expired", whole(), fails(E::serverCertificateHasBadDate), "expired"),
          row("not yet valid", whole(), fails(E::serverCertificateNotYetValid), "not-yet-valid"),
          row("wrong host", whole(), untrusted, "other-host"),
          wrongName,
          row("unknown authority", whole(), unknownRoot, "untrusted"),
          row("self-signed", whole(), untrusted, "self-signed"),
          oldVersion,
          plain("plain HTTP instead", breaking(good, End::stall, false), E::secureConnectionFailed),
          plain("closed for a handshake", breaking("", End::close, false),
                E::secureConnectionFailed),
          plain("reset in the handshake", resetting, E::secureConnectionFailed),
          plain("stall in the handshake", breaking("", End::stall, false), E::timedOut, impatient),
          row("closed for an answer", once(""), fails(E::networkConnectionLost)),
          row("reset in the body", breaking(shortBody, End::reset),
              fails(E::networkConnectionLost)),
          row("body until close, no end of TLS", once(ok + "\r\n{}"), answers(200)),
          row("whole body, no end of TLS", once(good), answers(200)),
      });
}

void FaultTable::addEarlyEnds() {
  const std::string interim = "HTTP/1.1 100 Continue\r\n\r\n", halfHead = ok + "A: b\r\n";
  std::vector<Fault> rows = {
      {"closed at once", breaking("", End::close, false), fails(E::networkConnectionLost)}};
  const std::pair<const char*, std::string> moments[] = {
      {"for an answer", ""},
      {"in the status line", "HTTP/1.1 20"},
      {"in the head", halfHead},
      {"in a header line", ok + "Content-Le"},
      {"after an interim answer", interim},
      {"after the head", head(200, "Content-Length: 9\r\n\r\n")},
      {"in the body", shortBody},
      {"in a chunk", okChunked + "\r\n9\r\nbod"},
      {"before the last chunk", okChunked + "\r\n3\r\nbod\r\n"},
      {"in the trailer", okChunked + "\r\n2\r\n{}\r\n0\r\nTrail"},
      {"in a gzip body", okGzip + "Content-Length: 28\r\n\r\n" + helloGzip.substr(0, 19)},
  };
  for (const auto& [moment, bytes] : moments) {
    rows.push_back({std::string("closed ") + moment, once(bytes), fails(E::networkConnectionLost)});
    rows.push_back({std::string("reset ") + moment, breaking(bytes, End::reset),
                    fails(E::networkConnectionLost)});
    rows.push_back({std::string("stall ") + moment,
                    breaking(bytes, End::stall),
                    fails(E::timedOut),
                    {.patience = impatient}});
  }
  add("cut off", std::move(rows));
}

void FaultTable::addConnectionReuse() {
  const auto second = [](const char* name, TestServer::Script script, Expected expected,
                         std::optional<Expected> ofPost = std::nullopt) {
    return Fault{name,
                 secondMeets(std::move(script)),
                 std::move(expected),
                 {.isSecond = true, .ofPost = std::move(ofPost)}};
  };
  // The connection meets with something between two requests.
  const auto between = [](const char* name, auto something, const char* certificate = "") {
    const Meeting meeting;
    return Fault{name,
                 secondMeets([=](Connection& connection) {
                   meeting.answered.get();
                   something(connection);
                   meeting.ready.set(true);
                   whole()(connection);
                 }),
                 answers(200),
                 {.certificate = certificate, .isSecond = true, .meeting = meeting}};
  };
  const std::string poison = withLength(head(500), "of nobody's request");
  const auto poisoned = [=](Connection& connection) { connection.send(poison); };
  const auto poisonedBehind = [=](Connection& connection) {
    connection.read();
    connection.send(connection.number > 1 ? good : good + poison);
    whole()(connection);
  };
  const auto lost = fails(E::networkConnectionLost);
  add("kept connection",
      {
          between("closed between requests", [](Connection& c) { c.close(); }),
          between("reset between requests", [](Connection& c) { c.reset(); }),
          between("answer to no request", poisoned),
          between("answer to no request, over TLS", poisoned, "good"),
          {"answer behind the body", poisonedBehind, answers(200), {.isSecond = true}},
          second("closed for an answer", once(""), answers(200)),
          second("reset for an answer", breaking("", End::reset), answers(200)),
          second("closed in the status line", once("HTTP/1.1 2"), answers(200)),
          second("closed in the body", once(shortBody), lost, answers(200)),
      });
}

// A call that begins a little later and stands still tells that the time-out is over.
void FaultTable::addSlowness() {
  constexpr auto timeout = 500ms;
  constexpr auto pause = 5ms;
  const std::string blanks(5000, ' ');
  std::string lines;
  for (int i = 0; i < 900; ++i)
    lines += "A: b\r\n";
  // Sends the start at once, the middle drop by drop, and the end when the time is over.
  const auto dripping = [=, this](std::string start, std::string middle, std::size_t drop,
                                  std::string end) {
    return [=, this](Connection& connection) {
      URLRequest standing = requestFor(silent_.url());
      standing.setTimeoutInterval(timeout);
      const Call clock(standing);
      if (!connection.read()) return;
      clock.task->resume();
      connection.send(start);
      std::size_t sent = 0;
      for (; !clock.isDone(pause) && sent + drop < middle.size(); sent += drop)
        connection.send(std::string_view(middle).substr(sent, drop));
      clock.result();
      connection.send(middle.substr(sent) + end);
    };
  };
  add("slow drip", {
                       {"in the head",
                        dripping(ok, lines, 6, good.substr(ok.size())),
                        answers(200),
                        {.patience = timeout}},
                       {"in the body",
                        dripping(head(200, "Content-Length: 5002\r\n\r\n"), blanks, 1, "{}"),
                        answers(200, blanks + "{}"),
                        {.patience = timeout}},
                   });
}

void FaultTable::addHTTP2() {
  using namespace http2;
  const auto row = [](const char* name, TestServer::Script script, Expected expected,
                      std::chrono::milliseconds patience = 0ms) {
    return Fault{name,
                 std::move(script),
                 std::move(expected),
                 {.certificate = "good", .http2 = true, .patience = patience}};
  };
  constexpr int noError = 0, internalError = 2, refusedStream = 7, cancel = 8;
  const auto lost = fails(E::networkConnectionLost);
  const std::string body = frame(data, endStream, "{}"), part = frame(data, 0, "{"),
                    leaving = frame(goAway, 0, std::string(8, '\0'), 0);
  add("HTTP/2",
      {
          row("whole", answering(http2::ok() + body), answers(200)),
          row("stream reset for an answer", answering(reset(internalError)), lost),
          row("stream refused", answering(reset(refusedStream)), lost),
          row("stream reset after the head", answering(http2::ok() + reset(internalError)), lost),
          row("stream reset in the body", answering(http2::ok() + part + reset(cancel)), lost),
          row("stream reset in the body, without an error",
              answering(http2::ok() + part + reset(noError)), lost),
          row("server leaves for an answer", answering(leaving, false), lost),
          row("closed in the body", answering(http2::ok() + part, false), lost),
          row("stall in the body", answering(http2::ok() + part), fails(E::timedOut), impatient),
          row("shorter than its length", answering(http2::ok(9) + body), lost),
          row("longer than its length", answering(http2::ok(1) + body), lost),
          row("body without a head", answering(body), lost),
          row("broken header block", answering(frame(headers, endHeaders, "\xff\xff\xff\xff\xff")),
              lost),
          row("frame larger than allowed", answering(frame(data, 0, std::string(20'000, 'x'))),
              lost),
          row("HTTP/1.1 instead", breaking(good, End::stall, false), lost),
      });
}

}  // namespace quorvelkit::test
