// The dialogs over their managers, offscreen: the configured start values,
// a refusal that leaves the dialog open, and an accepted input that changes
// the registry.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/configuration.h"
#include "app/feedback_relay.h"
#include "image/image_gray.h"
#include "support/image_builders.h"
#include "support/recording_feedback.h"
#include "support/temp_dir.h"
#include "ui/model/convert_raw_manager.h"
#include "ui/model/filter_colors_manager.h"
#include "ui/model/image_eval_manager.h"
#include "ui/model/open_raw_image_manager.h"
#include "ui/model/viewer_controller.h"
#include "ui/qt/convert_dialog.h"
#include "ui/qt/filter_dialog.h"
#include "ui/qt/image_eval_dialog.h"
#include "ui/qt/ruler_settings_dialog.h"
#include "ui/qt/history_combo.h"
#include "ui/qt/main_window.h"
#include "ui/qt/open_raw_dialog.h"

namespace korvanel {
namespace {

template <typename Widget>
Widget& Child(QWidget& parent, const char* name) {
  auto* child = parent.findChild<Widget*>(name);
  EXPECT_NE(child, nullptr) << name;
  if (child == nullptr) throw std::runtime_error(name);
  return *child;
}

std::vector<std::string> Items(const QComboBox& combo) {
  std::vector<std::string> items;
  for (int i = 0; i < combo.count(); ++i) items.push_back(combo.itemText(i).toStdString());
  return items;
}

// Runs `fill` on the dialog that the next exec() shows.
void WhenModalShows(std::function<void(QWidget&)> fill) {
  QTimer::singleShot(0, [fill = std::move(fill)] {
    QWidget* modal = QApplication::activeModalWidget();
    ASSERT_NE(modal, nullptr);
    fill(*modal);
  });
}

class FilterDialogTest : public ::testing::Test {
 protected:
  FilterDialogTest() { app.RegisterImage(test::MakeImage<CImageGray>(8, 4, 2), "a.raw", "P,Y,8", false); }

