// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVClassName_p.h>

#include <cxxabi.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace quorvelkit {

namespace {

bool continuesWord(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

// Returns the length of the operator function name at the start of a text if that name contains a
// bracket, else 0.
std::size_t operatorNameLength(std::string_view text) {
  static constexpr std::string_view word = "operator";
  // A symbol precedes its own prefixes.
  static constexpr std::string_view symbols[] = {"()", "[]", "<=>", "<<=", ">>=", "->*", "<<",
                                                 ">>", "<=", ">=",  "->",  "<",   ">"};
  if (!text.starts_with(word)) return 0;
  for (const auto symbol : symbols) {
    if (text.substr(word.size()).starts_with(symbol)) return word.size() + symbol.size();
  }
  return 0;
}

// Removes template arguments, the signatures of functions that contain a local class, and ABI tags.
// A "<" or ">" of an expression can be unpaired; the parenthesis around the expression closes it.
std::string withoutBrackets(std::string_view name) {
  std::string outside, open;
  char before = ' ';
  while (!name.empty()) {
    const std::size_t length = continuesWord(before) ? 0 : operatorNameLength(name);
    const char c = name.front();
    if (length > 0) {
      // An operator name is not part of a class name.
    } else if (c == '<' || c == '(' || c == '[') {
      open += c;
    } else if (c == '>') {
      if (before != '-' && open.ends_with('<')) open.pop_back();
    } else if (c == ')' || c == ']') {
      open.resize(std::min(open.rfind(c == ')' ? '(' : '['), open.size()));
    } else if (open.empty()) {
      outside += c;
    }
    before = c;
    name.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return outside;
}

}  // namespace

std::string qualifiedClassName(const std::type_info& type) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> demangled(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
  std::string name = withoutBrackets(demangled ? demangled.get() : type.name());
  if (const auto last = name.rfind(':'); last != std::string::npos) name.erase(0, last + 1);
  return "QuorvelKit." + name;
}

}  // namespace quorvelkit
