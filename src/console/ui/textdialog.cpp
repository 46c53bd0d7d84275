// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/textdialog.h"

#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace krx {

TextDialog::TextDialog(const QString& name, const QString& title, const QString& text, QWidget* parent)
    : QDialog(parent) {
  setObjectName(name);
  setWindowTitle(title);
  auto* view = new QPlainTextEdit(text);
  view->setObjectName(QStringLiteral("txtContent"));
  view->setAccessibleName(title);
  view->setReadOnly(true);
  view->setTabChangesFocus(true);
  view->setLineWrapMode(QPlainTextEdit::NoWrap);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* column = new QVBoxLayout(this);
  column->addWidget(view);
  column->addWidget(buttons);
  const int lines = static_cast<int>(text.count(QLatin1Char('\n'))) + 4;
  resize(fontMetrics().averageCharWidth() * 78, fontMetrics().height() * qMin(lines + 5, 32));
}

TextDialog* TextDialog::Open(QWidget* parent, const QString& name, const QString& title, const QString& text) {
  auto* dialog = new TextDialog(name, title, text, parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->show();
  return dialog;
}

}  // namespace krx