  test::RecordingFeedback feedback;
  AppState app{feedback};
};

TEST_F(FilterDialogTest, OpensWithTheConfiguredValuesAndTheHistory) {
  ConfigDialogFilter defaults;
  defaults.def_filter = "30,45-100";
  defaults.def_neg = "12";
  defaults.all_3_must_pass = true;
  defaults.apply_to_all = true;
  app.EditHistory().Add(kFilterExpressionTag, "older");
  app.EditHistory().Add(kFilterExpressionTag, "newer");
  CFilterColorsManager manager(defaults);
  CFilterDialog dialog(app, manager);
  const auto& expression = Child<CHistoryCombo>(dialog, "filter_expression");
  EXPECT_EQ(expression.currentText(), "30,45-100");
  EXPECT_EQ(Items(expression), (std::vector<std::string>{"newer", "older"}));
  EXPECT_EQ(Child<CHistoryCombo>(dialog, "negation_color").currentText(), "12");
  const std::pair<const char*, bool> boxes[] = {
      {"apply_to_all", true}, {"apply_to_new", false}, {"all_3_must_pass", true}, {"separate_components", false}};
  for (const auto& [name, checked] : boxes) EXPECT_EQ(Child<QCheckBox>(dialog, name).isChecked(), checked) << name;
  EXPECT_EQ(dialog.windowTitle(), "Filter Colors");
}

TEST_F(FilterDialogTest, RefusalStaysAndGoodInputToANewImageAddsItAndCloses) {
  CFilterColorsManager manager({});
  CFilterDialog dialog(app, manager);
  dialog.show();
  auto& expression = Child<CHistoryCombo>(dialog, "filter_expression");
  expression.SetText("5-3");
  dialog.accept();
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(feedback.messages, (std::vector<std::string>{"[Colors parse error]: Please fix comp 1 token 1"}));
  EXPECT_EQ(app.Images().Count(), 1u);
  feedback.messages.clear();
  expression.SetText("0-101");
  Child<QCheckBox>(dialog, "apply_to_new").setChecked(true);
  dialog.accept();
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  EXPECT_EQ(app.Images().Count(), 2u);
  EXPECT_TRUE(manager.apply_to_new);
  EXPECT_EQ(app.EditHistory().Entries(kFilterExpressionTag), (std::vector<std::string>{"0-101"}));
  EXPECT_TRUE(feedback.messages.empty());
}

TEST(OpenRawDialog, ShowsTheGeneratedExpressionAndRefusesABadSize) {
  test::RecordingFeedback feedback;
  AppState app(feedback);
  ConfigDialogOpen defaults;
  defaults.def_width = "64";
  defaults.def_height = "48";
  defaults.little_end = true;
  COpenRawImageManager manager(defaults);
  COpenRawDialog dialog(app, manager, "/data/x.bin");
  EXPECT_EQ(dialog.windowTitle(), "Open raw image /data/x.bin");
  EXPECT_EQ(Child<CHistoryCombo>(dialog, "width").currentText(), "64");
  auto& generated = Child<QLabel>(dialog, "generated_expression");
  EXPECT_EQ(generated.text(), "Generated format expression: P,Y,8");
  Child<QRadioButton>(dialog, "type_rgb").click();
  Child<QRadioButton>(dialog, "packing_interleaved").click();
  Child<QRadioButton>(dialog, "bpp_16").click();
  EXPECT_EQ(generated.text(), "Generated format expression: I,RGB,16");
  Child<QCheckBox>(dialog, "little_endian").setChecked(false);
  EXPECT_EQ(generated.text(), "Generated format expression: I,RGB,-16");

  dialog.show();
  Child<CHistoryCombo>(dialog, "height").SetText("forty");
  dialog.accept();
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(feedback.messages, (std::vector<std::string>{
                                   "[Open raw image error]: Please enter the image width and height as positive "
                                   "whole numbers"}));
}

// The registry's open loop reaches the dialog through the window's feedback.
TEST(OpenRawThroughWindow, AnUnmatchedFileOpensWithTheEnteredFormat) {
  test::TempDir dir;
  const std::string path = dir.Write("unknown.bin", std::string(32 * 16 * 2, '\x40')).string();
  ConfigValues config = CConfiguration(dir.path()).Values();
  test::RecordingFeedback console;
  CFeedbackRelay relay{console};
  AppState app{relay};
  app.ApplyConfiguration(config);
  {
    CMainWindow window(app, config);
    relay.SetTarget(window.Feedback());
    WhenModalShows([](QWidget& modal) {
      Child<CHistoryCombo>(modal, "width").SetText("32");
      Child<CHistoryCombo>(modal, "height").SetText("16");
      Child<CHistoryCombo>(modal, "direct_expression").SetText("I,YUYV,8");
      static_cast<QDialog&>(modal).accept();
    });
    EXPECT_TRUE(app.OpenImage(path));
    relay.SetTarget(console);
  }
  ASSERT_EQ(app.Images().Count(), 1u);
  uint32_t width = 0, height = 0;
  app.Images().At(0).image->GetSize(width, height);
  EXPECT_EQ(width, 32u);
  EXPECT_EQ(height, 16u);
  EXPECT_EQ(app.EditHistory().Entries(kOpenRawExpressionTag), (std::vector<std::string>{"I,YUYV,8"}));
  EXPECT_TRUE(console.messages.empty());
  app.CloseAllImages();
}

TEST_F(FilterDialogTest, ConvertOpensWithTheConfiguredValuesAndFollowsTheFields) {
  ConfigDialogConvert defaults;
  defaults.type = ImageTypeChoice::kRgb;
  defaults.packing = PackingChoice::kInterleave;
  defaults.resize_on = true;
  defaults.def_resize_size = "w*2;h+100";
  defaults.def_resize_pos_ofs = "1,1";
  CConvertRawManager manager(defaults);
  CConvertDialog dialog(app, manager);
  EXPECT_EQ(dialog.windowTitle(), "Convert raw image from a.raw");
  EXPECT_EQ(Child<QLabel>(dialog, "generated_expression").text(), "Generated format expression: I,RGB,8");
  EXPECT_EQ(Child<QLabel>(dialog, "row_label_1").text(), "R' =");
  EXPECT_TRUE(Child<QCheckBox>(dialog, "resize").isChecked());
  EXPECT_EQ(Child<CHistoryCombo>(dialog, "base_offset").currentText(), "1,1");
  auto& size = Child<CHistoryCombo>(dialog, "new_size");
  EXPECT_EQ(size.lineEdit()->placeholderText(), "w*2;h+100;40;40");
  auto& size_line = Child<QLabel>(dialog, "new_size_line");
  EXPECT_EQ(size_line.text(), "New image size: 8x102");
  Child<QPushButton>(dialog, "source_size").click();
  EXPECT_EQ(size.currentText(), "4 ; 2");
  EXPECT_EQ(size_line.text(), "New image size: 4x2");
  size.SetText("w*;h");
  EXPECT_EQ(size_line.text(), "New image size: ???");
  Child<QRadioButton>(dialog, "type_yuv444").click();
  EXPECT_EQ(Child<QLabel>(dialog, "row_label_3").text(), "V' =");
}

TEST_F(FilterDialogTest, ConvertRefusalStaysAndGoodInputAddsTheImage) {
  CConvertRawManager manager({});
  CConvertDialog dialog(app, manager);
  dialog.show();
  Child<QCheckBox>(dialog, "resize").setChecked(true);
  Child<CHistoryCombo>(dialog, "new_size").SetText("w-w;h");
  dialog.accept();
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(feedback.messages, (std::vector<std::string>{"[Parse image size error]: 0x2 isn't legal new size"}));
  EXPECT_EQ(app.Images().Count(), 1u);
  Child<CHistoryCombo>(dialog, "new_size").SetText("w*2;h");
  Child<CHistoryCombo>(dialog, "direct_expression").SetText("p,y,16");
  dialog.accept();
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  ASSERT_EQ(app.Images().Count(), 2u);
  EXPECT_EQ(app.Images().At(1).image->GetBitsPerComponent(), 16u);
  EXPECT_EQ(app.EditHistory().Entries(kConvertSizeTag), (std::vector<std::string>{"w*2;h"}));
}

class ImageEvalDialogTest : public FilterDialogTest {
 protected:
  ImageEvalDialogTest() {
    ConfigValues values;
    values.system.ieval_file_path = (dir / "list.txt").string();
    app.ApplyConfiguration(values);
    dir.Write("list.txt", "<Half>\ni/2\n</Half>\n<Add>\ni+1\n</Add>\n");
    app.ReloadSavedIEvals();
  }
  test::TempDir dir;
};

TEST_F(ImageEvalDialogTest, OpensWithTheConfiguredValuesAndTheSavedList) {
  ConfigDialogIeval defaults;
  defaults.def_ieval_expr = "{$Half$}";
  defaults.def_out_of_range_val = "5";
  defaults.apply_on_roi = true;
  defaults.output_channels = OutputChannels::kSingle;
  defaults.bpp = IevalBppChoice::k16;
  CImageEvalManager manager(defaults);
  CImageEvalDialog dialog(app, manager);
  auto& editor = Child<QPlainTextEdit>(dialog, "expression");
  EXPECT_EQ(editor.toPlainText(), "{$Half$}");
  EXPECT_EQ(Child<CHistoryCombo>(dialog, "out_of_range").currentText(), "5");
  EXPECT_TRUE(Child<QCheckBox>(dialog, "roi_only").isChecked());
  EXPECT_TRUE(Child<QRadioButton>(dialog, "channels_single").isChecked());
  EXPECT_TRUE(Child<QRadioButton>(dialog, "bpp_16").isChecked());
  auto& list = Child<QListWidget>(dialog, "saved_list");
  ASSERT_EQ(list.count(), 2);
  EXPECT_EQ(list.item(0)->text(), "Half");
  auto& view = Child<QPushButton>(dialog, "view_toggle");
  EXPECT_EQ(view.text(), "Sorted list ->");
  view.click();
  EXPECT_EQ(list.item(0)->text(), "Add");
  EXPECT_EQ(view.text(), "Custom list ->");

  auto& toggle = Child<QPushButton>(dialog, "expand_toggle");
  toggle.click();
  EXPECT_EQ(editor.toPlainText(), "{i/2}");
  EXPECT_EQ(toggle.text(), "Show original");
  toggle.click();
  EXPECT_EQ(editor.toPlainText(), "{$Half$}");

  // A double click adds the marker, a right click the expression itself.
  dialog.show();
  const QRect add = list.visualItemRect(list.item(0));
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, add.center());
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, add.center());
  QTest::mouseClick(list.viewport(), Qt::RightButton, {}, add.center());
  EXPECT_EQ(editor.toPlainText(), "{$Half$}{$Add$}{i+1}");
}

