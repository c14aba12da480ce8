#include "apps/workbench/layer/session.h"

#include <csignal>
#include <utility>

#include <glib-unix.h>

namespace workbench {

SessionWatch::SessionWatch(std::function<void()> ends)
    : ends_(std::move(ends)),
      sources_{g_unix_signal_add(SIGTERM, OnSignal, this),
               g_unix_signal_add(SIGHUP, OnSignal, this),
               g_unix_signal_add(SIGINT, OnSignal, this)} {}

SessionWatch::~SessionWatch() {
  for (const unsigned int source : sources_) g_source_remove(source);
}

int SessionWatch::OnSignal(void* watch) {
  static_cast<SessionWatch*>(watch)->ends_();
  return G_SOURCE_CONTINUE;
}

}  // namespace workbench
