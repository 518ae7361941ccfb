// SPDX-License-Identifier: Apache-2.0
// Searches each address of a file, with 64 calls in flight, and only counts the answers: what
// `quorvel batch candidates` is compared with by benchmarks/geocoding.
//   GeocodingBaseline BACKEND FILE LAT LON     the first line of the file is a header
#include <QuorvelKit/Calls/QVCall.h>
#include <QuorvelKit/Calls/QVStartUp.h>
#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVFind.h>
#include <QuorvelPlatform/MainQueue.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

using namespace quorvelkit;

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  QVBackendless::setBaseURL(argv[1]);
  std::ifstream file(argv[2]);
  const Coordinate near{std::atof(argv[3]), std::atof(argv[4])};
  if (const auto error = QVStartUp::loadConfiguration().wait().error()) {
    std::cerr << *error << '\n';
    return 1;
  }
  std::size_t inFlight = 0, found = 0;
  const std::function<void()> startNext = [&] {
    std::string address;
    if (!std::getline(file, address)) return;
    ++inFlight;
    const auto request =
        std::make_shared<QVAddressCandidatesRequest>(encodeQueryValue(address), near);
    QVCall(QVFind::addressCandidates, request).onResult([&](const auto& result) {
      --inFlight;
      found += result && !result->candidates().empty() ? 1U : 0U;
      startNext();
      if (inFlight == 0) MainQueue::main().stop();
    });
  };
  std::string header;
  std::getline(file, header);
  for (int i = 0; i < 64; ++i)
    startNext();
  if (inFlight > 0) MainQueue::main().run();
  std::cout << found << '\n';
}
