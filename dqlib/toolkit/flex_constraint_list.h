// How the controls of a window stretch with it. Each control has two constraints, one per axis,
// that say how much of the window's growth beyond its design size moves each of its edges.
//
//   dialog.AddFlexConstraint(IDOK, NSFlexShiftRight, NSFlexShiftDown);
//   dialog.AddFlexConstraint(204, NSFlexExpandRight, NSFlexExpandDown);

#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "dqlib/framework/base/geometry.h"

namespace dq {

class CWnd;

/// The share of the growth to the right that moves the left and the right edge: 0 leaves an edge
/// where it is, 1 moves it with the full growth.
class CNSFlexHorizontalConstraint {
 public:
  constexpr CNSFlexHorizontalConstraint(float left, float right) : m_fLeft(left), m_fRight(right) {}

  /// A new copy, which the caller owns.
  virtual CNSFlexHorizontalConstraint* CopyMe() const;
  virtual ~CNSFlexHorizontalConstraint();
  /// Called on the list's own copy when the design rectangle of the control with the id is taken.
  /// The base does nothing; a derived class may set its fractions by the window.
  virtual void Init(const CWnd* host, int id);

  float GetLeft() const { return m_fLeft; }
  float GetRight() const { return m_fRight; }

 protected:
  CNSFlexHorizontalConstraint(const CNSFlexHorizontalConstraint&) = default;
  CNSFlexHorizontalConstraint& operator=(const CNSFlexHorizontalConstraint&) = default;

  void SetLeft(float left) { m_fLeft = left; }
  void SetRight(float right) { m_fRight = right; }

 private:
  float m_fLeft;
  float m_fRight;
};

/// The same for the growth downwards and the top and bottom edge.
class CNSFlexVerticalConstraint {
 public:
  constexpr CNSFlexVerticalConstraint(float top, float bottom) : m_fTop(top), m_fBottom(bottom) {}

  virtual CNSFlexVerticalConstraint* CopyMe() const;
  virtual ~CNSFlexVerticalConstraint();
  virtual void Init(const CWnd* host, int id);

  float GetTop() const { return m_fTop; }
  float GetBottom() const { return m_fBottom; }
  void SetTop(float top) { m_fTop = top; }
  void SetBottom(float bottom) { m_fBottom = bottom; }

 protected:
  CNSFlexVerticalConstraint(const CNSFlexVerticalConstraint&) = default;
  CNSFlexVerticalConstraint& operator=(const CNSFlexVerticalConstraint&) = default;

 private:
  float m_fTop;
  float m_fBottom;
};

/// Stays; moves with the full growth; stays with its first edge and grows with its second.
extern const CNSFlexVerticalConstraint NSFlexVerticallyFixed;
extern const CNSFlexVerticalConstraint NSFlexShiftDown;
extern const CNSFlexVerticalConstraint NSFlexExpandDown;
extern const CNSFlexHorizontalConstraint NSFlexHorizontallyFixed;
extern const CNSFlexHorizontalConstraint NSFlexShiftRight;
extern const CNSFlexHorizontalConstraint NSFlexExpandRight;

/// How far the client size is beyond the design size. Never negative: a window smaller than it was
/// designed is laid out as it was designed.
CSize FlexGrowth(const CSize& design, const CSize& client);

/// Where a control lies after the growth. Each product of a fraction and the growth is computed as
/// `double` and truncated towards zero, so neighbours with the same fraction are at most one pixel
/// apart. Results beyond the range of coordinates are its ends; a fraction that is no number counts
/// as 0.
CRect FlexPlace(const CRect& design, const CNSFlexHorizontalConstraint& horizontal,
                const CNSFlexVerticalConstraint& vertical, const CSize& growth);

/// The constraints of one host window's controls. The host outlives it. On the host's thread.
class CNSFlexConstraintList {
 public:
  /// An empty list without a design size.
  explicit CNSFlexConstraintList(CWnd* host);
  CNSFlexConstraintList(const CNSFlexConstraintList&) = delete;
  CNSFlexConstraintList& operator=(const CNSFlexConstraintList&) = delete;
  ~CNSFlexConstraintList();

  /// Adds a record for the control with the id, with copies of the constraints. Of two for one
  /// control the later one counts. A record that is added after the design rectangles were taken
  /// never gets one, and does nothing.
  void AddFlexConstraint(UINT id, const CNSFlexHorizontalConstraint& horizontal,
                         const CNSFlexVerticalConstraint& vertical);
  bool HasConstraint(UINT id) const;

  /// The host's client size as it was designed. Until it is set, resizes are ignored.
  void SetDesignSize(int width, int height);

  /// Lays the controls out for a client size and has each painted anew with its children, without
  /// painting meanwhile. The first time, it takes the controls' design rectangles; if one of them
  /// is missing, nothing moves, and the next resize tries again. A control that went later is left
  /// out. Allocates nothing once the rectangles are taken.
  void Resize(int cx, int cy);

 private:
  struct Record;

  bool Capture();

  CWnd* m_pHost;
  std::optional<CSize> m_sizeDesign;
  std::vector<Record> m_records;
  /// How many records have a design rectangle; none before the flag is set.
  std::size_t m_nCaptured = 0;
  bool m_bCaptured = false;
};

}  // namespace dq
