#include "dqlib/frame/resources.h"

#include <array>

#include "dqlib/frame/switch_resource_handle.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/windows/dialog.h"
#include "dqlib/framework/windows/menu.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/tool_bar.h"
#include "dqlib/framework/windows/wnd.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

/// The id that says "no text".
constexpr UINT kNoText = 0xFFFFFFFF;

/// Bytes of a window's class name that are compared.
constexpr int kClassNameSize = 32;

}  // namespace

bool DQLoadBitmap(CBitmap& bitmap, UINT id, HINSTANCE module) {
  return bitmap.LoadBitmap(module, id);
}

HCURSOR DQLoadCursor(UINT id, HINSTANCE module) { return LoadCursor(module, id); }

HICON DQLoadIcon(UINT id, HINSTANCE module) { return LoadIcon(module, id); }

bool DQLoadMenu(CMenu& menu, UINT id, HINSTANCE module) {
  const HRSRC record = DQFindMenuResource(module, id);
  return record != nullptr && menu.LoadMenuIndirect(record->data);
}

bool DQLoadToolBar(CToolBar& bar, UINT id, HINSTANCE module) {
  const CDQSwitchResourceHandle scope(module);
  return bar.LoadToolBar(id);
}

int DQDoModalDialog(CDialog& dialog, HINSTANCE module) {
  const CDQSwitchResourceHandle scope(module);
  return dialog.DoModal();
}

int DQLoadString(CString& text, UINT id, HINSTANCE module) {
  if (id == kNoText) {
    text.Empty();
    return 1;
  }
  const CDQSwitchResourceHandle scope(module);
  return text.LoadString(id);
}

void DQFormatString1(CString& text, UINT id, const char* text1, HINSTANCE module) {
  const CDQSwitchResourceHandle scope(module);
  AfxFormatString1(text, id, text1);
}

void DQFormatString2(CString& text, UINT id, const char* text1, const char* text2,
                     HINSTANCE module) {
  const CDQSwitchResourceHandle scope(module);
  AfxFormatString2(text, id, text1, text2);
}

int DQAfxMessageBox(UINT id, UINT type, UINT help_id, HINSTANCE module) {
  const CDQSwitchResourceHandle scope(module);
  return AfxMessageBox(id, type, help_id);
}

CString& LoadStringA(HINSTANCE module, UINT id, CString& text) {
  const CSwitchRCHandle scope(module);
  text.LoadString(id);
  return text;
}

CString LoadStringA(HINSTANCE module, UINT id) {
  CString text;
  LoadStringA(module, id, text);
  return text;
}

int MessageBoxA(HINSTANCE module, UINT id, UINT type) {
  const CSwitchRCHandle scope(module);
  return AfxMessageBox(id, type, kNoHelp);
}

HRSRC DQFindAcceleratorResource(HINSTANCE module, UINT id) {
  return FindModuleResource(module, id, RESOURCE_ACCELERATOR);
}

HRSRC DQFindBitmapResource(HINSTANCE module, UINT id) {
  return FindModuleResource(module, id, RESOURCE_BITMAP);
}

HRSRC DQFindDialogResource(HINSTANCE module, UINT id) {
  return FindModuleResource(module, id, RESOURCE_DIALOG);
}

HRSRC DQFindFontResource(HINSTANCE module, UINT id) {
  return FindModuleResource(module, id, RESOURCE_FONT);
}

HRSRC DQFindFontDirResource(HINSTANCE module, UINT id) {
  return FindModuleResource(module, id, RESOURCE_FONTDIR);
}

HRSRC DQFindMenuResource(HINSTANCE module, UINT id) {
  return FindModuleResource(module, id, RESOURCE_MENU);
}

HRSRC DQFindRCDataResource(HINSTANCE module, UINT id) {
  return FindModuleResource(module, id, RESOURCE_RCDATA);
}

HRSRC DQFindStringResource(HINSTANCE module, UINT id) {
  // Strings lie in blocks of 16, numbered from 1.
  return FindModuleResource(module, id / 16 + 1, RESOURCE_STRING);
}

HRSRC DQFindIconResource(HINSTANCE module, UINT id) {
  return FindModuleResource(module, id, RESOURCE_ICON);
}

HRSRC DQFindGroupIconResource(HINSTANCE module, UINT id) {
  return FindModuleResource(module, id, RESOURCE_GROUP_ICON);
}

HRSRC DQFindVersionResource(HINSTANCE module, UINT id) {
  return FindModuleResource(module, id, RESOURCE_VERSION);
}

HRSRC DQFindToolbarResource(HINSTANCE module, UINT id) {
  return FindModuleResource(module, id, RESOURCE_TOOLBAR);
}

void DQLIB_LoadResourceList(HINSTANCE module, UINT id, const CString& delimiters,
                            CStringList& list) {
  const CDQSwitchResourceHandle scope(module);
  CString text;
  text.LoadString(id);
  // A copy, because they may be a text of the list.
  const CString marks = delimiters;
  list.RemoveAll();
  // Tokens are cut from a zero-ended text, as is the set of delimiters.
  multi_byte::Tokenizer tokens(static_cast<const char*>(text), static_cast<const char*>(marks));
  std::string_view token;
  while (tokens.Next(token)) list.AddHead(CString(token));
}

void DQLIB_DoUnderConstructionMessageBox() { AfxMessageBox(IDS_UNDER_CONSTRUCTION, BOX_OK, 0); }

bool DQCompareClassName(HWND window, const char* name) {
  std::array<char, kClassNameSize + 1> class_name{};
  const int length =
      GetWindowClassName(window, class_name.data(), static_cast<int>(class_name.size()));
  return length > 0 && CString(class_name.data(), length).CompareNoCase(name) == 0;
}

}  // namespace dq
