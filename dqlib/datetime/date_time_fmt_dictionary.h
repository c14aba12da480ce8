// The dictionary of all elements that a date-time format may have.
//
//   const detail::DictionaryUse<CLGDateTimeFmtDictionary> dictionary;
//   const CLGDateTimeFmtCell* month = dictionary->GetEntry("MM", DTF_DISP);

#pragma once

#include "dqlib/datetime/date_time_fmt_cell.h"

namespace dq {

/// The one dictionary, which exists while somebody uses it: every `Instance` has its `Release`.
/// Owns its cells; whoever wants to keep one copies it. Thread of the user interface only.
class CLGDateTimeFmtDictionary : public CObject {
  DECLARE_DYNAMIC(CLGDateTimeFmtDictionary)
  ~CLGDateTimeFmtDictionary() override;

  /// The dictionary, built if there is none.
  static CLGDateTimeFmtDictionary* Instance();
  /// Gives one use back; the last one deletes the dictionary.
  void Release();

  /// Adds a cell, not null, behind the others and owns it from now on.
  void AddEntry(CLGDateTimeFmtCell* cell);

  /// Whether the dictionary that exists has more cells than it is built with.
  static bool HasAddedEntries();

  /// The first cell whose code is exactly this one, or null. The first form compares the OLE code
  /// and the display code of each cell and never the locale's, since "MM", "dd" and "mm" mean other
  /// things there: texts in locale notation are converted first. The second form compares the code
  /// of the notation, so that "" in locale notation is the number of the day in the week.
  const CLGDateTimeFmtCell* GetEntry(const CString& code) const;
  const CLGDateTimeFmtCell* GetEntry(const CString& code, DATETIME_FMTTYPE notation) const;

  /// A walk through all cells in their order: where it starts, and the cell at `position`, which
  /// moves on, to null behind the last.
  POSITION GetFirstEntry() const { return entries_.GetHeadPosition(); }
  const CLGDateTimeFmtCell* GetNext(POSITION& position) const { return entries_.GetNext(position); }

 protected:
  CLGDateTimeFmtDictionary();

  void INSERT_DICTIONARY(DATETIMETYPE kind, const char* disp, const char* ole, const char* win,
                         const char* description, const char* example);

 private:
  CLGAutoDeletePtrCollectionT<CLGDateTimeFmtCell> entries_;
};

/// An element of the smaller dictionary: its codes alone. A value.
class CDQDateTimeFmtCell : public CObject {
  DECLARE_DYNAMIC(CDQDateTimeFmtCell)
  CDQDateTimeFmtCell(const char* disp, const char* ole, const char* win)
      : m_strDisp(disp), m_strOle(ole), m_strWin(win) {}

  /// The code in a notation, the display code for any other value.
  const CString& GetDateTimeElementFmt(DATETIME_FMTTYPE notation) const {
    return notation == DTF_OLE ? m_strOle : notation == DTF_WIN ? m_strWin : m_strDisp;
  }

 private:
  CString m_strDisp;
  CString m_strOle;
  CString m_strWin;
};

/// The dictionary of the conversion of mere texts: only elements that every notation has, so
/// without the two numbers of the day. It lives and is used as the other one is, but on its own.
class CDQDateTimeFmtDictionary : public CObject {
  DECLARE_DYNAMIC(CDQDateTimeFmtDictionary)
  ~CDQDateTimeFmtDictionary() override;

  static CDQDateTimeFmtDictionary* Instance();
  void Release();

  /// Adds a cell, not null, behind the others and owns it from now on.
  void AddEntry(CDQDateTimeFmtCell* cell);

  /// The first cell whose code in the notation is exactly this one, or null.
  const CDQDateTimeFmtCell* GetEntry(const CString& code, DATETIME_FMTTYPE notation) const;

  POSITION GetFirstEntry() const { return entries_.GetHeadPosition(); }
  const CDQDateTimeFmtCell* GetNext(POSITION& position) const { return entries_.GetNext(position); }

 protected:
  CDQDateTimeFmtDictionary();

 private:
  CLGAutoDeletePtrCollectionT<CDQDateTimeFmtCell> entries_;
};

namespace detail {

/// One use of a dictionary, given back at the end of the scope.
template <typename Dictionary>
class DictionaryUse {
 public:
  DictionaryUse() : dictionary_(Dictionary::Instance()) {}
  DictionaryUse(const DictionaryUse&) = delete;
  DictionaryUse& operator=(const DictionaryUse&) = delete;
  ~DictionaryUse() { dictionary_->Release(); }

  const Dictionary* operator->() const { return dictionary_; }

 private:
  Dictionary* dictionary_;
};

}  // namespace detail
}  // namespace dq
