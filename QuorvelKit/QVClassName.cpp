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

// How long the name of an operator function is, at the front of a text, if it holds a bracket; else
// 0. Names of other operators need no care.
std::size_t operatorNameLength(std::string_view text) {
  static constexpr std::string_view word = "operator";
  // A symbol stands before its own beginnings.
  static constexpr std::string_view symbols[] = {"()", "[]", "<=>", "<<=", ">>=", "->*", "<<",
                                                 ">>", "<=", ">=",  "->",  "<",   ">"};
  if (!text.starts_with(word)) return 0;
  for (const auto symbol : symbols) {
    if (text.substr(word.size()).starts_with(symbol)) return word.size() + symbol.size();
  }
  return 0;
}

// Everything outside brackets, which hold template arguments, the signatures around local classes
// and tags of the ABI. In an expression "<" and ">" may stand alone: the parenthesis around it ends
// both.
std::string withoutBrackets(std::string_view name) {
  std::string outside, open;
  char before = ' ';
  while (!name.empty()) {
    const std::size_t length = continuesWord(before) ? 0 : operatorNameLength(name);
    const char c = name.front();
    if (length > 0) {
      // Nothing of it can be the name of a class.
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
