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

namespace krx {

QString SystemInformation() {
  QStringList lines{
      QStringLiteral("krx5580-console " KRX_VERSION),
      QObject::tr("Toolkit: Qt %1 (built with %2)")
          .arg(QString::fromLatin1(qVersion()), QStringLiteral(QT_VERSION_STR)),
      QObject::tr("Window system: %1").arg(QGuiApplication::platformName()),
      QObject::tr("System: %1").arg(QSysInfo::prettyProductName()),
      QObject::tr("Kernel: %1 %2").arg(QSysInfo::kernelType(), QSysInfo::kernelVersion()),
      QObject::tr("Processor: %1, %2 cores in use")
          .arg(QSysInfo::currentCpuArchitecture())
          .arg(QThread::idealThreadCount()),
  };
  for (const QScreen* screen : QGuiApplication::screens()) {
    lines << QObject::tr("Screen %1: %2 x %3, scale %4")
                 .arg(screen->name())
                 .arg(screen->geometry().width())
                 .arg(screen->geometry().height())
                 .arg(screen->devicePixelRatio());
  }
  return lines.join(QLatin1Char('\n'));
}

AboutBox::AboutBox(QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("frmAbout"));
  setWindowTitle(tr("About the KRX5580 console"));
  auto* name = new QLabel(QStringLiteral("<b style='font-size:x-large'>KRX5580 console</b>"));
  auto* version = new QLabel(tr("Version %1").arg(QStringLiteral(KRX_VERSION)));
  version->setObjectName(QStringLiteral("lblVersion"));
  auto* licence = new QLabel(
      tr("Evaluation and monitoring console for the KRX5580 hardware monitor and fan controller.\n\n"
         "Free software under the GNU General Public License, version 3 or later. It comes with no warranty, to the "
         "extent the law permits."));
  licence->setWordWrap(true);
  licence->setMinimumWidth(fontMetrics().averageCharWidth() * 60);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
  QPushButton* system = buttons->addButton(tr("System Info..."), QDialogButtonBox::ActionRole);
  system->setObjectName(QStringLiteral("cmdSysInfo"));
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
  TextDialog::Open(this, QStringLiteral("frmSysInfo"), tr("System Information"), SystemInformation());
}

}  // namespace krx
