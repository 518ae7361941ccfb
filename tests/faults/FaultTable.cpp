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
    : elsewhere_([this](const ReceivedRequest& received, Connection& to) {
        {
          const std::lock_guard lock(mutex_);
          heard_ += received.head + received.body;
        }
        to.answer(200, R"({"from":"elsewhere"})");
      }),
      silent_([](Connection& connection) { connection.stall(); }) {
  addConnecting();
  addTLS();
  addEarlyEnds();
  addHeads();
  addBodies();
  addDocuments();
  addCodings();
  addStatuses();
  addRedirects();
  addConnectionReuse();
  addSlowness();
  addHTTP2();
}

std::string FaultTable::heardElsewhere() const {
  const std::lock_guard lock(mutex_);
  return heard_;
}

void FaultTable::add(const std::string& phase, std::vector<Fault> rows) {
  for (Fault& row : rows) {
    row.phase = phase;
    rows_.push_back(std::move(row));
  }
}

}  // namespace quorvelkit::test
