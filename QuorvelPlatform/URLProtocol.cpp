// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/NeverDestroyed_p.h>
#include <QuorvelPlatform/ProtocolRegistry_p.h>
#include <QuorvelPlatform/URLProtocol.h>

#include <utility>
#include <vector>

namespace quorvelkit {

namespace {

struct Registry {
  using Entry = std::pair<URLProtocol::Registration, std::shared_ptr<const URLProtocol::Factory>>;

  std::mutex mutex;
  URLProtocol::Registration last = 0;
  std::vector<Entry> entries;
};

Registry& registry() {
  static const NeverDestroyed<Registry> instance;
  return *instance;
}

}  // namespace

URLProtocolClient::~URLProtocolClient() = default;
URLProtocol::~URLProtocol() = default;

URLProtocol::Registration URLProtocol::registerFactory(Factory factory) {
  if (!factory) fatalError("A URL protocol needs a factory.");
  auto shared = std::make_shared<const Factory>(std::move(factory));
  Registry& known = registry();
  const std::lock_guard lock(known.mutex);
  known.entries.emplace_back(++known.last, std::move(shared));
  return known.last;
}

void URLProtocol::unregister(Registration registration) {
  Registry& known = registry();
  std::vector<Registry::Entry> removed;  // Destroyed after the mutex is unlocked.
  const std::lock_guard lock(known.mutex);
  for (auto entry = known.entries.begin(); entry != known.entries.end(); ++entry) {
    if (entry->first != registration) continue;
    removed.push_back(std::move(*entry));
    known.entries.erase(entry);
    return;
  }
}

std::unique_ptr<URLProtocol> makeRegisteredProtocol(const URLRequest& request) {
  std::vector<Registry::Entry> entries;
  {
    Registry& known = registry();
    const std::lock_guard lock(known.mutex);
    entries = known.entries;
  }
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    if (auto protocol = (*entry->second)(request)) return protocol;
  }
  return nullptr;
}

std::mutex& protocolRegistryMutex() { return registry().mutex; }

}  // namespace quorvelkit
