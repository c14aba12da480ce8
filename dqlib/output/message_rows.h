// Trees of messages: a row for each line, with time, source and text in its columns.

#pragma once

#include <array>
#include <memory>

#include "dqlib/toolkit/tree.h"

namespace dq::detail {

/// Columns of such a tree.
enum MessageColumn : int { kTimeColumn, kSourceColumn, kTextColumn, kMessageColumns };
/// The texts of a row, by its columns.
using MessageTexts = std::array<const char*, kMessageColumns>;

/// Gives a tree without columns the ones of messages. Whoever has the tree says what frees its
/// rows' data.
void MakeMessageTree(CDQTree& tree);
/// Makes its window, which shows messages without titles, lines and buttons. False if that fails.
bool CreateMessageTree(CDQTree& tree, const CRect& place, CWnd* parent, UINT id);

/// The rows of one message share the data, a `CString` with the whole of it, which goes with the
/// last of them, or with who made it if that is later. Of a row without data nothing is freed.
class SharedMessage : private CString {
 public:
  struct Releaser {
    void operator()(SharedMessage* message) const { message->Release(); }
  };
  using Maker = std::unique_ptr<SharedMessage, Releaser>;

  /// Null counts as "". Adds no row yet.
  static Maker Make(const char* text) { return Maker(new SharedMessage(text)); }
  /// That of a row of such a tree; null if the row has none.
  static SharedMessage* Of(const CSftTree& tree, int row);

  const CString& Text() const { return *this; }
  /// Makes a row without data one of the message's.
  void AddRow(CSftTree& tree, int row);
  /// For `CSftTree::SetDeleteCallback`.
  static void FreeRow(CSftTree& tree, int row, std::uintptr_t data);

 private:
  explicit SharedMessage(const char* text) : CString(text) {}
  void Release() {
    if (--holders_ == 0) delete this;
  }

  /// Its rows, and its maker.
  int holders_ = 1;
};

/// Shows the whole message of the tree's current row in a box; nothing without such a row.
void ShowCurrentMessage(const CSftTree& tree);

}  // namespace dq::detail
