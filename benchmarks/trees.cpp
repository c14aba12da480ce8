// The tree control with a million rows: made row by row, and what a row takes, against the models
// of Qt, GTK and wxWidgets; sorted by text, number and date-time, against a stable sort of the keys
// alone; a full list that takes one row in and one out for each message; and a page scrolled.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

// The peers' headers define names that the library's have too.
#include "benchmarks/ratio.h"
#include "benchmarks/tree_peers.h"
#include "dqlib/framework/base/recording_dc.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/toolkit/tree.h"

namespace {

constexpr int kRows = 1000000;
/// For a peer that goes through all its rows to append one.
constexpr int kFewerRows = 20000;

/// Bytes that are in use.
double UsedMemory() {
  const struct mallinfo2 used = mallinfo2();
  return static_cast<double>(used.uordblks + used.hblkhd);
}

void AddColumns(dq::CSftTree& tree) {
  tree.AddColumn("Name", 200);
  tree.AddColumn("Size", 80, dq::kColumnNumber);
  tree.AddColumn("Changed", 120, dq::kColumnDateTime);
}

std::unique_ptr<dq::CDQTree> MakeTree(const std::vector<bench::Row>& rows) {
  auto tree = std::make_unique<dq::CDQTree>();
  AddColumns(*tree);
  for (const bench::Row& row : rows) {
    const char* const texts[] = {row.name.c_str(), row.size.c_str(), row.time.c_str()};
    tree->AddRow(texts);
  }
  return tree;
}

/// Makes a peer's model and ours, in turn, and compares times and bytes.
template <typename MakePeer>
void Add(const char* name, double goal, const std::vector<bench::Row>& rows, MakePeer make_peer) {
  const double start = UsedMemory();
  const auto ours = MakeTree(rows);
  const double after_ours = UsedMemory();
  const auto peers = make_peer(rows);
  const double count = static_cast<double>(rows.size());
  const double mine = (after_ours - start) / count;
  const double theirs = (UsedMemory() - after_ours) / count;
  std::printf("bytes a row, texts included: %.0f, %s: %.0f\n", mine, name, theirs);
  if (mine > theirs / 3) {
    std::printf("  MISSED: a third\n");
    ++bench::Misses();
  }
  bench::Ratio("a row with three columns added, times " + std::to_string(rows.size()), name, goal)
      .Run([&] { bench::Keep(MakeTree(rows)); }, [&] { bench::Keep(make_peer(rows)); }, 2);
}

/// Sorts ours by a column, and the keys that the peer is given.
template <typename Key, typename Less>
void Sort(const char* name, dq::CDQTree& tree, int column, const std::vector<Key>& keys,
          Less less) {
  std::mt19937 random(1);
  std::vector<int> order(keys.size());
  std::vector<Key> sorted;
  const auto shuffle = [&] {
    std::generate(order.begin(), order.end(), [&] { return static_cast<int>(random() >> 1); });
    tree.SortRowsByKeys(order, [](int a, int b) { return a < b ? -1 : a > b ? 1 : 0; });
    sorted = keys;
  };
  bench::Ratio(std::string("a million rows sorted by ") + name, "std::stable_sort of the keys", 3)
      .Run([&] { tree.SortByColumn(column); },
           [&] { std::stable_sort(sorted.begin(), sorted.end(), less); }, shuffle, 2);
}

struct NumberKey {
  double number;
  int row;
};

void SortAll(const std::vector<bench::Row>& rows) {
  const auto tree = MakeTree(rows);
  std::vector<std::pair<std::string, int>> names;
  std::vector<NumberKey> sizes;
  std::vector<NumberKey> times;
  for (const bench::Row& row : rows) {
    const int at = static_cast<int>(names.size());
    names.emplace_back(row.name, at);
    sizes.push_back({std::atof(row.size.c_str()), at});
    times.push_back({static_cast<double>(row.seconds), at});
  }
  std::mt19937 random(2);
  std::shuffle(names.begin(), names.end(), random);
  std::shuffle(sizes.begin(), sizes.end(), random);
  std::shuffle(times.begin(), times.end(), random);
  const auto less = [](const NumberKey& a, const NumberKey& b) { return a.number < b.number; };
  Sort("text", *tree, 0, names, [](const auto& a, const auto& b) { return a.first < b.first; });
  Sort("number", *tree, 1, sizes, less);
  Sort("date-time", *tree, 2, times, less);
  // The control's own part of it.
  std::vector<double> keys(rows.size());
  std::vector<NumberKey> sorted;
  bench::Ratio("a million rows put in order by keys", "std::stable_sort of the keys", 1.5)
      .Run(
          [&] {
            tree->SortRowsByKeys(keys, [](double a, double b) {
              return a < b ? -1 : a > b ? 1 : 0;
            });
          },
          [&] { std::stable_sort(sorted.begin(), sorted.end(), less); },
          [&] {
            for (double& key : keys) key = static_cast<double>(random());
            sorted.clear();
            for (const double key : keys) sorted.push_back({key, 0});
          },
          3);
}

/// A list of so many rows in a window that takes messages: the first row goes, one comes in at the
/// end and is selected and brought into sight, and two columns are fitted.
struct Pane {
  explicit Pane(int rows) {
    frame.CreateWnd({.class_name = "Frame", .place = {0, 0, 600, 400}});
    AddColumns(tree);
    tree.CSftTree::Create(&frame, {0, 0, 600, 400}, 1);
    for (int row = 0; row < rows; ++row) tree.AddRow("12:00:00");
  }
  void Take() {
    tree.DeleteRow(0);
    const int row = tree.AddRow("12:00:00");
    tree.SetCellText(row, 1, "A message of the usual length, for all to see.");
    tree.SelectRow(row);
    tree.EnsureRowVisible(row);
    tree.FitColumn(0);
    tree.FitColumn(1);
  }

