#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# The layer check reports each kind of violation with its location, and accepts what is allowed.
set -eu
check="$(cd "$(dirname "$0")/../../tools" && pwd)/check_layers"
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
mkdir -p "$tree/src/link" "$tree/src/fans/ui" "$tree/src/simulator" "$tree/src/controls/ui" "$tree/src/app"

cat >"$tree/src/fans/good.cpp" <<'CODE'
#include "fans/good.h"
#include "link/registeraccess.h"
#include "monitor/measurements.h"
#include <queue>
// QColor("#ff0000"), processEvents and #include <QString> in a comment are ignored.
/* Nor does Qt::red
   here */ int x = 0;  // format "##0.00"
CODE
cat >"$tree/src/fans/ui/good.cpp" <<'CODE'
#include "fans/ui/good.h"
#include <QWidget>
#include "controls/ui/palette.h"
#include "good.moc"
CODE
printf '#include <QColor>\nQColor c("#112233");\n' >"$tree/src/controls/ui/palette.cpp"
printf '#include <QApplication>\n#include "fans/ui/good.h"\n#include "simulator/simcomms.h"\n' \
  >"$tree/src/app/console_main.cpp"
if ! output=$("$check" "$tree"); then
  printf 'found something in a clean tree:\n%s\n' "$output"
  exit 1
fi

cat >"$tree/src/link/bad.cpp" <<'CODE'
#include "fans/fanconfig.h"
#include <QString>
#include "simulator/simcomms.h"
#include "../fans/fancommon.h"
void f() { QCoreApplication::processEvents(); }
CODE
printf '#include "monitor/readingcycle.h"\n' >"$tree/src/simulator/bad.h"
printf '#include "fans/ui/good.h"\n#include "controls/gaugemarkers.h"\n' >"$tree/src/fans/bad.cpp"
cat >"$tree/src/fans/ui/bad.cpp" <<'CODE'
#include "records/datalog.h"
QPen pen(Qt::red);
const char* sheet = "color: #12ab9f";
QColor mine{12, 13, 14};
CODE
cat >"$tree/expected" <<'TEXT'
src/fans/bad.cpp:1: window included by code without windows: fans/ui/good.h
src/fans/bad.cpp:2: fans may not use controls: controls/gaugemarkers.h
src/fans/ui/bad.cpp:1: fans may not use records: records/datalog.h
src/fans/ui/bad.cpp:2: colour named outside controls/ui/palette
src/fans/ui/bad.cpp:3: colour named outside controls/ui/palette
src/fans/ui/bad.cpp:4: colour named outside controls/ui/palette
src/link/bad.cpp:1: link may not use fans: fans/fanconfig.h
src/link/bad.cpp:2: Qt include outside a ui folder: QString
src/link/bad.cpp:3: link may not use simulator: simulator/simcomms.h
src/link/bad.cpp:4: include without its folder: ../fans/fancommon.h
src/link/bad.cpp:5: processEvents outside controls/ui/qteventpump.cpp
src/simulator/bad.h:1: simulator may not use monitor: monitor/readingcycle.h
TEXT
if "$check" "$tree" >"$tree/found"; then
  echo 'reported success on a tree with breaches'
  exit 1
fi
diff -u "$tree/expected" "$tree/found"
