// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace quorvelkit {

/// Lets assistive programs read map views: their markers become children with a name and a place.
/// Further calls do nothing.
void installMapAccessibility();

}  // namespace quorvelkit
