// Which handlers a class has for commands and messages: a table for each class, built when the
// program is compiled.
//
//   class CGoDlg : public CDialog {
//    protected:
//     bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
//     void OnBrowse();
//     void OnUpdateBrowse(CCmdUI* ui);
//     LRESULT OnDone(WPARAM, LPARAM);
//   };
//
//   bool CGoDlg::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
//     static constexpr MessageMapEntry kEntries[] = {
//         CommandEntry<&CGoDlg::OnBrowse>(204),
//         UpdateEntry<&CGoDlg::OnUpdateBrowse>(204),
//         MessageEntry<&CGoDlg::OnDone>(WM_APP + 1),
//     };
//     return CallEntry(kEntries, *this, key, arguments) || CDialog::CallMapped(key, arguments);
//   }

#pragma once

#include <span>
#include <type_traits>

#include "dqlib/framework/windows/window_messages.h"

namespace dq {

class CCmdTarget;
class CCmdUI;

/// What a handler is looked for: the window message (`WM_COMMAND` for commands, updates and
/// notifications of controls), a `CommandCode` or notification code, and the id.
struct HandlerKey {
  UINT message = 0;
  int code = 0;
  UINT id = 0;
};

/// What a handler is called with, and what comes back. Which members count depends on the entry.
struct HandlerArguments {
  /// Only asks whether there is a handler, and calls none.
  bool only_ask = false;
  CCmdUI* ui = nullptr;
  NMHDR* header = nullptr;
  WPARAM wparam = 0;
  LPARAM lparam = 0;
  LRESULT result = 0;
};

/// One handler. Made by the functions below.
struct MessageMapEntry {
  UINT message;
  int code;
  /// The ids it is for, ends included; 0 for messages.
  UINT first_id;
  UINT last_id;
  /// Calls the handler. False if it declines: then the search goes on.
  bool (*call)(CCmdTarget& target, UINT id, HandlerArguments& arguments);
};

/// Calls the first entry for the key that doesn't decline. False if there is none.
bool CallEntry(std::span<const MessageMapEntry> entries, CCmdTarget& target, const HandlerKey& key,
               HandlerArguments& arguments);

namespace detail {

template <typename Member>
struct ClassOfMember;
template <typename Result, typename Class, typename... Arguments>
struct ClassOfMember<Result (Class::*)(Arguments...)> {
  using type = Class;
};

/// Calls a handler that commands or notifications go to; false if it declines.
template <auto handler, typename Class, typename... Arguments>
bool CallOrDecline(Class& object, Arguments... arguments) {
  if constexpr (std::is_void_v<decltype((object.*handler)(arguments...))>) {
    (object.*handler)(arguments...);
    return true;
  } else {
    return (object.*handler)(arguments...) != 0;
  }
}

/// Calls a handler with what its signature takes: nothing, the id, the `CCmdUI`, the header of a
/// notification with a place for the result, or both arguments of the message. One that returns a
/// BOOL declines by 0; one for a message returns the message's result.
template <auto handler>
bool CallHandler(CCmdTarget& target, UINT id, HandlerArguments& arguments) {
  using Handler = decltype(handler);
  using Class = typename ClassOfMember<Handler>::type;
  Class& object = static_cast<Class&>(target);
  if constexpr (std::is_invocable_r_v<LRESULT, Handler, Class&, WPARAM, LPARAM>) {
    arguments.result = (object.*handler)(arguments.wparam, arguments.lparam);
    return true;
  } else if constexpr (std::is_invocable_v<Handler, Class&, NMHDR*, LRESULT*>) {
    return CallOrDecline<handler>(object, arguments.header, &arguments.result);
  } else if constexpr (std::is_invocable_v<Handler, Class&, CCmdUI*>) {
    return CallOrDecline<handler>(object, arguments.ui);
  } else if constexpr (std::is_invocable_v<Handler, Class&, UINT>) {
    return CallOrDecline<handler>(object, id);
  } else {
    return CallOrDecline<handler>(object);
  }
}

}  // namespace detail

/// A command of a menu, a tool bar or a button: `void f()`, `void f(UINT id)`, or with a BOOL
/// result, by which it declines.
template <auto handler>
constexpr MessageMapEntry CommandRangeEntry(UINT first_id, UINT last_id) {
  return {WM_COMMAND, CN_COMMAND, first_id, last_id, &detail::CallHandler<handler>};
}
template <auto handler>
constexpr MessageMapEntry CommandEntry(UINT id) {
  return CommandRangeEntry<handler>(id, id);
}

/// The update of what shows a command: `void f(CCmdUI*)`.
template <auto handler>
constexpr MessageMapEntry UpdateRangeEntry(UINT first_id, UINT last_id) {
  return {WM_COMMAND, CN_UPDATE_COMMAND_UI, first_id, last_id, &detail::CallHandler<handler>};
}
template <auto handler>
constexpr MessageMapEntry UpdateEntry(UINT id) {
  return UpdateRangeEntry<handler>(id, id);
}

/// A notification of a control to its parent by `WM_COMMAND`: as a command.
template <auto handler>
constexpr MessageMapEntry ControlEntry(int code, UINT id) {
  return {WM_COMMAND, code, id, id, &detail::CallHandler<handler>};
}

/// A notification by `WM_NOTIFY`: `void f(NMHDR*, LRESULT*)`, or with a BOOL result, by which it
/// declines. Of the code 16 bits count.
template <auto handler>
constexpr MessageMapEntry NotificationEntry(int code, UINT id) {
  return {WM_NOTIFY, static_cast<WORD>(code), id, id, &detail::CallHandler<handler>};
}

/// In a control: its own notifications, before its parent gets them, and messages that its parent
/// gets about it. A handler without a result, or one that returns not 0, keeps them from the
/// parent.
template <auto handler>
constexpr MessageMapEntry ReflectedEntry(int code) {
  return {kReflectBase + WM_COMMAND, code, 0, 0, &detail::CallHandler<handler>};
}
template <auto handler>
constexpr MessageMapEntry ReflectedNotificationEntry(int code) {
  return {kReflectBase + WM_NOTIFY, static_cast<WORD>(code), 0, 0, &detail::CallHandler<handler>};
}
template <auto handler>
constexpr MessageMapEntry ReflectedMessageEntry(UINT message) {
  return {kReflectBase + message, 0, 0, 0, &detail::CallHandler<handler>};
}

/// A message: `LRESULT f(WPARAM, LPARAM)`.
template <auto handler>
constexpr MessageMapEntry MessageEntry(UINT message) {
  return {message, 0, 0, 0, &detail::CallHandler<handler>};
}

}  // namespace dq
