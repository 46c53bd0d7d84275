// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/resources.h"

#include <QtGlobal>

// The macro does not work inside a namespace.
static void InitConsoleResource() {
  Q_INIT_RESOURCE(console);
}

namespace krx {

void InitResources() {
  InitConsoleResource();
}

}  // namespace krx
