// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/setuplog.h"

#include <QCoreApplication>

namespace krx {

using namespace Qt::StringLiterals;

QString SetupLogText() {
  return u"Easy Setup does the following, in this order:\n"
         u"\n"
         u"1. Starts monitoring: sets STRT, bit 0 of Configuration 1 (40h).\n"
         u"2. Low temperature limits 10 °C:   Local 50h, Remote 1 4Eh, Remote 2 52h.\n"
         u"3. High temperature limits 80 °C:  Local 51h, Remote 1 4Fh, Remote 2 53h.\n"
         u"4. Tmin 40 °C:                     Local 68h, Remote 1 67h, Remote 2 69h.\n"
         u"5. Operating point 60 °C:          Local 34h, Remote 1 33h, Remote 2 35h.\n"
         u"6. Reads the board's switches again.\n"
         u"7. Starts the reading cycle and selects the channel Local."_s;
}

}  // namespace krx
