// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/registerlist.h"

#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QVBoxLayout>
#include <cstdlib>

#include "controls/ui/palette.h"

namespace krx {
namespace {

constexpr int pageRows = 10;

QString RowText(const RegisterEntry& entry) {
  return QString::fromUtf8(entry.PanelName.data(), static_cast<qsizetype>(entry.PanelName.size()));
}

}  // namespace

RegisterRow::RegisterRow(int row) : row_(row) {
  const RegisterEntry& entry = *LookupEntry(row);
  setObjectName(QString("read_writedisplaytext_%1").arg(row));
  setText(RowText(entry));
  setToolTip(QString("Register %1h").arg(QString::number(entry.Address, 16).toUpper()));
  setMouseTracking(true);
  setMargin(2);
  ApplyColours();
}

void RegisterRow::ShowState(RowState state) {
  if (state == state_) return;
  state_ = state;
  ApplyColours();
}

void RegisterRow::ApplyColours() {
  // The text colours are fixed. Each needs the ground on which it can be read, whatever the theme: the two bright ones
  // a dark ground, dark green a light one.
  QColor text;
  QColor ground;
  switch (state_) {
    case RowState::Plain:
      break;
    case RowState::Hovered:
      text = fixedcolours::brightGreen;
      ground = Palette::Dark().card;
      break;
    case RowState::Selected:
      text = fixedcolours::darkGreen;
      ground = Palette::Light().card;
      break;
    case RowState::SelectedHovered:
      text = fixedcolours::yellow;
      ground = Palette::Dark().card;
      break;
  }
  QPalette palette;
  if (ground.isValid()) {
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Window, ground);
  }
  // By role, so that it follows a change of the theme.
  setForegroundRole(ground.isValid() ? QPalette::WindowText : QPalette::PlaceholderText);
  setAutoFillBackground(ground.isValid());
  QFont font = this->font();
  font.setBold(state_ == RowState::Selected || state_ == RowState::SelectedHovered);
  setFont(font);
  setPalette(palette);
}

void RegisterRow::mouseMoveEvent(QMouseEvent*) {
  emit Hovered(row_);
}

void RegisterRow::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) emit Clicked(row_);
}

RegisterList::RegisterList(RegisterPanel& panel) : panel_(panel) {
  setObjectName("lstRegisterRows");
  setAccessibleName("Registers");
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::StrongFocus);
  auto* const rows = new QWidget;
  auto* const layout = new QVBoxLayout(rows);
  layout->setSpacing(0);
  for (int row = 1; row <= RegisterPanel::rowCount; ++row) {
    auto* const label = new RegisterRow(row);
    rows_.at(static_cast<std::size_t>(row)) = label;
    layout->addWidget(label);
    connect(label, &RegisterRow::Hovered, this, [this](int hovered) {
      panel_.Hover(hovered);
      setCursor(Qt::PointingHandCursor);
      ShowStates();
    });
    connect(label, &RegisterRow::Clicked, this, [this](int clicked) {
      setFocus();
      emit RowClicked(clicked);
    });
  }
  layout->addStretch();
  setWidget(rows);
  ShowStates();
}

void RegisterList::ShowStates() {
  for (int row = 1; row <= RegisterPanel::rowCount; ++row) {
    rows_.at(static_cast<std::size_t>(row))->ShowState(panel_.State(row));
  }
}

void RegisterList::ScrollTo(int row) {
  ensureWidgetVisible(rows_.at(static_cast<std::size_t>(row)));
}

int RegisterList::Filter(const QString& text) {
  QString wanted = text.trimmed();
  QString address = wanted;
  if (address.startsWith("0x", Qt::CaseInsensitive)) address = address.mid(2);
  if (address.endsWith('h', Qt::CaseInsensitive)) address.chop(1);
  int first = 0;
  for (int row = 1; row <= RegisterPanel::rowCount; ++row) {
    const RegisterEntry& entry = *LookupEntry(row);
    const QString hex = QString::number(entry.Address, 16);
    const bool shown =
        RowText(entry).contains(wanted, Qt::CaseInsensitive) || hex.compare(address, Qt::CaseInsensitive) == 0;
    rows_.at(static_cast<std::size_t>(row))->setVisible(shown);
    if (shown && first == 0) first = row;
  }
  return first;
}

int RegisterList::Neighbour(int row, int steps) const {
  const int direction = steps < 0 ? -1 : 1;
  int reached = row;
  int left = std::abs(steps);
  for (int at = row + direction; at >= 1 && at <= RegisterPanel::rowCount && left > 0; at += direction) {
    if (rows_.at(static_cast<std::size_t>(at))->isHidden()) continue;
    reached = at;
    --left;
  }
  return reached;
}

void RegisterList::keyPressEvent(QKeyEvent* event) {
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
    default:
      QScrollArea::keyPressEvent(event);
      return;
  }
  const int row = Neighbour(panel_.LastSelectedRow(), steps);
  if (row == panel_.LastSelectedRow()) return;
  emit RowClicked(row);
  ScrollTo(row);
}

void RegisterList::leaveEvent(QEvent* event) {
  panel_.LeaveList();
  unsetCursor();
  ShowStates();
  QScrollArea::leaveEvent(event);
}

QSize RegisterList::sizeHint() const {
  const QFontMetrics metrics = fontMetrics();
  return {metrics.horizontalAdvance("Remote 2 Trange/PWM3 Freq.") + 6 * metrics.horizontalAdvance('m'),
          metrics.height() * 20};
}

}  // namespace krx
