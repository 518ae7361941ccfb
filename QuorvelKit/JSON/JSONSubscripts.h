// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSONKey.h>
#include <QuorvelKit/JSON/Value.h>
#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <span>

// The reads behind the subscripts of JSON. They take and return bits and views, which are passed in
// registers: a scalar that is read is never in memory.
namespace quorvelkit::detail {

/// Return the bits of the child, or of a null with an error. They own a reference if they need one.
QUORVELKIT_EXPORT ValueBits readElement(ValueView array, std::int64_t index);
QUORVELKIT_EXPORT ValueBits readMember(ValueView map, const KeyView& key);
QUORVELKIT_EXPORT ValueBits readPath(ValueView value, std::span<const JSONKey> path);
QUORVELKIT_EXPORT ValueBits readPath(ValueView value, std::span<const JSONPathStep> path);

/// The same for a container that is not used afterwards: a child of the same document takes over
/// its reference, and the container becomes null.
QUORVELKIT_EXPORT ValueBits moveElement(Value& array, std::int64_t index);
QUORVELKIT_EXPORT ValueBits moveMember(Value& map, const KeyView& key);

}  // namespace quorvelkit::detail
