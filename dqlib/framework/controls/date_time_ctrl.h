// Date and time controls.

#pragma once

#include "dqlib/framework/base/c_time.h"
#include "dqlib/framework/base/ole_date_time.h"
#include "dqlib/framework/controls/control.h"
#include "dqlib/framework/controls/date_time_picture.h"

namespace dq {

/// Notification by `WM_NOTIFY`: a person has set another value, or none.
inline constexpr int DTN_DATETIMECHANGE = -759;

/// Whether a date and time control has a value.
enum DateTimeFlag : DWORD { GDT_VALID = 0, GDT_NONE = 1 };

/// What comes with `DTN_DATETIMECHANGE`.
struct NMDATETIMECHANGE {
  NMHDR nmhdr;
  /// A `DateTimeFlag`.
  DWORD dwFlags = GDT_VALID;
  /// The value, if there is one.
  SYSTEMTIME st;
};

struct DateTimeStyle {
  /// It is for a time of day, by arrows; else for a date, by a calendar.
  bool time = false;
  /// It may have no value, by a check box.
  bool optional = false;
};

/// A date and time control: a date and a time of day, to the second, of which a person sees and
/// changes the parts that its format shows. Window class "DateTime"; words of templates for the
/// style are `time` and `optional`. At first the value is the present time, and the format that of
/// the locale's short dates or of its times.
class CDateTimeCtrl : public Control {
  DECLARE_DYNAMIC(CDateTimeCtrl)
  explicit CDateTimeCtrl(const DateTimeStyle& style = {});

  const DateTimeStyle& GetStyle() const { return style_; }

  /// A picture as `detail::DatePicture` has them; null or "" is the one at first.
  void SetFormat(const char* format);
  const CString& GetFormat() const { return format_; }

  /// Sets the value. False, and no change, if it isn't valid or lies out of the range; null is none
  /// and is refused unless the control may have none.
  bool SetTime(const COleDateTime& time);
  bool SetTime(const SYSTEMTIME* time);
  bool SetTime(const CTime& time);
  /// The value. False, or `GDT_NONE`, and no change, if there is none.
  bool GetTime(COleDateTime& time) const;
  bool GetTime(CTime& time) const;
  DWORD GetTime(SYSTEMTIME* time) const;
  bool HasTime() const { return has_time_; }

  /// The lowest and the highest value, ends included; one that isn't valid is the lowest or the
  /// highest that there is. False, and no change, if they are in the wrong order. A value beyond
  /// the range is brought to its end.
  bool SetRange(const COleDateTime& lowest, const COleDateTime& highest);
  void GetRange(COleDateTime& lowest, COleDateTime& highest) const;

  // What a person does; each is false if the control is disabled or that isn't possible. A changed
  // value is notified.

  /// Sets or takes the mark of the check box.
  bool Check(bool check);
  /// Picks a date in a calendar; the time of day stays.
  bool Choose(int year, int month, int day);
  /// Goes to the part behind or before, or to the one at a place in the text.
  bool MovePart(bool forward);
  bool SelectPart(int place);
  /// Steps the part that is chosen, from one end on at the other, or to one of its ends.
  bool Step(int steps);
  bool StepToEnd(bool highest);
  /// Types a digit or a letter of a name into the part.
  bool Type(char character);
  /// Where the part that is chosen stands in the text, in bytes; empty without a value. Told as a
  /// selection.
  ChangedRange GetPart() const;

  void Describe(platform::DialogControl& control) const override;
  /// A person enters the value as the format has it, or else as `COleDateTime::ParseDateTime` reads
  /// it, which must tell the own part, date or time of day; the other one stays. "" is none.
  bool Enter(std::string_view value) override;

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  CString OnGetText() const override;
  /// The text is that of the value.
  void OnSetText(const char*) override {}
  void OnSubclassed(CWnd& former) override;

 private:
  bool IsAllowed(const detail::DateTimeParts& time) const;
  void Take(const detail::DateTimeParts& time);
  bool Change(const detail::DateTimeParts& time);
  bool NotifyChange();
  bool ChoosePart(std::size_t part);
  bool LeavePart();
  bool TypeDigit(int digit);
  bool TypeLetter(char letter);
  bool KeyDown(WPARAM key);
  const detail::PicturePart* CurrentPart() const;
  void ChooseFirstPart();

  DateTimeStyle style_;
  CString format_;
  detail::DatePicture picture_{""};
  detail::DateTimeParts time_;
  detail::DateTimeParts lowest_;
  detail::DateTimeParts highest_;
  bool has_time_ = true;
  /// Which part of the picture is chosen, and the digits that were typed into it.
  std::size_t part_ = 0;
  std::string typed_;
};

}  // namespace dq
