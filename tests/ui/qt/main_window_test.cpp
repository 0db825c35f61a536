// The window as a user drives it, offscreen: keys through the canvas, what
// grab() shows, the status bar and the Window menu. Runs at device pixel
// ratio 1 and, in a second CTest entry, 2.
#include <gtest/gtest.h>

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTest>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/configuration.h"
#include "app/feedback_relay.h"
#include "image/image_container.h"
#include "support/recording_feedback.h"
#include "support/temp_dir.h"
#include "ui/model/key_tables.h"
#include "ui/model/menu_table.h"
#include "ui/model/viewer_controller.h"
#include "ui/qt/canvas.h"
#include "ui/qt/dialogs/help_window.h"
#include "ui/qt/help_painter.h"
#include "ui/qt/key_map.h"
#include "ui/qt/main_window.h"

namespace korvanel {
namespace {

const std::string kExamples = KORVANEL_EXAMPLES_DIR;

class MainWindowTest : public ::testing::Test {
 protected:
  MainWindowTest() {
    config.gui.def_zoom = 1;
    app.ApplyConfiguration(config);
    EXPECT_TRUE(app.LoadFormats(kExamples + "/Korvanel.fmt"));
    window = std::make_unique<CMainWindow>(app, config);
    relay.SetTarget(window->Feedback());
    window->resize(640, 480);
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  }
  ~MainWindowTest() override {
    relay.SetTarget(console);
    window.reset();
    app.CloseAllImages();
  }

  void Open(const std::string& name) { ASSERT_TRUE(app.OpenImage(kExamples + "/" + name)) << name; }
  QImage Grab() {
    CCanvas& canvas = window->Canvas();
    canvas.repaint();
    return canvas.grab().toImage().convertToFormat(QImage::Format_RGB32);
  }
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&window->Canvas(), key, modifiers);
  }
  QString StatusPart(size_t part) const { return window->StatusTexts()[part]; }

  ConfigValues config = CConfiguration(std::filesystem::temp_directory_path()).Values();
  test::RecordingFeedback console;
  CFeedbackRelay relay{console};
  AppState app{relay};
  std::unique_ptr<CMainWindow> window;
};

TEST_F(MainWindowTest, TabCyclesTheFocusImageAndTheStatusFollows) {
  for (const char* name : {"gradient_64x48.nv12", "frame_32x16_yuyv.yuv", "depth.y16"}) Open(name);
  ASSERT_EQ(app.FocusIndex(), 2u);
  struct Step {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    size_t focus;
    QString status;
  };
  const Step steps[] = {
      {Qt::Key_Tab, Qt::NoModifier, 0, "64x48 : YUV420 12bpp"},
      {Qt::Key_Tab, Qt::ShiftModifier, 2, "40x30 : Y16"},
      {Qt::Key_Backtab, Qt::ShiftModifier, 1, "32x16 : YUV422 16bpp"},
  };
  for (const Step& step : steps) {
    Press(step.key, step.modifiers);
    EXPECT_EQ(app.FocusIndex(), step.focus);
    EXPECT_EQ(StatusPart(kStatusReadoutPart), step.status);
    // The Window menu checks the focus image's entry only.
    const QList<QAction*> actions = window->WindowMenu()->actions();
    const QString entry = QString("[%1] %2/").arg(step.focus + 1).arg(QString::fromStdString(kExamples));
    int checked = 0;
    for (QAction* action : actions) {
      if (!action->isChecked()) continue;
      ++checked;
      EXPECT_TRUE(action->text().startsWith(entry)) << action->text().toStdString();
    }
    EXPECT_EQ(checked, 1);
  }
}

TEST_F(MainWindowTest, WindowMenuListsTheImagesAndChoosingOneFocusesIt) {
  for (const char* name : {"gradient_64x48.nv12", "depth.y16"}) Open(name);
  std::vector<QAction*> images;
  for (QAction* action : window->WindowMenu()->actions()) {
    if (action->text().startsWith('[')) images.push_back(action);
  }
  ASSERT_EQ(images.size(), 2u);
  EXPECT_EQ(images[0]->text().toStdString(), "[1] " + kExamples + "/gradient_64x48.nv12");
  EXPECT_EQ(images[1]->text().toStdString(), "[2] " + kExamples + "/depth.y16");
  images[0]->trigger();
  EXPECT_EQ(app.FocusIndex(), 0u);
}

