#pragma once
// The model's plain values in Qt's types, one definition for every painter
// and window of the shell.
#include <QColor>
#include <QRect>
#include <QString>
#include <string_view>

#include "app/config_values.h"
#include "ui/model/geometry.h"

namespace korvanel {

inline QColor ToQColor(const Rgb& c) { return QColor(c.r, c.g, c.b); }

inline QRect ToQRect(const ScreenRect& r) { return QRect(r.left, r.top, r.Width(), r.Height()); }

inline QString ToQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace korvanel
