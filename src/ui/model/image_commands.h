#pragma once

// Commands on the open images that act on the image in context: in compare
// mode the image under the mouse (`under`, kNoIndex when over none), else
// the focus image.

#include <cstddef>

#include "ui/model/commands.h"

namespace korvanel {

class AppState;
class IViewerHost;
struct SaveMenuEntry;

// The image in context, or kNoIndex.
size_t ContextImage(const AppState& app, size_t under);
// The image under the mouse, else the focus image (the copy menu items).
size_t ImageOrFocus(const AppState& app, size_t under);

// x: closes the image in context; in compare mode with the mouse over no
// image it says so and closes nothing.
void CloseContextImage(AppState& app, size_t under);
// X: the whole comparison party in compare mode, else every image.
void CloseAllContext(AppState& app);
// S and File > Export to PNG.
void ExportPngContext(AppState& app, size_t under);
// File > Save image statistics: counted afresh, then written.
void SaveStatisticsContext(AppState& app, size_t under);
// The focus image, or every party image, saved the way `entry` says.
void SaveFocusWith(AppState& app, const SaveMenuEntry& entry);
// The same for a File > "&Save raw" item.
void SaveForCommand(AppState& app, Command command);
// The image's full path as clipboard text.
void CopyPathToClipboard(AppState& app, IViewerHost& host, size_t index);
// The image as shown, limited to its region of interest, as a clipboard image.
void CopyImageToClipboard(AppState& app, IViewerHost& host, size_t index);

}  // namespace korvanel
