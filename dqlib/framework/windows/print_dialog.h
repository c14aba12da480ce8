// Choosing what to print, and where.
//
//   CPrintDialog dialog(PD_RETURNDC | PD_NOSELECTION);
//   dialog.SetPageRange(1, pages);
//   if (dialog.DoModal() == IDOK) PrinterDC dc(dialog.GetPrintJob()); ...

#pragma once

#include "dqlib/framework/windows/dialog.h"
#include "dqlib/platform/choosers.h"
#include "dqlib/platform/printing.h"

namespace dq {

/// What a print dialog offers, and what it begins with.
enum PrintDialogFlag : DWORD {
  PD_ALLPAGES = 0x0000,
  PD_SELECTION = 0x0001,
  PD_PAGENUMS = 0x0002,
  PD_NOSELECTION = 0x0004,
  PD_NOPAGENUMS = 0x0008,
  PD_PRINTTOFILE = 0x0020,
  PD_RETURNDC = 0x0100,           ///< Has no effect: `GetPrintJob` is what a device is made from.
  PD_USEDEVMODECOPIES = 0x40000,  ///< Has no effect: copies are always the printer's.
  PD_HIDEPRINTTOFILE = 0x100000,
};

/// A dialog for a printer or a file, the part to print and the copies, put to the person by the
/// platform's prompts. It knows the system's printers, as far as the system tells.
class CPrintDialog : public CDialog {
  DECLARE_DYNAMIC(CPrintDialog)
  explicit CPrintDialog(DWORD flags = PD_NOPAGENUMS | PD_HIDEPRINTTOFILE | PD_NOSELECTION,
                        CWnd* parent = nullptr);

  /// The pages that there are.
  void SetPageRange(int first, int last);

  /// `IDOK` with all that is needed to print, or `IDCANCEL`; what was chosen before stays then. The
  /// file is asked for behind the dialog, if the person prints into one.
  int DoModal() override;

  bool PrintAll() const { return choice().part == platform::PrintedPart::kAll; }
  bool PrintSelection() const { return choice().part == platform::PrintedPart::kSelection; }
  bool PrintRange() const { return choice().part == platform::PrintedPart::kPages; }
  /// The pages of `PrintRange`, from the first to the last; -1 for others.
  int GetFromPage() const { return PrintRange() ? choice().from : -1; }
  int GetToPage() const { return PrintRange() ? choice().to : -1; }
  int GetCopies() const { return choice().copies; }
  /// The printer's name; "" for the system's default one.
  CString GetDeviceName() const { return CString(choice().printer); }

  /// What was chosen, for a device that prints it. Pages are those of a document that has them all.
  platform::PrintJob GetPrintJob() const;

 private:
  const platform::PrintChoice& choice() const { return question_.choice; }

  platform::PrintQuestion question_;
  std::string file_;
};

}  // namespace dq
