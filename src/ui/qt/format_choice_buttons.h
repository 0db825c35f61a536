#pragma once

// The radio buttons of a format choice (colour type, packing, depth, byte
// order) shared by the open-raw and convert dialogs.

#include <QGroupBox>

#include "image/format_generator.h"

class QButtonGroup;
class QCheckBox;

namespace korvanel {

class CFormatChoiceButtons final : public QGroupBox {
  Q_OBJECT

 public:
  CFormatChoiceButtons(const FormatChoices& choices, QWidget* parent = nullptr);
  FormatChoices Choices() const;

 signals:
  void Changed();

 private:
  QButtonGroup* color_ = nullptr;
  QButtonGroup* packing_ = nullptr;
  QButtonGroup* depth_ = nullptr;
  QCheckBox* little_endian_ = nullptr;
};

}  // namespace korvanel
