#include "dqlib/output/console_program_view.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <utility>

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/output/console_child.h"
#include "dqlib/output/console_text.h"
#include "dqlib/platform/platform.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

/// The second argument is a zero-ended text, good for the length of the send.
enum PrivateMessage : UINT { kAddText = WM_USER + 1, kOutput };

constexpr std::size_t kReadSize = 4096;
constexpr int kMostText = 4 * 1024 * 1024;
constexpr int kLongestInterpreter = 260;

/// What a thread of a view works on. It outlives the view if that ends by what it does with output.
struct Job {
  std::shared_ptr<detail::ConsoleChild> child;
  HWND view;
};

LPARAM TextParam(const char* text) { return reinterpret_cast<LPARAM>(text); }

}  // namespace

IMPLEMENT_DYNCREATE(CDQConsoleProgramView, CEditView)

CDQConsoleProgramView::CDQConsoleProgramView() { Initialize(); }

CDQConsoleProgramView::~CDQConsoleProgramView() {
  EndInDestructor();
  EndChild();
}

void CDQConsoleProgramView::Initialize() {
  constexpr BYTE kChineseCharSet = 134;
  constexpr std::string_view kFace = "FixedSys";
  m_logFont = {};
  m_logFont.lfWeight = 400;
  m_logFont.lfCharSet = kChineseCharSet;
  kFace.copy(m_logFont.lfFaceName, kFace.size());
  m_strCommandLine.Empty();
  m_nInputStart = 0;
  m_nLength = 0;
  m_nMaxText = kMostText;
  m_nCut = 0;
  m_strCutNote.clear();
}

// ---- The child

LRESULT CDQConsoleProgramView::OnCreate(WPARAM wparam, LPARAM lparam) {
  const detail::Watched self(*this);
  const LRESULT result = DefWindowProc(WM_CREATE, wparam, lparam);
  if (result == -1 || !self.IsThere()) return result;
  m_font.CreateFontIndirect(m_logFont);
  SetFont(&m_font);
  if (!self.IsThere()) return -1;
  m_nLength = m_nInputStart = GetWindowTextLength();
  return CreateShellRedirect() ? result : -1;
}

bool CDQConsoleProgramView::CreateShellRedirect() {
  EndChild();
  DWORD id = detail::ConsoleChild::kNoProcess;
  if (CreateChildProcess(id) && StartThreads()) return true;
  EndChild();
  return false;
}

CString CDQConsoleProgramView::InterpreterCommand() const {
  const platform::Platform& platform = platform::Current();
  const auto interpreter = platform.processes->EnvironmentVariable("COMSPEC");
  if (interpreter && !interpreter->empty()) {
    return CString(*interpreter).Left(kLongestInterpreter) + " /A";
  }
  const std::string shell = platform.system_facts->UserShell();
  return CString(shell.empty() ? shell : platform::QuoteArgument(shell));
}

bool CDQConsoleProgramView::CreateChildProcess(DWORD& id) {
  const CString command = m_strCommandLine.IsEmpty() ? InterpreterCommand() : m_strCommandLine;
  m_pChild = std::make_shared<detail::ConsoleChild>(*platform::Current().processes);
  m_startError = m_pChild->Start(command.View());
  id = m_pChild->GetProcessId();
  return m_startError.ok();
}

bool CDQConsoleProgramView::StartThreads() {
  const auto begin = [this](UINT (*procedure)(void*)) {
    auto job = std::make_unique<Job>(Job{m_pChild, GetSafeHwnd()});
    WorkerThread thread = AfxBeginThread(procedure, job.get());
    if (thread) static_cast<void>(job.release());
    return thread;
  };
  m_writeThread = begin(WritePipeThreadProc);
  if (m_writeThread) m_readThread = begin(ReadPipeThreadProc);
  if (m_readThread) return true;
  m_startError = {platform::ErrorKind::kNoSpace, 0};
  return false;
}

