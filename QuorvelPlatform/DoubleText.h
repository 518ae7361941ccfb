// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <string>

namespace quorvelkit {

/// A double as query texts write it: at most 15 significant digits in general notation, ".0"
/// added to a whole number ("34.0"), an exponent below 1e-4 and from 1e15 on ("1e-05"). Not-a-
/// number and the infinities are "nan", "inf" and "-inf".
QUORVELKIT_EXPORT std::string defaultText(double value);

}  // namespace quorvelkit
