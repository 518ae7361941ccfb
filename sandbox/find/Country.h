// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace quorvelkit::sandbox {

/// Returns the three-letter code (ISO 3166-1) of a country from its English name, two-letter code
/// or three-letter code; empty if there is no such country. Returns an unassigned code in upper
/// case as it is.
std::string countryCode(std::string_view nameOrCode);

/// Returns the name of a state of the USA (or the District of Columbia) from its postal
/// abbreviation; empty if there is none.
std::string_view stateName(std::string_view abbreviation);
/// The inverse of stateName().
std::string_view stateAbbreviation(std::string_view name);

/// Joins house number and street in the order of the country: "1726 Fleet Street" or "Avinguda
/// Meritxell 11". `country` is a three-letter code.
std::string addressLine(std::string_view houseNumber, std::string_view street,
                        std::string_view country);

}  // namespace quorvelkit::sandbox
