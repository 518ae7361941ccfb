// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Resolver.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>

#include <cstdlib>
#include <string_view>

namespace {

// List entry and address in one block of memory.
struct Entry {
  addrinfo info;
  sockaddr_in address;
};

addrinfo* entryFor(const char* address, const char* service, addrinfo* next) {
  auto* const entry = static_cast<Entry*>(std::calloc(1, sizeof(Entry)));
  entry->address.sin_family = AF_INET;
  entry->address.sin_port = htons(static_cast<in_port_t>(std::atoi(service)));
  inet_pton(AF_INET, address, &entry->address.sin_addr);
  entry->info.ai_family = AF_INET;
  entry->info.ai_socktype = SOCK_STREAM;
  entry->info.ai_protocol = IPPROTO_TCP;
  entry->info.ai_addrlen = sizeof entry->address;
  entry->info.ai_addr = reinterpret_cast<sockaddr*>(&entry->address);
  entry->info.ai_next = next;
  return &entry->info;
}

}  // namespace

extern "C" int getaddrinfo(const char* host, const char* service, const addrinfo*,
                           addrinfo** result) {
  const std::string_view name = host;
  if (name == "slow.test") {
    quorvelkit::test::slowName->asked.set(true);
    quorvelkit::test::slowName->mayAnswer.waitFor(std::chrono::seconds(30));
  }
  if (name == "unknown.test" || name == "slow.test") return EAI_NONAME;
  if (name == "later.test") return EAI_AGAIN;
  *result = entryFor("127.0.0.1", service, nullptr);
  if (name == "second.test") *result = entryFor("127.0.0.2", service, *result);
  return 0;
}

extern "C" void freeaddrinfo(addrinfo* each) noexcept {
  while (each != nullptr) {
    addrinfo* const next = each->ai_next;
    std::free(each);
    each = next;
  }
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
