// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <memory>
#include <mutex>
#include <set>
#include <utility>

// Shared by the adapters for standalone Asio and for Boost.Asio. `Asio` is a class that names the
// types and functions of one of them, such as detail::StandaloneAsio.
namespace quorvelkit::detail {

/// Something that uses an execution context which the application may destroy first.
class AsioContextUser {
 public:
  AsioContextUser() = default;
  AsioContextUser(const AsioContextUser&) = delete;
  AsioContextUser& operator=(const AsioContextUser&) = delete;
  virtual ~AsioContextUser() = default;
  /// Destroys all executors, work guards and handlers that refer to the context.
  virtual void release() = 0;
};

/// The service of an execution context that calls release() for its users when the context is
/// destroyed. Thread-safe.
template <class Asio>
class AsioContextService : public Asio::ExecutionContext::service {
 public:
  // NOLINTNEXTLINE(cert-err58-cpp): its constructor does nothing.
  inline static typename Asio::ExecutionContext::id id;

  explicit AsioContextService(typename Asio::ExecutionContext& context)
      : Asio::ExecutionContext::service(context) {}

  void add(std::shared_ptr<AsioContextUser> user) {
    const std::lock_guard lock(mutex_);
    users_.insert(std::move(user));
  }
  void remove(const std::shared_ptr<AsioContextUser>& user) {
    const std::lock_guard lock(mutex_);
    users_.erase(user);
  }

 private:
  // The context calls this function before it destroys its other services and its queue.
  void shutdown() override {
    std::set<std::shared_ptr<AsioContextUser>> users;
    {
      const std::lock_guard lock(mutex_);
      users.swap(users_);
    }
    for (const auto& user : users)
      user->release();
  }

  std::mutex mutex_;
  std::set<std::shared_ptr<AsioContextUser>> users_;
};

}  // namespace quorvelkit::detail
