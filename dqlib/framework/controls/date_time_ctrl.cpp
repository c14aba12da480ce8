#include "dqlib/framework/controls/date_time_ctrl.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <tuple>
#include <utility>

#include "dqlib/framework/base/text.h"
#include "dqlib/platform/ascii.h"
#include "dqlib/platform/locale.h"
#include "dqlib/platform/platform.h"

namespace dq {

IMPLEMENT_DYNAMIC(CDateTimeCtrl, CWnd)

using detail::DatePart;
using detail::DatePicture;
using detail::DateTimeParts;
using detail::PicturePart;

namespace {

constexpr DateTimeParts kFirst{100, 1, 1, 0, 0, 0};
constexpr DateTimeParts kLast{9999, 12, 31, 23, 59, 59};

auto Ordered(const DateTimeParts& time) {
  return std::tuple(time.year, time.month, time.day, time.hour, time.minute, time.second);
}

DateTimeParts PartsOf(const SYSTEMTIME& time) {
  return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond};
}

/// No value if it isn't valid.
std::optional<DateTimeParts> PartsOf(const COleDateTime& time) {
  SYSTEMTIME parts;
  if (!time.GetAsSystemTime(parts)) return std::nullopt;
  return PartsOf(parts);
}

COleDateTime ValueOf(const DateTimeParts& time) {
  return {time.year, time.month, time.day, time.hour, time.minute, time.second};
}

std::string UsualPicture(bool time) {
  const DWORD item = time ? LOCALE_STIMEFORMAT : LOCALE_SSHORTDATE;
  return platform::Current().locale->Item(item, LOCALE_USER_DEFAULT).value_or("");
}

}  // namespace

CDateTimeCtrl::CDateTimeCtrl(const DateTimeStyle& style)
    : style_(style), lowest_(kFirst), highest_(kLast) {
  time_ = PartsOf(COleDateTime::GetCurrentTime()).value_or(kFirst);
  SetFormat(nullptr);
}

void CDateTimeCtrl::SetFormat(const char* format) {
  const std::string_view given = detail::OrEmpty(format);
  format_ = given.empty() ? UsualPicture(style_.time) : std::string(given);
  picture_ = DatePicture(format_.View());
  ChooseFirstPart();
  Tell(WindowChange::kText);
}

void CDateTimeCtrl::ChooseFirstPart() {
  const auto& parts = picture_.parts();
  const auto first = std::ranges::find_if(
      parts, [](const PicturePart& each) { return each.part != DatePart::kText; });
  part_ = static_cast<std::size_t>(first - parts.begin());
  typed_.clear();
}

// ---- The value

bool CDateTimeCtrl::IsAllowed(const DateTimeParts& time) const {
  return time.Exists() && Ordered(time) >= Ordered(lowest_) && Ordered(time) <= Ordered(highest_);
}

void CDateTimeCtrl::Take(const DateTimeParts& time) {
  if (has_time_ && Ordered(time) == Ordered(time_)) return;
  time_ = time;
  has_time_ = true;
  Tell(WindowChange::kText);
}

bool CDateTimeCtrl::SetTime(const COleDateTime& time) {
  const std::optional<DateTimeParts> parts = PartsOf(time);
  if (!parts || !IsAllowed(*parts)) return false;
  typed_.clear();
  Take(*parts);
  return true;
}

bool CDateTimeCtrl::SetTime(const SYSTEMTIME* time) {
  if (time == nullptr && !style_.optional) return false;
  if (time != nullptr && !IsAllowed(PartsOf(*time))) return false;
  typed_.clear();
  if (time != nullptr) {
    Take(PartsOf(*time));
  } else if (std::exchange(has_time_, false)) {
    Tell(WindowChange::kText);
  }
  return true;
}

bool CDateTimeCtrl::GetTime(COleDateTime& time) const {
  if (has_time_) time = ValueOf(time_);
  return has_time_;
}

bool CDateTimeCtrl::SetTime(const CTime& time) {
  SYSTEMTIME parts;
  return time.GetAsSystemTime(parts) && SetTime(&parts);
}

bool CDateTimeCtrl::GetTime(CTime& time) const {
  SYSTEMTIME parts;
  if (GetTime(&parts) == GDT_NONE) return false;
  time = CTime(parts);
  return true;
}

DWORD CDateTimeCtrl::GetTime(SYSTEMTIME* time) const {
  if (!has_time_) return GDT_NONE;
  if (time != nullptr) ValueOf(time_).GetAsSystemTime(*time);
  return GDT_VALID;
}

