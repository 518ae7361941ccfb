// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVClassName_p.h>

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace quorvelkit {

namespace {

// Everything outside angle brackets and parentheses, where template arguments and the signatures
// around local classes stand.
std::string withoutBrackets(std::string_view name) {
  std::string outside;
  int depth = 0;
  for (const char c : name) {
    if (c == '<' || c == '(') ++depth;
    if (depth == 0) outside += c;
    if (c == '>' || c == ')') --depth;
  }
  return outside;
}

}  // namespace

std::string qualifiedClassName(const std::type_info& type) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> demangled(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
  std::string name = withoutBrackets(demangled ? demangled.get() : type.name());
  if (const auto end = name.find('['); end != std::string::npos) name.resize(end);
  if (const auto last = name.rfind(':'); last != std::string::npos) name.erase(0, last + 1);
  return "QuorvelKit." + name;
}

}  // namespace quorvelkit
