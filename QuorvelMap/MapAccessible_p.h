// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace quorvelkit {

/// Makes map views accessible: assistive programs get each marker as a child of the view, with a
/// name and a position. Further calls have no effect.
void installMapAccessibility();

}  // namespace quorvelkit