bool CDateTimeCtrl::SetRange(const COleDateTime& lowest, const COleDateTime& highest) {
  const DateTimeParts low = PartsOf(lowest).value_or(kFirst);
  const DateTimeParts high = PartsOf(highest).value_or(kLast);
  if (Ordered(low) > Ordered(high)) return false;
  lowest_ = low;
  highest_ = high;
  const DateTimeParts within = Ordered(time_) < Ordered(low)    ? low
                               : Ordered(time_) > Ordered(high) ? high
                                                                : time_;
  // One that isn't shown is brought there all the same.
  if (has_time_) Take(within);
  time_ = within;
  return true;
}

void CDateTimeCtrl::GetRange(COleDateTime& lowest, COleDateTime& highest) const {
  lowest = ValueOf(lowest_);
  highest = ValueOf(highest_);
}

// ---- What a person does

/// False if the control is gone afterwards.
bool CDateTimeCtrl::NotifyChange() {
  CWnd* const parent = GetParent();
  if (parent == nullptr) return true;
  const HWND self = GetSafeHwnd();
  NMDATETIMECHANGE change;
  change.nmhdr = {self, static_cast<UINT>(GetDlgCtrlID()), DTN_DATETIMECHANGE};
  change.dwFlags = GetTime(&change.st);
  parent->SendMessage(WM_NOTIFY, change.nmhdr.idFrom, reinterpret_cast<LPARAM>(&change));
  return FromHandle(self) == this;
}

/// True if it is one of the control's values.
bool CDateTimeCtrl::Change(const DateTimeParts& time) {
  if (!TakesInput() || !IsAllowed(time)) return false;
  if (has_time_ && Ordered(time) == Ordered(time_)) return true;
  Take(time);
  NotifyChange();
  return true;
}

bool CDateTimeCtrl::Check(bool check) {
  if (!TakesInput() || !style_.optional) return false;
  if (check == has_time_) return true;
  has_time_ = check;
  typed_.clear();
  Tell(WindowChange::kText);
  NotifyChange();
  return true;
}

bool CDateTimeCtrl::Choose(int year, int month, int day) {
  typed_.clear();
  return Change({year, month, day, time_.hour, time_.minute, time_.second});
}

const PicturePart* CDateTimeCtrl::CurrentPart() const {
  const bool is_there = has_time_ && part_ < picture_.parts().size();
  return is_there ? &picture_.parts()[part_] : nullptr;
}

ChangedRange CDateTimeCtrl::GetPart() const {
  if (CurrentPart() == nullptr) return {};
  std::size_t first = 0;
  for (std::size_t at = 0; at < part_; ++at) {
    first += DatePicture::TextOf(picture_.parts()[at], time_).size();
  }
  const std::size_t count = DatePicture::TextOf(*CurrentPart(), time_).size();
  return {static_cast<int>(first), static_cast<int>(count)};
}

/// A year of two digits counts when its part is left. False if the control is gone afterwards.
bool CDateTimeCtrl::LeavePart() {
  const std::string typed = std::exchange(typed_, {});
  const PicturePart* const part = CurrentPart();
  if (part == nullptr || part->part != DatePart::kYear || typed.size() != 2) return true;
  const HWND self = GetSafeHwnd();
  DateTimeParts time = time_;
  time.year = detail::FullYear(std::stoi(typed));
  Change(time);
  return FromHandle(self) == this;
}

bool CDateTimeCtrl::ChoosePart(std::size_t part) {
  if (!LeavePart()) return true;
  part_ = part;
  Tell(WindowChange::kSelection, GetPart());
  return true;
}

bool CDateTimeCtrl::MovePart(bool forward) {
  if (!TakesInput() || CurrentPart() == nullptr) return false;
  const auto& parts = picture_.parts();
  for (std::size_t at = part_; forward ? ++at < parts.size() : at-- > 0;) {
    if (parts[at].part != DatePart::kText) return ChoosePart(at);
  }
  return false;
}

bool CDateTimeCtrl::SelectPart(int place) {
  if (!TakesInput() || CurrentPart() == nullptr || place < 0) return false;
  int end = 0;
  for (std::size_t at = 0; at < picture_.parts().size(); ++at) {
    const PicturePart& part = picture_.parts()[at];
    end += static_cast<int>(DatePicture::TextOf(part, time_).size());
    if (place < end) return part.part != DatePart::kText && ChoosePart(at);
  }
  return false;
}

bool CDateTimeCtrl::Step(int steps) {
  typed_.clear();
  DateTimeParts time = time_;
  const PicturePart* const part = CurrentPart();
  return part != nullptr && detail::StepNumber(part->part, steps, time) && Change(time);
}

bool CDateTimeCtrl::StepToEnd(bool highest) {
  typed_.clear();
  const PicturePart* const part = CurrentPart();
  if (part == nullptr) return false;
  DateTimeParts time = time_;
  const int number = highest ? detail::HighestOf(part->part, time) : detail::LowestOf(part->part);
  return detail::SetNumber(part->part, number, time) && Change(time);
}

