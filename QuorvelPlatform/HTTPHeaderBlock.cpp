// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/HTTPHeaderBlock_p.h>

#include <string>
#include <utility>

namespace quorvelkit {

namespace {

// Removes the first line, with its folded lines, and returns it.
std::string_view takeLine(std::string_view& lines) {
  std::size_t end = lines.find('\n');
  while (end != lines.npos && end + 1 < lines.size() &&
         (lines[end + 1] == ' ' || lines[end + 1] == '\t')) {
    end = lines.find('\n', end + 1);
  }
  const std::string_view line = lines.substr(0, end);
  lines.remove_prefix(end == lines.npos ? lines.size() : end + 1);
  return line;
}

std::string unfolded(std::string_view value) {
  std::string text(trimmed(value.substr(0, value.find('\n'))));
  while (value.find('\n') != value.npos) {
    value.remove_prefix(value.find('\n') + 1);
    text.append(" ").append(trimmed(value.substr(0, value.find('\n'))));
  }
  return text;
}

}  // namespace

HTTPHeaderFields parseHeaderFields(std::string_view lines) {
  HTTPHeaderFields fields;
  while (!lines.empty()) {
    const std::string_view line = takeLine(lines);
    const std::size_t colon = line.find(':');
    if (colon == line.npos) continue;
    const std::string_view value = trimmed(line.substr(colon + 1));
    if (value.find('\n') == value.npos) {
      fields.add(line.substr(0, colon), value, ", ");
    } else {
      fields.add(line.substr(0, colon), unfolded(value), ", ");
    }
  }
  return fields;
}

std::shared_ptr<const HTTPURLResponse> makeResponse(const URL& requested, HTTPHeaderBlock header) {
  return std::make_shared<const HTTPURLResponse>(header.url ? *std::move(header.url) : requested,
                                                 header.statusCode,
                                                 parseHeaderFields(header.lines));
}

}  // namespace quorvelkit
