#pragma once

// What the dialogs' text fields take from a paste or a drop: plain text only
// (no rich text, images or other data, and nothing when the clipboard holds
// nothing), and no more than a field could sensibly hold, so that a huge
// clipboard neither stalls the layout nor reaches the parsers.

#include <QLineEdit>
#include <QPlainTextEdit>

class QMimeData;

namespace korvanel {

inline constexpr int kMaxFieldText = 64 * 1024;

// The plain text of `source` cut to `room` characters; empty for no source.
QString PastableText(const QMimeData* source, qsizetype room);

// A single-line field: it takes pastes as plain text already, so a bound
// length is all it needs.
void BoundLineEdit(QLineEdit* edit);

// A multi-line field taking pastes and drops through PastableText.
class CTextEditor final : public QPlainTextEdit {
 public:
  explicit CTextEditor(const QString& text, QWidget* parent = nullptr);

 protected:
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;
};

}  // namespace korvanel
