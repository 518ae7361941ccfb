// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/// The application identifiers and the service account of the library at the backend service.
namespace quorvelkit::backendless {

inline constexpr std::string_view applicationID = "5E2C9F14-7A03-41BD-C8E6-0F93D27A61B5";
inline constexpr std::string_view secretKey = "D41F06A3-92BE-4C57-AB08-6E1D3C5F7092";
inline constexpr std::string_view login = "sdk-service@quorvel.example";
inline constexpr std::string_view password = "kvm40972";

}  // namespace quorvelkit::backendless
