// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/WakeUpHook.h>

#include <glib.h>

#include <memory>

namespace quorvelkit {

/// Runs MainQueue::main() in a main loop of GLib, such as that of a GTK application.
///
///  - Threads: construct and destroy it on the thread that runs the context.
///  - Lifetime: it owns a reference to the context. It may be destroyed inside a block, after the
///    GMainLoop, and with blocks in the queue: they stay there. It does not keep g_main_loop_run()
///    running; that function ends with g_main_loop_quit().
///  - Nested main loops (dialogs) inside a block run the blocks that follow.
///  - Exceptions: GLib does not support them. A block that throws ends the process
///    (std::terminate).
///  - Cost: no memory, and one or two wake-ups of the context for all blocks that are waiting. The
///    priority is G_PRIORITY_DEFAULT.
class GLibEventLoop {
 public:
  /// Uses the default context, or the given one.
  explicit GLibEventLoop(GMainContext* context = nullptr)
      : source_(makeSource(context)), hook_([source = source_.get()] { wakeUp(source); }) {}
  GLibEventLoop(const GLibEventLoop&) = delete;
  GLibEventLoop& operator=(const GLibEventLoop&) = delete;

 private:
  // A source whose ready time has come is dispatched; -1 means never.
  static void wakeUp(GSource* source) { g_source_set_ready_time(source, 0); }

  static gboolean dispatch(GSource* source, GSourceFunc /*callback*/, gpointer /*data*/) noexcept {
    g_source_set_ready_time(source, -1);
    MainQueue::main().runPending();
    return G_SOURCE_CONTINUE;
  }

  // The context must outlive its source, because other threads wake it up.
  struct Destroy {
    GMainContext* context;
    void operator()(GSource* source) const {
      g_source_destroy(source);
      g_source_unref(source);
      g_main_context_unref(context);
    }
  };
  using Source = std::unique_ptr<GSource, Destroy>;

  static Source makeSource(GMainContext* context) {
    static GSourceFuncs functions{nullptr, nullptr, dispatch, nullptr, nullptr, nullptr};
    GSource* const source = g_source_new(&functions, sizeof(GSource));
    g_source_set_can_recurse(source, TRUE);
    g_source_attach(source, context);
    return Source(source, {g_main_context_ref(g_source_get_context(source))});
  }

  Source source_;
  WakeUpHook hook_;
};

}  // namespace quorvelkit
