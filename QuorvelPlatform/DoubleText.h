// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <string>

namespace quorvelkit {

/// Formats a double for the query of a URL: at most 15 significant digits, ".0" after a whole
/// number
/// ("34.0"), an exponent below 1e-4 and from 1e15 ("1e-05"). Returns "nan", "inf" or "-inf" for
/// values that are not finite. Does not depend on the locale.
QUORVELKIT_EXPORT std::string defaultText(double value);

}  // namespace quorvelkit
