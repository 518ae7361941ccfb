// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII.h>
#include <QuorvelPlatform/HTTPHeaderFields.h>

#include <algorithm>

namespace quorvelkit {

namespace {

bool isAcceptable(std::string_view name, std::string_view value) {
  return HTTPHeaderFields::isToken(name) &&
         value.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

}  // namespace

bool HTTPHeaderFields::isToken(std::string_view text) noexcept {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    const char lowered = asciiLowered(c);
    return (lowered >= 'a' && lowered <= 'z') || (c >= '0' && c <= '9') ||
           std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos;
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
