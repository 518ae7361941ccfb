// SPDX-License-Identifier: Apache-2.0
// What can go wrong between a call and its answer, and what the call must make of it.
#pragma once

#include "tests/support/Awaited.h"
#include "tests/support/Certificates.h"
#include "tests/support/TestServer.h"

#include <QuorvelPlatform/URLRequest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace quorvelkit::test {

/// What a call delivers: a failure of the transport and nothing else, or an answer.
struct Expected {
  /// Of the error: below zero one of URLError, above the status; 0 for no error.
  std::int64_t code = 0;
  int status = 0;
  std::string body;
  /// Of the error of an answer.
  std::string description;
};
Expected fails(std::int64_t code);
/// An answer; the description of its error is its body, unless that is no text.
Expected answers(int status, const std::string& body = "{}",
                 const std::optional<std::string>& description = std::nullopt);

/// What a script and a call wait for when one call goes well before the fault.
struct Meeting {
  Awaited<bool> answered, ready;
};

/// How a call reaches the server of its row.
struct Way {
  /// The server's certificate (Certificates); empty for plain HTTP.
  std::string certificate = {};
  int highestTLSVersion = 0;
  bool http2 = false;
  /// In place of the server's own address; PORT stands for its port.
  std::string root = {};
  /// The idle time-out of the request, 0 for one that no test waits for.
  std::chrono::milliseconds patience{0};
  /// Whether a call comes first that goes well, over the same connection where it may.
  bool isSecond = false;
  std::optional<Meeting> meeting = {};
  bool isOffline = false;
  /// What an application does to the request.
  std::function<void(URLRequest&)> change = {};
  /// For a request with a body, when that makes a difference.
  std::optional<Expected> ofPost = {};
};

struct Fault {
  std::string name;
  TestServer::Script script;
  Expected expected;
  Way way = {};
  /// When it happens; add() fills it in.
  std::string phase = {};

  /// Whether nothing but the server makes the fault.
  bool isPlain() const {
    return way.patience.count() == 0 && !way.isSecond && !way.isOffline && !way.change;
  }
};

/// The table, and the servers that its scripts need beside those of the rows.
class FaultTable {
 public:
  /// The largest body that the session under test may take.
  static constexpr std::size_t bodyLimit = 100'000;
  /// What a document and its models may take in memory.
  static constexpr std::size_t documentLimit = 500'000;

  FaultTable();

  const std::vector<Fault>& rows() const { return rows_; }
  const Certificates& certificates() const { return certificates_; }
  /// The heads of all requests that were led to another server than that of their row.
  std::string heardElsewhere() const;

 private:
  void addConnecting();
  void addTLS();
  void addEarlyEnds();
  void addHeads();
  void addBodies();
  void addDocuments();
  void addCodings();
  void addStatuses();
  void addRedirects();
  void addConnectionReuse();
  void addSlowness();
  void addHTTP2();
  void add(const std::string& phase, std::vector<Fault> rows);

  const Certificates certificates_;
  mutable std::mutex mutex_;
  std::string heard_;
  TestServer elsewhere_, silent_;
  std::vector<Fault> rows_;
};

}  // namespace quorvelkit::test