// Menu texts only show a shortcut; the key tables do the binding. Some
// menu items are served by a key whose command picks its target by context.
constexpr std::pair<Command, Command> kContextKeys[] = {
    {Command::DuplicateOrCrop, Command::NewDuplicate},      {Command::CompareStart, Command::CompareLabel},
    {Command::CopyContext, Command::CopyImage},             {Command::PasteIntoPhase, Command::JumpPasteCoordinate},
    {Command::PasteIntoPhase, Command::FindPasteValue},     {Command::ClearMarksContext, Command::ClearMarkedPixels},
    {Command::BackKey, Command::JumpIteratePrevious},       {Command::ToggleRuler, Command::JumpIterateRoiCorners},
    {Command::LayerModeKey, Command::ToggleLayerMode},      {Command::ToggleHelpOverlay, Command::HelpWindow},
};

struct KeyPress {
  int qt_key;
  Qt::KeyboardModifiers modifiers;
  QString text;
};

// The presses a shortcut text such as "Shift+B", "Ctrl+=" or "*" can mean:
// "+", "-" and "*" on the keypad or on the main keys.
std::vector<KeyPress> PressesFor(const QString& shortcut) {
  const qsizetype split = shortcut.size() > 1 ? shortcut.lastIndexOf('+', -2) : -1;
  const QString key = shortcut.mid(split + 1);
  Qt::KeyboardModifiers mods;
  // "Shit+=" is the program's own misspelling of Shift, kept in the menu.
  for (const QString& mod : shortcut.left(std::max<qsizetype>(split, 0)).split('+', Qt::SkipEmptyParts)) {
    mods |= mod == "Ctrl" ? Qt::ControlModifier : (mod == "Shift" || mod == "Shit") ? Qt::ShiftModifier : Qt::MetaModifier;
  }
  const bool shift = mods.testFlag(Qt::ShiftModifier);
  const bool ctrl = mods.testFlag(Qt::ControlModifier);
  if (key.size() == 1 && key[0].isLetter()) {
    const QString text = shift && !ctrl ? key.toUpper() : key.toLower();
    return {{Qt::Key_A + (key[0].toUpper().unicode() - 'A'), mods, text}};
  }
  if (key == "F1") return {{Qt::Key_F1, mods, ""}};
  if (key == "~") return {{Qt::Key_AsciiTilde, mods | Qt::ShiftModifier, "~"}};
  if (key == "=") return {{shift ? Qt::Key_Plus : Qt::Key_Equal, mods, shift ? "+" : "="}};
  const std::pair<QString, int> pad_keys[] = {{"+", Qt::Key_Plus}, {"-", Qt::Key_Minus}, {"*", Qt::Key_Asterisk}};
  for (const auto& [text, qt_key] : pad_keys) {
    if (key != text) continue;
    const Qt::KeyboardModifiers main = key == "-" ? mods : mods | Qt::ShiftModifier;
    return {{qt_key, mods | Qt::KeypadModifier, text}, {qt_key, main, text}};
  }
  ADD_FAILURE() << "no key for shortcut " << shortcut.toStdString();
  return {};
}

bool PressReaches(const KeyPress& press, Command command) {
  const MappedKey mapped = MapKey(press.qt_key, press.modifiers, press.text);
  std::vector<Command> reached = {CommandForKey(mapped.input, true, false)};
  if (mapped.typed) reached.push_back(CommandForChar(*mapped.typed));
  for (const Command c : reached) {
    if (c == command) return true;
    for (const auto& [key_command, menu_command] : kContextKeys) {
      if (c == key_command && menu_command == command) return true;
    }
  }
  return false;
}

