// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/aboutbox.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSysInfo>
#include <QThread>
#include <QVBoxLayout>

#include "console/ui/mainpage.h"
#include "console/ui/textdialog.h"
#include "controls/ui/texts.h"

namespace krx {

using namespace Qt::StringLiterals;

QString SystemInformation() {
  QStringList lines{
      u"krx5580-console %1"_s.arg(QtText(KRX_VERSION)),
      u"Toolkit: Qt %1 (built with %2)"_s.arg(QtText(qVersion()), QtText(QT_VERSION_STR)),
      u"Window system: %1"_s.arg(QGuiApplication::platformName()),
      u"System: %1"_s.arg(QSysInfo::prettyProductName()),
      u"Kernel: %1 %2"_s.arg(QSysInfo::kernelType(), QSysInfo::kernelVersion()),
      u"Processor: %1, %2 cores in use"_s.arg(QSysInfo::currentCpuArchitecture()).arg(QThread::idealThreadCount()),
  };
  for (const QScreen* screen : QGuiApplication::screens()) {
    lines << u"Screen %1: %2 x %3, scale %4"_s.arg(screen->name())
                 .arg(screen->geometry().width())
                 .arg(screen->geometry().height())
                 .arg(screen->devicePixelRatio());
  }
  return lines.join(u'\n');
}

AboutBox::AboutBox(QWidget* parent) : QDialog(parent) {
  setObjectName(u"frmAbout"_s);
  setWindowTitle(u"About the KRX5580 console"_s);
  auto* name = new QLabel(u"<b style='font-size:x-large'>KRX5580 console</b>"_s);
  auto* version = new QLabel(u"Version %1"_s.arg(QtText(KRX_VERSION)));
  version->setObjectName(u"lblVersion"_s);
  auto* licence = new QLabel(
      u"Evaluation and monitoring console for the KRX5580 hardware monitor and fan controller.\n\n"
      u"Free software under the GNU General Public License, version 3 or later. It comes with no warranty, to the "
      u"extent the law permits."_s);
  licence->setWordWrap(true);
  licence->setMinimumWidth(fontMetrics().averageCharWidth() * 60);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(u"cmdOK"_s);
  QPushButton* system = buttons->addButton(u"System Info..."_s, QDialogButtonBox::ActionRole);
  system->setObjectName(u"cmdSysInfo"_s);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(system, &QPushButton::clicked, this, &AboutBox::ShowSystemInformation);

  auto* column = new QVBoxLayout(this);
  column->setSpacing(10);
  column->addWidget(new BoardPicture, 1);
  column->addWidget(name);
  column->addWidget(version);
  column->addWidget(licence);
  column->addWidget(buttons);
}

void AboutBox::ShowSystemInformation() {
  TextDialog::Open(this, u"frmSysInfo"_s, u"System Information"_s, SystemInformation());
}

}  // namespace krx
