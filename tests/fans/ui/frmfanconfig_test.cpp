// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/ui/frmfanconfig.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <fstream>

#include "link/registeraccess.h"
#include "support/fanbench.h"
#include "support/scripteddialogs.h"
#include "support/words.h"

namespace krx {
namespace {

using Shown = std::vector<std::string>;

/// The dialog over the simulated board, used through its object names.
struct FanDialog : FanBench {
  FanDialog() {
    Fans.PulsesKnown = false;  // the first load takes them
    Form.Open();
    BusTraffic();
  }

  template <typename Widget>
  Widget& Find(const char* name) {
    return *Form.findChild<Widget*>(name);
  }
  void Press(const char* name) { Find<QPushButton>(name).click(); }
  void ShowTab(int fan) { Find<QTabWidget>("tabFans").setCurrentIndex(fan); }
  QString Line(const char* name) { return Find<QLineEdit>(name).text(); }
  bool Enabled(const char* name) { return Find<QWidget>(name).isEnabled(); }
  /// Chooses an item, types a text or, without either, clicks.
  void Use(const char* name, const char* value = nullptr) {
    if (auto* const list = Form.findChild<QComboBox*>(name)) {
      list->setCurrentIndex(list->findText(value));
      emit list->activated(list->currentIndex());
    } else if (auto* const field = Form.findChild<QLineEdit*>(name)) {
      field->selectAll();
      QTest::keyClicks(field, value);
    } else {
      Find<QAbstractButton>(name).click();
    }
  }

