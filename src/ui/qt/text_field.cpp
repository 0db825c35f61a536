#include "ui/qt/text_field.h"

#include <QMimeData>
#include <QTextCursor>

namespace korvanel {

QString PastableText(const QMimeData* source, qsizetype room) {
  if (source == nullptr || room <= 0 || !source->hasText()) return {};
  QString text = source->text();
  if (text.size() > room) text.truncate(room);
  return text;
}

void BoundLineEdit(QLineEdit* edit) { edit->setMaxLength(kMaxFieldText); }

CTextEditor::CTextEditor(const QString& text, QWidget* parent) : QPlainTextEdit(text.left(kMaxFieldText), parent) {}

bool CTextEditor::canInsertFromMimeData(const QMimeData* source) const {
  return source != nullptr && source->hasText();
}

void CTextEditor::insertFromMimeData(const QMimeData* source) {
  if (isReadOnly()) return;
  const qsizetype kept = document()->characterCount() - 1 - textCursor().selectedText().size();
  const QString text = PastableText(source, kMaxFieldText - kept);
  if (!text.isEmpty()) textCursor().insertText(text);
}

}  // namespace korvanel
