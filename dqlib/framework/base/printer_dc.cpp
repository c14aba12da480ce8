#include "dqlib/framework/base/printer_dc.h"

#include <algorithm>
#include <utility>

#include "dqlib/framework/base/error_text.h"
#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

/// A string of the framework.
constexpr UINT kNoPages = 61884;

platform::Files& Files() { return *platform::Current().files; }

struct LocalePaper {
  /// Of the locale's item.
  std::string_view number;
  CSize size;
};

constexpr LocalePaper kLocalePapers[] = {
    {"1", kPaperLetter}, {"5", kPaperLegal}, {"8", kPaperA3}, {"9", kPaperA4}};

}  // namespace

PageFormat UsualPageFormat() {
  const auto number = platform::Current().locale->Item(LOCALE_IPAPERSIZE, LOCALE_USER_DEFAULT);
  for (const LocalePaper& paper : kLocalePapers) {
    if (number == paper.number) return {.paper = paper.size};
  }
  return {};
}

IMPLEMENT_DYNAMIC(PrinterDC, PdfDC)

PrinterDC::PrinterDC(const platform::PrintJob& job, const PageFormat& format)
    : PdfDC([this](std::string_view bytes) { return Files().Write(spool_, bytes); }, format),
      job_(job) {}

PrinterDC::~PrinterDC() { CloseFiles(); }

CString PrinterDC::GetErrorText() const {
  if (!words_.empty()) return CString(words_);
  return GetError().ok() ? CString() : CString(detail::ErrorText(GetError()));
}

bool PrinterDC::Fail(const platform::PrintOutcome& outcome) {
  SetError(outcome.error);
  words_ = outcome.words;
  CloseFiles();
  return false;
}

platform::Error PrinterDC::OpenFiles() {
  if (!job_.to_file.empty()) {
    const auto target = Files().Open(
        job_.to_file, {.write = true, .create = true, .deny_write = true, .replace = true});
    if (!target.ok()) return target.error;
    target_ = target.value;
  }
  auto path = Files().MakeTempFile(Files().TempDirectory(), "prt");
  if (!path.ok()) return path.error;
  spool_path_ = std::move(path.value);
  const auto spool = Files().Open(spool_path_, {.write = true});
  if (!spool.ok()) return spool.error;
  spool_ = spool.value;
  // Where the system lets an open file lose its name, nothing is left of it however the process
  // ends.
  if (Files().Delete(spool_path_).ok()) spool_path_.clear();
  return {};
}

void PrinterDC::CloseFiles() {
  // Nothing of these files is wanted any more, so nothing is lost where this fails.
  static_cast<void>(Files().Close(std::exchange(target_, kNoHandle)));
  static_cast<void>(Files().Close(std::exchange(spool_, kNoHandle)));
  if (!spool_path_.empty()) static_cast<void>(Files().Delete(std::exchange(spool_path_, {})));
}

bool PrinterDC::BeginDocument(std::string_view title) {
  title_ = title;
  page_ = 0;
  has_pages_ = false;
  words_.clear();
  if (const platform::Error error = OpenFiles(); !error.ok()) return Fail({.error = error});
  return PdfDC::BeginDocument(title);
}

CDC::PageStart PrinterDC::BeginPage() {
  ++page_;
  const int first = std::max(1, job_.first_page);
  const bool is_behind = job_.last_page >= first && page_ > job_.last_page;
  if (page_ < first || is_behind) return PageStart::kSkipped;
  has_pages_ = true;
  return PdfDC::BeginPage();
}

bool PrinterDC::FinishDocument() {
  if (!has_pages_) {
    const std::string words(AfxFindString(kNoPages).value_or(""));
    return Fail({{platform::ErrorKind::kInvalidArgument, 0}, words});
  }
  if (!PdfDC::FinishDocument()) return Fail({.error = GetError()});
  const platform::PrintOutcome outcome = Deliver();
  if (!outcome.error.ok()) return Fail(outcome);
  CloseFiles();
  return true;
}

platform::PrintOutcome PrinterDC::Deliver() {
  if (!job_.to_file.empty()) {
    return {.error = Files().ReplaceByAndClose(std::exchange(target_, kNoHandle), spool_)};
  }
  const auto start = Files().Seek(spool_, 0, platform::SeekOrigin::kBegin);
  if (!start.ok()) return {.error = start.error};
  platform::PrintJob job = job_;
  if (job.title.empty()) job.title = title_;
  return platform::Current().printing->Print(
      job, [this](std::span<char> buffer) { return Files().Read(spool_, buffer); });
}

void PrinterDC::DropDocument() {
  PdfDC::DropDocument();
  CloseFiles();
}

}  // namespace dq
