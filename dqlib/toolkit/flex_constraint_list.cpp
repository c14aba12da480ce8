#include "dqlib/toolkit/flex_constraint_list.h"

#include <algorithm>
#include <limits>

#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/wnd.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

constexpr const char kComboClass[] = "ComboBox";
/// Before this version of the platform a combo box is moved with its dropped-down list.
constexpr DWORD kFirstVersionWithoutList = 4;

LONG ToCoordinate(long long value) {
  return static_cast<LONG>(std::clamp<long long>(value, std::numeric_limits<LONG>::min(),
                                                 std::numeric_limits<LONG>::max()));
}

LONG Moved(LONG edge, float fraction, LONG growth) {
  const double product = static_cast<double>(fraction) * growth;
  constexpr double kLimit = std::numeric_limits<LONG>::max();
  // Not a number: both comparisons fail, and the edge stays.
  if (product >= kLimit) return ToCoordinate(edge + 0LL + std::numeric_limits<LONG>::max());
  if (product <= -kLimit) return ToCoordinate(edge + 0LL - std::numeric_limits<LONG>::max());
  if (!(product > -kLimit)) return edge;
  return ToCoordinate(edge + 0LL + static_cast<LONG>(product));
}

LONG Growth(LONG design, LONG client) { return ToCoordinate(std::max(0LL, client - 0LL - design)); }

LONG Extent(LONG first, LONG second) { return ToCoordinate(second - 0LL - first); }

bool MovesCombosWithTheirLists() {
  const auto version = platform::Current().system_facts->Version();
  return version.ok() && version.value.major < kFirstVersionWithoutList;
}

void InvalidateWithChildren(CWnd& control) {
  control.Invalidate();
  for (CWnd* child = control.GetTopWindow(); child != nullptr; child = child->GetNextWindow()) {
    child->Invalidate();
  }
}

}  // namespace

// Set before any code runs, so that static objects may use them.
constinit const CNSFlexVerticalConstraint NSFlexVerticallyFixed(0, 0);
constinit const CNSFlexVerticalConstraint NSFlexShiftDown(1, 1);
constinit const CNSFlexVerticalConstraint NSFlexExpandDown(0, 1);
constinit const CNSFlexHorizontalConstraint NSFlexHorizontallyFixed(0, 0);
constinit const CNSFlexHorizontalConstraint NSFlexShiftRight(1, 1);
constinit const CNSFlexHorizontalConstraint NSFlexExpandRight(0, 1);

CNSFlexHorizontalConstraint* CNSFlexHorizontalConstraint::CopyMe() const {
  return new CNSFlexHorizontalConstraint(*this);
}

CNSFlexHorizontalConstraint::~CNSFlexHorizontalConstraint() = default;

void CNSFlexHorizontalConstraint::Init(const CWnd*, int) {}

CNSFlexVerticalConstraint* CNSFlexVerticalConstraint::CopyMe() const {
  return new CNSFlexVerticalConstraint(*this);
}

CNSFlexVerticalConstraint::~CNSFlexVerticalConstraint() = default;

void CNSFlexVerticalConstraint::Init(const CWnd*, int) {}

CSize FlexGrowth(const CSize& design, const CSize& client) {
  return {Growth(design.cx, client.cx), Growth(design.cy, client.cy)};
}

CRect FlexPlace(const CRect& design, const CNSFlexHorizontalConstraint& horizontal,
                const CNSFlexVerticalConstraint& vertical, const CSize& growth) {
  return {Moved(design.left, horizontal.GetLeft(), growth.cx),
          Moved(design.top, vertical.GetTop(), growth.cy),
          Moved(design.right, horizontal.GetRight(), growth.cx),
          Moved(design.bottom, vertical.GetBottom(), growth.cy)};
}

struct CNSFlexConstraintList::Record {
  int id;
  CRect design;
  std::unique_ptr<CNSFlexHorizontalConstraint> horizontal;
  std::unique_ptr<CNSFlexVerticalConstraint> vertical;
};

CNSFlexConstraintList::CNSFlexConstraintList(CWnd* host) : m_pHost(host) {}

CNSFlexConstraintList::~CNSFlexConstraintList() = default;

void CNSFlexConstraintList::AddFlexConstraint(UINT id,
                                              const CNSFlexHorizontalConstraint& horizontal,
                                              const CNSFlexVerticalConstraint& vertical) {
  Record record{static_cast<int>(id), {}, {}, {}};
  record.horizontal.reset(horizontal.CopyMe());
  record.vertical.reset(vertical.CopyMe());
  m_records.push_back(std::move(record));
}

bool CNSFlexConstraintList::HasConstraint(UINT id) const {
  return std::any_of(m_records.begin(), m_records.end(),
                     [id](const Record& record) { return record.id == static_cast<int>(id); });
}

void CNSFlexConstraintList::SetDesignSize(int width, int height) { m_sizeDesign = {width, height}; }

bool CNSFlexConstraintList::Capture() {
  if (m_bCaptured) return true;
  const bool with_lists = MovesCombosWithTheirLists();
  // By index: an `Init` may add records.
  for (std::size_t i = 0; i < m_records.size(); ++i) {
    const int id = m_records[i].id;
    CWnd* const control = m_pHost->GetDlgItem(id);
    if (control == nullptr) return false;
    CRect rect = control->GetWindowRect();
    if (with_lists && control->GetWindowClass() == kComboClass) {
      CRect list;
      control->SendMessage(CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&list));
      rect.bottom = ToCoordinate(rect.bottom + 0LL + Extent(list.top, list.bottom));
    }
    m_records[i].design = m_pHost->ScreenToClient(rect);
    m_records[i].horizontal->Init(m_pHost, id);
    m_records[i].vertical->Init(m_pHost, id);
  }
  m_nCaptured = m_records.size();
  m_bCaptured = true;
  return true;
}

void CNSFlexConstraintList::Resize(int cx, int cy) {
  if (m_records.empty() || !m_sizeDesign || !Capture()) return;
  const CSize growth = FlexGrowth(*m_sizeDesign, {cx, cy});
  CWnd* const host = m_pHost;
  const detail::Watched watched(*host);
  for (std::size_t i = 0; i < m_nCaptured; ++i) {
    const Record& record = m_records[i];
    const int id = record.id;
    CWnd* const control = host->GetDlgItem(id);
    if (control == nullptr) continue;
    const CRect place = FlexPlace(record.design, *record.horizontal, *record.vertical, growth);
    // The controls' own handlers run here. They may end any window, the host and this list too.
    const detail::Watched moved(*control);
    control->MoveWindow(place.left, place.top, Extent(place.left, place.right),
                        Extent(place.top, place.bottom), false);
    if (!watched.IsThere()) return;
    if (moved.IsThere()) InvalidateWithChildren(*control);
  }
}

}  // namespace dq
