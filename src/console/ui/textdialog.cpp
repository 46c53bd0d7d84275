// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/textdialog.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace krx {

using namespace Qt::StringLiterals;

TextDialog::TextDialog(const QString& name, const QString& title, const QString& text, QWidget* parent)
    : QDialog(parent) {
  setObjectName(name);
  setWindowTitle(title);
  auto* view = new QPlainTextEdit(text);
  view->setObjectName(u"txtContent"_s);
  view->setAccessibleName(title);
  view->setReadOnly(true);
  view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));  // the texts are aligned in columns
  view->setLineWrapMode(QPlainTextEdit::NoWrap);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* column = new QVBoxLayout(this);
  column->addWidget(view);
  column->addWidget(buttons);
  const QSize shown = view->fontMetrics().size(0, text);
  resize(shown + QSize(view->fontMetrics().averageCharWidth() * 10, view->fontMetrics().height() * 7));
}

TextDialog* TextDialog::Open(QWidget* parent, const QString& name, const QString& title, const QString& text) {
  auto* dialog = new TextDialog(name, title, text, parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->show();
  return dialog;
}

}  // namespace krx
