// Drag and drop: data that a person drags out of a window, and windows that take them.
//
//   COleDataSource source;
//   source.CacheGlobalData(CLIPBOARD_TEXT, text);
//   if (source.DoDragDrop(view, DROPEFFECT_COPY | DROPEFFECT_MOVE) == DROPEFFECT_MOVE) Remove();

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/framework/windows/wnd.h"
#include "dqlib/platform/clipboard.h"

namespace dq {

/// What a drop does with what is dragged: one bit, or several that are allowed.
enum DropEffect : UINT {
  DROPEFFECT_NONE = 0,
  DROPEFFECT_COPY = 1,
  DROPEFFECT_MOVE = 2,
  DROPEFFECT_LINK = 4,
};

/// One thing in several formats: what is dragged, or what the clipboard holds. Formats are those of
/// `platform::Clipboard`.
class COleDataObject {
 public:
  COleDataObject() = default;

  /// Takes over what the clipboard holds now.
  void AttachClipboard();

  bool IsDataAvailable(UINT format) const;
  /// The bytes in that format; no value if there are none.
  std::optional<std::string> GetData(UINT format) const;
  /// The formats, the best one first.
  std::vector<UINT> GetFormats() const;

  /// Adds the thing in a format, or replaces it there.
  void SetData(UINT format, std::string_view bytes);

 private:
  struct Piece {
    UINT format;
    std::string bytes;
  };
  std::vector<Piece> pieces_;
};

/// How a drag goes on.
enum class DragStep { kGoOn, kDrop, kGiveUp };

/// The side of a drag that the data come from. The base drags as everybody does. It must live until
/// `COleDataSource::DoDragDrop` returns.
class COleDropSource {
 public:
  COleDropSource() = default;
  COleDropSource(const COleDropSource&) = delete;
  COleDropSource& operator=(const COleDropSource&) = delete;
  virtual ~COleDropSource();

  /// Asked when a key or a button changes: `escape` says that Escape was pressed, `keys` what is
  /// held down, by `MouseKey` bits. The base drops once neither the left nor the right button is
  /// held, and gives up by Escape, or where the other button is pressed too.
  virtual DragStep QueryContinueDrag(bool escape, UINT keys);
  /// Told with the effect that a drop would have now. True if it has set the pointer's shape
  /// itself; the base leaves that to the layer.
  virtual bool GiveFeedback(UINT effect);
};

/// What a window offers, to be dragged or put on the clipboard.
class COleDataSource {
 public:
  /// Offers the bytes in a format; the best format first.
  void CacheGlobalData(UINT format, std::string_view bytes) { data_.SetData(format, bytes); }
  void Empty() { data_ = {}; }
  const COleDataObject& data() const { return data_; }

  /// Puts it on the clipboard. False if that is busy.
  bool SetClipboard() const;

  /// Has the person drag it from a window, until they drop it or cancel; returns the effect with
  /// which it was dropped, one of `effects`, or `DROPEFFECT_NONE`. `source` is asked meanwhile;
  /// null is a plain one. Handlers run meanwhile and may end the window. Without a window layer
  /// nothing is dragged.
  UINT DoDragDrop(CWnd& from, UINT effects, COleDropSource* source = nullptr) const;

 private:
  COleDataObject data_;
};

/// Makes a window a target of drops, as long as both live. The base refuses everything: derived
/// classes say what they take. Points are in the window's client coordinates; `keys` is a sum of
/// `MouseKey` bits.
class COleDropTarget {
 public:
  COleDropTarget() = default;
  COleDropTarget(const COleDropTarget&) = delete;
  COleDropTarget& operator=(const COleDropTarget&) = delete;
  virtual ~COleDropTarget();

  /// False if the window isn't made, has a target already, or this one has a window.
  bool Register(CWnd* window);
  void Revoke();
  CWnd* GetWindow() const { return CWnd::FromHandle(window_); }
  /// The target of a window, or null.
  static COleDropTarget* Of(const CWnd* window);

  /// The drag comes over the window, moves there, or leaves it: the effect that a drop would have.
  /// Coming is moving, unless a class says otherwise.
  virtual UINT OnDragEnter(CWnd* window, COleDataObject* data, UINT keys, CPoint point);
  virtual UINT OnDragOver(CWnd* window, COleDataObject* data, UINT keys, CPoint point);
  virtual void OnDragLeave(CWnd* window);
  /// The drop: whether it was taken.
  virtual BOOL OnDrop(CWnd* window, COleDataObject* data, UINT effect, CPoint point);
  /// The same, for a target that chooses the effect itself, of those in `effects`; `offered` is
  /// what `OnDragOver` has said. -1 leaves it to `OnDrop`, or, where nothing was offered, to
  /// `OnDragLeave`.
  virtual int OnDropEx(CWnd* window, COleDataObject* data, UINT offered, UINT effects,
                       CPoint point);

 private:
  HWND window_ = nullptr;
};

/// One drag as a window layer reports it, from wherever it comes: made when it enters the layer's
/// windows. Targets are found by the window under the pointer or above it. One that ends, or is
/// revoked, meanwhile isn't told any more.
class DragInput {
 public:
  /// With the effects that the source allows.
  DragInput(COleDataObject data, UINT effects);
  DragInput(const DragInput&) = delete;
  DragInput& operator=(const DragInput&) = delete;
  /// Leaves the target; what that one throws is traced.
  ~DragInput();

  /// The drag is at a point of the screen, over a window or none. Returns the effect that a drop
  /// would have, of those that are allowed.
  UINT Move(CWnd* under, UINT keys, const CPoint& screen);
  void Leave();
  /// The person lets go there; the effect, `DROPEFFECT_NONE` if nobody took it.
  UINT Drop(CWnd* under, UINT keys, const CPoint& screen);

 private:
  COleDropTarget* Target() const;

  COleDataObject data_;
  UINT effects_;
  /// The window whose target the drag is over.
  HWND over_ = nullptr;
};

}  // namespace dq
