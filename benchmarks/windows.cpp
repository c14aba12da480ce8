// Windows: a tree of them made, laid out and ended in linear time, and so with messages, timers,
// owners, ids and nesting; rows, menus and pages as well; a layout pass against wxSizer on the same
// grid; and posted messages that leave no memory behind.

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <memory>
#include <new>
#include <string>
#include <unistd.h>
#include <vector>
#include <wx/sizer.h>

#include "benchmarks/ratio.h"
#include "dqlib/framework/controls/list_box.h"
#include "dqlib/framework/windows/menu.h"
#include "dqlib/framework/windows/property_sheet.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/toolkit/flex_host.h"

namespace {

std::atomic<long> allocations = 0;

}  // namespace

void* operator new(std::size_t size) {
  allocations.fetch_add(1, std::memory_order_relaxed);
  if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kColumns = 40;
constexpr int kRows = 25;
constexpr int kCellWidth = 10;
constexpr int kCellHeight = 8;

/// A host that is ready to stretch.
class Host : public dq::detail::FlexHost<dq::CWnd> {
 public:
  void Make(const dq::CRect& place, dq::CWnd* parent, int id) {
    CreateWnd({.class_name = "Host", .place = place, .parent = parent, .id = id});
    InitFlex();
  }
};

/// Constraints of the cell of a column or row: its share of the growth on both edges.
dq::CNSFlexHorizontalConstraint Across(int column, int columns) {
  const float count = static_cast<float>(columns);
  return {static_cast<float>(column) / count, static_cast<float>(column + 1) / count};
}
dq::CNSFlexVerticalConstraint Down(int row, int rows) {
  const float count = static_cast<float>(rows);
  return {static_cast<float>(row) / count, static_cast<float>(row + 1) / count};
}

/// A grid of controls in a host.
class Grid {
 public:
  Grid(int columns, int rows) : width_(columns * kCellWidth), height_(rows * kCellHeight) {
    host_.Make({0, 0, width_, height_}, nullptr, 0);
    for (int i = 0; i < columns * rows; ++i) {
      const int left = i % columns * kCellWidth;
      const int top = i / columns * kCellHeight;
      controls_.push_back(std::make_unique<dq::CWnd>());
      controls_.back()->CreateWnd({.class_name = "Static",
                                   .place = {left, top, left + kCellWidth, top + kCellHeight},
                                   .parent = &host_,
                                   .id = i + 1});
      host_.AddFlexConstraint(static_cast<dq::UINT>(i + 1), Across(i % columns, columns),
                              Down(i / columns, rows));
    }
  }
  ~Grid() { host_.DestroyWindow(); }

  void Grow(int by) { host_.MoveWindow(0, 0, width_ + by, height_ + by, false); }
  const dq::CRect& LastPlace() const { return controls_.back()->GetPlace(); }

 private:
  int width_;
  int height_;
  Host host_;
  std::vector<std::unique_ptr<dq::CWnd>> controls_;
};

/// Ten windows in every window, each of which stretches with the one above it.
class Tree {
 public:
  explicit Tree(int count) {
    nodes_.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
      Host* const above = i == 0 ? nullptr : nodes_[static_cast<std::size_t>((i - 1) / 10)].get();
      nodes_.push_back(std::make_unique<Host>());
      nodes_.back()->Make({0, 0, 100, 100}, above, i);
      if (above == nullptr) continue;
      above->AddFlexConstraint(static_cast<dq::UINT>(i), dq::NSFlexExpandRight,
                               dq::NSFlexExpandDown);
    }
  }
  ~Tree() { nodes_.front()->DestroyWindow(); }

  void Grow(int by) { nodes_.front()->MoveWindow(0, 0, 100 + by, 100 + by, false); }

 private:
  std::vector<std::unique_ptr<Host>> nodes_;
};

