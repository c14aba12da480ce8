// Dialogs that say how far something is while it goes on.
//
//   CDQProgressDialog progress("Export");
//   progress.SetRange(0, tables);
//   progress.Create(&main_frame);
//   for (int i = 0; i < tables && !progress.GetCancelled(); ++i) {
//     Export(i);
//     progress.SetPos(i + 1);
//     PumpUntilIdle();
//   }

#pragma once

#include <atomic>

#include "dqlib/framework/controls/progress.h"
#include "dqlib/framework/windows/win_thread.h"
#include "dqlib/toolkit/dialog.h"

namespace dq {

/// A modeless dialog with a line of text, a progress bar and a Cancel button, which only notes that
/// the person wants an end. What is set before it opens holds when it does. For the user-interface
/// thread, but for `GetCancelled`.
class CDQProgressDialog : public CDQDialog {
  DECLARE_DYNAMIC(CDQProgressDialog)
  static constexpr UINT kTemplateId = 45385;
  static constexpr int kTextId = 45386;
  static constexpr int kBarId = 45387;

  /// A caption of null or "" is the template's.
  explicit CDQProgressDialog(const char* caption = nullptr);
  ~CDQProgressDialog() override;

  /// Opens it, owned by `owner`, which may be null.
  bool Create(CWnd* owner);

  /// The first line; null counts as "".
  void SetText1(const char* text);
  const CString& GetText1() const { return m_strText; }

  /// As those of `CProgressCtrl`.
  void SetRange(int lower, int upper);
  int SetPos(int position);
  int StepIt();
  void SetStepIncrement(int step);
  int GetPos() const { return m_bar.GetPos(); }

  /// The number of an animation that a window layer may play while the dialog is shown; 0, as at
  /// first, for none. `PlayAVI` says from when on; false if there is none, or no window.
  void SetPlayAVI(UINT id) { m_nAnimation = id; }
  UINT GetPlayAVI() const { return m_bPlays ? m_nAnimation : 0; }
  bool PlayAVI();

  /// What the person is asked before a cancel counts; "" asks nothing. At first it is the string
  /// 44036. Null counts as "".
  void SetCancelOperationPrompt(const char* prompt) { m_strPrompt = prompt; }
  /// Whether the person has cancelled. Any thread.
  bool GetCancelled() const { return m_bCancelled; }
  void ResetCancelled() { m_bCancelled = false; }

 protected:
  BOOL OnInitDialog() override;
  void OnOK() override { OnCancel(); }
  void OnCancel() override;

 private:
  CProgressCtrl m_bar;
  CString m_strText;
  CString m_strPrompt;
  UINT m_nAnimation = 0;
  bool m_bPlays = false;
  std::atomic<bool> m_bCancelled = false;
};

/// The same without a bar: for a text that stands while something goes on.
class CDQMessageDialog : public CDQProgressDialog {
  DECLARE_DYNAMIC(CDQMessageDialog)
  using CDQProgressDialog::CDQProgressDialog;

 protected:
  BOOL OnInitDialog() override;
};

/// A box that is shown while a worker thread does something; a timer moves its bar.
class DQProgressBox {
 public:
  /// The work; it ends early when `GetCancelled` says so.
  using Work = UINT (*)(DQProgressBox& box, void* parameter);

  DQProgressBox(const char* caption, const char* text);

  /// Runs the work on a thread of its own and messages on this one, with the owner (null for none)
  /// disabled, and returns the work's result when it has ended; -1 without a thread.
  int Run(CWnd* owner, Work work, void* parameter);

  /// Any thread.
  bool GetCancelled() const { return m_dialog.GetCancelled(); }

 private:
  class Dialog : public CDQProgressDialog {
   public:
    using CDQProgressDialog::CDQProgressDialog;

   protected:
    bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;

   private:
    LRESULT OnTimer(WPARAM, LPARAM);
  };
  struct Job;

  static UINT RunJob(void* job);

  Dialog m_dialog;
};

}  // namespace dq
