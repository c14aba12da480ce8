// Threads of the framework, and the application object.

#pragma once

#include <memory>

#include "dqlib/framework/windows/wnd.h"

namespace dq {

/// A thread that the framework knows. The program's first one is its `CWinApp`; others are begun by
/// `AfxBeginThread`.
class CWinThread : public CObject {
  DECLARE_DYNAMIC(CWinThread)
  CWinThread() = default;
  ~CWinThread() override;

  /// The thread's main window, which application messages go to; null if it has none. A thread
  /// begun by another gets that one's, which must then outlive what the thread does. Not owned.
  CWnd* m_pMainWnd = nullptr;
};

/// The calling thread's object, or null if the framework doesn't know the thread.
CWinThread* AfxGetThread();

/// The main window of the calling thread, or null.
CWnd* AfxGetMainWnd();

/// A thread begun by `AfxBeginThread`, or none. Dropping it lets the thread go on by itself.
class WorkerThread {
 public:
  WorkerThread();
  WorkerThread(WorkerThread&&) noexcept;
  WorkerThread& operator=(WorkerThread&&) noexcept;
  ~WorkerThread();

  /// True if there is a thread that hasn't been joined.
  explicit operator bool() const { return state_ != nullptr; }

  /// Waits for the thread's end, and handles meanwhile what it and others send to windows of the
  /// calling thread. Does nothing if there is no thread. Not for the thread itself to call.
  void Join();

 private:
  friend WorkerThread AfxBeginThread(UINT (*procedure)(void*), void* parameter);
  struct State;
  std::unique_ptr<State> state_;
};

/// Runs `procedure(parameter)` on a new thread that the framework knows; its result is dropped. No
/// thread if the procedure is null or the system can't have another.
WorkerThread AfxBeginThread(UINT (*procedure)(void*), void* parameter);

/// Handles the messages that other threads have sent to windows of the calling thread and that
/// wait; returns how many there were. What is sent meanwhile waits for the next call.
int PumpSentMessages();

/// The application object: who the program is. The thread that makes it is the user-interface
/// thread. A program has one; it is dropped on the thread that made it.
class CWinApp : public CWinThread {
  DECLARE_DYNAMIC(CWinApp)
  /// The application's name; null takes the executable's base name without extension.
  explicit CWinApp(const char* name = nullptr);
  ~CWinApp() override;

  /// Sets the name under which the program's settings stand in the registry, "" at first.
  void SetRegistryKey(const char* key);

  /// The registry key name: the maker's name in the settings tree.
  const char* GetRegistryKeyName() const { return registry_key_; }
  /// The application's name, blanks kept.
  const char* GetAppName() const { return app_name_; }
  /// Full path of the executable. A host that stands for another program may set it.
  const CString& GetExecutablePath() const { return executable_path_; }
  void SetExecutablePath(const char* path) { executable_path_ = path; }

 private:
  CString registry_key_;
  CString app_name_;
  CString executable_path_;
};

/// The program's application object, or null. Any thread.
CWinApp* AfxGetApp();

}  // namespace dq
