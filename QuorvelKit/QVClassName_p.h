// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <typeinfo>

namespace quorvelkit {

/// The name of a class as error domains write it, "QuorvelKit.QVRouteResponse": the module, then
/// the last identifier of the class' name, without namespaces and template arguments.
std::string qualifiedClassName(const std::type_info& type);

}  // namespace quorvelkit
