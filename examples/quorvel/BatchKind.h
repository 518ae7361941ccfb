// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "BatchInput.h"
#include "Problem.h"

#include <QuorvelKit/Calls/QVCall.h>
#include <QuorvelKit/JSON/JSON.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

/// Receives the result of a call: a response, or why no request was sent.
using BatchHandler = std::function<void(const std::shared_ptr<quorvelkit::QVBaseResponse>& response,
                                        const std::optional<quorvelkit::QVNotSent>& notSent)>;
/// Starts the call of one request. Can be used again for a retry.
using BatchStart = std::function<void(const quorvelkit::QVCallOptions&, BatchHandler)>;

/// One value of an answer, for CSV and for the properties of GeoJSON.
struct BatchColumn {
  const char* name;
  /// Returns a text, a number, or null.
  quorvelkit::Value (*value)(const quorvelkit::QVBaseResponse& response);
};

/// What a batch asks in each line: one of the other sub-commands.
struct BatchKind {
  const char* name;
  const Server& server;
  std::vector<std::string> inputs;          // The columns of the input.
  std::vector<std::string> requiredInputs;  // Those that each line needs.
  /// Makes the call of a record. Returns what is wrong with the record if there is a fault.
  std::variant<BatchStart, std::string> (*prepare)(const BatchRecord& record);
  std::vector<BatchColumn> columns;
  /// Returns the geometry of an answer in GeoJSON, or null.
  quorvelkit::JSON (*geometry)(const quorvelkit::QVBaseResponse& response);
};

const std::vector<BatchKind>& batchKinds();
