// The models of other toolkits that the tree control is measured against. Their headers define
// names that the library's have too, so they stay out of this one.

#pragma once

#include <memory>
#include <string>
#include <vector>

namespace bench {

/// The texts of a row of three columns; the last one is a time, of so many seconds.
struct Row {
  std::string name;
  std::string size;
  std::string time;
  long seconds;
};

/// Rows in no order, the same ones each time.
std::vector<Row> MakeRows(int count);

/// Readies wxWidgets, once, before `MakeWxList`. False without a display.
bool StartWx();

/// Models with the rows, made row by row; of wxWidgets the control itself, whose model tells it of
/// each row.
std::shared_ptr<void> MakeQtModel(const std::vector<Row>& rows);
std::shared_ptr<void> MakeGtkModel(const std::vector<Row>& rows);
std::shared_ptr<void> MakeWxList(const std::vector<Row>& rows);

}  // namespace bench
