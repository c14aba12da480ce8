// The text of an edit control or of a combo box's edit part, with its selection.

#pragma once

#include <string>
#include <string_view>

#include "dqlib/platform/types.h"

namespace dq::detail {

/// A text without zeros, a selection in it, and how much a person may enter. Places are bytes.
class EditText {
 public:
  /// As much as a text can have.
  static constexpr UINT kNoLimit = 0x7FFFFFFE;

  const std::string& text() const { return text_; }
  /// The selection's ends, the lower one first.
  int first() const { return anchor_ < caret_ ? anchor_ : caret_; }
  int last() const { return anchor_ < caret_ ? caret_ : anchor_; }
  int anchor() const { return anchor_; }
  int caret() const { return caret_; }
  int size() const { return static_cast<int>(text_.size()); }
  /// The places before and behind the character there; a line's end is one, and in the page 0 one
  /// of UTF-8.
  int Before(int place) const;
  int Behind(int place) const;

  UINT limit() const { return limit_; }
  /// 0 takes the limit away.
  void SetLimit(UINT limit) { limit_ = limit == 0 || limit > kNoLimit ? kNoLimit : limit; }

  /// Replaces all, without regard to the limit; the caret stands at the beginning.
  void Set(std::string_view text);
  /// Selects; the caret is at `end`, which is the text's end if it is negative. A negative `start`
  /// drops the selection and leaves the caret at its higher end. False if that changes nothing.
  bool Select(int start, int end);
  /// Replaces what is selected, without regard to the limit; the caret stands behind the new text.
  void Replace(std::string_view text);
  /// The same with as many characters of `text` as the limit leaves room for; how many bytes.
  std::size_t ReplaceWithin(std::string_view text);
  /// How many bytes of `text`, in whole characters, the limit leaves room for where so many bytes
  /// of the present text, which are there, go.
  std::size_t Fitting(std::string_view text, int removed) const;
  /// Another number after each change of the text.
  unsigned version() const { return version_; }
  /// Whether so many bytes from a place on are characters of the text.
  bool Has(int first, int count) const;
  /// Replaces so many bytes from a place on, which are there, with as many characters of `text` as
  /// the limit leaves room for, and selects; how many bytes.
  std::size_t Edit(int first, int removed, std::string_view text, int anchor, int caret);
  /// Remove what is selected, or else the character before or behind the caret. False if there is
  /// none.
  bool Backspace();
  bool Delete();

 private:
  bool Remove(int to);

  std::string text_;
  int anchor_ = 0;
  int caret_ = 0;
  UINT limit_ = kNoLimit;
  unsigned version_ = 0;
};

}  // namespace dq::detail
