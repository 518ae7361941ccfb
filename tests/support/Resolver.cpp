// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Resolver.h"

#include <dlfcn.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>

#include <string_view>

extern "C" int getaddrinfo(const char* host, const char* service, const addrinfo* hints,
                           addrinfo** result) {
  static const auto real =
      reinterpret_cast<decltype(&getaddrinfo)>(::dlsym(RTLD_NEXT, "getaddrinfo"));
  const std::string_view name = host;
  if (name == "slow.test") {
    quorvelkit::test::slowName->asked.set(true);
    quorvelkit::test::slowName->mayAnswer.waitFor(std::chrono::seconds(30));
  }
  if (name == "unknown.test" || name == "slow.test") return EAI_NONAME;
  if (name == "later.test") return EAI_AGAIN;
  if (name != "second.test") return real("127.0.0.1", service, hints, result);
  const int error = real("127.0.0.2", service, hints, result);
  return error != 0 ? error : real("127.0.0.1", service, hints, &(*result)->ai_next);
}

extern "C" int getifaddrs(ifaddrs** interfaces) noexcept {
  static sockaddr_in address{AF_INET, 0, {}, {}};
  static ifaddrs loopback{}, ethernet{};
  loopback.ifa_flags = IFF_UP | IFF_LOOPBACK;
  loopback.ifa_addr = ethernet.ifa_addr = reinterpret_cast<sockaddr*>(&address);
  ethernet.ifa_flags = IFF_UP;
  loopback.ifa_next = quorvelkit::test::online ? &ethernet : nullptr;
  *interfaces = &loopback;
  return 0;
}

extern "C" void freeifaddrs(ifaddrs*) noexcept {}
