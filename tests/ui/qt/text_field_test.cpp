// Pasting into every text field of every dialog: nothing, data that is no
// text, and a megabyte of text. Fields take plain text only, up to a bound.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTest>
#include <functional>
#include <memory>
#include <vector>

#include "app/app_state.h"
#include "image/image_gray.h"
#include "support/image_builders.h"
#include "support/recording_feedback.h"
#include "ui/model/convert_raw_manager.h"
#include "ui/model/filter_colors_manager.h"
#include "ui/model/image_eval_manager.h"
#include "ui/model/open_raw_image_manager.h"
#include "ui/model/ruler_settings_manager.h"
#include "ui/qt/convert_dialog.h"
#include "ui/qt/filter_dialog.h"
#include "ui/qt/image_eval_dialog.h"
#include "ui/qt/open_raw_dialog.h"
#include "ui/qt/ruler_settings_dialog.h"
#include "ui/qt/text_field.h"

namespace korvanel {
namespace {

struct ClipboardCase {
  const char* name;
  std::function<QMimeData*()> content;  // nullptr: the clipboard is cleared
  QString pasted;                       // what the field gains after "ab"
};

QMimeData* DataWithoutText() {
  auto* data = new QMimeData;
  data->setData("application/octet-stream", QByteArray("\0\x01\xff\xfe binary", 11));
  data->setImageData(QImage(4, 4, QImage::Format_RGB32));
  return data;
}

QMimeData* Text(const QString& text) {
  auto* data = new QMimeData;
  data->setText(text);
  data->setHtml("<b>rich</b>");
  return data;
}

// Field text after a Ctrl+V into a field holding "ab".
QString PasteInto(QWidget* field) {
  if (auto* line = qobject_cast<QLineEdit*>(field)) {
    line->setText("ab");
    QTest::keyClick(line, Qt::Key_V, Qt::ControlModifier);
    return line->text();
  }
  auto* editor = qobject_cast<QPlainTextEdit*>(field);
  editor->setPlainText("ab");
  editor->moveCursor(QTextCursor::End);
  QTest::keyClick(editor, Qt::Key_V, Qt::ControlModifier);
  return editor->toPlainText();
}

TEST(DialogPaste, EveryFieldTakesBoundedPlainTextOnly) {
  test::RecordingFeedback feedback;
  AppState app{feedback};
  app.RegisterImage(test::MakeImage<CImageGray>(8, 4, 2), "a.raw", "P,Y,8", false);
  CFilterColorsManager filter{ConfigDialogFilter{}};
  CConvertRawManager convert{ConfigDialogConvert{}};
  CImageEvalManager ieval{ConfigDialogIeval{}};
  COpenRawImageManager open{ConfigDialogOpen{}};
  CRulerSettingsManager ruler{ConfigDialogRuler{}};
  std::vector<std::unique_ptr<QDialog>> dialogs;
  dialogs.push_back(std::make_unique<CFilterDialog>(app, filter));
  dialogs.push_back(std::make_unique<CConvertDialog>(app, convert));
  dialogs.push_back(std::make_unique<CImageEvalDialog>(app, ieval));
  dialogs.push_back(std::make_unique<COpenRawDialog>(app, open, "x.bin"));
  dialogs.push_back(std::make_unique<CRulerSettingsDialog>(app, ruler, [] { return DialogResult{}; }));

  const QString megabyte(1 << 20, 'x');
  const ClipboardCase cases[] = {
      {"empty clipboard", nullptr, ""},
      {"no text", DataWithoutText, ""},
      {"short text", [] { return Text("+1"); }, "+1"},
      {"a megabyte", [&] { return Text(megabyte); }, megabyte.left(kMaxFieldText - 2)},
  };
  QClipboard* clipboard = QGuiApplication::clipboard();
  for (const auto& dialog : dialogs) {
    std::vector<QWidget*> editable;
    for (QLineEdit* line : dialog->findChildren<QLineEdit*>()) editable.push_back(line);
    for (QPlainTextEdit* editor : dialog->findChildren<QPlainTextEdit*>()) editable.push_back(editor);
    EXPECT_FALSE(editable.empty()) << dialog->metaObject()->className();
    for (QWidget* field : editable) {
      for (const ClipboardCase& c : cases) {
        if (c.content) {
          clipboard->setMimeData(c.content());
        } else {
          clipboard->clear();
        }
        const QString got = PasteInto(field);
        EXPECT_TRUE(got == "ab" + c.pasted) << dialog->metaObject()->className() << " "
                                            << field->objectName().toStdString() << ": " << c.name << ", "
                                            << got.size() << " characters: " << got.left(8).toStdString();
      }
    }
  }
  app.CloseAllImages();
}

}  // namespace
}  // namespace korvanel
