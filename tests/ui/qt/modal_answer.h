#pragma once

// Answers the next modal window a widget test opens. A modal box runs its
// own event loop, so the answer is queued before the call that opens it: a
// timer polls for the modal widget, hands it to `answer`, and gives up with
// a test failure after `timeout_ms`.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDeadlineTimer>
#include <QMessageBox>
#include <QTimer>
#include <functional>
#include <memory>

namespace korvanel::test {

inline void AnswerNextModal(std::function<void(QWidget*)> answer, int timeout_ms = 5000) {
  auto* timer = new QTimer(qApp);
  auto deadline = std::make_shared<QDeadlineTimer>(timeout_ms);
  timer->setInterval(10);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, deadline, answer = std::move(answer)] {
    if (QWidget* modal = QApplication::activeModalWidget()) {
      timer->stop();
      timer->deleteLater();
      answer(modal);
    } else if (deadline->hasExpired()) {
      timer->stop();
      timer->deleteLater();
      ADD_FAILURE() << "no modal window appeared";
    }
  });
  timer->start();
}

// Presses `button` on the next message box; records its text and title when
// asked to.
inline void AnswerNextMessageBox(QMessageBox::StandardButton button, QString* text = nullptr,
                                 QString* title = nullptr) {
  AnswerNextModal([button, text, title](QWidget* modal) {
    auto* box = qobject_cast<QMessageBox*>(modal);
    if (box == nullptr) {
      ADD_FAILURE() << "the modal window is not a message box";
      modal->close();
      return;
    }
    if (text != nullptr) *text = box->text();
    if (title != nullptr) *title = box->windowTitle();
    QAbstractButton* pressed = box->button(button);
    if (pressed == nullptr) {
      ADD_FAILURE() << "the message box has no such button";
      box->reject();
      return;
    }
    pressed->click();
  });
}

}  // namespace korvanel::test