  dq::CWnd frame;
  dq::CSftTree tree;
};

void MessagesAndPages() {
  constexpr int kMessages = 100000;
  Pane pane(1400);
  Pane large(kRows);
  bench::Ratio("100,000 messages to a list of a million rows", "to one of 1,400", 3)
      .Run(
          [&] {
            for (int i = 0; i < kMessages; ++i) large.Take();
          },
          [&] {
            for (int i = 0; i < kMessages; ++i) pane.Take();
          },
          2);
  dq::RecordingDC dc({.area = {600, 400}});
  const auto scroll = [&dc](Pane& scrolled) {
    for (int i = 0; i < 100; ++i) {
      scrolled.tree.SendMessage(dq::WM_VSCROLL, i % 2 == 0 ? dq::SB_PAGEUP : dq::SB_PAGEDOWN);
      scrolled.tree.Paint(dc);
      dc.Clear();
    }
  };
  bench::Ratio("100 pages of a million rows scrolled and painted", "of 1,400", 2)
      .Run([&] { scroll(large); }, [&] { scroll(pane); }, 3);
}

}  // namespace

int main() {
  dq::CWinApp app("bench");
  const std::vector<bench::Row> rows = bench::MakeRows(kRows);
  const std::vector<bench::Row> fewer(rows.begin(), rows.begin() + kFewerRows);
  Add("Qt QStandardItemModel", 0.1, rows, &bench::MakeQtModel);
  Add("GTK GtkTreeStore", 0.1, rows, &bench::MakeGtkModel);
  if (bench::StartWx()) {
    Add("wxWidgets wxDataViewListCtrl", 0.01, fewer, &bench::MakeWxList);
  } else {
    std::printf("MISSED: wxDataViewListCtrl needs a display; ./bench brings one\n");
    ++bench::Misses();
  }
  SortAll(rows);
  MessagesAndPages();
  return bench::Finish();
}
