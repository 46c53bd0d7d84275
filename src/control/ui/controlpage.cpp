// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/ui/controlpage.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <utility>

#include "controls/ui/userdialogs.h"

namespace krx {
namespace {

constexpr const char* noBoardText =
    "There is no evaluation board on the SMBus: its switches and heaters cannot be set.";

/// Shows a mark without a click. An option in a group of two can only be cleared while it is not exclusive.
void Mark(QAbstractButton& button, bool marked) {
  const bool exclusive = button.autoExclusive();
  button.setAutoExclusive(false);
  button.setChecked(marked);
  button.setAutoExclusive(exclusive);
}

}  // namespace

ControlPage::ControlPage(const ControlParts& parts, UserDialogs& dialogs, bool readOnly)
    : model_(parts), dialogs_(dialogs), readOnly_(readOnly) {
  auto* const grid = new QGridLayout(this);
  grid->addWidget(MakeFanGroup(), 0, 0);
  grid->addWidget(MakeThermTimeGroup(), 1, 0);
  grid->addWidget(
      MakeLaterGroup("File Access", {"Save Register Values...", "Recall Previous Setup...", "Make New Log"}), 2, 0);
  grid->addWidget(MakeLaterGroup("Power and Operating Point",
                                 {"Operating Point Demo", "Power/Current Parameters", "Power/Current Display"}),
                  3, 0);

  auto* const board = new QGroupBox("Board Control");
  auto* const boardGrid = new QGridLayout(board);
  boardGrid->addWidget(MakeThermGroup(), 0, 0);
  boardGrid->addWidget(MakeAlertGroup(), 0, 1);
  boardGrid->addWidget(MakeBoardGroup("Sensors", "chkSensor", "Diode%1 Enabled", sensors_, &ControlModel::SetDiode), 1,
                       0);
  boardGrid->addWidget(MakeBoardGroup("Heaters", "chkHeater", "Heater%1 Enabled", heaters_, &ControlModel::SetHeater),
                       1, 1);
  pnlVidBits_ = MakeVidPanel();
  boardGrid->addWidget(pnlVidBits_, 2, 0, 1, 2);
  noBoard_ = new QLabel(noBoardText);
  noBoard_->setObjectName("lblNoBoard");
  noBoard_->setWordWrap(true);
  boardGrid->addWidget(noBoard_, 3, 0, 1, 2);
  vidNotProbed_ = new QLabel("VID drive: not probed. The probe writes switch U3D, which a read-only run leaves alone.");
  vidNotProbed_->setObjectName("lblVidNotProbed");
  vidNotProbed_->setWordWrap(true);
  boardGrid->addWidget(vidNotProbed_, 4, 0, 1, 2);
  boardGrid->setRowStretch(5, 1);
  grid->addWidget(board, 0, 1, 4, 1);
  grid->setColumnStretch(1, 1);
  grid->setRowStretch(4, 1);
  grid->setColumnStretch(2, 1);
  ShowState();
}

QGroupBox* ControlPage::MakeFanGroup() {
  auto* const group = new QGroupBox("Fan Configuration");
  auto* const layout = new QVBoxLayout(group);
  const auto add = [&](const char* name, const QString& caption) {
    auto* const button = new QPushButton(caption);
    button->setObjectName(name);
    layout->addWidget(button);
    return button;
  };
  auto* const temps = add("cmdAuto", "Configure Temps...");
  temps->setEnabled(false);
  temps->setToolTip("Not available yet");
  switchAccess_ = add("cmdSwitchAccess", "Switch Access...");
  fanConfig_ = add("cmdConfigureFans", "Configure Fans...");
  connect(switchAccess_, &QPushButton::clicked, this, &ControlPage::SwitchAccessWanted);
  connect(fanConfig_, &QPushButton::clicked, this, &ControlPage::FanConfigWanted);
  return group;
}

QGroupBox* ControlPage::MakeLaterGroup(const QString& title, const QStringList& captions) {
  auto* const group = new QGroupBox(title);
  auto* const layout = new QVBoxLayout(group);
  for (const QString& caption : captions) {
    auto* const button = new QPushButton(caption);
    button->setEnabled(false);
    button->setToolTip("Not available yet");
    layout->addWidget(button);
  }
  return group;
}

QCheckBox* ControlPage::MakeCheck(QVBoxLayout& layout, const char* name, const QString& caption,
                                  std::function<void(bool)> clicked) {
  auto* const check = new QCheckBox(caption);
  check->setObjectName(name);
  layout.addWidget(check);
  // Clicks only: what a refresh shows must not be written back.
  connect(check, &QCheckBox::clicked, this,
          [this, clicked = std::move(clicked)](bool ticked) { Act([&] { clicked(ticked); }); });
  return check;
}

QRadioButton* ControlPage::MakeOption(QVBoxLayout& layout, const char* name, const QString& caption,
                                      std::function<void()> clicked) {
  auto* const option = new QRadioButton(caption);
  option->setObjectName(name);
  layout.addWidget(option);
  if (clicked) connect(option, &QRadioButton::clicked, this, [this, clicked = std::move(clicked)] { Act(clicked); });
  return option;
}

QGroupBox* ControlPage::MakeThermGroup() {
  auto* const group = new QGroupBox("THERM Setup");
  auto& layout = *new QVBoxLayout(group);
  chkProchot_ = MakeCheck(layout, "chkPROCHOT", "EnableTHERM", [this](bool ticked) { model_.SetTherm(ticked); });
  opt5V_ = MakeOption(layout, "opt5V", "Input on 5V pin", [this] { model_.SetThermPin(true); });
  optTach4_ = MakeOption(layout, "optTach4", "Input on Tach4 pin", [this] { model_.SetThermPin(false); });
  QRadioButton* const prochot = MakeOption(layout, "optPROCHOT", "Enable PROCHOT", nullptr);
  prochot->setEnabled(false);
  prochot->setToolTip("Has no action: EnableTHERM switches the input");
  layout.addStretch();
  return group;
}

QGroupBox* ControlPage::MakeAlertGroup() {
  auto* const group = new QGroupBox("SMBAlert Setup");
  auto& layout = *new QVBoxLayout(group);
  const auto onPwm2 = [this](bool ticked) { model_.SetAlertOnPwm2(ticked); };
  chkAlert_ = MakeCheck(layout, "chkAlert", "Enable Alert", onPwm2);
  chkPwm2Alert_ = MakeCheck(layout, "chkPWM2Alert", "ALERT on PWM2 pin", onPwm2);
  chk25vAlert_ =
      MakeCheck(layout, "chk25vAlert", "ALERT on 2.5V pin", [this](bool ticked) { model_.SetAlertOn25v(ticked); });
  opt25V_ = MakeOption(layout, "opt25V", "Alert on 2.5V pin", [this] { model_.SetAlertOn25v(true); });
  optPwm2_ = MakeOption(layout, "optPWM2", "Alert on PWM2 pin", [this] { model_.SetAlertOn25v(false); });
  return group;
}

QGroupBox* ControlPage::MakeBoardGroup(const QString& title, const char* name, const QString& caption,
                                       std::array<QCheckBox*, 2>& boxes, void (ControlModel::*set)(std::size_t, bool)) {
  auto* const group = new QGroupBox(title);
  auto& layout = *new QVBoxLayout(group);
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    const QByteArray numbered = QByteArray(name) + QByteArray::number(static_cast<int>(i) + 1);
    boxes.at(i) = MakeCheck(layout, numbered.constData(), caption.arg(i + 1),
                            [this, set, i](bool ticked) { (model_.*set)(i, ticked); });
  }
  return group;
}

