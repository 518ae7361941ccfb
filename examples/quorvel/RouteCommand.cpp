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
    : command_(program.add_subcommand("route", "Print the directions from one place to another")),
      backend_(backend) {
  command_->add_option("--from", from_, "Start as LAT,LON, or an address")
      ->required()
      ->check(checkPlace);
  command_->add_option("--to", to_, "Destination as LAT,LON, or an address")
      ->required()
      ->check(checkPlace);
  command_
      ->add_option(
          "--near", near_,
          "Position to search for addresses near, as LAT,LON. Default: the other end of the route")
      ->check(checkCoordinate);
  command_->add_option("--arrive", arrive_, "Time of arrival as RFC 3339. Default: leave now")
      ->check(checkTime);
  auto* json = command_->add_flag("--json", json_, "Print the body of the answer unchanged");
  command_->add_flag("--geojson", geoJSON_, "Print the route as a GeoJSON feature")->excludes(json);
  backend_.addOptions(*command_);
}

std::optional<Coordinate> RouteCommand::positionOf(const std::string& place,
                                                   const std::string& otherPlace,
                                                   std::ostream& trace) const {
  if (const auto position = parseCoordinate(place)) return position;
  const auto near = parseCoordinate(near_.empty() ? otherPlace : near_);
  if (!near) {
    fail("Set --near LAT,LON, the position to search for '" + place + "' near.");
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
  // With --json and --geojson standard output contains the answer only, so that another program can
  // read it.
  std::ostream& trace = json_ || geoJSON_ ? std::cerr : std::cout;
  if (const auto problem = backend_.load(trace)) return fail(*problem);
  const auto from = positionOf(from_, to_, trace);
  if (!from) return 1;
  const auto to = positionOf(to_, from_, trace);
  if (!to) return 1;
  const auto request = makeRequest(*from, *to);
  if (!request->url()) {
    return fail(
        "The backend's configuration names no navigation server. "
        "Its operator must set quorvel-navigation-root-url.");
  }
  const auto response = await<QVRouteResponse>(
      [&](auto handler) { QVNavigation::route(request, std::move(handler)); });
  backend_.traceExchange(trace, *response);
  if (const auto problem = Backend::errorText(*response)) {
    const bool notFound = response->error()->code() == 404;
    return fail("There is no route: " + *problem + '\n' +
                (notFound ? "Move --from or --to to a street on the server's map."
                          : "Try again; --trace prints the exchanges."));
  }
  if (!response->route() || response->route()->points().empty()) {
    return fail(
        "The answer of the navigation server is not a route. "
        "Print it with --json.");
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