TEST_F(MainWindowTest, EveryMenuShortcutTextNamesAKeyBoundToItsCommand) {
  int shortcuts = 0;
  for (const MenuItem& item : kMenuItems) {
    if (item.row != MenuRow::Item) continue;
    const QAction* action = window->ActionFor(item.command);
    ASSERT_NE(action, nullptr) << item.text;
    EXPECT_TRUE(action->shortcut().isEmpty()) << "the key belongs to the image area: " << item.text;
    const qsizetype tab = action->text().indexOf('\t');
    if (tab < 0) continue;
    ++shortcuts;
    const QString shortcut = action->text().mid(tab + 1);
    bool reached = false;
    for (const KeyPress& press : PressesFor(shortcut)) reached = reached || PressReaches(press, item.command);
    EXPECT_TRUE(reached) << action->text().toStdString() << ": no press of " << shortcut.toStdString()
                         << " reaches the item's command";
  }
  EXPECT_GT(shortcuts, 40);
  // Submenus nest as the rows say.
  const QMenu* file = window->menuBar()->actions().at(0)->menu();
  const QMenu* save_raw = file->actions().at(2)->menu();
  ASSERT_NE(save_raw, nullptr);
  EXPECT_EQ(save_raw->title(), "&Save raw");
  const QMenu* binary = save_raw->actions().at(1)->menu();
  ASSERT_NE(binary, nullptr);
  EXPECT_EQ(binary->actions().at(3), window->ActionFor(Command::SaveBinaryInterleaveBe));
}

// Ctrl+letter runs the key's command and types no character: Ctrl+S must
// not start the save phase, nor Ctrl+C collecting. The menu checks follow.
TEST_F(MainWindowTest, CtrlLettersRunTheirCommandWithoutTypingTheLetter) {
  EXPECT_EQ(window->windowTitle(), "Korvanel");
  Open("depth.y16");
  Press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_FALSE(app.AutoFileNaming());
  EXPECT_FALSE(window->ActionFor(Command::ToggleAutoNaming)->isChecked());
  EXPECT_EQ(window->Controller().ActivePhase(), InputPhaseKind::None);
  Press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_FALSE(app.Collecting());
  EXPECT_EQ(QGuiApplication::clipboard()->image().size(), QSize(40, 30));
  Press(Qt::Key_D, Qt::ControlModifier);
  EXPECT_TRUE(window->ActionFor(Command::DiffTypeMaskBin)->isChecked());
  EXPECT_EQ(app.Images().Count(), 1u);

  Press(Qt::Key_S);
  EXPECT_EQ(window->Controller().ActivePhase(), InputPhaseKind::Save);
  EXPECT_EQ(StatusPart(kStatusReadoutPart), "Save image as: b - Binary, t - Text, h - Hexa-Text (Esc cancels)");
  Press(Qt::Key_Escape);
  EXPECT_EQ(StatusPart(kStatusReadoutPart), "Operation canceled due to user abort");
}

// None of these may crash or divide by zero; the window must still paint.
TEST_F(MainWindowTest, SurvivesZeroSizeMinimisingUnknownKeysAndTwentyImages) {
  test::TempDir dir;
  ASSERT_TRUE(app.LoadFormats(dir.Write("tiny.fmt", "<format_group>\nfile_pattern = [.*\\.y8]\nwidth = 4\n"
                                                   "height = 2\nformat = [],P,Y,8\n</format_group>\n")
                                  .string()));
  for (int i = 0; i < 20; ++i) {
    ASSERT_TRUE(app.OpenImage(dir.Write("img" + std::to_string(i) + ".y8", "ABCDEFGH").string()));
  }
  for (Qt::Key key : {Qt::Key_VolumeUp, Qt::Key_Shift, Qt::Key_Control, Qt::Key_F12, Qt::Key_Pause, Qt::Key_Tab}) {
    Press(key);
  }
  EXPECT_EQ(app.FocusIndex(), 0u) << "only Tab acted";
  Press(Qt::Key_Asterisk, Qt::KeypadModifier);
  EXPECT_EQ(StatusPart(kStatusZoomPart), "F2W");
  window->Canvas().resize(0, 0);
  Grab();  // a 0 x 0 area paints nothing and must not fail
  window->resize(1, 1);
  Press(Qt::Key_Plus, Qt::KeypadModifier);
  window->showMinimized();
  Press(Qt::Key_Minus, Qt::KeypadModifier);
  window->showNormal();
  window->resize(300, 200);
  Press(Qt::Key_Tab);
  EXPECT_EQ(app.FocusIndex(), 1u);
  EXPECT_FALSE(Grab().isNull());
}