/// Each digit that makes a number of the part sets it, and continues the one before if that makes
/// one too; a year counts with its fourth digit.
bool CDateTimeCtrl::TypeDigit(int digit) {
  const DatePart part = CurrentPart()->part;
  const std::size_t most = part == DatePart::kYear ? 4 : 2;
  const int highest = part == DatePart::kHour12 ? 12 : detail::HighestOf(part, time_);
  int number = 0;
  for (const bool anew : {false, true}) {
    if (anew) typed_.clear();
    const std::string text = typed_ + static_cast<char>('0' + digit);
    std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.size() > most || number > highest) continue;
    typed_ = text;
    break;
  }
  if (part == DatePart::kYear && typed_.size() < most) return true;
  if (typed_.size() == most) typed_.clear();
  if (part == DatePart::kHour12) {
    if (number == 0) return true;
    number = number % 12 + time_.hour / 12 * 12;
  }
  DateTimeParts time = time_;
  // A leading zero is none yet.
  if (!detail::SetNumber(part, number, time)) return number == 0;
  return Change(time);
}

bool CDateTimeCtrl::TypeLetter(char letter) {
  constexpr int kMostNames = 12;
  const PicturePart& part = *CurrentPart();
  for (int steps = 1; steps <= kMostNames; ++steps) {
    DateTimeParts time = time_;
    if (!detail::StepNumber(part.part, steps, time)) return false;
    const std::string name = DatePicture::TextOf(part, time);
    if (!name.empty() && platform::AsciiLower(name.front()) == platform::AsciiLower(letter)) {
      return Change(time);
    }
  }
  return false;
}

bool CDateTimeCtrl::Type(char character) {
  const PicturePart* const part = CurrentPart();
  if (!TakesInput() || part == nullptr) return false;
  const bool named = part->part == DatePart::kWeekDay || part->part == DatePart::kHalf ||
                     (part->part == DatePart::kMonth && part->letters.size() > 2);
  const bool is_digit = character >= '0' && character <= '9';
  if (named) return !is_digit && TypeLetter(character);
  return is_digit && TypeDigit(character - '0');
}

CString CDateTimeCtrl::OnGetText() const {
  std::string text;
  for (const PicturePart& part : picture_.parts()) {
    if (has_time_) text += DatePicture::TextOf(part, time_);
  }
  return text;
}

void CDateTimeCtrl::Describe(platform::DialogControl& control) const {
  Control::Describe(control);
  control.kind = platform::DialogControlKind::kEdit;
  control.editable = true;
  control.value = GetWindowText().View();
}

bool CDateTimeCtrl::Enter(std::string_view value) {
  if (!TakesInput()) return false;
  if (value.empty()) return Check(false);
  typed_.clear();
  if (const auto read = picture_.Read(value, time_)) return Change(*read);
  const DWORD flags = style_.time ? VAR_TIMEVALUEONLY : VAR_DATEVALUEONLY;
  detail::ToldParts told;
  const auto read =
      detail::ReadDateTime(value, flags, LOCALE_USER_DEFAULT, detail::Reading::kPlain, &told);
  if (!read || !(style_.time ? told.time : told.date)) return false;
  DateTimeParts time = *read;
  if (style_.time) {
    std::tie(time.year, time.month, time.day) = std::tie(time_.year, time_.month, time_.day);
  } else {
    std::tie(time.hour, time.minute, time.second) =
        std::tie(time_.hour, time_.minute, time_.second);
  }
  return Change(time);
}

bool CDateTimeCtrl::KeyDown(WPARAM key) {
  switch (key) {
    case VK_LEFT:
    case VK_RIGHT:
      return MovePart(key == VK_RIGHT);
    case VK_UP:
    case VK_ADD:
      return Step(1);
    case VK_DOWN:
    case VK_SUBTRACT:
      return Step(-1);
    case VK_HOME:
    case VK_END:
      return StepToEnd(key == VK_END);
    default:
      return false;
  }
}

LRESULT CDateTimeCtrl::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS | DLGC_WANTCHARS;
    case WM_KEYDOWN:
      if (KeyDown(wparam)) return 0;
      break;
    case WM_CHAR:
      if (wparam == ' ') {
        Check(!has_time_);
      } else {
        Type(static_cast<char>(wparam));
      }
      return 0;
    case WM_KILLFOCUS:
      LeavePart();
      return 0;
    default:
      break;
  }
  return Control::DefWindowProc(message, wparam, lparam);
}

void CDateTimeCtrl::OnSubclassed(CWnd& former) {
  Control::OnSubclassed(former);
  if (const CDateTimeCtrl* const control = DYNAMIC_DOWNCAST(CDateTimeCtrl, &former)) {
    style_ = control->style_;
    format_ = control->format_;
    picture_ = control->picture_;
    time_ = control->time_;
    lowest_ = control->lowest_;
    highest_ = control->highest_;
    has_time_ = control->has_time_;
    part_ = control->part_;
  }
}

}  // namespace dq
