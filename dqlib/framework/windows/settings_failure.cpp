#include "dqlib/framework/windows/settings_failure.h"

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/error_text.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

platform::Error& LastOf(SettingsStore store) {
  static platform::Error user;
  static platform::Error machine;
  return store == SettingsStore::kUser ? user : machine;
}

}  // namespace

platform::Error NoteSettingsReading(SettingsStore store, const platform::Error& error) {
  const bool is_failure = !error.ok() && error.kind != platform::ErrorKind::kNotFound;
  const platform::Error failure = is_failure ? error : platform::Error{};
  platform::Error& last = LastOf(store);
  const bool is_new = failure.kind != last.kind || failure.code != last.code;
  // Before it is told, for what runs while the box is open may read settings too.
  last = failure;
  if (is_failure && is_new) {
    CString text;
    text.Format(IDS_SETTINGS_NOT_READ, detail::ErrorText(error).c_str());
    AfxMessageBox(text, BOX_EXCLAMATION);
  }
  return failure;
}

platform::Error LastSettingsFailure(SettingsStore store) { return LastOf(store); }

}  // namespace dq
