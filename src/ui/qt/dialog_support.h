#pragma once

// Small pieces every dialog of the viewer uses.

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QString>

#include "app/app_state.h"
#include "ui/model/dialog_message.h"

namespace korvanel {

inline QCheckBox* NamedCheckBox(const char* text, const char* name, bool checked, QWidget* parent) {
  auto* box = new QCheckBox(QString::fromUtf8(text), parent);
  box->setObjectName(name);
  box->setChecked(checked);
  return box;
}

// OK and Cancel wired to the dialog's accept() and reject().
QDialogButtonBox* OkCancelButtons(QDialog* dialog);

// Shows a refusal through the core's message routine (box and log); true
// when there was one, so the dialog stays open.
inline bool ShowRefusal(AppState& app, const DialogResult& result) {
  if (!result) return false;
  if (!result->title.empty()) app.ShowMessage(result->text, result->title);
  return true;
}

}  // namespace korvanel
