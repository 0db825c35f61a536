#pragma once

// Turns a Qt key event into the viewer's physical key and, separately, the
// typed character. Real X11 events and QTest's synthesised ones differ for
// the same key (Shift+Tab is Backtab on X11, Shift+= is Plus), so the table
// holds both forms of each key.

#include <QString>
#include <Qt>
#include <optional>

#include "ui/model/keys.h"

class QKeyEvent;

namespace korvanel {

struct MappedKey {
  KeyInput input;                // Key::Unknown when the key means nothing to the view
  std::optional<char32_t> typed;  // the character event, if any
};

MappedKey MapKey(int qt_key, Qt::KeyboardModifiers modifiers, const QString& text);
MappedKey MapKeyEvent(const QKeyEvent& event);

}  // namespace korvanel
