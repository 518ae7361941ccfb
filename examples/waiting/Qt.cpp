// SPDX-License-Identifier: Apache-2.0
#include "Trip.h"

#include <QuorvelPlatform/EventLoops/QtEventLoop.h>

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const quorvelkit::QtEventLoop mainQueue;
  requestTrip(argc, argv).onResult([](const auto& result) {
    QCoreApplication::exit(printTrip(result));
  });
  return QCoreApplication::exec();
}
