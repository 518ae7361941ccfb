// SPDX-License-Identifier: Apache-2.0
#include "FindCommand.h"

#include "Arguments.h"
#include "FindAnswer.h"
#include "FindCall.h"
#include "Table.h"

#include <cmath>
#include <iostream>

using namespace quorvelkit;

namespace {

std::string positionText(const std::optional<Coordinate>& position) {
  return position ? coordinateText(*position) : "unknown";
}

TableRow rowOf(const QVCandidate& candidate) {
  std::string about;
  const auto add = [&](const std::string& text) {
    if (!text.empty()) about += (about.empty() ? "" : ", ") + text;
  };
  for (const std::string& category : candidate.categories())
    add(category);
  add(candidate.phone().value_or(""));
  add(candidate.providerUrl().value_or(""));
  const auto score = scoreOf(candidate);
  return {score ? std::to_string(std::lround(*score)) : "unknown",
          positionText(positionOf(candidate)), candidate.address().value_or(""), about};
}

std::vector<TableRow> rowsOf(const QVAddress& address) {
  std::vector<TableRow> rows;
  const auto add = [&](const char* name, const std::optional<std::string>& part) {
    if (part && !part->empty()) rows.push_back({name, *part});
  };
  add("address", address.address());
  add("neighborhood", address.neighborhood());
  add("city", address.city());
  add("region", address.region());
  add("postal code", address.postal());
  add("country", address.countyCode());
  return rows;
}

/// Sends a request. Prints the body if `printsJSON` is true, also that of an error; else calls
/// `print` with the response. Returns the exit code.
template <class Request, class Response, class Print>
int callAndPrint(const Backend& backend, bool printsJSON, const std::shared_ptr<Request>& request,
                 FindFunction<Request, Response> function, const Print& print) {
  // With --json standard output contains the body only, so that another program can read it.
  std::ostream& trace = printsJSON ? std::cerr : std::cout;
  if (const auto problem = backend.load(trace)) return fail(*problem);
  const auto response = findCall(backend, trace, request, function, printsJSON);
  if (!response) return 1;
  return printsJSON ? 0 : print(*response);
}

}  // namespace

FindCommand::FindCommand(CLI::App& program, Backend& backend)
    : candidates_(program.add_subcommand("candidates", "Find places by an address or a name")),
      suggest_(program.add_subcommand("suggest", "Complete an address or a name")),
      reverse_(program.add_subcommand("reverse", "Find the address of a position")),
      backend_(backend) {
  const auto addText = [this](CLI::App& command, const char* description) {
    command.add_option("text", text_, description)->required()->check(checkSearchText);
    command.add_option("--near", near_, "Position to search near, as LAT,LON")
        ->required()
        ->check(checkCoordinate);
  };
  addText(*candidates_, "Address, or name of a place or a street");
  addText(*suggest_, "First letters of an address or a name");
  candidates_->add_option("--extent", extent_, "Find only places in this box, as S,W,N,E")
      ->check(checkExtent);
  candidates_->add_option("--key", key_, "Find only the place of the suggestion with this key")
      ->check(checkSearchText);
  reverse_->add_option("position", position_, "Position, as LAT,LON")
      ->required()
      ->check(checkCoordinate);
  for (CLI::App* command : {candidates_, suggest_, reverse_}) {
    command->add_flag("--json", json_, "Print the body of the answer unchanged");
    backend_.addOptions(*command);
  }
}

int FindCommand::run() const {
  if (candidates_->parsed()) return findCandidates();
  return suggest_->parsed() ? suggest() : reverseGeocode();
}

int FindCommand::findCandidates() const {
  const auto request = std::make_shared<QVAddressCandidatesRequest>(encodeQueryValue(text_),
                                                                    *parseCoordinate(near_));
  if (!extent_.empty()) request->setSearchExtent(parseExtent(extent_));
  if (!key_.empty()) request->setMagicKey(encodeQueryValue(key_));
  return callAndPrint(backend_, json_, request, &QVFind::addressCandidates, [this](auto& response) {
    if (response.candidates().empty()) {
      return fail("There is no such place on the server's map" +
                  std::string(extent_.empty() ? "." : ", or not inside --extent."));
    }
    std::vector<TableRow> table{{"score", "at", "place", "about"}};
    for (const QVCandidate& candidate : response.candidates())
      table.push_back(rowOf(candidate));
    printTable(std::cout, table);
    return 0;
  });
}

int FindCommand::suggest() const {
  const auto request =
      std::make_shared<QVSuggestRequest>(encodeQueryValue(text_), *parseCoordinate(near_));
  return callAndPrint(backend_, json_, request, &QVFind::suggest, [](auto& response) {
    if (response.suggestions().empty())
      return fail("Nothing on the server's map starts with this.");
    std::vector<TableRow> table{{"key", "suggestion"}};
    for (const QVSuggestion& suggestion : response.suggestions())
      table.push_back({suggestion.magicKey().value_or(""), suggestion.text().value_or("")});
    printTable(std::cout, table);
    return 0;
  });
}

int FindCommand::reverseGeocode() const {
  const auto request = std::make_shared<QVReverseGeocodeRequest>(*parseCoordinate(position_));
  return callAndPrint(backend_, json_, request, &QVFind::reverseGeocode, [](auto& response) {
    // If no address was found, address() is present, but its properties are absent.
    auto table = response.address() ? rowsOf(*response.address()) : std::vector<TableRow>();
    const std::string heading =
        response.address() ? response.address()->matchAddress().value_or("") : "";
    if (table.empty() && heading.empty()) return fail("The server knows no address there.");
    if (!heading.empty()) std::cout << printable(heading) << "\n\n";
    table.push_back({"at", positionText(positionOf(response))});
    printTable(std::cout, table);
    return 0;
  });
}