  ScriptedDialogs Dialogs;
  DetectionResult Detected;
  FanReading Measured;
  std::string Warning, StillNotRestored;
  std::vector<std::size_t> Detections, PutBacks;
  FrmFanConfig::Services Services{
      [this](std::size_t index) { return Detections.push_back(index), Detected; }, [this] { return Warning; },
      [this](std::size_t index) { return PutBacks.push_back(index), StillNotRestored; },
      [](const AllFanFields& fields) {
        return QStringList{QString::fromStdString("Min PWM " + fields[0].MinimumDuty), "and more"};
      },
      [this](std::size_t) { return Measured; }};
  FrmFanConfig Form{Config, Fans, Dialogs, Services, nullptr};
};

TEST(FrmFanConfig, ShowsTheChipAndMarksNoEditNotEvenOfATypedFanType) {
  FanDialog dialog;
  EXPECT_EQ(dialog.Line("txtMinPWM_0"), "50");
  dialog.Fans.FanLabel[2] = "Fr. Chas.";
  dialog.Poke("5E:1A 73:04");
  dialog.ShowTab(2);
  EXPECT_EQ(dialog.Find<QComboBox>("cmbFanControl_2").currentText(), "Remote1 Control");
  for (const char* const mark : {"chkHysteresis_2", "chkActiveHigh_2", "opt2Wire_2"}) {
    EXPECT_TRUE(dialog.Find<QAbstractButton>(mark).isChecked()) << mark;
  }
  auto& type = dialog.Find<QComboBox>("cmbFanType_2");
  EXPECT_EQ(type.currentText(), "Front Chassis");
  type.lineEdit()->selectAll();
  QTest::keyClicks(type.lineEdit(), "CPU");
  QTest::keyClick(type.lineEdit(), Qt::Key_Return);
  for (const char* const button : {"cmdApply", "cmdShowWrites"}) EXPECT_FALSE(dialog.Enabled(button));
  dialog.BusTraffic();
  dialog.Press("cmdOk");
  EXPECT_EQ(dialog.BusTraffic(), "") << "nothing to apply";
  EXPECT_FALSE(dialog.Form.isVisible());
}

TEST(FrmFanConfig, EachControlIsWrittenByApplyAndOkAndByNothingElse) {
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {"cmbFanType_2", "Rear Chassis", ""},
      {"cmbFanControl_0", "Remote2 Control", "R5C W5C:42"},
      {"cmbSpinUp_1", "4 sec", "R5D W5D:67"},
      {"cmbPWMFrequency_2", "11 Hz", "R61 W61:C0"},
      {"txtMinPWM_1", "40", "W65:66"},
      {"txtMinPWM_2Up", nullptr, "W66:82"},
      {"txtMinPWM_0Down", nullptr, "W64:7D"},
      {"chkHysteresis_2", nullptr, "R62 W62:80"},
      {"chkActiveHigh_0", nullptr, "R5C W5C:72"},
      {"chkAcoustics_1", nullptr, "R63 W63:80"},
      {"cmbRampRate_2", "24", "R63 W63:06"},
      {"txtTachLimit_3", "1000", "W5B:2A W5A:30"},  // two pulses are programmed
      {"txtTachLimit_1", "a", "W57:FF W56:FF"},
      {"opt2Wire_0", nullptr, "R73 W73:01 V90 S90:05"},
      {"opt3Wire_3", nullptr, "R73 W73:00 V92 S92:40"},
      {"cmbFanIs_3", "3", ""},
      {"cmbMeasure_3", "4", "R7B W7B:D5"},
  };
  for (const auto& [control, value, traffic] : rows) {
    for (const std::string button : {"cmdApply", "cmdOk", "cmdCancel"}) {
      FanDialog dialog;
      dialog.ShowTab(QString(control).section('_', 1).left(1).toInt());
      dialog.BusTraffic();
      dialog.Use(control, value);
      EXPECT_EQ(dialog.BusTraffic(), "") << control;
      EXPECT_TRUE(dialog.Enabled("cmdApply")) << control;
      EXPECT_EQ(dialog.Find<QAbstractButton>("chkAcoustics_1").text(), "Enable Enhanced Acoustics on PWM2");
      dialog.Press(button.c_str());
      const bool cancelled = button == "cmdCancel";
      EXPECT_EQ(dialog.BusTraffic(), cancelled ? "" : traffic) << control << ' ' << button;
      EXPECT_EQ(dialog.Form.isVisible(), button == "cmdApply") << control;
      EXPECT_EQ(dialog.Fans.FanLabel[2] == "Rr. Chas.", !cancelled && control == std::get<0>(rows[0]));
      EXPECT_EQ(dialog.Fans.ActualPulses[3] == 3, !cancelled && control == std::string("cmbFanIs_3"));
    }
  }
}

TEST(FrmFanConfig, ARefusedValueShowsOneBoxTakesTheFocusAndKeepsTheDialogOpen) {
  FanDialog dialog;
  dialog.Use("txtMinPWM_0", "101");
  dialog.Press("cmdOk");
  EXPECT_EQ(dialog.Dialogs.Shown, Shown{"critical|Invalid Min PWM Value|"});
  EXPECT_EQ(dialog.BusTraffic(), "");
  EXPECT_TRUE(dialog.Form.isVisible() && dialog.Enabled("cmdApply"));
  EXPECT_EQ(dialog.Form.focusWidget(), &dialog.Find<QLineEdit>("txtMinPWM_0"));
  dialog.Use("txtMinPWM_0", "10");
  dialog.Use("txtTachLimit_0", "81");
  dialog.ShowTab(1);
  dialog.Press("cmdApply");
  EXPECT_EQ(dialog.Find<QTabWidget>("tabFans").currentIndex(), 0);
  EXPECT_EQ(dialog.Form.focusWidget(), &dialog.Find<QLineEdit>("txtTachLimit_0"));
}

TEST(FrmFanConfig, ADetectionsResultIsShownAndWrittenByApply) {
  FanDialog dialog;
  auto& remark = dialog.Find<QLabel>("lblMinPWMRemark_1");
  QString notice;
  QObject::connect(&dialog.Form, &FrmFanConfig::Notice, [&](const QString& text) { notice = text; });
  dialog.Detected = {25, DetectionEnd::Found, "", {DutyEvidence{}}, "", {}};
  dialog.ShowTab(1);
  dialog.BusTraffic();
  dialog.Press("cmdAutoDetect_1");
  EXPECT_EQ(dialog.Detections, std::vector<std::size_t>{1});
  EXPECT_EQ(dialog.Line("txtMinPWM_1"), "25");
  EXPECT_EQ(remark.text(), "25 % found and entered");
  EXPECT_FALSE(remark.isHidden());
  EXPECT_EQ(dialog.Find<QWidget>("txtMinPWM_1").accessibleDescription(), remark.text()) << "for a screen reader";
  EXPECT_EQ(notice, "Fan 2: 25 % found and entered");
  dialog.Press("cmdApply");
  EXPECT_EQ(dialog.BusTraffic(), "W65:40");

  dialog.Detected = {0, DetectionEnd::NoneFound, "", {DutyEvidence{}}, "", {}};
  dialog.Press("cmdAutoDetect_1");
  EXPECT_EQ(remark.text(), "no tested duty kept the fan running");
  EXPECT_FALSE(remark.isHidden());
  EXPECT_EQ(Flaws(dialog.Form), "");
  dialog.Form.resize(1, 1);
  QCoreApplication::processEvents();
  const QRect room(0, 0, remark.width(), 1000);
  EXPECT_GE(remark.height(), remark.fontMetrics().boundingRect(room, Qt::TextWordWrap, remark.text()).height());

  dialog.Detected = {100, DetectionEnd::Absent, "Fan Not Present!", {}, "", {}};
  dialog.Press("cmdAutoDetect_1");
  EXPECT_EQ(dialog.Line("txtMinPWM_1"), "0") << "an absent fan leaves the field";
  dialog.Press("cmdAutoDetect_3");
  EXPECT_EQ(dialog.Dialogs.Shown,
            (Shown{"critical|Fan Not Present!|",
                   "information|Fan 4 has no PWM output of its own: there is nothing to detect|"}));
  EXPECT_EQ(dialog.Detections.size(), 3U);
  dialog.Use("txtMinPWM_1", "7");
  EXPECT_TRUE(remark.isHidden());
}

TEST(FrmFanConfig, TheHeadShowsWhatTheFanDoesAndFieldsOfAColumnAreEquallyWide) {
  FanDialog dialog;
  const auto text = [&](const char* name) { return dialog.Find<QLabel>(name).text().toStdString(); };
  EXPECT_EQ(text("lblSpeed_0") + text("lblDuty_0"), "––") << "nothing was measured";
  dialog.Measured = {"2637 RPM", "88 %", true};
  dialog.BusTraffic();
  dialog.Form.ShowReadings();
  EXPECT_EQ(dialog.BusTraffic(), "");
  EXPECT_EQ(text("lblSpeed_0") + text("lblDuty_0"), "2637 RPM88 %");
  EXPECT_EQ(dialog.Find<QLabel>("lblSpeed_0").accessibleName(), "Speed 2637 RPM, old");
  EXPECT_EQ(dialog.Find<QLabel>("lblSpeed_0").foregroundRole(), QPalette::PlaceholderText);
  EXPECT_TRUE(dialog.Find<QLabel>("lblDuty_3").isHidden()) << "fan 4 has no output";
  for (const char* const field : {"cmbFanControl_0", "cmbSpinUp_0", "cmbRampRate_0"})
    EXPECT_EQ(dialog.Find<QWidget>(field).width(), dialog.Find<QWidget>("cmbFanType_0").width()) << field;
}

TEST(FrmFanConfig, ADetectionWithoutTemperaturesAsksFirst) {
  FanDialog dialog;
  dialog.Warning = "Temperatures are not measured: monitoring is off";
  for (const bool yes : {false, true}) {
    dialog.Dialogs.Yes = yes;
    dialog.Press("cmdAutoDetect_0");
    EXPECT_EQ(dialog.Detections.size(), yes ? 1U : 0U);
  }
  EXPECT_EQ(dialog.Dialogs.Shown, Shown(2, "ask|" + dialog.Warning + "|Continue"));
}

TEST(FrmFanConfig, AnOutputThatCouldNotBePutBackIsSaidAndTriedAgainAsOftenAsAsked) {
  FanDialog dialog;
  int faults = 0;
  dialog.Dialogs.LinkFault = [&](const CommsError&) { ++faults; };
  dialog.Detected = {100, DetectionEnd::LinkFault, "Error: 57", {}, "PWM1 stands", CommsError(57, "")};
  dialog.StillNotRestored = "still";
  dialog.Dialogs.WhileOpen = [&] { dialog.Dialogs.Yes = dialog.PutBacks.size() < 2; };
  dialog.Press("cmdAutoDetect_0");
  EXPECT_EQ(dialog.Dialogs.Shown,
            (Shown{"ask|Error: 57\n\nPWM1 stands|Try again", "ask|still|Try again", "ask|still|Try again"}));
  EXPECT_EQ(dialog.PutBacks, (std::vector<std::size_t>{0, 0}));
  EXPECT_EQ(faults, 1);
  dialog.StillNotRestored = "";
  dialog.PutBacks.clear();
  dialog.Press("cmdAutoDetect_0");
  EXPECT_EQ(dialog.Dialogs.Shown.size(), 4U) << "it is back, there is no more to ask";
}

TEST(FrmFanConfig, ShowWritesListsWhatApplyWouldWriteAndWritesNothing) {
  FanDialog dialog;
  dialog.Use("txtMinPWM_0", "40");
  QString listed;
  QTimer::singleShot(0, [&] {
    QWidget* const view = QApplication::activeModalWidget();
    listed = view->findChild<QPlainTextEdit*>("txtWrites")->toPlainText();
    view->findChild<QPushButton*>()->click();
  });
  dialog.Press("cmdShowWrites");
  EXPECT_EQ(listed, "Min PWM 40\nand more");
  EXPECT_EQ(dialog.BusTraffic(), "");
}

TEST(FrmFanConfig, WhatCannotBeReadOrMayNotBeWrittenIsNotOfferedAndRenewFollowsTheBus) {
  FanDialog dialog;
  dialog.FailTransfer(1);
  dialog.ShowTab(1);
  EXPECT_FALSE(dialog.Enabled("txtMinPWM_1"));
  for (const int tab : {0, 1}) dialog.ShowTab(tab);
  EXPECT_TRUE(dialog.Enabled("txtMinPWM_1")) << "shown again it is read again";
  WriteByte(dialog.Bus, 0x64, 0xFF);
  WriteByte(dialog.Bus, 0x65, 0xFF);
  dialog.BusTraffic();
  dialog.Form.Renew();
  EXPECT_EQ(dialog.BusTraffic(), "");
  EXPECT_EQ(dialog.Line("txtMinPWM_0") + dialog.Line("txtMinPWM_1"), "100100");
  dialog.Use("txtMinPWM_0Up");
  EXPECT_EQ(dialog.Line("txtMinPWM_0"), "100");
  dialog.Form.SetReadOnly(true);
  dialog.ShowTab(2);
  for (const char* const field : {"txtMinPWM_0", "txtMinPWM_2"}) EXPECT_FALSE(dialog.Enabled(field)) << field;
}

TEST(FrmFanConfig, EvidenceIsSavedUnderItsFan) {
  FanDialog dialog;
  const QTemporaryDir directory;
  const std::string file = directory.filePath("evidence.txt").toStdString();
  dialog.Detected = {100, DetectionEnd::Cancelled, "", {DutyEvidence{}}, "", {}};
  dialog.ShowTab(2);
  EXPECT_TRUE(dialog.Find<QWidget>("cmdSaveEvidence_2").isHidden());
  dialog.Press("cmdAutoDetect_2");
  EXPECT_FALSE(dialog.Find<QWidget>("cmdSaveEvidence_2").isHidden());
  dialog.Dialogs.Files = {file};
  dialog.Press("cmdSaveEvidence_2");
  EXPECT_EQ(dialog.Dialogs.Shown.back(), "save|Text Files (*.txt)|*.txt|fan3-minimum-pwm.txt");
  std::ifstream saved(file);
  std::string heading;
  std::getline(saved, heading);
  EXPECT_EQ(heading, "Minimum PWM of fan 3: cancelled");
}

}  // namespace
}  // namespace krx