// Mouse positions go through the canvas's device pixel ratio, so the HiDPI
// run checks the mapping too; what a move or click does is the model's.
class InspectionWindowTest : public MainWindowTest {
 protected:
  InspectionWindowTest() {
    Open("gradient_64x48.nv12");
    // The open's status message gives part 0 back to the readout after 16 ticks.
    for (int tick = 0; tick < 16; ++tick) window->Controller().OnTimer(TimerId::Status);
  }

  CCanvas& Canvas() { return window->Canvas(); }
  // A logical canvas point well inside image pixel (x, y), and the pixel the
  // device point under it really is (at ZF 1 one device pixel per pixel).
  struct Target {
    QPoint logical;
    int x;
    int y;
  };
  Target Near(int x, int y) {
    Canvas().repaint();
    const ScreenRect& picture = window->Controller().PrepareFrame().panels.at(0).picture;
    const qreal dpr = Canvas().devicePixelRatioF();
    const QPoint logical(static_cast<int>(std::ceil((picture.left + x) / dpr)),
                         static_cast<int>(std::ceil((picture.top + y) / dpr)));
    return {logical, static_cast<int>(std::floor(logical.x() * dpr)) - picture.left,
            static_cast<int>(std::floor(logical.y() * dpr)) - picture.top};
  }
  void Move(QPoint logical) {
    Canvas().repaint();  // moves wait for the frame after a change
    QMouseEvent move(QEvent::MouseMove, QPointF(logical), Canvas().mapToGlobal(QPointF(logical)),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&Canvas(), &move);
  }
  void Click(Qt::MouseButton button, QPoint logical) {
    Canvas().repaint();
    QTest::mouseClick(&Canvas(), button, Qt::NoModifier, logical);
  }
  std::array<uint32_t, 3> Samples(int x, int y) {
    std::array<uint32_t, 3> values{};
    EXPECT_TRUE(app.Images().At(0).image->GetSampleValues(x, y, values));
    return values;
  }
  QString Part0() const { return window->StatusTexts()[kStatusReadoutPart]; }
};

TEST_F(InspectionWindowTest, MovesAndClicksReachThePixelUnderThePointer) {
  window->resize(1000, 480);  // room for the long out-of-range text
  QCoreApplication::processEvents();
  const Target t = Near(10, 5);
  Move(t.logical);
  const std::array<uint32_t, 3> v = Samples(t.x, t.y);
  const QString head = QString("XY <%1,%2>: [1] <%1,%2> YUV: <%3,%4,%5> (RGB-8: <")
                           .arg(t.x).arg(t.y).arg(v[0]).arg(v[1]).arg(v[2]);
  EXPECT_TRUE(Part0().startsWith(head)) << Part0().toStdString() << " / " << head.toStdString();
  Move(QPoint(1, 1));
  EXPECT_EQ(Part0(), "Out-of-range (Press F1 for help window)");

  const Target a = Near(30, 20);
  Click(Qt::LeftButton, a.logical);
  Click(Qt::LeftButton, t.logical);
  EXPECT_EQ(app.Images().At(0).image->GetRegionOfInterest(),
            (Rect{static_cast<uint32_t>(t.x), static_cast<uint32_t>(t.y), static_cast<uint32_t>(a.x),
                  static_cast<uint32_t>(a.y)}));
  Click(Qt::RightButton, Near(12, 6).logical);
  EXPECT_TRUE(app.Images().At(0).image->GetRegionOfInterest().IsNone());
}

// --- histogram overlay and help ---------------------------------------------

QRgb Rgb32(const Rgb& c) { return qRgb(c.r, c.g, c.b); }

