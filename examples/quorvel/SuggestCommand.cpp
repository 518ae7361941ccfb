// SPDX-License-Identifier: Apache-2.0
#include "SuggestCommand.h"

#include "Arguments.h"
#include "FindCall.h"
#include "Table.h"

#include <QuorvelPlatform/PercentEncoding.h>

#include <iostream>

using namespace quorvelkit;

SuggestCommand::SuggestCommand(CLI::App& program, Backend& backend)
    : command_(program.add_subcommand("suggest", "What a text that is being typed may become")),
      backend_(backend) {
  command_->add_option("text", text_, "Beginning of an address or a name")
      ->required()
      ->check(checkSearchText);
  command_->add_option("--near", near_, "Where you are, as LAT,LON")
      ->required()
      ->check(checkCoordinate);
  command_->add_flag("--json", json_, "Print the answer as the server sent it");
  backend_.addOptions(*command_);
}

int SuggestCommand::run() const {
  // Standard output is for the answer alone when another program reads it.
  std::ostream& trace = json_ ? std::cerr : std::cout;
  if (const auto problem = backend_.load(trace)) return fail(*problem);
  // The library sends this text as it stands, so encoding what was typed falls to the application:
  // with a blank or an accent in it there would be no URL, and no answer.
  const auto request =
      std::make_shared<QVSuggestRequest>(urlEncode(searchableText(text_)), *parseCoordinate(near_));
  const auto response = findCall(backend_, trace, request, &QVFind::suggest);
  if (!response) return 1;
  if (json_) {
    std::cout << response->data()->view() << '\n';
    return 0;
  }
  if (response->suggestions().empty()) {
    return fail("Nothing on the server's map begins like that.");
  }
  std::vector<TableRow> table{{"key", "suggestion"}};
  for (const QVSuggestion& suggestion : response->suggestions()) {
    table.push_back({suggestion.magicKey().value_or(""), suggestion.text().value_or("")});
  }
  printTable(std::cout, table);
  return 0;
}