UINT CDQConsoleProgramView::ReadPipeThreadProc(void* job) {
  const std::unique_ptr<Job> own(static_cast<Job*>(job));
  const auto show = [&own](const std::string& text) {
    if (!text.empty()) SendToWindow(own->view, kOutput, 0, TextParam(text.c_str()));
  };
  detail::ConsoleText text;
  std::array<char, kReadSize> buffer;
  for (std::string_view bytes; !(bytes = own->child->Read(buffer)).empty();) {
    show(text.Take(bytes));
  }
  show(text.Rest());
  if (own->child->Finish()) PostToWindow(own->view, WM_CLOSE, 0, 0);
  return 1;
}

UINT CDQConsoleProgramView::WritePipeThreadProc(void* job) {
  const std::unique_ptr<Job> own(static_cast<Job*>(job));
  own->child->WriteWhatComes();
  return 1;
}

LRESULT CDQConsoleProgramView::OnDestroy(WPARAM wparam, LPARAM lparam) {
  EndChild();
  return DefWindowProc(WM_DESTROY, wparam, lparam);
}

void CDQConsoleProgramView::EndChild() {
  if (m_pChild == nullptr) return;
  const std::shared_ptr<detail::ConsoleChild> child = std::move(m_pChild);
  m_pChild = nullptr;
  const bool ends = child->End();
  m_writeThread.Join();
  // What the reading thread still sends is answered meanwhile. It isn't waited for where it waits
  // for this call itself, or for a program that doesn't end; then it ends on its own.
  if (ends && !m_bShowing) m_readThread.Join();
  m_readThread = {};
}

// ---- Output

void CDQConsoleProgramView::AddText(const char* text) {
  if (text != nullptr) SendMessage(kAddText, 0, TextParam(text));
}

void CDQConsoleProgramView::AddText(char character) {
  const char text[] = {character, '\0'};
  AddText(text);
}

void CDQConsoleProgramView::MoveToEnd() {
  const int end = GetWindowTextLength();
  SendMessage(EM_SETSEL, static_cast<WPARAM>(end), end);
}

LRESULT CDQConsoleProgramView::OnAddText(WPARAM, LPARAM text) {
  MoveToEnd();
  return SendMessage(EM_REPLACESEL, 0, text);
}

LRESULT CDQConsoleProgramView::OnOutput(WPARAM, LPARAM text) {
  // A view that has ended its child has nothing to show.
  if (m_pChild == nullptr) return 0;
  const detail::SetWhile showing(*this, m_bShowing);
  ShowOutput(reinterpret_cast<const char*>(text));
  return 0;
}

void CDQConsoleProgramView::ShowOutput(const char* text) {
  const detail::Watched self(*this);
  AddText(text);
  if (!self.IsThere()) return;
  m_nInputStart = GetWindowTextLength();
  CutOldText();
}

void CDQConsoleProgramView::CutOldText() {
  const std::string& text = Text();
  const auto most = static_cast<std::size_t>(m_nMaxText);
  if (text.size() <= most + most / 4) return;
  const auto sent = static_cast<std::size_t>(m_nInputStart);
  const std::size_t least = text.size() - most;
  const std::size_t line_end = text.find("\r\n", least);
  std::size_t cut = line_end == std::string::npos ? least : line_end + 2;
  cut = multi_byte::CharacterStart(text, std::min(cut, sent));
  const bool has_note = !m_strCutNote.empty() && text.starts_with(m_strCutNote);
  const std::size_t note_size = has_note ? m_strCutNote.size() : 0;
  if (cut <= note_size) return;
  m_nCut += static_cast<long long>(cut - note_size);
  CString note;
  AfxFormatString1(note, IDS_CONSOLE_TEXT_CUT, std::to_string(m_nCut).c_str());
  m_strCutNote = std::string(note.View()) + "\r\n";
  const int change = static_cast<int>(m_strCutNote.size()) - static_cast<int>(cut);
  m_nInputStart += change;
  m_nLength += change;
  const detail::Watched self(*this);
  SetSel(0, static_cast<int>(cut));
  ReplaceSel(m_strCutNote.c_str());
  if (self.IsThere()) MoveToEnd();
}

// ---- Input

