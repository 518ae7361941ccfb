// SPDX-License-Identifier: Apache-2.0
#include "ReverseCommand.h"

#include "Arguments.h"
#include "FindCall.h"
#include "Table.h"

#include <iostream>

using namespace quorvelkit;

ReverseCommand::ReverseCommand(CLI::App& program, Backend& backend)
    : command_(program.add_subcommand("reverse", "The address of a position")), backend_(backend) {
  command_->add_option("position", at_, "The position, as LAT,LON")
      ->required()
      ->check(checkCoordinate);
  command_->add_flag("--json", json_, "Print the answer as the server sent it");
  backend_.addOptions(*command_);
}

int ReverseCommand::run() const {
  // Standard output is for the answer alone when another program reads it.
  std::ostream& trace = json_ ? std::cerr : std::cout;
  if (const auto problem = backend_.load(trace)) return fail(*problem);
  const auto request = std::make_shared<QVReverseGeocodeRequest>(*parseCoordinate(at_));
  const auto response = findCall(backend_, trace, request, &QVFind::reverseGeocode);
  if (!response) return 1;
  if (json_) {
    std::cout << response->data()->view() << '\n';
    return 0;
  }
  // An answer without an address still has the object, with all its parts absent.
  if (!response->address() || !response->address()->matchAddress()) {
    return fail("The server knows no address there.");
  }
  const QVAddress& address = *response->address();
  std::cout << *address.matchAddress() << "\n\n";
  std::vector<TableRow> table;
  const auto add = [&](const char* name, const std::optional<std::string>& part) {
    if (part && !part->empty()) table.push_back({name, *part});
  };
  add("address", address.address());
  add("neighborhood", address.neighborhood());
  add("city", address.city());
  add("region", address.region());
  add("postal code", address.postal());
  add("country", address.countyCode());
  add("at", coordinateText(response->location().value_or(Coordinate{})));
  printTable(std::cout, table);
  return 0;
}
