#include "dqlib/framework/windows/print_dialog.h"

#include <optional>
#include <utility>

#include "dqlib/framework/windows/file_dialog.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/platform/platform.h"
#include "dqlib/platform/seam_texts.h"

namespace dq {
namespace {

using platform::PrintedPart;

PrintedPart PartOf(DWORD flags) {
  if ((flags & PD_SELECTION) != 0) return PrintedPart::kSelection;
  return (flags & PD_PAGENUMS) != 0 ? PrintedPart::kPages : PrintedPart::kAll;
}

}  // namespace

IMPLEMENT_DYNAMIC(CPrintDialog, CDialog)

CPrintDialog::CPrintDialog(DWORD flags, CWnd* parent) : CDialog(UINT{0}, parent) {
  question_.offer_selection = (flags & PD_NOSELECTION) == 0;
  question_.offer_pages = (flags & PD_NOPAGENUMS) == 0;
  question_.offer_file = (flags & PD_HIDEPRINTTOFILE) == 0;
  question_.choice.part = PartOf(flags);
  question_.choice.to_file = (flags & PD_PRINTTOFILE) != 0;
}

void CPrintDialog::SetPageRange(int first, int last) {
  question_.first_page = question_.choice.from = first;
  question_.last_page = question_.choice.to = last;
}

int CPrintDialog::DoModal() {
  const platform::Platform& services = platform::Current();
  {
    const CWaitCursor wait;
    // A system that doesn't tell its printers prints on the default one.
    question_.printers = services.printing->Printers().value;
    if (!question_.printers.empty() && question_.choice.printer.empty()) {
      question_.choice.printer = services.printing->DefaultPrinter().value;
    }
  }
  std::optional<platform::PrintChoice> chosen = services.prompts->ChoosePrint(question_);
  if (!chosen) return IDCANCEL;
  std::string file;
  if (chosen->to_file) {
    const std::string filter(platform::Text(IDS_PRINT_FILE_FILTER));
    CFileDialog dialog(false, "pdf", file_.c_str(), OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST,
                       filter.c_str());
    if (dialog.DoModal() != IDOK) return IDCANCEL;
    file = dialog.GetPathName().View();
  }
  question_.choice = *std::move(chosen);
  file_ = std::move(file);
  return IDOK;
}

platform::PrintJob CPrintDialog::GetPrintJob() const {
  platform::PrintJob job{.printer = choice().printer, .copies = choice().copies, .to_file = file_};
  if (PrintRange()) {
    job.first_page = choice().from;
    job.last_page = choice().to;
  }
  return job;
}

}  // namespace dq
