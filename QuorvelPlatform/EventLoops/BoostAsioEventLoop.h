// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/EventLoops/BasicAsioEventLoop.h>

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/associated_executor.hpp>
#include <boost/asio/async_result.hpp>
#include <boost/asio/dispatch.hpp>
#include <boost/asio/execution/context.hpp>
#include <boost/asio/execution_context.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/query.hpp>
#include <boost/asio/system_executor.hpp>
#include <boost/asio/version.hpp>
#if BOOST_ASIO_VERSION >= 101900
#include <boost/asio/associated_cancellation_slot.hpp>
#endif

#include <utility>

namespace quorvelkit {

namespace detail {

// The names of Boost.Asio.
struct BoostAsio {
  using ExecutionContext = boost::asio::execution_context;
  using Executor = boost::asio::any_io_executor;
  template <class T>
  using WorkGuard = boost::asio::executor_work_guard<T>;

  template <class Function>
  static void post(const auto& executor, Function function) {
    boost::asio::post(executor, std::move(function));
  }
  template <class Function>
  static void dispatch(const auto& executor, Function function) {
    boost::asio::dispatch(executor, std::move(function));
  }
  // Returns null for the system context, which ends with the process, and for executors without
  // one.
  static ExecutionContext* context(const auto& executor) {
    if constexpr (boost::asio::can_query<decltype(executor),
                                         boost::asio::execution::context_t>::value) {
      ExecutionContext& context = boost::asio::query(executor, boost::asio::execution::context);
      const bool isSystem = &context == &boost::asio::query(boost::asio::system_executor(),
                                                            boost::asio::execution::context);
      return isSystem ? nullptr : &context;
    } else {
      return nullptr;
    }
  }
  template <class Service>
  static Service& service(ExecutionContext& context) {
    return boost::asio::use_service<Service>(context);
  }
  static auto executor(const auto& handler) {
    return boost::asio::get_associated_executor(handler);
  }
#if BOOST_ASIO_VERSION >= 101900
  static auto cancellationSlot(const auto& handler) {
    return boost::asio::get_associated_cancellation_slot(handler);
  }
#endif
  template <class Signature, class Token, class Initiation, class Argument>
  static auto initiate(Initiation initiation, Token&& token, Argument argument) {
    return boost::asio::async_initiate<Token, Signature>(std::move(initiation), token,
                                                         std::move(argument));
  }
};

}  // namespace detail

/// The adapter for Boost.Asio (Boost 1.74 or later). BasicAsioEventLoop documents it.
using BoostAsioEventLoop = BasicAsioEventLoop<detail::BoostAsio>;

}  // namespace quorvelkit