TEST_F(ImageEvalDialogTest, BadRunStaysOpenAndAGoodOneAddsTheImage) {
  CImageEvalManager manager({});
  CImageEvalDialog dialog(app, manager);
  dialog.show();
  auto& editor = Child<QPlainTextEdit>(dialog, "expression");
  editor.setPlainText("{$Nope$}");
  Child<QPushButton>(dialog, "expand_toggle").click();
  EXPECT_EQ(feedback.messages, (std::vector<std::string>{"[I-Eval error]: I-Eval error: Unknown name marker 'Nope' in pos 1"}));
  EXPECT_EQ(editor.toPlainText(), "{$Nope$}");
  dialog.accept();
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(feedback.messages.size(), 2u);
  EXPECT_EQ(app.Images().Count(), 1u);

  editor.setPlainText("{$Add$}");
  Child<CHistoryCombo>(dialog, "save_name").SetText("Plus one");
  Child<QPushButton>(dialog, "save").click();
  EXPECT_EQ(Child<QListWidget>(dialog, "saved_list").count(), 3);
  dialog.accept();
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  EXPECT_EQ(app.Images().Count(), 2u);
  EXPECT_EQ(test::ReadWholeFile(dir / "list.txt"),
            "<Half>\ni/2\n</Half>\n<Add>\ni+1\n</Add>\n<Plus one>\n{$Add$}\n</Plus one>\n");
}

