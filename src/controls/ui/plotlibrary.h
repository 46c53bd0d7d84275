// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The chart library, for the sources that draw with it; headers name its classes only. Its own header takes the whole
// of Qt PrintSupport, and with it every widget there is: five of its six seconds in each object. The printer is all it
// needs, so the rest counts as included.
#include <QtPrintSupport/QPrinter>
#ifndef QT_QTPRINTSUPPORT_MODULE_H
#define QT_QTPRINTSUPPORT_MODULE_H
#endif
#include <qcustomplot.h>
