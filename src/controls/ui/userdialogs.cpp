// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/userdialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QGridLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>
#include <exception>

#include "link/commserror.h"
#include "link/failuretext.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

class Box : public QMessageBox {
 public:
  Box(Icon icon, const QString& text, const QString& title, StandardButtons buttons)
      : QMessageBox(icon, title.isEmpty() ? QGuiApplication::applicationDisplayName() : title, text, buttons,
                    QApplication::activeWindow()) {
    setTextFormat(Qt::PlainText);  // an error's text may hold anything
    // A box is as wide as its text, and a longer title would be cut. It takes a width from its layout only.
    const int width = fontMetrics().horizontalAdvance(windowTitle()) * 5 / 4 + fontMetrics().height() * 6;
    auto* const grid = qobject_cast<QGridLayout*>(layout());
    if (grid) grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
  }
};

void ShowBox(QMessageBox::Icon icon, const QString& text, const QString& title) {
  Box(icon, text, title, QMessageBox::Ok).exec();
}

std::optional<QString> Chosen(const QString& path) {
  if (path.isEmpty()) return std::nullopt;
  return path;
}

}  // namespace

void QtUserDialogs::Critical(const QString& text, const QString& title) {
  ShowBox(QMessageBox::Critical, text, title);
}

void QtUserDialogs::Exclamation(const QString& text, const QString& title) {
  ShowBox(QMessageBox::Warning, text, title);
}

void QtUserDialogs::Information(const QString& text, const QString& title) {
  ShowBox(QMessageBox::Information, text, title);
}

bool QtUserDialogs::Ask(const QString& text, const QString& yes, const QString& title) {
  Box box(QMessageBox::Question, text, title, QMessageBox::Cancel);
  const QPushButton* const button = box.addButton(yes, QMessageBox::AcceptRole);
  box.setDefaultButton(QMessageBox::Cancel);
  box.exec();
  return box.clickedButton() == button;
}

std::optional<QString> QtUserDialogs::SaveFile(const QString& filter, const QString& proposedName) {
  return Chosen(
      QFileDialog::getSaveFileName(QApplication::activeWindow(), QString(), proposedName, ToolkitFilter(filter)));
}

std::optional<QString> QtUserDialogs::OpenFile(const QString& filter, const QString& proposedName) {
  return Chosen(
      QFileDialog::getOpenFileName(QApplication::activeWindow(), QString(), proposedName, ToolkitFilter(filter)));
}

QString ToolkitFilter(const QString& filter) {
  const QStringList parts = filter.split(u'|');
  QStringList result;
  for (qsizetype i = 0; i < parts.size(); i += 2) {
    const bool named = parts[i].contains(u'(') || i + 1 == parts.size();
    result += named ? parts[i] : parts[i] + u" ("_s + parts[i + 1] + u")"_s;
  }
  return result.join(u";;"_s);
}

bool RunUserAction(UserDialogs& dialogs, const std::function<void()>& action, const std::string& name) {
  QString text;
  try {
    if (dialogs.Around) {
      dialogs.Around(name, action);
    } else {
      action();
    }
    return true;
  } catch (const GivenUp&) {
    return false;
  } catch (const Overflow& error) {
    // A value that was refused before any transfer is no fault of the link.
    text = QString::fromStdString(error.BoxText());
  } catch (const CommsError& error) {
    if (dialogs.LinkFault) dialogs.LinkFault(error);
    text = QString::fromStdString(error.BoxText());
  } catch (const std::exception& error) {
    text = QString::fromStdString(FailureText(error));
  }
  // Only here, when everything the action held is released: the box runs the event loop.
  dialogs.Critical(text);
  return false;
}

}  // namespace krx
