#include "dqlib/output/progress_dialog.h"

#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/resources/string_ids.h"

namespace dq {

IMPLEMENT_DYNAMIC(CDQProgressDialog, CDQDialog)
IMPLEMENT_DYNAMIC(CDQMessageDialog, CDQProgressDialog)

CDQProgressDialog::CDQProgressDialog(const char* caption)
    : m_strPrompt(detail::LoadText(IDS_CANCEL_OPERATION)) {
  SetCaption(caption);
}

CDQProgressDialog::~CDQProgressDialog() { EndInDestructor(); }

bool CDQProgressDialog::Create(CWnd* owner) { return CDQDialog::Create(kTemplateId, owner); }

BOOL CDQProgressDialog::OnInitDialog() {
  const BOOL result = CDQDialog::OnInitDialog();
  // The control takes over what the template's one holds, which is nothing yet.
  int lower = 0;
  int upper = 0;
  m_bar.GetRange(lower, upper);
  const int position = m_bar.GetPos();
  const int step = m_bar.SetStep(0);
  m_bar.SubclassDlgItem(kBarId, this);
  m_bar.SetRange(lower, upper);
  m_bar.SetStep(step);
  m_bar.SetPos(position);
  SetDlgItemText(kTextId, m_strText);
  return result;
}

void CDQProgressDialog::SetText1(const char* text) {
  m_strText = text;
  SetDlgItemText(kTextId, m_strText);
}

void CDQProgressDialog::SetRange(int lower, int upper) { m_bar.SetRange(lower, upper); }

int CDQProgressDialog::SetPos(int position) { return m_bar.SetPos(position); }

int CDQProgressDialog::StepIt() { return m_bar.StepIt(); }

void CDQProgressDialog::SetStepIncrement(int step) { m_bar.SetStep(step); }

bool CDQProgressDialog::PlayAVI() {
  m_bPlays = m_nAnimation != 0 && GetSafeHwnd() != nullptr;
  return m_bPlays;
}

void CDQProgressDialog::OnCancel() {
  const detail::Watched self(*this);
  const bool agreed =
      m_strPrompt.IsEmpty() || AfxMessageBox(m_strPrompt, BOX_YES_NO | BOX_QUESTION) == BUTTON_YES;
  if (agreed && self.IsThere()) m_bCancelled = true;
}

BOOL CDQMessageDialog::OnInitDialog() {
  const BOOL result = CDQProgressDialog::OnInitDialog();
  if (CWnd* const bar = GetDlgItem(kBarId)) bar->ShowWindow(SW_HIDE);
  return result;
}

// ---- The box

struct DQProgressBox::Job {
  DQProgressBox& box;
  Work work;
  void* parameter;
  UINT result = 0;
  std::atomic<bool> is_done = false;
};

DQProgressBox::DQProgressBox(const char* caption, const char* text) : m_dialog(caption) {
  m_dialog.SetText1(text);
}

UINT DQProgressBox::RunJob(void* job) {
  Job& own = *static_cast<Job*>(job);
  own.result = own.work(own.box, own.parameter);
  own.is_done = true;
  return own.result;
}

int DQProgressBox::Run(CWnd* owner, Work work, void* parameter) {
  constexpr UINT kInterval = 100;
  Job job{*this, work, parameter};
  m_dialog.ResetCancelled();
  m_dialog.Create(owner);
  m_dialog.SetTimer(1, kInterval);
  const HWND disabled =
      owner == nullptr || !owner->IsWindowEnabled() ? nullptr : owner->GetSafeHwnd();
  if (disabled != nullptr) owner->EnableWindow(false);
  WorkerThread thread = work == nullptr ? WorkerThread() : AfxBeginThread(&RunJob, &job);
  const bool has_thread = static_cast<bool>(thread);
  if (has_thread) PumpUntil([&job] { return job.is_done.load(); });
  thread.Join();
  if (CWnd* const window = disabled == nullptr ? nullptr : CWnd::FromHandle(disabled)) {
    window->EnableWindow();
  }
  m_dialog.DestroyWindow();
  return has_thread ? static_cast<int>(job.result) : -1;
}

bool DQProgressBox::Dialog::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {MessageEntry<&Dialog::OnTimer>(WM_TIMER)};
  return CallEntry(kEntries, *this, key, arguments) ||
         CDQProgressDialog::CallMapped(key, arguments);
}

LRESULT DQProgressBox::Dialog::OnTimer(WPARAM, LPARAM) {
  StepIt();
  return 0;
}

}  // namespace dq
