// A message on its way to the host's output pane.

#pragma once

#include "dqlib/framework/base/c_string.h"
#include "dqlib/resources/string_ids.h"

namespace dq {

class CWnd;

/// Application messages that the library sends to the host's main window.
enum ApplicationMessage : UINT {
  /// Add to the output pane: the second argument is a `CDQOutputMessage*`, valid for the length of
  /// the send. The first is 1 only for an error with a target; receivers ignore it.
  DQM_ADD_OUTPUT_MESSAGE = 33801,
  /// Open the output pane: arguments 0 and 1.
  DQM_SHOW_OUTPUT_PANE = 33818,
};

/// Kinds of message, in two families of three, and two marks of a task. A variable may hold any
/// `int`; what isn't one of these counts as 0.
enum OutputMessageType : int {
  OUTPUT_PROGRAM_INFO = 0,
  OUTPUT_PROGRAM_WARNING = 1,
  OUTPUT_PROGRAM_ERROR = 2,
  OUTPUT_DBMS_INFO = 3,
  OUTPUT_DBMS_WARNING = 4,
  OUTPUT_DBMS_ERROR = 5,
  OUTPUT_TASK_START = 6,
  OUTPUT_TASK_END = 7,
};

enum class OutputMessageKind { kInformation, kWarning, kError, kTaskStart, kTaskEnd };

/// How messages of a type are shown.
struct OutputMessageTraits {
  OutputMessageKind kind;
  /// The string that is shown as the source of the message; for the marks of a task the one that is
  /// shown in its place, filled with the time.
  UINT source_id;
};

inline constexpr OutputMessageTraits kOutputMessageTraits[] = {
    {OutputMessageKind::kInformation, IDS_SOURCE_PROGRAM},
    {OutputMessageKind::kWarning, IDS_SOURCE_PROGRAM},
    {OutputMessageKind::kError, IDS_SOURCE_PROGRAM},
    {OutputMessageKind::kInformation, IDS_SOURCE_DBMS},
    {OutputMessageKind::kWarning, IDS_SOURCE_DBMS},
    {OutputMessageKind::kError, IDS_SOURCE_DBMS},
    {OutputMessageKind::kTaskStart, IDS_START_TASK},
    {OutputMessageKind::kTaskEnd, IDS_END_TASK},
};

/// The type itself if it is one, else 0.
constexpr OutputMessageType KnownOutputMessageType(int type) {
  const bool known = type >= OUTPUT_PROGRAM_INFO && type <= OUTPUT_TASK_END;
  return known ? static_cast<OutputMessageType>(type) : OUTPUT_PROGRAM_INFO;
}

/// The traits of a type; of type 0 if it isn't one.
constexpr const OutputMessageTraits& GetOutputMessageTraits(int type) {
  return kOutputMessageTraits[KnownOutputMessageType(type)];
}

/// One message with its type. The send operations block until the main window of the calling thread
/// has taken the message, also from a worker; without a main window they set the fields and deliver
/// nothing.
class CDQOutputMessage {
 public:
  /// A type outside 0 to 7 counts as 0; a null text as "".
  explicit CDQOutputMessage(OutputMessageType type = OUTPUT_PROGRAM_INFO,
                            const char* text = nullptr, bool auto_delete = false);
  CDQOutputMessage(const CDQOutputMessage&) = default;
  CDQOutputMessage& operator=(const CDQOutputMessage&) = default;

  /// A new message that the caller owns, unless it is auto delete and has been sent. Null, and a
  /// line in the trace log, when memory runs out.
  static CDQOutputMessage* CreateOutputMessage(OutputMessageType type, const char* text,
                                               bool auto_delete);

  // The send operations come first among the virtual functions, in this order.

  /// Send as program information (type 0). The form with an id loads the string.
  virtual void SendInfoMessage(UINT id);
  virtual void SendInfoMessage(const char* text);
  /// Send as a program error (type 2), whatever the type was. A null target keeps the one that is
  /// set.
  virtual void SendErrorMessage(UINT id, const char* target);
  virtual void SendErrorMessage(const char* text, const char* target);

  virtual ~CDQOutputMessage();

  OutputMessageType GetType() const { return m_eType; }
  void SetType(OutputMessageType type);
  const CString& GetTarget() const { return m_strTarget; }
  const CString& GetText() const { return m_strText; }
  void SetText(const char* text);

  /// Whether the receiver is to delete the message when it has taken it.
  bool GetAutoDelete() const { return m_bAutoDelete; }
  void SetAutoDelete(bool auto_delete) { m_bAutoDelete = auto_delete; }

 private:
  void Send(WPARAM first);

  OutputMessageType m_eType;
  CString m_strTarget;
  CString m_strText;
  bool m_bAutoDelete;
};

}  // namespace dq
