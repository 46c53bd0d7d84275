// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/copymenu.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QTableView>
#include <QTextDocumentFragment>

#include "controls/ui/copyrows.h"

namespace krx {
namespace {

using namespace Qt::StringLiterals;

constexpr int longestCaption = 40;

/// The value that the widget shows; empty where it shows none.
QString ShownText(const QWidget& widget) {
  QString text = widget.property(copyTextProperty).toString();
  const auto* const label = qobject_cast<const QLabel*>(&widget);
  if (text.isEmpty() && label != nullptr) {
    text = Qt::mightBeRichText(label->text()) ? QTextDocumentFragment::fromHtml(label->text()).toPlainText()
                                              : label->text();
  }
  text = text.trimmed();
  return text == u"–"_s ? QString() : text;
}

QString Shortened(const QString& text) {
  const QString line = text.section(u'\n', 0, 0);
  return line.size() > longestCaption ? line.left(longestCaption) + u"…"_s : line;
}

}  // namespace

void CopyMenu::Offer(QWidget& widget, const QString& caption, const QString& text, const QPoint& position) {
  auto* const menu = new QMenu(&widget);
  menu->setObjectName(u"mnuCopy"_s);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addAction(caption, [text] { QGuiApplication::clipboard()->setText(text); });
  menu->popup(position);
}

bool CopyMenu::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::ContextMenu) return QObject::eventFilter(watched, event);
  auto* const widget = qobject_cast<QWidget*>(watched);
  if (widget == nullptr || widget->contextMenuPolicy() != Qt::DefaultContextMenu) return false;
  const QPoint position = static_cast<const QContextMenuEvent*>(event)->globalPos();
  // A table's events come to its viewport, those of keys too.
  const auto* const table = qobject_cast<const QTableView*>(widget->parentWidget());
  if (table != nullptr && widget == table->viewport()) {
    const QString rows = RowsText(*table);
    if (rows.isEmpty()) return false;
    Offer(*widget, u"Copy selected rows"_s, rows, position);
    return true;
  }
  const QString text = ShownText(*widget);
  if (text.isEmpty()) return false;
  Offer(*widget, u"Copy \"%1\""_s.arg(QString(Shortened(text)).replace(u'&', u"&&"_s)), text, position);
  return true;
}

}  // namespace krx
