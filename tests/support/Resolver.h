// SPDX-License-Identifier: Apache-2.0
// Replaces the resolver and the network interfaces of a test program. The program must be built
// with Resolver.cpp and must export its symbols. No request goes to a name server.
//
//   unknown.test         does not exist
//   later.test           cannot be resolved at the moment
//   slow.test            does not exist; the look-up waits for slowName.mayAnswer
//   second.test          127.0.0.2, which refuses connections, then 127.0.0.1
//   other names          127.0.0.1
#pragma once

#include "tests/support/Awaited.h"

#include <QuorvelPlatform/NeverDestroyed_p.h>

#include <atomic>

namespace quorvelkit::test {

/// Whether an interface other than the loopback interface is up.
inline std::atomic<bool> online = true;

/// Controls the look-up of slow.test. Never destroyed, because the resolver thread may run longer
/// than the test.
struct SlowName {
  Awaited<bool> asked, mayAnswer;
};
inline const NeverDestroyed<SlowName> slowName;

}  // namespace quorvelkit::test
