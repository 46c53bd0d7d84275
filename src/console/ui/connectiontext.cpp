// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/connectiontext.h"

#include <QObject>

namespace krx {

QString ConnectionText(const QString& medium, const Link& link) {
  const bool onPort = link.CommsMedium == 1;
  const QString bus = onPort ? QObject::tr("printer port") : QObject::tr("SMBus");
  const int chip = onPort ? link.ChipAddress / 2 : link.ChipAddress;
  const QString address = QStringLiteral("%1").arg(chip, 2, 16, QLatin1Char('0')).toUpper();
  return QStringLiteral("%1 · %2%3h").arg(medium, medium.contains(bus) ? QString() : bus + QLatin1Char(' '), address);
}

}  // namespace krx
