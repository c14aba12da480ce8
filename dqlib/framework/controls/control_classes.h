// Brings the window classes of the controls into the program. Included by what opens dialogs.

#pragma once

extern "C" {
/// Enters the classes before `main`, by being built.
extern const bool dqlib_controls;
}

namespace dq::detail {

/// Dialog templates name the controls by their window classes, which no program mentions otherwise.
/// By this reference every program that has something to do with controls is linked with them.
[[gnu::used]] inline const bool* const kControls = &dqlib_controls;

}  // namespace dq::detail
