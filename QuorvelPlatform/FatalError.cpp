// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/FatalError.h>

#include <cstdio>
#include <cstdlib>

namespace quorvelkit {

void fatalError(std::string_view message) noexcept {
  static_cast<void>(std::fwrite(message.data(), 1, message.size(), stderr));
  static_cast<void>(std::fputc('\n', stderr));
  std::abort();
}

}  // namespace quorvelkit