TEST(RulerSettingsWindow, ApplyChangesReachesTheViewAndARefusalIsShown) {
  test::TempDir dir;
  ConfigValues config = CConfiguration(dir.path()).Values();
  config.dialog_ruler.crd_screen = {25, 35};
  test::RecordingFeedback feedback;
  AppState app{feedback};
  app.ApplyConfiguration(config);
  app.RegisterImage(test::MakeImage<CImageGray>(8, 4, 2), "a.raw", "P,Y,8", false);
  CMainWindow window(app, config);
  window.Controller().OnImagesChanged();
  window.OpenDialog(DialogId::RulerSettings);
  auto* dialog = window.findChild<CRulerSettingsDialog*>();
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_FALSE(dialog->isModal());
  EXPECT_EQ(Child<CHistoryCombo>(*dialog, "screen_spacing").currentText(), "25,35");
  EXPECT_TRUE(Child<QRadioButton>(*dialog, "screen_pixels").isChecked());

  Child<QRadioButton>(*dialog, "image_pixels").click();
  Child<CHistoryCombo>(*dialog, "image_spacing").SetText("16,8");
  Child<CHistoryCombo>(*dialog, "image_offset").SetText("3,2");
  Child<QPushButton>(*dialog, "apply_changes").click();
  EXPECT_EQ(window.Controller().PrepareFrame().panels.at(0).ruler.settings, (RulerSettings{false, 16, 8, 3, 2}));
  EXPECT_TRUE(feedback.messages.empty());

  Child<CHistoryCombo>(*dialog, "image_offset").SetText("3,40000");
  Child<QPushButton>(*dialog, "apply_changes").click();
  EXPECT_EQ(feedback.messages,
            (std::vector<std::string>{"[Ruler settings error]: The ruler offset must be two whole numbers \"x,y\": "
                                      "x from 0 to 65535, y from 0 to 32767"}));
  EXPECT_TRUE(dialog->isVisible());
  // Asked for again, the same dialog comes back.
  window.OpenDialog(DialogId::RulerSettings);
  EXPECT_EQ(window.findChildren<CRulerSettingsDialog*>().size(), 1);
  app.CloseAllImages();
}

}  // namespace
}  // namespace korvanel
