// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/registercard.h"

#include <QGridLayout>
#include <QPainter>

#include "controls/ui/labels.h"
#include "controls/ui/texts.h"
#include "panel/ui/bittoggle.h"
#include "panel/ui/fieldbrackets.h"

namespace krx {
using namespace Qt::StringLiterals;
namespace {

/// As wide as its bit, whatever the text: a longer one is set in a smaller font.
class BitName : public QLabel {
 public:
  BitName() { setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QFont fitting = font();
    const int wanted = fontMetrics().horizontalAdvance(text());
    if (wanted > width()) fitting.setPointSizeF(fitting.pointSizeF() * width() / wanted);
    QPainter painter(this);
    painter.setFont(fitting);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(rect(), Qt::AlignCenter, text());
  }
};

QLabel* MakeValue(const QString& name, double scale) {
  QLabel* const label = MakeLabel(name, scale, true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setFocusPolicy(Qt::NoFocus);
  return label;
}

QLabel* MakeCaption(const QString& text) {
  QLabel* const caption = MakeLabel(u""_s, 0.92, false, true);
  caption->setText(text);
  return caption;
}

}  // namespace

RegisterCard::RegisterCard() : Card(QString()) {
  setAccessibleName(u"Selected register"_s);
  Body().addLayout(MakeHead());
  auto* const line = new QFrame;
  line->setFrameShape(QFrame::HLine);
  line->setFrameShadow(QFrame::Plain);
  line->setForegroundRole(QPalette::AlternateBase);
  Body().addWidget(line);
  Body().addLayout(MakeBits());
}

QLayout* RegisterCard::MakeHead() {
  address_ = MakeValue(u"current_reg_address_label"_s, 2);
  name_ = MakeValue(u"current_reg_type_label"_s, 1.4);
  hexValue_ = MakeValue(u"lblRegValHex"_s, 2);
  decimalValue_ = MakeValue(u"lblRegValDec"_s, 2);
  auto* const grid = new QGridLayout;
  grid->setVerticalSpacing(2);
  grid->setHorizontalSpacing(fontMetrics().height() / 3);
  grid->addWidget(MakeCaption(u"Current Addr:"_s), 0, 0);
  grid->addWidget(address_, 1, 0);
  grid->setColumnMinimumWidth(1, fontMetrics().height());
  grid->addWidget(MakeCaption(u"Current Reg:"_s), 0, 2);
  grid->addWidget(name_, 1, 2);
  grid->setColumnStretch(2, 1);
  grid->addWidget(MakeCaption(u"Register Value:"_s), 0, 3, 1, 5, Qt::AlignRight);
  // Of one width whatever they hold, so that nothing moves.
  const QFontMetrics large(hexValue_->font());
  int column = 3;
  for (const auto& [value, unit, widest] :
       {std::tuple(hexValue_, u"(Hex)"_s, u"CC"_s), std::tuple(decimalValue_, u"(Dec)"_s, u"000"_s)}) {
    value->setMinimumWidth(large.horizontalAdvance(widest) + 2);
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QLabel* const caption = MakeCaption(unit);
    caption->setAlignment(Qt::AlignBottom);
    caption->setContentsMargins(0, 0, 0, large.descent() - caption->fontMetrics().descent());
    grid->addWidget(value, 1, column);
    grid->addWidget(caption, 1, column + 1);
    column += 3;
  }
  grid->setColumnMinimumWidth(5, fontMetrics().height() / 2);
  return grid;
}

QLayout* RegisterCard::MakeBits() {
  auto* const grid = new QGridLayout;
  const int gap = fontMetrics().height() / 2;
  grid->setHorizontalSpacing(gap);
  grid->setVerticalSpacing(fontMetrics().height() / 3);
  for (int bit = 7; bit >= 0; --bit) {
    const int column = 7 - bit;
    const auto index = static_cast<std::size_t>(bit);
    auto* const number = MakeCaption(u"Bit %1"_s.arg(bit));
    number->setAlignment(Qt::AlignCenter);
    auto* const name = new BitName;
    name->setObjectName(u"bitname_%1"_s.arg(bit));
    QFont bold = name->font();
    bold.setBold(true);
    name->setFont(bold);
    auto* const value = new BitToggle(bit);
    bitNumbers_.at(index) = number;
    bitNames_.at(index) = name;
    bits_.at(index) = value;
    grid->addWidget(number, 0, column);
    grid->addWidget(name, 1, column);
    grid->addWidget(value, 2, column);
    grid->setColumnStretch(column, 1);
    connect(value, &BitToggle::clicked, this, [this, bit] { emit BitClicked(bit); });
    connect(value, &BitToggle::NeighbourRequested, this, [this, bit](int direction) {
      const int neighbour = bit - direction;
      if (neighbour >= 0 && neighbour <= 7) bits_.at(static_cast<std::size_t>(neighbour))->setFocus();
    });
  }
  fields_ = new FieldBrackets(gap);
  grid->addWidget(fields_, 3, 0, 1, 8);
  return grid;
}

void RegisterCard::Show(const RegisterView& view, bool writable) {
  SetNamedText(*address_, u"Current Addr:"_s, QString::fromStdString(view.Address));
  SetNamedText(*name_, u"Current Reg:"_s, QString::fromStdString(view.Name));
  SetNamedText(*hexValue_, u"Register Value (Hex)"_s, QString::fromStdString(view.HexValue));
  SetNamedText(*decimalValue_, u"Register Value (Dec)"_s, QString::fromStdString(view.DecimalValue));
  for (std::size_t bit = 0; bit < bits_.size(); ++bit) {
    const QString number = u"Bit %1"_s.arg(bit);
    const QString name = QtText(view.BitNames.at(bit));
    SetTextIfChanged(*bitNames_.at(bit), name);
    // A register without names of its own has its numbers once.
    SetTextIfChanged(*bitNumbers_.at(bit), name == number ? QString() : number);
    BitToggle& toggle = *bits_.at(bit);
    toggle.SetBit(view.Bits.at(bit));
    toggle.setAccessibleName((name == number ? number : number + u' ' + name) + u": "_s + toggle.text());
    toggle.setEnabled(writable);
  }
  fields_->Show(FieldRows(view.Register, view.Shown()));
}

}  // namespace krx
