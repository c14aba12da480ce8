// Options while a dialog shows them: changes wait until they are saved.
//
//   CDQOptionDataArray page;
//   page.AddOption(50180, true, true);
//   page.SetValue(0, "1");
//   page.SaveOptions();
//
// A dialog shows an option by a control that has the option's id.

#pragma once

#include <memory>
#include <vector>

#include "siblings/options/options_server.h"

namespace dq {

class CDataExchange;
class CWnd;

/// Working values of some options. For the user-interface thread.
class CDQOptionDataArray {
 public:
  /// Adds an option with its current value for the platform in force. The flags are kept for those
  /// who show the option, and mean nothing here. False, and no change, if there is no such option
  /// or the array has it already.
  bool AddOption(int id, bool first_flag, bool second_flag);

  int GetSize() const { return static_cast<int>(m_entries.size()); }
  /// Of the entry with an index from 0 below the size.
  int GetID(int index) const { return At(index).id; }
  bool GetFirstFlag(int index) const { return At(index).first_flag; }
  bool GetSecondFlag(int index) const { return At(index).second_flag; }
  const OptionValue& GetValue(int index) const { return At(index).value; }
  /// Changes the working value alone. False, and no change, if it is none of the option's kind.
  bool SetValue(int index, const OptionValue& value);

  /// Takes the current values as the working values, and drops what was changed.
  void LoadOptions();

  /// Moves working values between the array and the controls of the window that have the options'
  /// ids, called in `CWnd::DoDataExchange`. Options without a control take no part. A button shows
  /// a value by its mark, a combo box without an edit part a number by the row with that index and
  /// a text by its row, any other control the value's text, bytes as pairs of hexadecimal digits. A
  /// text that is no value of the option's kind is told to the person, and fails the exchange; what
  /// was moved before it stays moved.
  void DoDataExchange(CDataExchange* exchange, CWnd* window);

  /// Sets every option whose working value was changed since it was added or saved; so a second
  /// call in a row, which dialogs make, writes nothing. False if the server refused one.
  bool SaveOptions();

 private:
  struct Entry {
    int id;
    DBMS platform;
    bool first_flag;
    bool second_flag;
    OptionValue value;
    bool changed;
  };
  const Entry& At(int index) const { return m_entries[static_cast<std::size_t>(index)]; }

  std::vector<Entry> m_entries;
};

/// Several arrays, one of which is shown at a time. It owns them.
class CDQOptionDataArrayList {
 public:
  /// Adds an empty array and returns it; it lives as long as the list.
  CDQOptionDataArray* AddArray();
  int GetSize() const { return static_cast<int>(m_arrays.size()); }
  /// The array with the index, or null.
  CDQOptionDataArray* GetArray(int index) const;
  /// Saves all. False if the server refused an option.
  bool SaveOptions();

 private:
  std::vector<std::unique_ptr<CDQOptionDataArray>> m_arrays;
};

}  // namespace dq
