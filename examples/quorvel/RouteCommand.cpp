// SPDX-License-Identifier: Apache-2.0
#include "RouteCommand.h"

#include "Arguments.h"
#include "ArrivalTime.h"
#include "Directions.h"
#include "FindAnswer.h"
#include "FindCall.h"
#include "Picture.h"

#include <QuorvelKit/QVNavigation.h>

#include <iostream>

using namespace quorvelkit;

namespace {

/// Checks the best candidate for one end of a route. Writes what was chosen to standard error, or
/// why it was not.
std::optional<Coordinate> choose(const QVCandidate& best, const std::string& place,
                                 double minimumScore) {
  const double score = scoreOf(best).value_or(0);
  const auto position = positionOf(best);
  const std::string address = printable(best.address().value_or(""));
  std::string found = address.empty() ? "a place without an address" : "'" + address + "'";
  if (position) found += " at " + coordinateText(*position);
  const std::string rounded = std::to_string(static_cast<int>(score));
  if (!position) {
    fail("The server names no position for '" + place + "': it found " + found + '.');
  } else if (score < minimumScore) {
    fail("There is no good match for '" + place + "'. The best one is " + found + ", with score " +
         rounded + " of 100.\nWrite the address as it is on the map, give LAT,LON, or accept " +
         "lower scores with --min-score.");
  } else {
    std::cerr << "quorvel: '" << place << "' is " << found << " (score " << rounded << ")\n";
    return position;
  }
  return std::nullopt;
}

}  // namespace

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
  command_
      ->add_option("--min-score", minimumScore_,
                   "Lowest score of 0 to 100 with which an address is an end. Default: 80")
      ->check(CLI::Range(0.0, 100.0));
  command_->add_option("--arrive", arrive_, "Time of arrival as RFC 3339. Default: leave now")
      ->check(checkTime);
  auto* json = command_->add_flag("--json", json_, "Print the body of the answer unchanged");
  command_->add_flag("--geojson", geoJSON_, "Print the route as a GeoJSON feature")->excludes(json);
  command_
      ->add_option("--picture", picture_,
                   "Draw the route on the map of the backend, into FILE.png or FILE.svg")
      ->check(checkPicture);
  backend_.addOptions(*command_);
}

std::optional<Coordinate> RouteCommand::endPosition(const std::string& place,
                                                    const std::string& otherPlace,
                                                    std::ostream& trace) const {
  if (const auto position = parseCoordinate(place)) return position;
  const auto near = parseCoordinate(near_.empty() ? otherPlace : near_);
  if (!near) {
    fail("Set --near LAT,LON, the position to search for '" + place + "' near.");
    return std::nullopt;
  }
  const auto request = std::make_shared<QVAddressCandidatesRequest>(encodeQueryValue(place), *near);
  const auto response = findCall(backend_, trace, request, &QVFind::addressCandidates);
  if (!response) return std::nullopt;
  if (response->candidates().empty()) {
    fail("There is no place '" + place + "' on the server's map.");
    return std::nullopt;
  }
  return choose(response->candidates().front(), place, minimumScore_);
}

std::shared_ptr<QVRouteRequest> RouteCommand::makeRequest(const Coordinate& from,
                                                          const Coordinate& to) const {
  auto request = std::make_shared<QVRouteRequest>(from, to);
  if (!arrive_.empty()) {
    request->setTime(std::get<ArrivalTime>(parseArrivalTime(arrive_)));
    request->setRequestType(QVRouteRequestType::ArrivalTime);
  }
  return request;
}

int RouteCommand::run() const {
  // With --json and --geojson standard output contains the answer only, so that another program can
  // read it.
  std::ostream& trace = json_ || geoJSON_ ? std::cerr : std::cout;
  if (const auto problem = backend_.load(trace)) return fail(*problem);
  const auto from = endPosition(from_, to_, trace);
  if (!from) return 1;
  const auto to = endPosition(to_, from_, trace);
  if (!to) return 1;
  const auto request = makeRequest(*from, *to);
  const auto result = backend_.call(trace, &QVNavigation::route, request);
  if (const auto& notSent = result.notSent()) return fail(problemOf(*notSent, navigationServer));
  return print(*request, *result);
}

int RouteCommand::print(const QVRouteRequest& request, const QVRouteResponse& response) const {
  if (json_ && response.data() && !response.data()->empty()) printBody(response.data()->view());
  if (const auto problem = problemOf(response)) {
    const bool notFound = response.error()->code() == 404;
    return fail("There is no route: " + *problem + '\n' +
                (notFound ? "Move --from or --to to a street on the server's map."
                          : "Try again; --trace prints the exchanges."));
  }
  if (!response.route() || response.route()->points().empty()) {
    const bool hasBody = response.data() && !response.data()->empty();
    return fail("The answer is not a route: " + answerText(response) + '.' +
                (hasBody && !json_ ? " Print it with --json." : ""));
  }
  if (geoJSON_) {
    std::cout << routeFeature(*response.route()) << '\n';
  } else if (!json_) {
    printDirections(std::cout, request, *response.route());
  }
  if (picture_.empty()) return 0;
  const std::string problem =
      drawPicture(routeFeature(*response.route()), QVBackendless::baseURL(), picture_);
  return problem.empty() ? 0 : fail(problem);
}
