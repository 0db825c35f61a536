#include "ui/qt/main_window.h"

#include <QAbstractScrollArea>
#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QScreen>
#include <QStatusBar>
#include <QSysInfo>
#include <QTimer>
#include <QUrl>
#include <algorithm>

#include "app/app_state.h"
#include "app/app_version.h"
#include "ui/model/menu_table.h"
#include "ui/model/viewer_controller.h"
#include "ui/qt/canvas.h"
#include "ui/qt/dialogs/update_dialog.h"
#include "ui/qt/convert_dialog.h"
#include "ui/qt/filter_dialog.h"
#include "ui/qt/image_eval_dialog.h"
#include "ui/qt/ruler_settings_dialog.h"
#include "ui/qt/dialogs/help_window.h"
#include "ui/qt/frame_renderer.h"
#include "ui/qt/qt_conversions.h"
#include "ui/qt/update_checker.h"

namespace korvanel {
namespace {

constexpr QSize kFirstWindowSize(1024, 768);

// The canvas handles its own events: the scroll area would otherwise take
// the wheel and paint itself.
class CViewportArea final : public QAbstractScrollArea {
 public:
  using QAbstractScrollArea::QAbstractScrollArea;

 protected:
  bool viewportEvent(QEvent*) override { return false; }
};

struct SliderAction {
  int qt_action;
  ScrollAction action;
};

constexpr SliderAction kSliderActions[] = {
    {QAbstractSlider::SliderSingleStepSub, ScrollAction::LineUp},
    {QAbstractSlider::SliderSingleStepAdd, ScrollAction::LineDown},
    {QAbstractSlider::SliderPageStepSub, ScrollAction::PageUp},
    {QAbstractSlider::SliderPageStepAdd, ScrollAction::PageDown},
    {QAbstractSlider::SliderMove, ScrollAction::Thumb},
    {QAbstractSlider::SliderToMinimum, ScrollAction::Top},
    {QAbstractSlider::SliderToMaximum, ScrollAction::Bottom},
};

struct CursorRow {
  CursorShape shape;
  Qt::CursorShape qt_shape;
};

constexpr CursorRow kCursors[] = {
    {CursorShape::Arrow, Qt::ArrowCursor},          {CursorShape::SizeHorizontal, Qt::SizeHorCursor},
    {CursorShape::SizeVertical, Qt::SizeVerCursor}, {CursorShape::SizeDiagonal, Qt::SizeFDiagCursor},
    {CursorShape::SizeAntiDiagonal, Qt::SizeBDiagCursor}, {CursorShape::Move, Qt::SizeAllCursor},
};

void ApplyScrollBar(QScrollBar& bar, const ScrollBarState& state) {
  const QSignalBlocker quiet(bar);
  bar.setRange(0, state.maximum);
  bar.setPageStep(state.page);
  bar.setSingleStep(state.line);
  bar.setValue(state.position);
  bar.setEnabled(state.enabled);
}

}  // namespace

CMainWindow::CMainWindow(AppState& app, const ConfigValues& config)
    : app_(app), feedback_(*this), renderer_(std::make_unique<CFrameRenderer>(config)) {
  setWindowTitle(kAppName);
  setAcceptDrops(true);
  BuildMenus();
  BuildStatusBar();
  BuildScrollArea();
  BuildTimers();
  BuildUpdateChecker(config);
  controller_ = std::make_unique<CViewerController>(app_, *this, ViewerSettings::FromConfig(config));
  // Pixel values show only where the value font really fits a block.
  controller_->SetTextMetrics(&renderer_->TextMetrics());
  feedback_.BindOpenRaw(app_, controller_->Dialogs().open_raw);
  canvas_->SetController(controller_.get());
  canvas_->setFocus();
  // The first size stays within the screen's free area: under a scale
  // factor 1024 x 768 logical pixels can be larger than the screen.
  resize(kFirstWindowSize.boundedTo(screen()->availableGeometry().size()));
  controller_->CheckUpdatesAtStart();
}

CMainWindow::~CMainWindow() {
  app_.StoreEditHistory();
  delete ruler_dialog_;  // it reaches the controller's state
  // The canvas must not reach a controller that is gone.
  canvas_->SetController(nullptr);
  controller_.reset();
}

void CMainWindow::BuildMenus() {
  for (const MenuTitle& title : kMenuTitles) {
    QMenu* top = menuBar()->addMenu(ToQString(title.text));
    if (title.menu == Menu::Window) window_menu_ = top;
    std::vector<QMenu*> open = {top};
    QActionGroup* radio = nullptr;
    for (const MenuItem& item : kMenuItems) {
      if (item.menu != title.menu) continue;
      if (item.row == MenuRow::SubmenuBegin) {
        open.push_back(open.back()->addMenu(ToQString(item.text)));
        radio = nullptr;
        continue;
      }
      if (item.row == MenuRow::SubmenuEnd) {
        if (open.size() > 1) open.pop_back();
        radio = nullptr;
        continue;
      }
      // The shortcut is only shown: the keys belong to the image area.
      QAction* action = open.back()->addAction(ToQString(MenuActionText(item)));
      action->setCheckable(item.check != CheckKind::None);
      action->setEnabled(item.starts_enabled);
      if (item.check == CheckKind::Radio) {
        if (radio == nullptr) radio = new QActionGroup(open.back());
        radio->addAction(action);
      }
      actions_.emplace(item.command, action);
      const Command command = item.command;
      connect(action, &QAction::triggered, this, [this, command] { controller_->Execute(command); });
    }
  }
  window_menu_->addSeparator();
}

void CMainWindow::BuildStatusBar() {
  statusBar()->setSizeGripEnabled(false);
  status_strip_ = new QWidget(statusBar());
  status_strip_->setMinimumHeight(fontMetrics().height() + 4);
  for (QLabel*& part : status_parts_) {
    part = new QLabel(status_strip_);
    part->setFrameShape(QFrame::Panel);
    part->setFrameShadow(QFrame::Sunken);
  }
  statusBar()->addWidget(status_strip_, 1);
}

void CMainWindow::PlaceStatusParts() {
  // The parts end at the model's edges, measured on the window's width.
  const std::array<int32_t, kStatusPartCount> widths = StatusPartWidths(width());
  int left = 0;
  for (size_t i = 0; i < kStatusPartCount; ++i) {
    status_parts_[i]->setGeometry(left, 0, widths[i], status_strip_->height());
    left += widths[i];
  }
}

void CMainWindow::BuildScrollArea() {
  scroll_ = new CViewportArea(this);
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setFocusPolicy(Qt::NoFocus);
  scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  scroll_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  canvas_ = new CCanvas(*renderer_);
  scroll_->setViewport(canvas_);
  // The scroll area makes itself the viewport's focus proxy; the keys must
  // reach the canvas.
  canvas_->setFocusProxy(nullptr);
  setCentralWidget(scroll_);
  const std::pair<QScrollBar*, Axis> bars[] = {{scroll_->horizontalScrollBar(), Axis::Horizontal},
                                               {scroll_->verticalScrollBar(), Axis::Vertical}};
  for (const auto& [bar, axis] : bars) {
    ApplyScrollBar(*bar, ScrollBarState{});
    connect(bar, &QScrollBar::actionTriggered, this, [this, bar = bar, axis = axis](int qt_action) {
      for (const SliderAction& row : kSliderActions) {
        if (row.qt_action == qt_action) controller_->OnScroll(axis, row.action, bar->sliderPosition());
      }
    });
  }
}

void CMainWindow::BuildTimers() {
  for (const TimerInfo& info : kTimers) {
    auto* timer = new QTimer(this);
    timer->setInterval(static_cast<int>(info.period_ms));
    const TimerId id = info.id;
    connect(timer, &QTimer::timeout, this, [this, id] { controller_->OnTimer(id); });
    timers_.emplace(id, timer);
  }
}

std::array<QString, kStatusPartCount> CMainWindow::StatusTexts() const {
  std::array<QString, kStatusPartCount> texts;
  for (size_t i = 0; i < kStatusPartCount; ++i) texts[i] = status_parts_[i]->text();
  return texts;
}

QAction* CMainWindow::ActionFor(Command command) const {
  const auto found = actions_.find(command);
  return found == actions_.end() ? nullptr : found->second;
}

void CMainWindow::Invalidate(bool, std::span<const ScreenRect> damage) {
  // The canvas composes the base itself when the plan says so; here only
  // the region to repaint is decided.
  if (damage.empty()) {
    canvas_->update();
    return;
  }
  const qreal dpr = canvas_->devicePixelRatioF();
  for (const ScreenRect& rect : damage) {
    if (rect.Empty()) continue;
    const QRectF logical(rect.left / dpr, rect.top / dpr, rect.Width() / dpr, rect.Height() / dpr);
    canvas_->update(logical.toAlignedRect());
  }
}

void CMainWindow::SetScrollBars(const ScrollBarState& h, const ScrollBarState& v) {
  ApplyScrollBar(*scroll_->horizontalScrollBar(), h);
  ApplyScrollBar(*scroll_->verticalScrollBar(), v);
}

void CMainWindow::ShowStatus(const StatusFields& fields) {
  for (size_t i = 0; i < kStatusPartCount; ++i) status_parts_[i]->setText(ToQString(fields.parts[i]));
}

int32_t CMainWindow::StatusBarWidth() const { return width(); }

int32_t CMainWindow::StatusTextWidth(std::string_view text) const {
  return status_parts_[kStatusReadoutPart]->fontMetrics().horizontalAdvance(ToQString(text));
}

void CMainWindow::StartTimer(TimerId id, uint32_t period_ms) { timers_.at(id)->start(static_cast<int>(period_ms)); }

void CMainWindow::StopTimer(TimerId id) { timers_.at(id)->stop(); }

void CMainWindow::SetCursorShape(CursorShape shape) {
  for (const CursorRow& row : kCursors) {
    if (row.shape == shape) canvas_->setCursor(row.qt_shape);
  }
}

void CMainWindow::SetClipboardText(std::string_view text) { QGuiApplication::clipboard()->setText(ToQString(text)); }

std::string CMainWindow::ClipboardText() { return QGuiApplication::clipboard()->text().toStdString(); }

void CMainWindow::SetClipboardImage(const Rgb888Image& image) {
  if (image.width == 0 || image.height == 0 || image.bytes.size() < uint64_t{image.width} * image.height * 3) return;
  const QImage view(image.bytes.data(), static_cast<int>(image.width), static_cast<int>(image.height),
                    static_cast<qsizetype>(image.width) * 3, QImage::Format_RGB888);
  QGuiApplication::clipboard()->setImage(view.copy());
}

std::optional<std::string> CMainWindow::AskOpenPath() {
  // "*" rather than "*.*": on Linux the latter hides files without a dot.
  const QString path = QFileDialog::getOpenFileName(this, QString(), QString(), "All Files (*)");
  if (path.isEmpty()) return std::nullopt;
  return QFile::encodeName(path).toStdString();
}

ModifiedAnswer CMainWindow::AskFileModified(std::string_view path, bool& keep_settings) {
  QMessageBox box(QMessageBox::Question, "File Modification Notification",
                  QString("File %1 was modified outside.\nReload?").arg(ToQString(path)), QMessageBox::NoButton, this);
  const std::pair<QPushButton*, ModifiedAnswer> buttons[] = {
      {box.addButton("Yes", QMessageBox::YesRole), ModifiedAnswer::Yes},
      {box.addButton("Ignore", QMessageBox::NoRole), ModifiedAnswer::Ignore},
      {box.addButton("Yes to all", QMessageBox::YesRole), ModifiedAnswer::YesToAll},
      {box.addButton("Ignore all", QMessageBox::NoRole), ModifiedAnswer::IgnoreAll},
  };
  auto* keep = new QCheckBox("Try reloading with current image settings");
  keep->setChecked(keep_settings);
  box.setCheckBox(keep);
  box.exec();
  keep_settings = keep->isChecked();
  for (const auto& [button, answer] : buttons) {
    if (box.clickedButton() == button) return answer;
  }
  return ModifiedAnswer::Ignore;
}

void CMainWindow::OpenDialog(DialogId id) {
  if (id == DialogId::About) ShowAbout();
  if (id == DialogId::Update) ShowUpdateDialog();
  if (id == DialogId::Filter) RunImageDialog<CFilterDialog>(controller_->Dialogs().filter);
  if (id == DialogId::Convert) RunImageDialog<CConvertDialog>(controller_->Dialogs().convert);
  if (id == DialogId::RulerSettings) ShowRulerSettings();
  if (id == DialogId::ImageEval) RunImageDialog<CImageEvalDialog>(controller_->Dialogs().ieval);
  if (id == DialogId::HelpWindow) ShowHelpWindow();
}

void CMainWindow::BuildUpdateChecker(const ConfigValues& config) {
  update_download_url_ = ToQString(config.system.update_download_url);
  update_checker_ = new CUpdateChecker(this);
  connect(update_checker_, &CUpdateChecker::Finished, this, [this](bool ok, const QByteArray& body, const QString&) {
    if (!ok) {
      controller_->OnUpdateReply(std::nullopt);
      return;
    }
    controller_->OnUpdateReply(std::string_view(body.constData(), static_cast<size_t>(body.size())));
  });
}

void CMainWindow::StartUpdateCheck(const std::string& url) { update_checker_->Start(ToQString(url)); }

void CMainWindow::ShowUpdateDialog() {
  CUpdateDialog dialog(controller_->State().update.decision, update_download_url_, this);
  dialog.exec();
}

// Modeless: one instance, raised when asked for again.
void CMainWindow::ShowRulerSettings() {
  if (ruler_dialog_ == nullptr) {
    ruler_dialog_ = new CRulerSettingsDialog(
        app_, controller_->Dialogs().ruler, [this] { return controller_->ApplyRulerSettings(); }, this);
  }
  ruler_dialog_->show();
  ruler_dialog_->raise();
  ruler_dialog_->activateWindow();
}

template <typename Dialog, typename Manager>
void CMainWindow::RunImageDialog(Manager& manager) {
  Dialog dialog(app_, manager, this);
  if (dialog.exec() == QDialog::Accepted) controller_->OnDialogApplied();
}

void CMainWindow::ShowHelpWindow() {
  CHelpWindow help(this);
  help.exec();
}

void CMainWindow::ShowAbout() {
  const QString text = QString("%1, Version %2.%3 %4\n%5 (%6)\nDev Ver: %2.%3.%7")
                           .arg(kAppName)
                           .arg(kVersionMajor)
                           .arg(kVersionMinor)
                           .arg(kVersionTag)
                           .arg(QSysInfo::prettyProductName(), kPlatformName)
                           .arg(kSourceRevision, 5, 10, QChar('0'));
  QMessageBox::about(this, QString("About %1").arg(kAppName), text);
}

void CMainWindow::SetMenuState(Command command, bool checked, bool enabled) {
  for (auto [it, end] = actions_.equal_range(command); it != end; ++it) {
    it->second->setChecked(checked);
    it->second->setEnabled(enabled);
  }
}

void CMainWindow::DestroyWindow() {
  destroying_ = true;
  close();
}

void CMainWindow::closeEvent(QCloseEvent* event) {
  // An operation is writing images; it ends first.
  if (controller_->Busy()) {
    event->ignore();
    return;
  }
  if (destroying_ || controller_->RequestClose()) {
    event->accept();
    return;
  }
  event->ignore();
}

void CMainWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  PlaceStatusParts();
}

