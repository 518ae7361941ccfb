// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/EventLoops/BasicAsioEventLoop.h>

#include <asio/any_io_executor.hpp>
#include <asio/associated_executor.hpp>
#include <asio/async_result.hpp>
#include <asio/dispatch.hpp>
#include <asio/execution/context.hpp>
#include <asio/execution_context.hpp>
#include <asio/executor_work_guard.hpp>
#include <asio/post.hpp>
#include <asio/query.hpp>
#include <asio/system_executor.hpp>
#include <asio/version.hpp>
#if ASIO_VERSION >= 101900
#include <asio/associated_cancellation_slot.hpp>
#endif

#include <utility>

namespace quorvelkit {

namespace detail {

// The names of standalone Asio.
struct StandaloneAsio {
  using ExecutionContext = asio::execution_context;
  using Executor = asio::any_io_executor;
  template <class T>
  using WorkGuard = asio::executor_work_guard<T>;

  template <class Function>
  static void post(const auto& executor, Function function) {
    asio::post(executor, std::move(function));
  }
  template <class Function>
  static void dispatch(const auto& executor, Function function) {
    asio::dispatch(executor, std::move(function));
  }
  // Returns null for the system context, which ends with the process, and for executors without
  // one.
  static ExecutionContext* context(const auto& executor) {
    if constexpr (asio::can_query<decltype(executor), asio::execution::context_t>::value) {
      ExecutionContext& context = asio::query(executor, asio::execution::context);
      const bool isSystem =
          &context == &asio::query(asio::system_executor(), asio::execution::context);
      return isSystem ? nullptr : &context;
    } else {
      return nullptr;
    }
  }
  template <class Service>
  static Service& service(ExecutionContext& context) {
    return asio::use_service<Service>(context);
  }
  static auto executor(const auto& handler) { return asio::get_associated_executor(handler); }
#if ASIO_VERSION >= 101900
  static auto cancellationSlot(const auto& handler) {
    return asio::get_associated_cancellation_slot(handler);
  }
#endif
  template <class Signature, class Token, class Initiation, class Argument>
  static auto initiate(Initiation initiation, Token&& token, Argument argument) {
    return asio::async_initiate<Token, Signature>(std::move(initiation), token,
                                                  std::move(argument));
  }
};

}  // namespace detail

/// The adapter for standalone Asio (1.18 or later). BasicAsioEventLoop documents it.
using AsioEventLoop = BasicAsioEventLoop<detail::StandaloneAsio>;

}  // namespace quorvelkit
