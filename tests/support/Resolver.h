// SPDX-License-Identifier: Apache-2.0
// The names and interfaces of a test program. One that is built with Resolver.cpp and exports its
// symbols resolves names here: nothing asks a name server.
//
//   unknown.test         does not exist
//   later.test           cannot be resolved for now
//   slow.test            cannot be resolved before slowName.mayAnswer
//   second.test          127.0.0.2, where nothing listens, then 127.0.0.1
//   any other            127.0.0.1
#pragma once

#include "tests/support/Awaited.h"

#include <QuorvelPlatform/NeverDestroyed_p.h>

#include <atomic>

namespace quorvelkit::test {

/// Whether an interface other than the loopback is up.
inline std::atomic<bool> online = true;

/// The resolver's thread may outlive the test.
struct SlowName {
  Awaited<bool> asked, mayAnswer;
};
inline const NeverDestroyed<SlowName> slowName;

}  // namespace quorvelkit::test