TEST_F(MainWindowTest, IShowsTheWhiteHistogramBoxInItsFrameAndBMakesItTransparent) {
  window->resize(900, 760);  // room for the three channels' rows
  Open("gradient_64x48.nv12");
  Press(Qt::Key_I);
  const HistogramBoxLayout layout = window->Controller().PrepareFrame().panels.at(0).histogram.layout;
  ASSERT_FALSE(layout.box.Empty());
  const QImage shot = Grab();
  const QRgb frame = qRgb(140, 0, 180);
  const ScreenRect& box = layout.box;
  for (const QPoint corner : {QPoint(box.left, box.top), QPoint(box.right, box.top), QPoint(box.left, box.bottom),
                              QPoint(box.left + 1, box.top + 1), QPoint(box.left + box.Width() / 2, box.bottom - 1)}) {
    EXPECT_EQ(shot.pixel(corner), frame) << corner.x() << "," << corner.y();
  }
  EXPECT_EQ(shot.pixel(box.left + 3, box.top + 3), qRgb(255, 255, 255)) << "the box is white inside its frame";
  // The bars of the luma channel are grey.
  const ScreenRect bars = layout.rows.at(1).rect;
  int grey = 0;
  for (int x = bars.left; x <= bars.right; ++x) grey += shot.pixel(x, bars.bottom) == qRgb(128, 128, 128);
  EXPECT_GT(grey, 0);
  EXPECT_TRUE(window->ActionFor(Command::ToggleHistogram)->isChecked());

  Press(Qt::Key_B);
  const QImage clear = Grab();
  EXPECT_NE(clear.pixel(box.left, box.top), frame);
  EXPECT_NE(clear.pixel(box.left + 3, box.top + 3), qRgb(255, 255, 255));
  Press(Qt::Key_I);
  EXPECT_FALSE(window->ActionFor(Command::ToggleHistogram)->isChecked());
}

// The bounding box of the pixels of one colour inside `within`.
QRect ColourBounds(const QImage& shot, QRgb colour, const QRect& within) {
  QRect bounds;
  for (int y = within.top(); y <= within.bottom(); ++y) {
    for (int x = within.left(); x <= within.right(); ++x) {
      if (shot.pixel(x, y) == colour) bounds |= QRect(x, y, 1, 1);
    }
  }
  return bounds;
}

TEST_F(MainWindowTest, F1ShowsTheHelpBoxAndPageThreeWritesItsOwnTextInWhite) {
  window->resize(1000, 760);  // wide enough for 91 characters: no row wraps
  Press(Qt::Key_F1);
  QTest::keyClicks(&window->Canvas(), "3");
  const FramePlan& plan = window->Controller().PrepareFrame();
  ASSERT_NE(plan.help_text, nullptr);
  const HelpOverlayLayout help = plan.help;
  const QImage page3 = Grab();
  EXPECT_EQ(page3.pixel(help.box.right - 15, help.box.bottom - 15), Rgb32(kHelpBoxColor));
  EXPECT_EQ(page3.pixel(help.box.left + help.box.Width() / 2, help.box.top), Rgb32(kHelpFrameColor));
  EXPECT_EQ(page3.pixel(help.shadow.left + help.shadow.Width() / 2, help.shadow.bottom - 1), Rgb32(kHelpShadowColor));
  const QRect text(help.text.left, help.text.top, help.text.Width(), help.text.Height());
  const QRect white = ColourBounds(page3, qRgb(255, 255, 255), text);
  ASSERT_FALSE(white.isEmpty()) << "page 3 writes its text in white";
  EXPECT_LE(white.top(), help.text.top + 20) << "from the text's top";
  const QRect footer = ColourBounds(page3, qRgb(255, 255, 255),
                                    QRect(0, help.footer_top, page3.width(), page3.height()) & page3.rect());
  EXPECT_FALSE(footer.isEmpty()) << "the footer under the box";

  QTest::keyClicks(&window->Canvas(), "2");
  EXPECT_NE(Grab().copy(text), page3.copy(text)) << "page 2 writes another text";
  Press(Qt::Key_F1);
  EXPECT_NE(Grab().pixel(help.box.right - 15, help.box.bottom - 15), Rgb32(kHelpBoxColor));
}

TEST(HelpWindowTest, ShowsTheWholeManualUnderItsTitle) {
  CHelpWindow help(nullptr);
  EXPECT_EQ(help.windowTitle(), "Help - Korvanel");
  const QString text = help.Text()->toPlainText();
  EXPECT_TRUE(text.startsWith("KORVANEL MANUAL"));
  EXPECT_TRUE(text.contains("HISTOGRAM AND STATISTICS"));
  EXPECT_FALSE(text.contains('\t'));
  EXPECT_TRUE(help.Text()->isReadOnly());
}

}  // namespace
}  // namespace korvanel
