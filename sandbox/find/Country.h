// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace quorvelkit::sandbox {

/// The three-letter code (ISO 3166-1) of a country given by its English name or by either of its
/// codes; empty when there is no such country. An unassigned code in capitals stays as it is.
std::string countryCode(std::string_view nameOrCode);

/// The name of one of the United States (or their capital's district) given by its postal
/// abbreviation; empty when there is none.
std::string_view nameOfState(std::string_view abbreviation);
std::string_view abbreviationOfState(std::string_view name);

/// "1726 Fleet Street" or "Avinguda Meritxell 11", as people write it in the country with the
/// three-letter code.
std::string addressLine(std::string_view houseNumber, std::string_view street,
                        std::string_view country);

}  // namespace quorvelkit::sandbox
