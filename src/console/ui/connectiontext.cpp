// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/connectiontext.h"

#include <QObject>

namespace krx {

using namespace Qt::StringLiterals;

QString ConnectionText(const QString& medium, const Link& link) {
  const bool onPort = link.CommsMedium == 1;
  const QString bus = onPort ? u"printer port"_s : u"SMBus"_s;
  const int chip = onPort ? link.ChipAddress / 2 : link.ChipAddress;
  const QString address = u"%1"_s.arg(chip, 2, 16, QChar(u'0')).toUpper();
  return u"%1 · %2%3h"_s.arg(medium, medium.contains(bus) ? QString() : bus + u' ', address);
}

}  // namespace krx