double Milliseconds(Clock::time_point since) {
  return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

/// Nanoseconds per window to make, lay out twice and end so many; the best of some rounds.
template <typename Windows, typename... Arguments>
double PerWindow(int count, Arguments... arguments) {
  double best = 1e300;
  for (int round = 0; round < (count > 50'000 ? 3 : 10); ++round) {
    const auto start = Clock::now();
    {
      Windows windows(arguments...);
      windows.Grow(10);
      windows.Grow(25);
    }
    best = std::min(best, Milliseconds(start));
  }
  return best * 1e6 / count;
}

void Check(bool met, const char* what) {
  if (!met) ++bench::Misses();
  std::printf("%s: %s\n", what, met ? "met" : "MISSED");
}

void Linear() {
  std::printf("created, flexed twice and destroyed, ns per window:\n");
  double tree[4];
  double flat[4];
  const int counts[] = {1'000, 10'000, 100'000, 1'000'000};
  for (int i = 0; i < 4; ++i) {
    tree[i] = PerWindow<Tree>(counts[i], counts[i]);
    flat[i] = PerWindow<Grid>(counts[i], 40, counts[i] / 40);
    std::printf("%8d windows: tree of tens %8.0f   children of one %8.0f\n", counts[i], tree[i],
                flat[i]);
  }
  // The first two sizes fit into the processor's caches, so the last two are compared. Quadratic
  // time would be ten times as much per window.
  Check(tree[3] < 4 * tree[2] && flat[3] < 4 * flat[2], "linear time");
}

/// Many windows of which each has something that its end takes along.
class Windows {
 public:
  enum Kind { kPosted, kTimers, kOwned, kNested, kSubclassed, kSameIds };

  Windows(Kind kind, int count) {
    top_.CreateWnd("Top");
    dq::CWnd* above = &top_;
    for (int i = 0; i < count; ++i) {
      const bool owned = kind == kOwned;
      auto& window = *windows_.emplace_back(std::make_unique<dq::CWnd>());
      window.CreateWnd({.class_name = "Test",
                        .parent = owned ? nullptr : above,
                        .owner = owned ? &top_ : nullptr,
                        .id = kind == kSameIds ? i % 10 : i});
      if (kind == kPosted) window.PostMessage(dq::WM_USER);
      if (kind == kTimers) window.SetTimer(1, 3'600'000);
      if (kind == kNested) above = &window;
    }
    for (int i = 0; kind == kSubclassed && i < count; ++i) {
      dq::CWnd& former = *windows_[static_cast<std::size_t>(i)];
      auto taker = std::make_unique<dq::CWnd>();
      taker->SubclassDlgItem(former.GetDlgCtrlID(), &top_);
      windows_[static_cast<std::size_t>(i)] = std::move(taker);
    }
  }
  /// The oldest first; a nested chain goes with its top.
  ~Windows() {
    for (auto& window : windows_) {
      window->DestroyWindow();
      top_.GetDlgItem(3);
    }
    top_.DestroyWindow();
    dq::PumpUntilIdle();
  }

  void Grow(int) {}

 private:
  dq::CWnd top_;
  std::vector<std::unique_ptr<dq::CWnd>> windows_;
};

/// Rows of a list: put in at the front, named by a person, taken out again.
class Rows {
 public:
  explicit Rows(int count) {
    dq::CListBox list(dq::ListStyle{.multiple = true});
    list.CreateWnd("ListBox");
    std::string all;
    for (int i = 0; i < count; ++i) {
      const std::string text = "row " + std::to_string(i % (count / 2));
      list.InsertString(0, text.c_str());
      all += text + "\n";
    }
    list.Enter(all);
    if (list.GetSelCount() != count) std::abort();
    while (list.GetCount() > 0) list.DeleteString(0);
  }
  void Grow(int) {}
};

/// Items of a menu: put in, brought up to date and taken out from the first to the last.
class Items {
 public:
  explicit Items(int count) {
    struct : dq::CCmdTarget {
    } target;
    dq::CMenu menu;
    menu.CreateMenu();
    for (int i = 0; i < count; ++i) {
      menu.AppendMenu(dq::MF_STRING, static_cast<std::uintptr_t>(i % 60'000 + 1), "item");
    }
    menu.UpdateItems(target);
    while (menu.DeleteMenu(0, dq::MF_BYPOSITION)) continue;
  }
  void Grow(int) {}
};

/// Pages of a sheet: each says that it is modified, and all go.
class Pages {
 public:
  explicit Pages(int count) {
    dq::CPropertySheet sheet("sheet");
    std::vector<std::unique_ptr<dq::CPropertyPage>> pages;
    for (int i = 0; i < count; ++i) {
      sheet.AddPage(pages.emplace_back(std::make_unique<dq::CPropertyPage>(1U)).get());
    }
    for (auto& page : pages) page->SetModified();
    for (auto& page : pages) page.reset();
  }
  void Grow(int) {}
};

/// Prints the time for each of many things and ten times as many, and holds it to be about the
/// same: quadratic time would be ten times as much for each. Fewer would fit into the processor's
/// caches.
template <typename Many, typename... Arguments>
void IsLinear(const char* what, int count, Arguments... arguments) {
  const double few = PerWindow<Many>(count, arguments..., count);
  const double many = PerWindow<Many>(10 * count, arguments..., 10 * count);
  std::printf("%-32s ns each: %6d %8.0f   %7d %8.0f\n", what, count, few, 10 * count, many);
  Check(many < 4 * few, what);
}

void Ends() {
  constexpr struct {
    const char* what;
    Windows::Kind kind;
  } kEnds[] = {{"windows with posted messages", Windows::kPosted},
               {"windows with timers", Windows::kTimers},
               {"windows of one owner", Windows::kOwned},
               {"windows one in the other", Windows::kNested},
               {"controls that are subclassed", Windows::kSubclassed},
               {"windows with the same ids", Windows::kSameIds}};
  for (const auto& row : kEnds) IsLinear<Windows>(row.what, 40'000, row.kind);
  IsLinear<Rows>("rows of a list", 40'000);
  IsLinear<Items>("items of a menu", 40'000);
  IsLinear<Pages>("pages of a sheet", 40'000);
}

void LayoutPass() {
  Grid grid(kColumns, kRows);
  // Boxes in a box: the peer's own grid looks its items up one by one from the first.
  wxBoxSizer sizer(wxVERTICAL);
  for (int row = 0; row < kRows; ++row) {
    auto line = std::make_unique<wxBoxSizer>(wxHORIZONTAL);
    for (int i = 0; i < kColumns; ++i) line->Add(kCellWidth, kCellHeight, 1, wxEXPAND);
    sizer.Add(line.release(), 1, wxEXPAND);
  }
  sizer.CalcMin();
  grid.Grow(200);
  Check(grid.LastPlace() == dq::CRect{585, 383, 600, 400}, "the pass moves the controls");
  grid.Grow(50);
  int step = 0;
  int peer_step = 0;
  bench::Ratio("layout pass over 1,000 controls", "wxBoxSizer of wxBoxSizers", 1.0)
      .Run([&] { grid.Grow(100 + ++step % 2 * 100); },
           [&] {
             const int by = 100 + ++peer_step % 2 * 100;
             sizer.SetDimension(0, 0, kColumns * kCellWidth + by, kRows * kCellHeight + by);
           },
           200);
  const long before = allocations;
  for (int i = 0; i < 10; ++i) grid.Grow(10 + i);
  std::printf("allocations in ten passes: %ld\n", allocations - before);
  Check(allocations == before, "no allocation");
}

long ResidentKilobytes() {
  long size = 0;
  long resident = 0;
  if (std::FILE* const file = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(file, "%ld %ld", &size, &resident) != 2) resident = 0;
    std::fclose(file);
  }
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

void PostedMessages() {
  dq::CWnd window;
  window.CreateWnd("Target");
  window.PostMessage(dq::WM_USER);
  dq::PumpUntilIdle();
  const long before = ResidentKilobytes();
  const auto start = Clock::now();
  for (dq::WPARAM i = 0; i < 1'000'000; ++i) window.PostMessage(dq::WM_USER, i);
  const long full = ResidentKilobytes();
  const int handled = dq::PumpUntilIdle();
  const double milliseconds = Milliseconds(start);
  const long held = ResidentKilobytes();
  // What the allocator keeps for later isn't the queue's.
  malloc_trim(0);
  const long after = ResidentKilobytes();
  std::printf(
      "%d messages posted and pumped in %.0f ms; resident KiB %ld, full %ld, emptied %ld, "
      "trimmed %ld\n",
      handled, milliseconds, before, full, held, after);
  Check(handled == 1'000'000 && after - before < 1024, "no lasting memory");
}

}  // namespace

int main() {
  dq::CWinApp app("windows_bench");
  PostedMessages();
  Linear();
  Ends();
  LayoutPass();
  return bench::Finish();
}
