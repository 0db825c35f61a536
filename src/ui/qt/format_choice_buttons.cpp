#include "ui/qt/format_choice_buttons.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QRadioButton>

namespace korvanel {

namespace {

struct ButtonRow {
  const char* text;
  const char* name;
  int id;
};

constexpr ButtonRow kColors[] = {
    {"YUV 444", "type_yuv444", static_cast<int>(ColorChoice::Yuv444)},
    {"YUV 422", "type_yuv422", static_cast<int>(ColorChoice::Yuv422)},
    {"YUV 420", "type_yuv420", static_cast<int>(ColorChoice::Yuv420)},
    {"Gray-Scale", "type_gray", static_cast<int>(ColorChoice::Gray)},
    {"RGB", "type_rgb", static_cast<int>(ColorChoice::Rgb)},
};
constexpr ButtonRow kPackings[] = {{"Planner", "packing_planner", 1}, {"Interleaved", "packing_interleaved", 0}};
constexpr ButtonRow kDepths[] = {
    {"8b", "bpp_8", static_cast<int>(DepthChoice::Bits8)},
    {"16b", "bpp_16", static_cast<int>(DepthChoice::Bits16)},
    {"32b", "bpp_32", static_cast<int>(DepthChoice::Bits32)},
};

template <size_t N>
QButtonGroup* AddColumn(const ButtonRow (&rows)[N], int checked_id, int column, QGridLayout* grid, QWidget* owner) {
  auto* group = new QButtonGroup(owner);
  for (size_t i = 0; i < N; ++i) {
    auto* button = new QRadioButton(rows[i].text, owner);
    button->setObjectName(rows[i].name);
    button->setChecked(rows[i].id == checked_id);
    group->addButton(button, rows[i].id);
    grid->addWidget(button, static_cast<int>(i), column);
  }
  return group;
}

}  // namespace

CFormatChoiceButtons::CFormatChoiceButtons(const FormatChoices& choices, QWidget* parent)
    : QGroupBox("Format", parent) {
  auto* grid = new QGridLayout(this);
  color_ = AddColumn(kColors, static_cast<int>(choices.color), 0, grid, this);
  packing_ = AddColumn(kPackings, choices.planar ? 1 : 0, 1, grid, this);
  depth_ = AddColumn(kDepths, static_cast<int>(choices.depth), 2, grid, this);
  little_endian_ = new QCheckBox("Little-Endian x86", this);
  little_endian_->setObjectName("little_endian");
  little_endian_->setChecked(choices.little_endian);
  grid->addWidget(little_endian_, static_cast<int>(std::size(kDepths)), 2);
  for (QButtonGroup* group : {color_, packing_, depth_}) {
    connect(group, &QButtonGroup::idClicked, this, &CFormatChoiceButtons::Changed);
  }
  connect(little_endian_, &QCheckBox::toggled, this, &CFormatChoiceButtons::Changed);
}

FormatChoices CFormatChoiceButtons::Choices() const {
  FormatChoices choices;
  choices.color = static_cast<ColorChoice>(color_->checkedId());
  choices.planar = packing_->checkedId() == 1;
  choices.depth = static_cast<DepthChoice>(depth_->checkedId());
  choices.little_endian = little_endian_->isChecked();
  return choices;
}

}  // namespace korvanel
