// SPDX-License-Identifier: Apache-2.0
#include "CandidatesCommand.h"

#include "Arguments.h"
#include "FindCall.h"
#include "Table.h"

#include <cmath>
#include <iostream>

using namespace quorvelkit;

namespace {

TableRow rowOf(const QVCandidate& candidate) {
  std::string about;
  const auto add = [&](const std::string& text) {
    if (!text.empty()) about += (about.empty() ? "" : ", ") + text;
  };
  for (const std::string& category : candidate.categories())
    add(category);
  add(candidate.phone().value_or(""));
  add(candidate.providerUrl().value_or(""));
  return {std::to_string(std::lround(candidate.score().value_or(0))),
          coordinateText(candidate.location().value_or(Coordinate{})),
          candidate.address().value_or(""), about};
}

}  // namespace

CandidatesCommand::CandidatesCommand(CLI::App& program, Backend& backend)
    : command_(program.add_subcommand("candidates", "Places that a line of text may mean")),
      backend_(backend) {
  command_->add_option("text", text_, "Address, or name of a place or a street")
      ->required()
      ->check(checkSearchText);
  command_->add_option("--near", near_, "Where you are, as LAT,LON")
      ->required()
      ->check(checkCoordinate);
  command_->add_option("--extent", extent_, "Only places in a box, as S,W,N,E")->check(checkExtent);
  command_->add_option("--key", key_, "Exactly the place of a suggestion, by its key")
      ->check(checkSearchText);
  command_->add_flag("--json", json_, "Print the answer as the server sent it");
  backend_.addOptions(*command_);
}

int CandidatesCommand::run() const {
  // Standard output is for the answer alone when another program reads it.
  std::ostream& trace = json_ ? std::cerr : std::cout;
  if (const auto problem = backend_.load(trace)) return fail(*problem);
  const auto request =
      std::make_shared<QVAddressCandidatesRequest>(searchableText(text_), *parseCoordinate(near_));
  if (!extent_.empty()) request->setSearchExtent(parseExtent(extent_));
  if (!key_.empty()) request->setMagicKey(key_);
  const auto response = findCall(backend_, trace, request, &QVFind::addressCandidates);
  if (!response) return 1;
  if (json_) {
    std::cout << response->data()->view() << '\n';
    return 0;
  }
  if (response->candidates().empty()) {
    return fail("There is no such place on the server's map" +
                std::string(extent_.empty() ? "." : ", or not inside --extent."));
  }
  std::vector<TableRow> table{{"score", "at", "place", "about"}};
  for (const QVCandidate& candidate : response->candidates())
    table.push_back(rowOf(candidate));
  printTable(std::cout, table);
  return 0;
}
