// The display and the toolkit's connection to it.

#pragma once

#include <functional>
#include <gdk/gdk.h>
#include <optional>
#include <string>
#include <vector>
#include <wx/gdicmn.h>

class wxTopLevelWindow;
class wxWindow;

namespace workbench {

/// Why there is no display to draw on, in lower case and without a full stop; no value if there is
/// one.
std::optional<std::string> WhyNoDisplay();

/// The toolkit, for its lifetime. One at a time, on the thread that is to be the user-interface
/// thread, while there is a display.
class Toolkit {
 public:
  /// `lost` is called when the connection to the display breaks, perhaps from within the toolkit.
  /// From then on the toolkit must not be called, and isn't ended with this object. Throws
  /// `std::runtime_error` if the toolkit can't be started.
  explicit Toolkit(std::function<void()> lost);
  Toolkit(const Toolkit&) = delete;
  Toolkit& operator=(const Toolkit&) = delete;
  ~Toolkit();
};

/// Tells the toolkit's `lost` if the connection to the display has hung up, as the answer to a poll
/// says; the toolkit itself may not have found out yet.
void CheckConnection(const std::vector<GPollFD>& polled);

/// Waits until the display has done what it was told, which the toolkit sends it only when it waits
/// next.
void SyncDisplay();

/// How many pixels of the display a pixel at 96 dots to the inch is, by its resolution and the
/// person's settings for the size of texts.
double DisplayScale();

/// Width and height of the primary screen, in the display's pixels.
wxSize DisplaySize();

/// What the window manager puts around a window, in the display's pixels.
struct FrameExtents {
  int left = 0;
  int right = 0;
  int top = 0;
  int bottom = 0;

  friend bool operator==(const FrameExtents&, const FrameExtents&) = default;
};

/// Asks the window manager for that of a window which a person can size, or can't, and waits for
/// the answer at most half a second; all 0 if there is none, or if it doesn't tell.
FrameExtents AskFrameExtents(bool sizable);
/// What a window that is shown really has; no value if the window manager doesn't tell, or not yet.
std::optional<FrameExtents> ReadFrameExtents(const wxTopLevelWindow& window);

/// Where a window that is shown lies, with the frame around it, in the display's pixels; no value
/// while the window manager is still about to put it there.
std::optional<wxPoint> ReadPlace(const wxTopLevelWindow& window);
/// Has `framed` called each time that the window manager has taken the window over, which is then
/// where it was to be put.
void WhenFramed(wxTopLevelWindow& window, std::function<void()> framed);
/// Has `changed` called each time that the window has been maximised, or no longer is; the
/// toolkit's own event comes for the former only.
void WhenMaximizedOrNot(wxTopLevelWindow& window, std::function<void()> changed);

/// Has a window that isn't shown yet come up where it is put, instead of where the toolkit or the
/// window manager would have it.
void KeepPlace(wxTopLevelWindow& window);

}  // namespace workbench
