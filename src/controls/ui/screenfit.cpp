// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/screenfit.h"

#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace krx {

QSize FittedToScreen(const QWidget& window, const QSize& wanted) {
  // The frame's true size is not known before the window is shown.
  const QStyle& style = *window.style();
  const int border = 2 * style.pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
  const QSize frame(border, border + style.pixelMetric(QStyle::PM_TitleBarHeight));
  return wanted.boundedTo(window.screen()->availableSize() - frame);
}

}  // namespace krx
