// What the format builder makes formats of: the elements a person has chosen, and their order.

#pragma once

#include "dqlib/datetime/date_time_fmt_cell.h"

namespace dq::detail {

/// The elements of a format by their codes in display notation, "" for one that isn't chosen.
struct DateTimeFmtParts {
  /// The orders of a date, in the order in which a person is offered them.
  static constexpr DATETIMETYPE kDateOrders[][3] = {
      {DTT_DAY, DTT_MONTH, DTT_YEAR}, {DTT_DAY, DTT_YEAR, DTT_MONTH},
      {DTT_MONTH, DTT_DAY, DTT_YEAR}, {DTT_MONTH, DTT_YEAR, DTT_DAY},
      {DTT_YEAR, DTT_MONTH, DTT_DAY}, {DTT_YEAR, DTT_DAY, DTT_MONTH},
  };
  static constexpr int kElements = DTT_AMPM + 1;
  static constexpr int kSeparators = DTT_YEAR + 1;

  /// By kind, from `DTT_DAY` to `DTT_AMPM`.
  CString elements[kElements];
  /// The separator that stands behind the day, the month and the year.
  CString separators[kSeparators];
  /// Row of `kDateOrders`, or -1 for none.
  int date_order = -1;
  bool time_first = false;

  /// The first element of each kind. A date that lacks one of its three has no order. The element
  /// that ends the date has no separator of its own, for a blank behind it leads to the time: it
  /// takes over the one before, so that another order has the same separators.
  static DateTimeFmtParts Of(const CLGDateTimeFmtCellList& cells);

  /// The three elements in the order, each but the last with its separator behind it, which is a
  /// blank if none is chosen. "" without an order.
  CString GenerateDateFmt() const;
  /// "hour:minute:second" and, unless the hour is "HH24", a blank and the marker of the half day;
  /// "hh24" keeps a marker that is chosen. No blanks at the end.
  CString GenerateTimeFmt() const;
  /// What columns of the data type hold: one of both, or both with a blank between, even if one of
  /// them is "".
  CString GenerateDateTimeFmt(int code) const;
};

}  // namespace dq::detail
