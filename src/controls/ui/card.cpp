// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/card.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "controls/ui/labels.h"
#include "controls/ui/palette.h"

namespace krx {

using namespace Qt::StringLiterals;
namespace {

constexpr double noteScale = 0.92;

/// Lengths are shares of a line's height, so that a larger font gets more room.
int Padding(const QWidget& widget) {
  return widget.fontMetrics().height() * 4 / 5;
}

}  // namespace

Card::Card(const QString& title, Kind kind, QWidget* parent)
    : QGroupBox(parent), kind_(kind), headRow_(new QWidget), mark_(new StateMark) {
  setAccessibleName(title);
  auto* const column = new QVBoxLayout(this);
  const int padding = Padding(*this);
  column->setContentsMargins(padding, padding, padding, padding);
  column->setSpacing(padding);

  head_ = new QHBoxLayout(headRow_);
  head_->setContentsMargins(0, 0, 0, 0);
  auto* const caption = MakeLabel(u""_s, 1, true);
  caption->setText(title);
  note_ = MakeLabel(u""_s, noteScale, false, true);
  word_ = MakeLabel(u""_s, noteScale, false);
  for (QWidget* const hidden :
       {static_cast<QWidget*>(note_), static_cast<QWidget*>(mark_), static_cast<QWidget*>(word_)})
    hidden->hide();
  head_->addWidget(caption);
  head_->addWidget(note_);
  head_->addStretch();
  head_->addWidget(mark_);
  head_->addWidget(word_);
  column->addWidget(headRow_);
  headRow_->setVisible(!title.isEmpty());

  body_ = new QVBoxLayout;
  column->addLayout(body_, 1);
}

void Card::SetNote(const QString& note) {
  SetTextIfChanged(*note_, note);
  note_->setVisible(!note.isEmpty());
}

void Card::SetState(Mark mark, const QString& word, bool muted) {
  mark_->SetMark(mark);
  mark_->SetMuted(muted);
  SetTextIfChanged(*word_, word);
  SetMuted(*word_, muted || mark == Mark::Off || mark == Mark::Unknown);
  mark_->setVisible(mark != Mark::None);
  word_->setVisible(!word.isEmpty());
}

void Card::changeEvent(QEvent* event) {
  QGroupBox::changeEvent(event);
  // The base class makes room for a title of its own.
  setContentsMargins(0, 0, 0, 0);
}

void Card::paintEvent(QPaintEvent*) {
  const Palette& colours = Palette::For(*this);
  const bool section = kind_ == Kind::Section;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(colours.line);
  painter.setBrush(section ? colours.sunk : colours.card);
  const double radius = section ? 6 : 8;
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
  if (!section || headRow_->isHidden()) return;
  const double y = headRow_->geometry().bottom() + Padding(*this) / 2.0 + 0.5;
  painter.drawLine(QPointF(headRow_->x(), y), QPointF(headRow_->geometry().right(), y));
}

}  // namespace krx
