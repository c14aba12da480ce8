// The seam between the library and the operating system.
//
// Nothing outside `platform/` calls the operating system. Code asks `Current()` for the service it
// needs; an embedder or a test puts its own in place for a scope:
//
//   platform::Platform mine = platform::Current();
//   mine.clock = &manual_clock;
//   platform::ScopedPlatform scope(mine);

#pragma once

#include "dqlib/platform/change_notifications.h"
#include "dqlib/platform/clipboard.h"
#include "dqlib/platform/clock.h"
#include "dqlib/platform/color_scheme.h"
#include "dqlib/platform/console.h"
#include "dqlib/platform/files.h"
#include "dqlib/platform/hot_keys.h"
#include "dqlib/platform/locale.h"
#include "dqlib/platform/mail.h"
#include "dqlib/platform/modules.h"
#include "dqlib/platform/network.h"
#include "dqlib/platform/printing.h"
#include "dqlib/platform/processes.h"
#include "dqlib/platform/profile_files.h"
#include "dqlib/platform/prompts.h"
#include "dqlib/platform/registry.h"
#include "dqlib/platform/shell.h"
#include "dqlib/platform/system_errors.h"
#include "dqlib/platform/system_facts.h"
#include "dqlib/platform/threads.h"
#include "dqlib/platform/version_resources.h"

namespace dq::platform {

/// One of each service. No member is ever null; none is owned.
struct Platform {
  ChangeNotifications* change_notifications;
  Clipboard* clipboard;
  Clock* clock;
  ColorScheme* color_scheme;
  Console* console;
  Files* files;
  HotKeys* hot_keys;
  Locale* locale;
  Mail* mail;
  Modules* modules;
  Network* network;
  Printing* printing;
  Processes* processes;
  ProfileFiles* profile_files;
  Prompts* prompts;
  Registry* registry;
  Shell* shell;
  SystemErrors* system_errors;
  SystemFacts* system_facts;
  Threads* threads;
  VersionResources* version_resources;
};

/// The services in force: the system's own, unless a `ScopedPlatform` has put others in place. Any
/// thread.
const Platform& Current();

/// The system's own services, which live until the process ends. Any thread.
const Platform& System();

/// Puts services in place for its lifetime and the former ones back afterwards. Scopes nest. Make
/// and drop it while no other thread uses the library.
class ScopedPlatform {
 public:
  /// The services must outlive the scope; the structure itself is copied.
  explicit ScopedPlatform(const Platform& platform);
  ScopedPlatform(const ScopedPlatform&) = delete;
  ScopedPlatform& operator=(const ScopedPlatform&) = delete;
  ~ScopedPlatform();

 private:
  Platform platform_;
  const Platform* former_;
};

}  // namespace dq::platform
