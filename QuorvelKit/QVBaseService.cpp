// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVBaseService.h>
#include <QuorvelKit/QVConfiguration.h>

namespace quorvelkit {

std::size_t detail::maximumDocumentSize() {
  return QVBaseService::sharedSession()->configuration().maximumDocumentSize;
}

Error detail::memoryError(const std::bad_alloc& thrown, const URLSessionDataTask* task) {
  const bool isTooLarge = dynamic_cast<const MemoryBudget::Exceeded*>(&thrown) != nullptr;
  if (!isTooLarge || task == nullptr) return URLError::outOfMemory();
  try {
    return URLError::make(URLError::dataLengthExceedsMaximum, task->originalRequest().url());
  } catch (const std::bad_alloc&) {
    return URLError::outOfMemory();
  }
}

std::shared_ptr<URLSession> QVBaseService::sharedSession() {
  static const auto& session = *new std::shared_ptr<URLSession>(URLSession::make());
  return session;
}

void QVBaseService::loadConfiguration(std::function<void()> completionHandler) {
  if (!completionHandler) fatalError("loadConfiguration needs a completion handler");
  QVConfiguration::get(
      [handler = std::move(completionHandler)](const auto& /*response*/) { handler(); });
}

}  // namespace quorvelkit
