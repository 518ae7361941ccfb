// SPDX-License-Identifier: Apache-2.0
// The fault table: server faults, and the result that each service call must have. docs/testing.md
// shows how to add a row.
#pragma once

#include "tests/support/Awaited.h"
#include "tests/support/Certificates.h"
#include "tests/support/TestServer.h"

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace quorvelkit::test {

/// The result of a call: a transport error, or an answer.
struct Expected {
  /// The code of the error: negative for a URLError, positive for a status, 0 for no error.
  std::int64_t code = 0;
  int status = 0;
  std::string body;
  /// The description of the error.
  std::string description;
};
/// A transport error.
Expected fails(std::int64_t code);
/// An answer. For a status of 400 or above, the description of the error is the body unless another
/// one is given.
Expected answers(int status, const std::string& body = "{}",
                 const std::optional<std::string>& description = std::nullopt);

/// Synchronizes test and script for an event on an idle connection: the test sets `answered` after
/// the first call, the script sets `ready` after the event.
struct IdleEvent {
  Awaited<bool> answered, ready;
};

/// The conditions of a call, apart from the script of the server.
struct Conditions {
  /// The name of the server's certificate (Certificates). Empty for plain HTTP.
  std::string certificate = {};
  int highestTLSVersion = 0;
  bool http2 = false;
  /// The root URL of the call, with PORT for the port of the server. Empty for the server's URL.
  std::string root = {};
  /// The idle time-out of the request. 0 for one minute.
  std::chrono::milliseconds timeout{0};
  /// Whether a successful call over the same connection comes first.
  bool reusesConnection = false;
  std::optional<IdleEvent> idleEvent = {};
  bool isOffline = false;
  /// The result of a POST, if it is different.
  std::optional<Expected> expectedOfPost = {};
};

/// One row of the fault table.
struct Fault {
  std::string name;
  TestServer::Script script;
  Expected expected;
  Conditions conditions = {};
  /// The group of the row. Set by add().
  std::string group = {};

  /// Returns true if the script alone causes the fault.
  bool needsOnlyServer() const {
    return conditions.timeout.count() == 0 && !conditions.reusesConnection && !conditions.isOffline;
  }
};

/// All rows, and a server that several rows use.
class FaultTable {
 public:
  /// The body limit of the session under test, in bytes.
  static constexpr std::size_t bodyLimit = 100'000;
  /// The memory limit for a document and its models, in bytes.
  static constexpr std::size_t documentLimit = 500'000;

  FaultTable();

  const std::vector<Fault>& rows() const { return rows_; }
  const Certificates& certificates() const { return certificates_; }
  /// Header blocks and bodies of all requests that redirects sent to the other server.
  std::string requestsToOtherServer() const;

 private:
  void addConnecting();
  void addTLS();
  void addEarlyEnds();
  void addHeaderBlocks();
  void addBodies();
  void addDocuments();
  void addCodings();
  void addStatuses();
  void addRedirects();
  void addConnectionReuse();
  void addSlowAnswers();
  void addHTTP2();
  void add(const std::string& group, std::vector<Fault> rows);

  const Certificates certificates_;
  mutable std::mutex mutex_;
  std::string otherServerRequests_;
  TestServer otherServer_;
  std::vector<Fault> rows_;
};

}  // namespace quorvelkit::test