QWidget* ControlPage::MakeVidPanel() {
  auto* const panel = new QGroupBox("VID Bits");
  panel->setObjectName("pnlVIDBits");
  auto* const row = new QHBoxLayout(panel);
  for (std::size_t i = 0; i < vid_.size(); ++i) {
    auto* const column = new QVBoxLayout;
    row->addLayout(column);
    const QByteArray name = "chkVID_" + QByteArray::number(static_cast<int>(i));
    vid_.at(i) = MakeCheck(*column, name.constData(), QString("VID%1").arg(i),
                           [this, i](bool ticked) { model_.SetVid(i, ticked); });
  }
  row->addStretch();
  return panel;
}

QGroupBox* ControlPage::MakeThermTimeGroup() {
  auto* const group = new QGroupBox("Set THERM# Read Time");
  auto* const row = new QHBoxLayout(group);
  txtProcTime_ = new QLineEdit;
  txtProcTime_->setObjectName("txtProcTime");
  txtProcTime_->setAccessibleName("THERM read time in seconds");
  row->addWidget(txtProcTime_, 1);
  row->addWidget(new QLabel("s"));
  connect(txtProcTime_, &QLineEdit::textEdited, this,
          [this](const QString& text) { model_.SetThermPeriod(text.toStdString()); });
  return group;
}

