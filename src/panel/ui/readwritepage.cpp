// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/readwritepage.h"

#include <fmt/format.h>

#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

#include "controls/ui/palette.h"
#include "controls/ui/userdialogs.h"
#include "panel/ui/registerlist.h"

namespace krx {
namespace {

constexpr int timer3Milliseconds = 10;

QLabel* MakeValue(const char* name, const QString& accessibleName) {
  auto* const label = new QLabel;
  label->setObjectName(name);
  label->setAccessibleName(accessibleName);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

/// Only what differs: continuous reading shows a hundred times a second.
void SetText(QLabel& label, const QString& text) {
  if (label.text() != text) label.setText(text);
}

}  // namespace

ReadWritePage::ReadWritePage(RegisterPanel& panel, Link& link, ChipTurns& turns, UserDialogs& dialogs, bool readOnly)
    : panel_(panel),
      dialogs_(dialogs),
      readOnly_(readOnly),
      timer3_(turns, "Continuous reading", timer3Milliseconds, [this] {
        panel_.ReadSelected();
        ShowPanel();
      }) {
  auto* const layout = new QHBoxLayout(this);
  list_ = new RegisterList(panel_, link);
  connect(list_, &RegisterList::RowClicked, this, &ReadWritePage::Click);
  layout->addWidget(list_);
  auto* const right = new QVBoxLayout;
  layout->addLayout(right, 1);
  right->addWidget(MakeRegisterCard());
  right->addWidget(MakeContinuousReading());
  right->addStretch();
  ShowPanel();
}

QWidget* ReadWritePage::MakeRegisterCard() {
  auto* const card = new QFrame;
  MakeCard(*card);
  auto* const layout = new QVBoxLayout(card);
  auto* const form = new QFormLayout;
  layout->addLayout(form);
  address_ = MakeValue("current_reg_address_label", "Current Addr:");
  name_ = MakeValue("current_reg_type_label", "Current Reg:");
  hexValue_ = MakeValue("lblRegValHex", "Register Value (Hex)");
  decimalValue_ = MakeValue("lblRegValDec", "Register Value (Dec)");
  QFont large = font();
  large.setPointSizeF(large.pointSizeF() * 1.6);
  large.setBold(true);
  for (QLabel* const value : {hexValue_, decimalValue_}) value->setFont(large);
  form->addRow("Current Addr:", address_);
  form->addRow("Current Reg:", name_);
  auto* const values = new QHBoxLayout;
  const int width = QFontMetrics(large).horizontalAdvance("0000");
  for (const auto& [label, unit] : {std::pair(hexValue_, "(Hex)"), std::pair(decimalValue_, "(Dec)")}) {
    label->setMinimumWidth(width);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    values->addWidget(label);
    values->addWidget(new QLabel(unit));
  }
  values->addStretch();
  form->addRow("Register Value:", values);
  layout->addWidget(MakeBits());
  caution_ = new QLabel;
  caution_->setObjectName("lblCaution");
  caution_->setWordWrap(true);
  layout->addWidget(caution_);
  layout->addWidget(MakeEntries());
  return card;
}

QWidget* ReadWritePage::MakeBits() {
  auto* const bits = new QWidget;
  auto* const grid = new QGridLayout(bits);
  grid->setContentsMargins(0, 0, 0, 0);
  for (int bit = 7; bit >= 0; --bit) {
    const int column = 7 - bit;
    const auto index = static_cast<std::size_t>(bit);
    auto* const number = new QLabel(QString("Bit %1").arg(bit));
    number->setAlignment(Qt::AlignCenter);
    auto* const name = new QLabel;
    name->setObjectName(QString("bitname_%1").arg(bit));
    name->setAlignment(Qt::AlignCenter);
    auto* const value = new QPushButton("0");
    value->setObjectName(QString("bit%1").arg(bit));
    value->setToolTip("Click to change");
    value->setMinimumWidth(fontMetrics().horizontalAdvance("DisableSpinUp"));
    bitNames_.at(index) = name;
    bits_.at(index) = value;
    grid->addWidget(number, 0, column);
    grid->addWidget(name, 1, column);
    grid->addWidget(value, 2, column);
    connect(value, &QPushButton::clicked, this, [this, bit] { Act([this, bit] { panel_.ClickBit(bit); }); });
  }
  return bits;
}

QWidget* ReadWritePage::MakeEntries() {
  auto* const entries = new QWidget;
  auto* const grid = new QGridLayout(entries);
  grid->setContentsMargins(0, 0, 0, 0);
  const auto add = [&](int row, const QString& caption, const char* boxName, const char* buttonName) {
    auto* const label = new QLabel(caption);
    auto* const box = new QLineEdit;
    box->setObjectName(boxName);
    box->setAccessibleName(caption);
    label->setBuddy(box);
    auto* const button = new QPushButton("Press to update");
    button->setObjectName(buttonName);
    button->setAccessibleName(QString("Press to update, %1").arg(caption));
    button->setEnabled(!readOnly_);
    grid->addWidget(label, row, 0);
    grid->addWidget(box, row, 1);
    grid->addWidget(button, row, 2);
    connect(box, &QLineEdit::returnPressed, button, &QPushButton::click);
    return std::pair(box, button);
  };
  std::tie(text6_, command4_) = add(0, "Write (Hex)", "Text6", "Command4");
  std::tie(text7_, command5_) = add(1, "Write (Dec)", "Text7", "Command5");
  // Both take any length: cut to what fits, "100" would be written as 10 and "1000" as 100.
  grid->setColumnStretch(3, 1);
  connect(text6_, &QLineEdit::textEdited, this, [this](const QString& text) {
    panel_.SetHexEntry(text.toStdString());
    ShowPanel();
  });
  connect(text7_, &QLineEdit::textEdited, this, [this](const QString& text) {
    panel_.SetDecimalEntry(text.toStdString());
    ShowPanel();
  });
  connect(command4_, &QPushButton::clicked, this, [this] { Act([this] { panel_.WriteHexEntry(); }); });
  connect(command5_, &QPushButton::clicked, this, [this] { Act([this] { panel_.WriteDecimalEntry(); }); });
  return entries;
}

QWidget* ReadWritePage::MakeContinuousReading() {
  auto* const card = new QFrame;
  MakeCard(*card);
  auto* const layout = new QHBoxLayout(card);
  continuousSwitch_ = new QPushButton("Continuous Reading");
  continuousSwitch_->setObjectName("SSRibbon5");
  continuousSwitch_->setCheckable(true);
  continuousLabel_ = new QLabel;
  continuousLabel_->setObjectName("continuous_reading_label");
  layout->addWidget(continuousSwitch_);
  layout->addWidget(continuousLabel_, 1);
  connect(continuousSwitch_, &QPushButton::clicked, this, &ReadWritePage::SetContinuousReading);
  SetContinuousReading(false);
  return card;
}

void ReadWritePage::SetContinuousReading(bool on) {
  continuousSwitch_->setChecked(on);
  continuousLabel_->setText(on ? "Continuous Reading is On" : "Continuous Reading is Off");
  if (on) {
    timer3_.SetInterval(timer3Milliseconds);
    timer3_.Start();
  } else {
    timer3_.Stop();
  }
}

void ReadWritePage::StopContinuousReading() {
  SetContinuousReading(false);
}

void ReadWritePage::ShowWrittenElsewhere(std::uint8_t address, std::uint8_t byte) {
  panel_.ShowWrittenElsewhere(address, byte);
  ShowPanel();
}

void ReadWritePage::Enter() {
  StopContinuousReading();
  Act([this] { panel_.Reselect(); });
  list_->ScrollTo(panel_.LastSelectedRow());
}

void ReadWritePage::Click(int row) {
  Act([this, row] { panel_.Click(row); }, fmt::format("Read/Write: list, row {}", row));
}

void ReadWritePage::Act(const std::function<void()>& action, const std::string& name) {
  RunUserAction(dialogs_, action, name);
  ShowPanel();
}

void ReadWritePage::ShowPanel() {
  const RegisterView& view = panel_.View();
  list_->ShowStates();
  SetText(*address_, QString::fromStdString(view.Address));
  SetText(*name_, QString::fromStdString(view.Name));
  SetText(*hexValue_, QString::fromStdString(view.HexValue));
  SetText(*decimalValue_, QString::fromStdString(view.DecimalValue));
  const auto caution = QString::fromUtf8(view.Caution.data(), static_cast<qsizetype>(view.Caution.size()));
  SetText(*caution_, caution.isEmpty() ? QString() : "⚠ " + caution);
  const bool writable = view.Editable && !readOnly_;
  for (std::size_t bit = 0; bit < bits_.size(); ++bit) {
    const std::string_view name = view.BitNames.at(bit);
    SetText(*bitNames_.at(bit), QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    const QString value = view.Bits.at(bit) ? "1" : "0";
    if (bits_.at(bit)->text() != value) bits_.at(bit)->setText(value);
    bits_.at(bit)->setAccessibleName(QString("Bit %1 %2: %3").arg(bit).arg(bitNames_.at(bit)->text(), value));
    bits_.at(bit)->setEnabled(writable);
  }
  ShowEntry(*text6_, *command4_, panel_.HexEntry(), panel_.HexButton());
  ShowEntry(*text7_, *command5_, panel_.DecimalEntry(), panel_.DecimalButton());
  text6_->setEnabled(writable);
  text7_->setEnabled(writable);
}

void ReadWritePage::ShowEntry(QLineEdit& box, QPushButton& button, const std::string& text, EntryState state) {
  const QString wanted = QString::fromStdString(text);
  if (box.text() != wanted) box.setText(wanted);
  QPalette face;
  if (state != EntryState::Untouched) {
    face.setColor(QPalette::Button,
                  state == EntryState::Unwritten ? fixedcolours::brightRed : fixedcolours::brightGreen);
    face.setColor(QPalette::ButtonText, fixedcolours::onBright);
  }
  button.setPalette(face);
  button.setToolTip(state == EntryState::Unwritten ? "This entry has not been written" : QString());
  button.setAccessibleDescription(state == EntryState::Unwritten ? "not written"
                                  : state == EntryState::Written ? "written"
                                                                 : QString());
}

}  // namespace krx
