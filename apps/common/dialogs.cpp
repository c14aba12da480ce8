#include "apps/common/dialogs.h"

#include <optional>

#include "dqlib/datetime/data_type.h"
#include "dqlib/datetime/format_dialog.h"
#include "dqlib/dbvocab/object_info_dialog.h"
#include "dqlib/frame/switch_resource_handle.h"
#include "dqlib/resources/library.h"
#include "dqlib/toolkit/library_options_dialog.h"

namespace dqapps {
namespace {

/// The dialog on an object that is none yet, of no platform.
int NameObject(std::string&) {
  dq::CDBObjectInfo object;
  return dq::CDBObjectInfoDlg(&object, dq::DBMS_NONE, 0, "", false, "").DoModal();
}

/// The dialog on the user's own format of dates with times, which no option keeps.
int BuildFormat(std::string& answer) {
  constexpr int kCode = dq::DATATYPE_DATETIME;
  constexpr dq::UINT kNoOption = 0;
  dq::CLGOracleDateTimeFormat format(kNoOption, 0);
  const int result = dq::CLGDateTimeFormatDlg(&format, kCode).DoModal();
  answer = format.GetDispDateTimeFmt(kCode, dq::CLGDateTimeFormat::DFK_CURRENT).View();
  return result;
}

constexpr LibraryDialog kDialogs[] = {
    {dq::CDBObjectInfoDlg::kTemplateId, NameObject},
    {dq::CDQLibraryOptionsDlg::kTemplateId,
     [](std::string&) { return dq::CDQLibraryOptionsDlg().DoModal(); }},
    {dq::CLGDateTimeFormatDlg::kTemplateId, BuildFormat},
};

}  // namespace

std::span<const LibraryDialog> LibraryDialogs() { return kDialogs; }

std::string LibraryDialog::Caption() const {
  const dq::CDQSwitchResourceHandle scope(dq::DQLIB_GetInstanceHandle());
  const std::optional<dq::DialogTemplate> found = dq::FindDialogTemplate(id);
  return found ? found->caption : std::string();
}

DialogOutcome LibraryDialog::Run() const {
  DialogOutcome outcome;
  const int result = run(outcome.answer);
  outcome.is_opened = result != -1;
  outcome.is_ok = result == dq::IDOK;
  return outcome;
}

std::string DialogOutcome::Lines() const {
  if (!is_ok) return "cancel";
  return answer.empty() ? "ok" : "ok\n" + answer;
}

}  // namespace dqapps
