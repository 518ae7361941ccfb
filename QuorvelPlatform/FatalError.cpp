// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/FatalError.h>

#include <cstdio>
#include <cstdlib>

namespace quorvelkit {

void fatalError(std::string_view message) noexcept {
  std::fwrite(message.data(), 1, message.size(), stderr);
  std::fputc('\n', stderr);
  std::abort();
}

}  // namespace quorvelkit