void ControlPage::Enter() {
  Act([this] { model_.Enter(); });
  txtProcTime_->setText(QString::fromStdString(model_.State().ThermPeriod));
}

void ControlPage::SwitchesChanged() {
  model_.ShowSwitches();
  ShowState();
}

void ControlPage::PinsChanged() {
  model_.ShowPins();
  ShowState();
}

void ControlPage::SetFanDialogAvailable(bool available) {
  fanConfig_->setEnabled(available);
}

void ControlPage::Act(const std::function<void()>& action) {
  RunUserAction(dialogs_, action);
  // Also after a failure: a box that could not be carried out goes back.
  ShowState();
}

void ControlPage::ShowState() {
  const ControlState& state = model_.State();
  Mark(*chkProchot_, state.Therm);
  Mark(*opt5V_, state.ThermOn5v);
  Mark(*optTach4_, state.ThermOnTach4);
  for (QRadioButton* const option : {opt5V_, optTach4_}) option->setEnabled(state.Therm && !readOnly_);
  chkProchot_->setEnabled(!readOnly_);

  Mark(*chkAlert_, state.AlertOnPwm2);
  Mark(*chkPwm2Alert_, state.AlertOnPwm2);
  for (QCheckBox* const check : {chkAlert_, chkPwm2Alert_}) check->setEnabled(!readOnly_);
  Mark(*chk25vAlert_, state.AlertOn25v);
  Mark(*opt25V_, state.AlertOn25v);
  Mark(*optPwm2_, state.NoAlertOn25v);
  chk25vAlert_->setEnabled(state.Alert25vOffered && !readOnly_);
  opt25V_->setEnabled(state.Alert25vOffered && !readOnly_);
  optPwm2_->setEnabled(!readOnly_);  // it clears the bit, whatever the probe found

  const auto show = [&](auto& boxes, const auto& marks) {
    for (std::size_t i = 0; i < boxes.size(); ++i) {
      Mark(*boxes.at(i), marks.at(i));
      boxes.at(i)->setEnabled(state.HasBoard && !readOnly_);
      boxes.at(i)->setToolTip(state.HasBoard ? QString() : noBoardText);
    }
  };
  show(sensors_, state.Diodes);
  show(heaters_, state.Heaters);
  show(vid_, state.Vid);
  pnlVidBits_->setVisible(state.VidShown);
  noBoard_->setVisible(!state.HasBoard);
  vidNotProbed_->setVisible(state.HasBoard && !state.VidProbed);
  switchAccess_->setEnabled(state.HasBoard);
  switchAccess_->setToolTip(state.HasBoard ? QString() : noBoardText);
}

}  // namespace krx
