#pragma once

// Every command of the viewer in one table: whether it needs an open image,
// what it does, and the check mark and enabled state its menu item shows.
// Keys, characters and menus all end here.

#include <span>

#include "ui/model/commands.h"

namespace korvanel {

class CViewerController;

struct CommandRow {
  Command command;
  bool needs_image;
  void (*run)(CViewerController& viewer, Command command);  // null: a label only
  bool (*checked)(const CViewerController& viewer);         // null: no check mark
  bool (*enabled)(const CViewerController& viewer);         // null: always enabled
};

std::span<const CommandRow> CommandRows();
// The row of `command`, or null for commands without one.
const CommandRow* FindCommandRow(Command command);

}  // namespace korvanel
