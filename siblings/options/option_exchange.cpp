// The exchange of options with the controls of a dialog.

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>

#include "dqlib/framework/controls/button.h"
#include "dqlib/framework/controls/combo_box.h"
#include "dqlib/framework/controls/dialog_exchange.h"
#include "dqlib/framework/windows/data_exchange.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/resources/string_ids.h"
#include "siblings/options/option_data_array.h"

namespace dq {
namespace {

/// What is said of a text that is no value of the kind.
UINT RefusalOf(OptionKind kind) {
  switch (kind) {
    case OptionKind::kColor:
      return IDS_OPTIONS_NO_COLOR;
    case OptionKind::kBinary:
      return IDS_OPTIONS_NO_BYTES;
    default:
      return IDS_NO_INTEGER;
  }
}

/// The number as it is kept, if it is written with blanks around it, a plus sign or zeros before
/// it; else the text itself.
OptionValue PlainNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  text = text.substr(0, text.find_last_not_of(" \t") + 1);
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole ? std::to_string(number) : std::string(text);
}

std::optional<OptionValue> ReadText(OptionKind kind, const CString& text) {
  switch (kind) {
    case OptionKind::kBool:
    case OptionKind::kInt:
      return PlainNumber(text.View());
    case OptionKind::kBinary:
      return BytesOfHex(text.View());
    default:
      return std::string(text.View());
  }
}

void Show(CWnd& control, OptionKind kind, const OptionValue& value) {
  auto* const combo = dynamic_cast<CComboBox*>(&control);
  if (auto* const button = dynamic_cast<CButton*>(&control)) {
    button->SetCheck(OptionNumber(value));
  } else if (combo != nullptr && !combo->HasEditPart()) {
    combo->SetCurSel(IsTextKind(kind) ? combo->FindStringExact(-1, value.c_str())
                                      : OptionNumber(value));
  } else {
    control.SetWindowText(kind == OptionKind::kBinary ? HexOfBytes(value).c_str() : value.c_str());
  }
}

/// What the control holds; no value if that can't be one of the kind.
std::optional<OptionValue> Read(CWnd& control, OptionKind kind, const OptionValue& present) {
  if (const auto* const button = dynamic_cast<CButton*>(&control)) {
    return std::string(button->GetCheck() != 0 ? "1" : "0");
  }
  const auto* const combo = dynamic_cast<CComboBox*>(&control);
  if (combo != nullptr && !combo->HasEditPart()) {
    // A value that none of the rows stands for stays until a row is chosen.
    if (combo->GetCurSel() < 0) return present;
    if (!IsTextKind(kind)) return std::to_string(combo->GetCurSel());
  }
  return ReadText(kind, control.GetWindowText());
}

}  // namespace

void CDQOptionDataArray::DoDataExchange(CDataExchange* exchange, CWnd* window) {
  for (int at = 0; at < GetSize(); ++at) {
    CWnd* const control = window == nullptr ? nullptr : window->GetDlgItem(GetID(at));
    const CDQOption* const option = CDQOptionsServer::GetObject()->GetOptionByID(GetID(at));
    if (control == nullptr || option == nullptr) continue;
    exchange->m_hWndLastControl = control->GetSafeHwnd();
    exchange->m_bEditLastControl = dynamic_cast<CButton*>(control) == nullptr;
    if (!exchange->m_bSaveAndValidate) {
      Show(*control, option->GetKind(), GetValue(at));
      continue;
    }
    const std::optional<OptionValue> value = Read(*control, option->GetKind(), GetValue(at));
    if (!value || !IsOptionValue(option->GetKind(), *value)) {
      AfxMessageBox(RefusalOf(option->GetKind()));
      exchange->Fail();
    }
    // What stood in the registry beforehand may stay there.
    const auto& range = option->GetDefinition().range;
    if (range && *value != GetValue(at)) {
      DDV_MinMaxInt(exchange, OptionNumber(*value), range->first, range->second);
    }
    SetValue(at, *value);
  }
}

}  // namespace dq
