// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/FaultTable.h"

#include <utility>

namespace quorvelkit::test {

Expected fails(std::int64_t code) { return {code, 0, "", ""}; }

Expected answers(int status, const std::string& body,
                 const std::optional<std::string>& description) {
  return {status < 400 ? 0 : status, status, body, description.value_or(body)};
}

FaultTable::FaultTable()
    : otherServer_([this](const ReceivedRequest& received, Connection& to) {
        {
          const std::lock_guard lock(mutex_);
          otherServerRequests_ += received.headerBlock + received.body;
        }
        to.answer(200, R"({"from":"elsewhere"})");
      }) {
  addConnecting();
  addTLS();
  addEarlyEnds();
  addHeaderBlocks();
  addBodies();
  addDocuments();
  addCodings();
  addStatuses();
  addRedirects();
  addConnectionReuse();
  addSlowAnswers();
  addHTTP2();
}

std::string FaultTable::requestsToOtherServer() const {
  const std::lock_guard lock(mutex_);
  return otherServerRequests_;
}

void FaultTable::add(const std::string& group, std::vector<Fault> rows) {
  for (Fault& row : rows) {
    row.group = group;
    rows_.push_back(std::move(row));
  }
}

}  // namespace quorvelkit::test
