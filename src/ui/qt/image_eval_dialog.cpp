#include "ui/qt/image_eval_dialog.h"

#include <QButtonGroup>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QListWidget>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "ui/model/image_eval_manager.h"
#include "ui/qt/dialog_support.h"
#include "ui/qt/history_combo.h"
#include "ui/qt/text_field.h"

namespace korvanel {

namespace {

struct RadioRow {
  const char* text;
  const char* name;
  int id;
};

constexpr RadioRow kChannelRows[] = {
    {"Output channels by context", "channels_context", static_cast<int>(IEvalChannelMode::Context)},
    {"Force single channel", "channels_single", static_cast<int>(IEvalChannelMode::Single)},
    {"3 channels", "channels_three", static_cast<int>(IEvalChannelMode::Three)},
};
constexpr RadioRow kDepthRows[] = {
    {"Depth of image 1", "bpp_input", 0}, {"8b", "bpp_8", 8}, {"16b", "bpp_16", 16}, {"32b", "bpp_32", 32}};

template <size_t N>
QButtonGroup* Radios(const RadioRow (&rows)[N], int checked, QLayout* layout, QWidget* owner) {
  auto* group = new QButtonGroup(owner);
  for (const RadioRow& row : rows) {
    auto* button = new QRadioButton(row.text, owner);
    button->setObjectName(row.name);
    button->setChecked(row.id == checked);
    group->addButton(button, row.id);
    layout->addWidget(button);
  }
  return group;
}

QPushButton* Button(const char* text, const char* name, QWidget* parent) {
  auto* button = new QPushButton(text, parent);
  button->setObjectName(name);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

CImageEvalDialog::CImageEvalDialog(AppState& app, CImageEvalManager& manager, QWidget* parent)
    : QDialog(parent), app_(app), manager_(manager) {
  setWindowTitle("Image Evaluator");
  editor_ = new CTextEditor(QString::fromStdString(manager.expression), this);
  editor_->setObjectName("expression");
  expand_toggle_ = Button("Show expanded", "expand_toggle", this);
  out_of_range_ = new CHistoryCombo(app.EditHistory(), kIEvalOutOfRangeTag, this);
  out_of_range_->setObjectName("out_of_range");
  out_of_range_->SetText(manager.out_of_range);
  override_ = new CHistoryCombo(app.EditHistory(), kIEvalOverrideTag, this);
  override_->setObjectName("output_override");
  override_->SetText(manager.output_override);
  replace_ = NamedCheckBox("Output replaces image(s)", "replace_image", manager.replace_image, this);
  roi_only_ = NamedCheckBox("Apply on ROI only", "roi_only", manager.roi_only, this);
  yuv_ = NamedCheckBox("Use YUV for 3 ch.", "yuv", manager.yuv, this);

  auto* options = new QFormLayout;
  options->addRow("Out-of-range value:", out_of_range_);
  options->addRow(replace_, override_);
  options->addRow(roi_only_);
  auto* channel_column = new QVBoxLayout;
  channels_ = Radios(kChannelRows, static_cast<int>(manager.channels), channel_column, this);
  channel_column->addWidget(yuv_);
  auto* depth_column = new QVBoxLayout;
  depth_ = Radios(kDepthRows, static_cast<int>(manager.out_bits), depth_column, this);
  auto* choices = new QHBoxLayout;
  choices->addLayout(channel_column);
  choices->addLayout(depth_column);

  list_ = new QListWidget(this);
  list_->setObjectName("saved_list");
  list_->viewport()->installEventFilter(this);
  name_ = new CHistoryCombo(app.EditHistory(), kIEvalNameTag, this);
  name_->setObjectName("save_name");
  name_->SetText(manager.save_name);
  view_toggle_ = Button("", "view_toggle", this);
  QPushButton* save = Button("Save", "save", this);
  QPushButton* remove = Button("Delete", "delete", this);
  QPushButton* up = Button("Up", "move_up", this);
  QPushButton* down = Button("Down", "move_down", this);
  auto* list_buttons = new QHBoxLayout;
  for (QPushButton* button : {save, remove, up, down, view_toggle_}) list_buttons->addWidget(button);
  auto* list_column = new QVBoxLayout;
  list_column->addWidget(list_);
  list_column->addWidget(name_);
  list_column->addLayout(list_buttons);

  auto* editor_column = new QVBoxLayout;
  editor_column->addWidget(editor_);
  editor_column->addWidget(expand_toggle_);
  editor_column->addLayout(options);
  editor_column->addLayout(choices);
  auto* columns = new QHBoxLayout;
  columns->addLayout(editor_column, 3);
  columns->addLayout(list_column, 2);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(columns);
  layout->addWidget(OkCancelButtons(this));

  connect(expand_toggle_, &QPushButton::clicked, this, &CImageEvalDialog::ToggleExpanded);
  connect(save, &QPushButton::clicked, this, &CImageEvalDialog::SaveExpression);
  connect(remove, &QPushButton::clicked, this, &CImageEvalDialog::DeleteSelected);
  connect(up, &QPushButton::clicked, this, [this] { MoveSelected(true); });
  connect(down, &QPushButton::clicked, this, [this] { MoveSelected(false); });
  connect(view_toggle_, &QPushButton::clicked, this, &CImageEvalDialog::ToggleListView);
  connect(list_, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) {
    AppendToEditor(CIEvalList::MarkerText(item->text().toStdString()));
  });
  FillList();
}

void CImageEvalDialog::FillList() {
  const CIEvalList& list = app_.SavedIEvals();
  const std::string selected = SelectedName();
  list_->clear();
  for (const std::string& name : list.Names()) {
    list_->addItem(QString::fromStdString(name));
    if (name == selected) list_->setCurrentRow(list_->count() - 1);
  }
  view_toggle_->setText(list.ToggleText());
}

std::string CImageEvalDialog::SelectedName() const {
  const QListWidgetItem* item = list_->currentItem();
  return item == nullptr ? std::string() : item->text().toStdString();
}

void CImageEvalDialog::AppendToEditor(const std::string& text) {
  if (showing_expanded_) ToggleExpanded();
  editor_->setPlainText(editor_->toPlainText() + QString::fromStdString(text));
}

// A right click on an item appends its expression itself.
bool CImageEvalDialog::eventFilter(QObject* watched, QEvent* event) {
  if (watched == list_->viewport() && event->type() == QEvent::MouseButtonRelease) {
    const auto* mouse = static_cast<QMouseEvent*>(event);
    if (mouse->button() == Qt::RightButton) {
      if (QListWidgetItem* item = list_->itemAt(mouse->position().toPoint())) {
        AppendToEditor(app_.SavedIEvals().ExpressionText(item->text().toStdString()));
        return true;
      }
    }
  }
  return QDialog::eventFilter(watched, event);
}

void CImageEvalDialog::ToggleExpanded() {
  if (showing_expanded_) {
    // The original is what the user edits; the expansion is only shown.
    editor_->setPlainText(QString::fromStdString(manager_.expression));
    editor_->setReadOnly(false);
    expand_toggle_->setText("Show expanded");
    showing_expanded_ = false;
    return;
  }
  manager_.expression = editor_->toPlainText().toStdString();
  std::string expanded;
  if (ShowRefusal(app_, manager_.ExpandedText(app_, expanded))) return;
  editor_->setPlainText(QString::fromStdString(expanded));
  editor_->setReadOnly(true);
  expand_toggle_->setText("Show original");
  showing_expanded_ = true;
}

void CImageEvalDialog::StoreFields() {
  if (!showing_expanded_) manager_.expression = editor_->toPlainText().toStdString();
  manager_.out_of_range = out_of_range_->Text();
  manager_.output_override = override_->Text();
  manager_.replace_image = replace_->isChecked();
  manager_.roi_only = roi_only_->isChecked();
  manager_.channels = static_cast<IEvalChannelMode>(channels_->checkedId());
  manager_.yuv = yuv_->isChecked();
  manager_.out_bits = static_cast<uint32_t>(depth_->checkedId());
  manager_.save_name = name_->Text();
}

void CImageEvalDialog::SaveExpression() {
  StoreFields();
  ShowRefusal(app_, manager_.SaveExpression(app_, [this](std::string_view question) {
    return app_.Feedback().AskYesNo(question, "Save I-Eval");
  }));
  FillList();
}

void CImageEvalDialog::DeleteSelected() {
  const std::string name = SelectedName();
  if (name.empty()) return;
  ShowRefusal(app_, manager_.DeleteSaved(app_, name));
  FillList();
}

void CImageEvalDialog::MoveSelected(bool up) {
  const std::string name = SelectedName();
  if (name.empty()) return;
  ShowRefusal(app_, manager_.MoveSaved(app_, name, up));
  FillList();
}

void CImageEvalDialog::ToggleListView() {
  app_.SavedIEvals().ToggleView();
  FillList();
}

void CImageEvalDialog::accept() {
  StoreFields();
  if (ShowRefusal(app_, manager_.Apply(app_))) return;
  QDialog::accept();
}

}  // namespace korvanel
