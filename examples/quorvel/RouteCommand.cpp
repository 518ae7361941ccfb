// SPDX-License-Identifier: Apache-2.0
#include "RouteCommand.h"

#include "Arguments.h"
#include "Await.h"
#include "Directions.h"
#include "FindCall.h"

#include <QuorvelKit/QVNavigation.h>

#include <iostream>

using namespace quorvelkit;

RouteCommand::RouteCommand(CLI::App& program, Backend& backend)
    : command_(program.add_subcommand("route", "Directions from one place to another")),
      backend_(backend) {
  command_->add_option("--from", from_, "Start as LAT,LON, or an address")
      ->required()
      ->check(checkPlace);
  command_->add_option("--to", to_, "Destination as LAT,LON, or an address")
      ->required()
      ->check(checkPlace);
  command_
      ->add_option("--near", near_,
                   "Where to look for addresses, as LAT,LON; else near the other end of the route")
      ->check(checkCoordinate);
  command_->add_option("--arrive", arrive_, "When to be there, instead of leaving now")
      ->check(checkTime);
  auto* json = command_->add_flag("--json", json_, "Print the answer as the server sent it");
  command_->add_flag("--geojson", geoJSON_, "Print the route as a GeoJSON feature")->excludes(json);
  backend_.addOptions(*command_);
}

std::optional<Coordinate> RouteCommand::positionOf(const std::string& place,
                                                   const std::string& otherPlace,
                                                   std::ostream& trace) const {
  if (const auto position = parseCoordinate(place)) return position;
  const auto near = parseCoordinate(near_.empty() ? otherPlace : near_);
  if (!near) {
    fail("Say with --near LAT,LON in which area to look for '" + place + "'.");
    return std::nullopt;
  }
  const auto found = findPlace(backend_, trace, place, *near);
  if (!found) return std::nullopt;
  if (!json_ && !geoJSON_) std::cout << place << ": " << found->address().value_or("") << '\n';
  return found->location();
}

std::shared_ptr<QVRouteRequest> RouteCommand::makeRequest(const Coordinate& from,
                                                          const Coordinate& to) const {
  auto request = std::make_shared<QVRouteRequest>(from, to);
  if (!arrive_.empty()) {
    request->setTime(*parseTime(arrive_));
    request->setRequestType(QVRouteRequestType::ArrivalTime);
  }
  return request;
}

int RouteCommand::run() const {
  // Standard output is for the answer alone when another program reads it.
  std::ostream& trace = json_ || geoJSON_ ? std::cerr : std::cout;
  if (const auto problem = backend_.load(trace)) return fail(*problem);
  const auto from = positionOf(from_, to_, trace);
  if (!from) return 1;
  const auto to = positionOf(to_, from_, trace);
  if (!to) return 1;
  const auto request = makeRequest(*from, *to);
  if (!request->url()) {
    return fail(
        "The backend's configuration names no navigation server, so there is nobody to ask. "
        "Its operator has to set quorvel-navigation-root-url.");
  }
  const auto response = await<QVRouteResponse>(
      [&](auto handler) { QVNavigation::route(request, std::move(handler)); });
  backend_.traceExchange(trace, *response);
  if (const auto problem = Backend::problem(*response)) {
    const bool notFound = response->error()->code() == 404;
    return fail("There is no route: " + *problem + '\n' +
                (notFound ? "Move --from or --to to a street that the server's map holds."
                          : "Try again; --trace tells more about what was sent."));
  }
  if (!response->route() || response->route()->points().empty()) {
    return fail(
        "The navigation server answered with something that is no route. "
        "Look at its answer with --json.");
  }
  print(*request, *response);
  return 0;
}

void RouteCommand::print(const QVRouteRequest& request, const QVRouteResponse& response) const {
  if (json_) {
    std::cout << response.data()->view() << '\n';
  } else if (geoJSON_) {
    std::cout << routeFeature(*response.route()) << '\n';
  } else {
    printDirections(std::cout, request, *response.route());
  }
}