/// What a person types keeps its begin when text before it comes or goes, as by cutting.
void CDQConsoleProgramView::FollowChange() {
  const int length = static_cast<int>(Text().size());
  const int change = length - std::exchange(m_nLength, length);
  int start = 0;
  int end = 0;
  GetSel(start, end);
  // The caret stands behind what has come. This is where what has gone for it ended.
  const int former_end = end - change;
  const bool is_before = former_end < m_nInputStart || (former_end == m_nInputStart && change < 0);
  m_nInputStart = is_before ? m_nInputStart + change : std::min(m_nInputStart, end);
  m_nInputStart = std::clamp(m_nInputStart, 0, length);
}

void CDQConsoleProgramView::OnTextWasSet() {
  m_nLength = static_cast<int>(Text().size());
  m_nInputStart = std::min(m_nInputStart, m_nLength);
  CEditView::OnTextWasSet();
}

bool CDQConsoleProgramView::NotifyEdit(int code) {
  if (code == EN_UPDATE) FollowChange();
  return CEditView::NotifyEdit(code);
}

int CDQConsoleProgramView::GetCurrentPosition() {
  SendMessage(EM_SETSEL, static_cast<WPARAM>(-1), 0);
  DWORD end = 0;
  SendMessage(EM_GETSEL, 0, reinterpret_cast<LPARAM>(&end));
  return static_cast<int>(end);
}

int CDQConsoleProgramView::GetSelLength() const {
  int start = 0;
  int end = 0;
  GetSel(start, end);
  return end - start;
}

LRESULT CDQConsoleProgramView::OnChar(WPARAM character, LPARAM lparam) {
  const detail::Watched self(*this);
  const int position = GetCurrentPosition();
  if (character == '\b' && position <= m_nInputStart) return 0;
  if (position < m_nInputStart) MoveToEnd();
  if (!self.IsThere()) return 0;
  const LRESULT result = DefWindowProc(WM_CHAR, character, lparam);
  if (character != '\r' || !self.IsThere()) return result;
  SendInput();
  CutOldText();
  return result;
}

void CDQConsoleProgramView::SendInput() {
  CString input;
  GetUserInput(input);
  WriteToPipe(input);
  // A program that says nothing to a line isn't sent it again with the next one.
  m_nInputStart = std::max(m_nInputStart, GetCurrentPosition());
}

LRESULT CDQConsoleProgramView::OnKeyDown(WPARAM key, LPARAM lparam) {
  if (key == VK_DELETE && GetCurrentPosition() < m_nInputStart) return 0;
  return DefWindowProc(WM_KEYDOWN, key, lparam);
}

void CDQConsoleProgramView::GetUserInput(CString& input) const {
  int start = 0;
  int caret = 0;
  GetSel(start, caret);
  const auto first = static_cast<std::size_t>(m_nInputStart);
  const std::string_view text = Text();
  input = caret > m_nInputStart ? text.substr(first, static_cast<std::size_t>(caret) - first)
                                : std::string_view();
}

void CDQConsoleProgramView::WriteToPipe(const char* text) {
  if (m_pChild == nullptr) return;
  const std::string_view line_end = platform::Current().processes->LineEnd();
  std::string bytes;
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t end = rest.find("\r\n");
    bytes += rest.substr(0, end);
    if (end == std::string_view::npos) break;
    bytes += line_end;
    rest.remove_prefix(end + 2);
  }
  m_pChild->Write(bytes);
}

void CDQConsoleProgramView::CloseInput() {
  if (m_pChild == nullptr) return;
  SendInput();
  m_pChild->CloseInput();
}

std::size_t CDQConsoleProgramView::GetUnwrittenInput() const {
  return m_pChild == nullptr ? 0 : m_pChild->GetUnwritten();
}

bool CDQConsoleProgramView::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  using Self = CDQConsoleProgramView;
  static constexpr MessageMapEntry kEntries[] = {
      MessageEntry<&Self::OnCreate>(WM_CREATE), MessageEntry<&Self::OnDestroy>(WM_DESTROY),
      MessageEntry<&Self::OnChar>(WM_CHAR),     MessageEntry<&Self::OnKeyDown>(WM_KEYDOWN),
      MessageEntry<&Self::OnAddText>(kAddText), MessageEntry<&Self::OnOutput>(kOutput),
  };
  return CallEntry(kEntries, *this, key, arguments) || CEditView::CallMapped(key, arguments);
}

}  // namespace dq
