// The picture module: pictures by id, and which stock fonts the family uses.

#pragma once

#include "dqlib/framework/base/drawing.h"

namespace dq {

/// The module's handle. It has one small picture for every id the library uses, drawn by a
/// generator so that each can be told from the others, as a bitmap and as a pointer resource.
HINSTANCE DQRESOURCES_GetInstanceHandle();

/// Numbers of the stock fonts for running text and for columns of text (see `GetStockFont`).
int DQRESOURCES_GetVarStockFont();
int DQRESOURCES_GetFixedStockFont();

/// Loads a picture of the module and attaches it; false, and no change, if it has none with the id.
bool DQRESOURCES_LoadBitmap(CBitmap& bitmap, UINT id);

/// A pointer of the module, or null.
HCURSOR DQRESOURCES_LoadCursor(UINT id);

}  // namespace dq
