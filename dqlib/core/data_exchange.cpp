#include "dqlib/core/data_exchange.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "dqlib/framework/controls/list_box.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

constexpr std::size_t kNumberCharacters = 32;
constexpr std::size_t kBigNumberCharacters = 62;

std::string_view SkipBlanks(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
}

/// Whether the exchange is to save from a control without a number in it, which is 0.
bool IsLeftEmpty(CDataExchange& exchange, int id) {
  if (!exchange.m_bSaveAndValidate) return false;
  const CString text = exchange.PrepareEditCtrl(id)->GetWindowText();
  return SkipBlanks(text.View().substr(0, kNumberCharacters)).empty();
}

template <typename Number>
void ExchangeNumber(CDataExchange* exchange, int id, Number& value) {
  if (IsLeftEmpty(*exchange, id)) {
    value = 0;
  } else {
    DDX_Text(exchange, id, value);
  }
}

[[noreturn]] void RefuseNumber(CDataExchange& exchange) {
  AfxMessageBox(IDS_NO_INTEGER);
  exchange.Fail();
}

}  // namespace

void DQDDX_Text(CDataExchange* exchange, int id, BYTE& value) {
  ExchangeNumber(exchange, id, value);
}

void DQDDX_Text(CDataExchange* exchange, int id, short& value) {
  ExchangeNumber(exchange, id, value);
}

void DQDDX_Text(CDataExchange* exchange, int id, int& value) {
  ExchangeNumber(exchange, id, value);
}

void DQDDX_Text(CDataExchange* exchange, int id, unsigned int& value) {
  ExchangeNumber(exchange, id, value);
}

void DQDDX_Text(CDataExchange* exchange, int id, long& value) {
  ExchangeNumber(exchange, id, value);
}

void DQDDX_Text(CDataExchange* exchange, int id, unsigned long& value) {
  ExchangeNumber(exchange, id, value);
}

void DQDDX_Text(CDataExchange* exchange, int id, long long& value) {
  ExchangeNumber(exchange, id, value);
}

void DQDDX_Text(CDataExchange* exchange, int id, CDQBigInt& value) {
  CWnd* const control = exchange->PrepareEditCtrl(id);
  if (!exchange->m_bSaveAndValidate) {
    control->SetWindowText(value.toString().c_str());
    return;
  }
  const CString whole = control->GetWindowText();
  const std::string text(whole.View().substr(0, kBigNumberCharacters));
  if (text.find_first_not_of("-1234567890") != std::string::npos) RefuseNumber(*exchange);
  value = CDQBigInt(text);
}

void DQDDX_Check(CDataExchange* exchange, int id, bool& value) {
  int check = value ? 1 : 0;
  DDX_Check(exchange, id, check);
  value = check != 0;
}

void DQDDX_CBStringExact(CDataExchange* exchange, int id, CString& value) {
  DDX_CBStringExact(exchange, id, value);
}

void DQDDX_TextTrimRightLeftSpace(CDataExchange* exchange, int id, CString& text, bool warn) {
  if (!exchange->m_bSaveAndValidate) {
    DDX_Text(exchange, id, text);
    return;
  }
  CString trimmed;
  DDX_Text(exchange, id, trimmed);
  const int length = trimmed.GetLength();
  trimmed.TrimRight();
  trimmed.TrimLeft();
  if (warn && trimmed.GetLength() != length) {
    CString message;
    message.Format(IDS_WHITE_SPACE_TRIMMED, static_cast<const char*>(trimmed));
    AfxMessageBox(message, BOX_OK);
  }
  text = trimmed;
}

void DQDDX_StringList(CDataExchange* exchange, int id, CStringList& list) {
  auto* const box = dynamic_cast<CListBox*>(exchange->PrepareCtrl(id));
  if (box == nullptr) throw CNotSupportedException();
  if (exchange->m_bSaveAndValidate) {
    list.RemoveAll();
    for (int at = 0; at < box->GetCount(); ++at) list.AddTail(box->GetText(at));
    return;
  }
  box->ResetContent();
  for (POSITION at = list.GetHeadPosition(); at != nullptr;) box->AddString(list.GetNext(at));
}

void DQDDV_MinMaxI64(CDataExchange* exchange, long long value, long long minimum,
                     long long maximum) {
  if (!exchange->m_bSaveAndValidate || (value >= minimum && value <= maximum)) return;
  CString message;
  message.Format(IDS_VALUE_BETWEEN, std::to_string(minimum).c_str(),
                 std::to_string(maximum).c_str());
  AfxMessageBox(message, BOX_OK);
  exchange->Fail();
}

}  // namespace dq
