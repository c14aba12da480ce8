// An edit view that is a terminal: what a child program writes comes into it, and what a person
// types behind that goes to the child.
//
//   CDQConsoleProgramView view;
//   view.SetCommandLine("isql -n");
//   view.Create(&frame, place, kFirstPaneId, document);

#pragma once

#include <memory>
#include <string>

#include "dqlib/framework/base/drawing.h"
#include "dqlib/framework/controls/edit_view.h"
#include "dqlib/framework/windows/win_thread.h"
#include "dqlib/platform/error.h"

namespace dq {

namespace detail {
class ConsoleChild;
}

/// A view with a console program of its own. The program is started when the window is made, and
/// ends with it, with its whole process group; when it ends by itself, the view gets `WM_CLOSE`.
/// What it writes to its standard output and error is added at the end of the text: a line feed
/// alone ends a line too, zeros are left out. A line that is typed behind that goes to its standard
/// input with Enter, its end as programs of the system expect it. Neither a program that doesn't
/// read nor one that writes for ever keeps the window from working.
///
/// All of it belongs to the window's thread but `AddText`.
class CDQConsoleProgramView : public CEditView {
  DECLARE_DYNCREATE(CDQConsoleProgramView)
  CDQConsoleProgramView();
  ~CDQConsoleProgramView() override;

  /// The command line of the next start, in the form of `platform::StartInfo`. "", as at first, is
  /// the command interpreter: at most 260 bytes of the variable COMSPEC with " /A" behind, or where
  /// that isn't set the shell of the user. Null counts as "".
  void SetCommandLine(const char* command_line) { m_strCommandLine = command_line; }
  const CString& GetCommandLine() const { return m_strCommandLine; }

  /// Puts the caret at the text's end and the text there. Any thread; another one than the window's
  /// waits until it is done.
  void AddText(const char* text);

  /// What has been typed behind the last output, up to the caret, line ends included, and hasn't
  /// been sent.
  void GetUserInput(CString& input) const;

  /// Sends what `GetUserInput` gives, and closes the program's input behind that.
  void CloseInput();
  /// How many bytes of what has been entered the program hasn't taken yet.
  std::size_t GetUnwrittenInput() const;
  /// Why the program couldn't be started; no error if it was.
  const platform::Error& GetStartError() const { return m_startError; }

  /// About how many bytes of text are kept. When it is a quarter more, the oldest lines go, and a
  /// line at the text's begin says how much has gone so far. Below 1 counts as 1; at first 4 MiB.
  void SetMaxText(int bytes) { m_nMaxText = bytes < 1 ? 1 : bytes; }
  int GetMaxText() const { return m_nMaxText; }

 protected:
  /// Brings all fields to their state without a child. For the constructor.
  void Initialize();

  /// Starts the program and the threads. False, and nothing is left, if that fails; the window
  /// isn't made then. Called when the window is made.
  virtual bool CreateShellRedirect();

  /// Shows what the program has written, whole characters with CR LF as line ends. The base adds it
  /// to the text, and what is typed counts from there on.
  virtual void ShowOutput(const char* text);

  void OnTextWasSet() override;
  bool NotifyEdit(int code) override;
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;

 private:
  /// Where the process id is told, and whether the program runs.
  bool CreateChildProcess(DWORD& id);
  CString InterpreterCommand() const;
  bool StartThreads();
  void EndChild();
  void SendInput();
  void WriteToPipe(const char* text);
  void AddText(char character);
  void MoveToEnd();
  void CutOldText();
  void FollowChange();
  /// Where the caret is; nothing is selected then.
  int GetCurrentPosition();
  int GetSelLength() const;
  static UINT ReadPipeThreadProc(void* job);
  static UINT WritePipeThreadProc(void* job);

  LRESULT OnCreate(WPARAM wparam, LPARAM lparam);
  LRESULT OnDestroy(WPARAM wparam, LPARAM lparam);
  LRESULT OnChar(WPARAM character, LPARAM lparam);
  LRESULT OnKeyDown(WPARAM key, LPARAM lparam);
  LRESULT OnAddText(WPARAM wparam, LPARAM text);
  LRESULT OnOutput(WPARAM wparam, LPARAM text);

  WorkerThread m_readThread;
  WorkerThread m_writeThread;
  /// Null without a child.
  std::shared_ptr<detail::ConsoleChild> m_pChild;
  platform::Error m_startError;
  LOGFONT m_logFont;
  CString m_strCommandLine;
  CFont m_font;
  /// Where what a person types begins.
  int m_nInputStart = 0;
  /// The text's, by which a change of it is known.
  int m_nLength = 0;
  int m_nMaxText = 0;
  /// What has been cut off the text's begin, and the line that says so.
  long long m_nCut = 0;
  std::string m_strCutNote;
  /// Output is being shown, for which the reading thread waits.
  bool m_bShowing = false;
};

}  // namespace dq
