// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/registertable.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <cstdlib>
#include <utility>

#include "controls/ui/copyrows.h"
#include "controls/ui/palette.h"
#include "panel/ui/cardtable.h"
#include "panel/ui/rowdelegate.h"

namespace krx {
using namespace Qt::StringLiterals;
namespace {

constexpr int pageRows = 10;

QFontMetrics BoldMetrics(const QWidget& widget) {
  QFont bold = widget.font();
  bold.setBold(true);
  return QFontMetrics(bold);
}

}  // namespace

RegisterTable::RegisterTable(RegisterPanel& panel, RegisterTableModel& model) : panel_(panel), rows_(model) {
  setObjectName(u"lstRegisterRows"_s);
  setAccessibleName(u"Registers"_s);
  setModel(&model);
  MakeCardTable(*this);
  MakeRowsCopyable(*this);
  setMouseTracking(true);
  setVerticalScrollMode(ScrollPerPixel);
  SetRoomy(true);
  setTabKeyNavigation(false);
  ShowStates();
}

int RegisterTable::ColumnWidth(int column, bool roomy) const {
  const QFontMetrics metrics = BoldMetrics(*this);
  const int room = metrics.height();
  switch (column) {
    case RegisterTableModel::Name:
      return metrics.horizontalAdvance(u"Remote 2 Trange/PWM3 Freq."_s) + room;
    case RegisterTableModel::WhetherChanged:
      return roomy ? metrics.horizontalAdvance(u"was 00"_s) + 2 * room : room * 3 / 2;
    case RegisterTableModel::Lock:
      return room * 3 / 2;
    default:
      return metrics.horizontalAdvance(RegisterTableModel::Title(column, roomy)) + room;
  }
}

void RegisterTable::SetRoomy(bool roomy) {
  rows_.SetRoomy(roomy);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setSectionResizeMode(RegisterTableModel::Name, QHeaderView::Stretch);
  for (int column = 0; column < RegisterTableModel::columnTotal; ++column) {
    if (column != RegisterTableModel::Name) setColumnWidth(column, ColumnWidth(column, roomy));
  }
}

int RegisterTable::WidthOfColumns(bool roomy) const {
  int width = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  for (int column = 0; column < RegisterTableModel::columnTotal; ++column) width += ColumnWidth(column, roomy);
  return width;
}

void RegisterTable::ShowStates() {
  rows_.ShowStates();
  // Only when another row is selected: between two readings, the keyboard's row is the user's.
  const int selected = panel_.LastSelectedRow();
  if (panel_.State(selected) == RowState::Plain || std::exchange(shownSelected_, selected) == selected) return;
  const QModelIndex current = rows_.index(selected - 1, RegisterTableModel::Name);
  selectionModel()->setCurrentIndex(current, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void RegisterTable::ScrollTo(int row) {
  scrollTo(rows_.index(row - 1, RegisterTableModel::Name));
}

void RegisterTable::GoTo(int row) {
  selectionModel()->setCurrentIndex(rows_.index(row - 1, RegisterTableModel::Name), QItemSelectionModel::NoUpdate);
  panel_.Hover(row);
  rows_.ShowStates();
  ScrollTo(row);
}

int RegisterTable::Neighbour(int row, int steps) const {
  const int direction = steps < 0 ? -1 : 1;
  int reached = row;
  int left = std::abs(steps);
  for (int at = row + direction; at >= 1 && at <= RegisterPanel::rowCount && left > 0; at += direction) {
    if (isRowHidden(at - 1)) continue;
    reached = at;
    --left;
  }
  return reached;
}

void RegisterTable::keyPressEvent(QKeyEvent* event) {
  const int current = currentIndex().isValid() ? currentIndex().row() + 1 : panel_.LastSelectedRow();
  int steps = 0;
  switch (event->key()) {
    case Qt::Key_Up:
      steps = -1;
      break;
    case Qt::Key_Down:
      steps = 1;
      break;
    case Qt::Key_PageUp:
      steps = -pageRows;
      break;
    case Qt::Key_PageDown:
      steps = pageRows;
      break;
    case Qt::Key_Home:
      steps = -RegisterPanel::rowCount;
      break;
    case Qt::Key_End:
      steps = RegisterPanel::rowCount;
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      if (!isRowHidden(current - 1)) emit RowClicked(current);
      return;
    default:
      event->ignore();  // no search by typing: the box above does that
      return;
  }
  const int row = Neighbour(current, steps);
  if (row == current) return;
  emit RowClicked(row);
  ScrollTo(row);
}

void RegisterTable::mouseMoveEvent(QMouseEvent* event) {
  const int row = RowAt(event->position().toPoint());
  if (row == 0) return LeaveRows();
  panel_.Hover(row);
  viewport()->setCursor(Qt::PointingHandCursor);
  rows_.ShowStates();
}

void RegisterTable::mousePressEvent(QMouseEvent* event) {
  const int row = RowAt(event->position().toPoint());
  if (row > 0 && event->button() == Qt::LeftButton) emit RowClicked(row);
}

// The view's own would select rows by the pointer.
void RegisterTable::mouseReleaseEvent(QMouseEvent*) {}

void RegisterTable::mouseDoubleClickEvent(QMouseEvent* event) {
  mousePressEvent(event);
}

bool RegisterTable::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::Leave) LeaveRows();
  return QTableView::viewportEvent(event);
}

void RegisterTable::focusOutEvent(QFocusEvent* event) {
  QTableView::focusOutEvent(event);
  viewport()->update();
}

void RegisterTable::LeaveRows() {
  panel_.LeaveList();
  viewport()->unsetCursor();
  rows_.ShowStates();
}

void RegisterTable::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (!hasFocus() || !currentIndex().isValid()) return;
  QPainter painter(viewport());
  painter.setPen(QPen(Palette::For(*this).accent, 2));
  const int y = rowViewportPosition(currentIndex().row());
  painter.drawRect(QRect(1, y + 1, viewport()->width() - 2, rowHeight(currentIndex().row()) - 3));
}

}  // namespace krx
