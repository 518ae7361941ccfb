// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <typeinfo>

namespace quorvelkit {

/// Returns the class name for an error domain, such as "QuorvelKit.QVRouteResponse": the module
/// name and the last identifier of the class, without namespaces and template arguments.
std::string qualifiedClassName(const std::type_info& type);

}  // namespace quorvelkit
