// SPDX-License-Identifier: Apache-2.0
#include "sandbox/page/PageService.h"

#include "sandbox/EmbeddedFiles.h"

#include <charconv>
#include <cstdint>
#include <string_view>
#include <utility>

namespace quorvelkit::sandbox {
namespace {

constexpr std::pair<std::string_view, const char*> contentTypes[] = {
    {".html", "text/html; charset=utf-8"}, {".js", "text/javascript; charset=utf-8"},
    {".css", "text/css; charset=utf-8"},   {".svg", "image/svg+xml"},
    {".txt", "text/plain; charset=utf-8"},
};

std::optional<HTTPAnswer> file(std::string_view name) {
  for (const auto& [suffix, type] : contentTypes) {
    if (!name.ends_with(suffix)) continue;
    const std::string_view content = embeddedFile(name);
    if (!content.empty()) return HTTPAnswer{200, type, std::string(content)};
  }
  return std::nullopt;
}

}  // namespace

std::optional<HTTPAnswer> PageService::answer(const HTTPRequest& request,
                                              const std::string& rootURL) {
  constexpr std::string_view folder = "/page/";
  if (request.path == "/page/exchanges") {
    std::int64_t number = 0;
    if (const auto after = request.parameters.find("after"); after != request.parameters.end()) {
      const std::string& text = after->second;
      std::from_chars(text.data(), text.data() + text.size(), number);
    }
    return HTTPAnswer::json(exchanges_.after(number));
  }
  if (auto answer = calls_.answer(request, rootURL)) return answer;
  if (request.method != "GET") return std::nullopt;
  if (request.path == "/") return file("page.html");
  if (!request.path.starts_with(folder)) return std::nullopt;
  return file(std::string_view(request.path).substr(folder.size()));
}

}  // namespace quorvelkit::sandbox
