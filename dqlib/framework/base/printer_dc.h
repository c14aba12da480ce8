// Prints: the device for what a person has chosen to have printed.
//
//   PrinterDC dc(job);
//   if (dc.StartDoc("Message Log") < 0) ...
//   for (...) { dc.StartPage(); Draw(dc); dc.EndPage(); }
//   if (dc.EndDoc() < 0) { Tell(dc.GetErrorText()); dc.AbortDoc(); }

#pragma once

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/pdf_dc.h"
#include "dqlib/platform/printing.h"
#include "dqlib/platform/processes.h"

namespace dq {

/// Pages of the paper that is usual where the user is; of A4 where the locale doesn't tell.
PageFormat UsualPageFormat();

/// A device whose document goes to the printer or into the file of a job. Pages that weren't chosen
/// are skipped: what is drawn on them is lost. Until `EndDoc` the document is kept in a temporary
/// file that nobody else can read, and neither printer nor file has anything of it.
///
/// `EndDoc` hands it to the printer with the job's copies, and waits until the system has taken it;
/// or puts it in the place of the file, once whatever the copies, so that at any moment the former
/// file or the new one is there whole. It fails if none of the pages was among those chosen. The
/// file is held from `StartDoc` on.
class PrinterDC : public PdfDC {
  DECLARE_DYNAMIC(PrinterDC)
  /// A job without a title has the document's.
  explicit PrinterDC(const platform::PrintJob& job, const PageFormat& format = UsualPageFormat());
  /// Drops a document that is open, as `AbortDoc` does.
  ~PrinterDC() override;

  /// Why the last document failed, in words for a person; "" if it didn't.
  CString GetErrorText() const;

 protected:
  bool BeginDocument(std::string_view title) override;
  PageStart BeginPage() override;
  bool FinishDocument() override;
  void DropDocument() override;

 private:
  bool Fail(const platform::PrintOutcome& outcome);
  platform::Error OpenFiles();
  void CloseFiles();
  platform::PrintOutcome Deliver();

  const platform::PrintJob job_;
  std::string title_;
  /// Of the page that was started last, from 1.
  int page_ = 0;
  bool has_pages_ = false;
  std::string words_;
  /// The temporary file; its path as long as it has one.
  HANDLE spool_ = kNoHandle;
  std::string spool_path_;
  /// The file that is to be replaced.
  HANDLE target_ = kNoHandle;
};

}  // namespace dq
