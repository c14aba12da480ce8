// Windows: a tree of them made, laid out and ended in linear time; a layout pass against wxSizer on
// the same grid; and posted messages that leave no memory behind.

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <memory>
#include <new>
#include <unistd.h>
#include <vector>
#include <wx/sizer.h>

#include "benchmarks/ratio.h"
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
  LayoutPass();
  return bench::Finish();
}
