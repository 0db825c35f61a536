#include "ui/model/menu_table.h"

namespace korvanel {

std::string MenuActionText(const MenuItem& item) {
  std::string text(item.text);
  if (!item.shortcut.empty()) {
    text += '\t';
    text += item.shortcut;
  }
  return text;
}

const MenuItem* FindMenuItem(Command command) {
  for (const MenuItem& item : kMenuItems) {
    if (item.row == MenuRow::Item && item.command == command) return &item;
  }
  return nullptr;
}

}  // namespace korvanel