void CMainWindow::dragEnterEvent(QDragEnterEvent* event) {
  const QList<QUrl> urls = event->mimeData()->urls();
  const bool all_local = !urls.isEmpty() && std::all_of(urls.begin(), urls.end(), [](const QUrl& url) {
    return url.isLocalFile();
  });
  if (all_local) event->acceptProposedAction();
}

void CMainWindow::dropEvent(QDropEvent* event) {
  std::vector<std::string> paths;
  for (const QUrl& url : event->mimeData()->urls()) {
    // Raw bytes of the name, so names that are not UTF-8 survive.
    if (url.isLocalFile()) paths.push_back(QFile::encodeName(url.toLocalFile()).toStdString());
  }
  event->acceptProposedAction();
  controller_->OnDrop(paths);
}

void CMainWindow::ShowStatusMessage(std::string_view text) { controller_->ShowStatusMessage(text); }

void CMainWindow::ShowImagesMenu(const std::vector<MenuEntry>& entries, std::optional<size_t> checked) {
  for (QAction* action : image_actions_) delete action;
  image_actions_.clear();
  for (size_t i = 0; i < entries.size(); ++i) {
    QAction* action = window_menu_->addAction(ToQString(entries[i].text));
    action->setCheckable(true);
    action->setChecked(checked == i);
    connect(action, &QAction::triggered, this, [this, i] { controller_->OnWindowMenu(i); });
    image_actions_.push_back(action);
  }
  controller_->OnImagesChanged();
}

void CMainWindow::ShowHasImages(bool) { controller_->OnImagesChanged(); }

void CMainWindow::Repaint() { canvas_->update(); }

}  // namespace korvanel
