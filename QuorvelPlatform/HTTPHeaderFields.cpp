// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/HTTPHeaderFields.h>

#include <algorithm>
#include <array>

namespace quorvelkit {

namespace {

bool isAcceptable(std::string_view name, std::string_view value) {
  return HTTPHeaderFields::isToken(name) && std::none_of(value.begin(), value.end(), [](char c) {
           return c == '\r' || c == '\n' || c == '\0';
         });
}

constexpr auto tokenCharacters = [] {
  std::array<bool, 256> table{};
  for (const char c : std::string_view("!#$%&'*+-.^_`|~0123456789abcdefghijklmnopqrstuvwxyz"
                                       "ABCDEFGHIJKLMNOPQRSTUVWXYZ")) {
    table[static_cast<unsigned char>(c)] = true;
  }
  return table;
}();

}  // namespace

bool HTTPHeaderFields::isToken(std::string_view text) noexcept {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return tokenCharacters[static_cast<unsigned char>(c)];
  });
}

HTTPHeaderFields::Field* HTTPHeaderFields::find(std::string_view name) {
  const auto found = std::find_if(fields_.begin(), fields_.end(), [&](const Field& field) {
    return equalsIgnoringASCIICase(field.first, name);
  });
  return found == fields_.end() ? nullptr : &*found;
}

std::optional<std::string_view> HTTPHeaderFields::value(std::string_view name) const {
  const Field* field = const_cast<HTTPHeaderFields*>(this)->find(name);
  if (field == nullptr) return std::nullopt;
  return field->second;
}

void HTTPHeaderFields::set(std::string_view name, std::optional<std::string_view> value) {
  if (!isAcceptable(name, value.value_or(""))) return;
  if (!value) {
    std::erase_if(fields_, [&](const Field& f) { return equalsIgnoringASCIICase(f.first, name); });
  } else if (Field* field = find(name)) {
    *field = {std::string(name), std::string(*value)};
  } else {
    fields_.emplace_back(name, *value);
  }
}

void HTTPHeaderFields::add(std::string_view name, std::string_view value,
                           std::string_view separator) {
  if (!isAcceptable(name, value)) return;
  if (Field* field = find(name)) {
    field->second.append(separator).append(value);
  } else {
    fields_.emplace_back(name, value);
  }
}

}  // namespace quorvelkit
