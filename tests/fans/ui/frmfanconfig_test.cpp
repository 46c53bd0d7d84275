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

#include "support/scripteddialogs.h"
#include "support/testbench.h"

namespace krx {
namespace {

/// The dialog over the simulated board, used through its object names.
struct FanDialog {
  FanDialog() { Form.Open(); }

  template <typename Widget>
  Widget& Find(const char* name) {
    return *Form.findChild<Widget*>(name);
  }
  void Press(const char* name) { Find<QPushButton>(name).click(); }
  void Choose(const char* name, const char* item) {
    auto& list = Find<QComboBox>(name);
    list.setCurrentIndex(list.findText(item));
    emit list.activated(list.currentIndex());
  }
  void Type(const char* name, const char* text) {
    auto& field = Find<QLineEdit>(name);
    field.selectAll();
    QTest::keyClicks(&field, text);
  }

  TestBench Bench;
  BoardState Flags;
  OwedWrites Owed{Bench.Bus};
  Board EvalBoard{Bench.Bus, Flags, Owed};
  FanCommon Fans;
  std::array<std::uint8_t, 3> Codes{};
  FanConfig Config{Bench.Bus, EvalBoard, Fans, Codes};
  ScriptedDialogs Dialogs;
  DetectionResult Detected;
  std::string Warning, StillNotRestored;
  std::vector<std::size_t> Detections, PutBacks;
  FrmFanConfig::Services Services{
      [this](std::size_t index) { return Detections.push_back(index), Detected; }, [this] { return Warning; },
      [this](std::size_t index) { return PutBacks.push_back(index), StillNotRestored; },
      [](const AllFanFields& fields) {
        return QStringList{QString::fromStdString("Min PWM " + fields[0].MinimumDuty), "and more"};
      }};
  FrmFanConfig Form{Config, Fans, Dialogs, Services, nullptr};
};

TEST(FrmFanConfig, ShowsTheChipAndMarksNoEdit) {
  FanDialog dialog;
  EXPECT_EQ(dialog.Find<QComboBox>("cmbFanControl_0").currentText(), "Always On");
  EXPECT_EQ(dialog.Find<QLineEdit>("txtMinPWM_0").text(), "50");
  EXPECT_FALSE(dialog.Find<QPushButton>("cmdApply").isEnabled());
  dialog.Find<QTabWidget>("tabFans").setCurrentIndex(2);
  EXPECT_FALSE(dialog.Find<QPushButton>("cmdApply").isEnabled());
  dialog.Bench.Traffic();
  dialog.Press("cmdOk");
  EXPECT_EQ(dialog.Bench.Traffic(), "") << "nothing to apply";
  EXPECT_FALSE(dialog.Form.isVisible());
}

TEST(FrmFanConfig, AFanTypeThatIsTypedIsNoEdit) {
  FanDialog dialog;
  dialog.Fans.FanLabel[0] = "Fr. Chas.";
  dialog.Form.Open();
  auto& type = dialog.Find<QComboBox>("cmbFanType_0");
  EXPECT_EQ(type.currentText(), "Front Chassis");
  type.lineEdit()->selectAll();
  QTest::keyClicks(type.lineEdit(), "CPU");
  QTest::keyClick(type.lineEdit(), Qt::Key_Return);
  EXPECT_FALSE(dialog.Fans.PendingChange.Has(FanSetting::FanType, 0));
}

TEST(FrmFanConfig, EachControlIsWrittenByApplyAndOkAndByNothingElse) {
  struct Row {
    const char* Control;
    const char* Value;  ///< item or text; nullptr: it is clicked
    const char* Traffic;
  };
  const Row rows[] = {
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
  for (const Row& row : rows) {
    for (const char* const button : {"cmdApply", "cmdOk", "cmdCancel"}) {
      FanDialog dialog;
      auto* const control = dialog.Form.findChild<QWidget*>(row.Control);
      ASSERT_NE(control, nullptr) << row.Control;
      dialog.Find<QTabWidget>("tabFans").setCurrentIndex(QString(row.Control).section('_', 1).left(1).toInt());
      dialog.Bench.BusTraffic();
      if (auto* const clicked = qobject_cast<QAbstractButton*>(control)) {
        clicked->click();
      } else if (qobject_cast<QComboBox*>(control) != nullptr) {
        dialog.Choose(row.Control, row.Value);
      } else {
        dialog.Type(row.Control, row.Value);
      }
      EXPECT_EQ(dialog.Bench.BusTraffic(), "") << row.Control;
      EXPECT_TRUE(dialog.Find<QPushButton>("cmdApply").isEnabled()) << row.Control;
      dialog.Press(button);
      const bool cancelled = button == std::string("cmdCancel");
      EXPECT_EQ(dialog.Bench.BusTraffic(), cancelled ? "" : row.Traffic) << row.Control << ' ' << button;
      EXPECT_EQ(dialog.Form.isVisible(), button == std::string("cmdApply")) << row.Control;
      EXPECT_EQ(dialog.Fans.FanLabel[2] == "Rr. Chas.", !cancelled && row.Control == rows[0].Control);
      EXPECT_EQ(dialog.Fans.ActualPulses[3] == 3, !cancelled && row.Control == std::string("cmbFanIs_3"));
    }
  }
}

TEST(FrmFanConfig, ARefusedValueShowsOneBoxTakesTheFocusAndKeepsTheDialogOpen) {
  FanDialog dialog;
  dialog.Type("txtMinPWM_0", "101");
  dialog.Bench.Traffic();
  dialog.Press("cmdOk");
  EXPECT_EQ(dialog.Dialogs.Shown, std::vector<std::string>{"critical|Invalid Min PWM Value|"});
  EXPECT_EQ(dialog.Bench.Traffic(), "");
  EXPECT_TRUE(dialog.Form.isVisible());
  EXPECT_TRUE(dialog.Find<QPushButton>("cmdApply").isEnabled());
  EXPECT_EQ(dialog.Form.focusWidget(), &dialog.Find<QLineEdit>("txtMinPWM_0"));
  dialog.Type("txtMinPWM_0", "10");
  dialog.Type("txtTachLimit_0", "81");
  dialog.Press("cmdApply");
  EXPECT_EQ(dialog.Form.focusWidget(), &dialog.Find<QLineEdit>("txtTachLimit_0"));
}

TEST(FrmFanConfig, ADetectionsResultIsShownAndWrittenByApply) {
  FanDialog dialog;
  dialog.Detected = {25, DetectionEnd::Found, "", {DutyEvidence{}}, "", {}};
  dialog.Find<QTabWidget>("tabFans").setCurrentIndex(1);
  dialog.Bench.Traffic();
  dialog.Press("cmdAutoDetect_1");
  EXPECT_EQ(dialog.Detections, std::vector<std::size_t>{1});
  EXPECT_EQ(dialog.Find<QLineEdit>("txtMinPWM_1").text(), "25");
  dialog.Press("cmdApply");
  EXPECT_EQ(dialog.Bench.Traffic(), "W65:40");

  dialog.Detected = {0, DetectionEnd::NoneFound, "", {DutyEvidence{}}, "", {}};
  dialog.Press("cmdAutoDetect_1");
  const QLabel& remark = dialog.Find<QLabel>("lblMinPWMRemark_1");
  EXPECT_EQ(remark.text(), "no tested duty kept the fan running");
  dialog.Form.resize(1, 1);
  QCoreApplication::processEvents();
  const QRect room(0, 0, remark.width(), 1000);
  EXPECT_GE(remark.height(), remark.fontMetrics().boundingRect(room, Qt::TextWordWrap, remark.text()).height());

  dialog.Detected = {100, DetectionEnd::Absent, "Fan Not Present!", {}, "", {}};
  dialog.Press("cmdAutoDetect_1");
  EXPECT_EQ(dialog.Find<QLineEdit>("txtMinPWM_1").text(), "0") << "an absent fan leaves the field";
  EXPECT_EQ(dialog.Dialogs.Shown, std::vector<std::string>{"critical|Fan Not Present!|"});
  dialog.Press("cmdAutoDetect_3");
  EXPECT_EQ(dialog.Dialogs.Shown.back(), "information|Fan 4 has no PWM output of its own: there is nothing to detect|");
  EXPECT_EQ(dialog.Detections.size(), 3U);
}

TEST(FrmFanConfig, ADetectionWithoutTemperaturesAsksFirst) {
  FanDialog dialog;
  dialog.Warning = "Temperatures are not measured: monitoring is off";
  dialog.Press("cmdAutoDetect_0");
  EXPECT_EQ(dialog.Detections.size(), 0U);
  dialog.Dialogs.Yes = true;
  dialog.Press("cmdAutoDetect_0");
  EXPECT_EQ(dialog.Detections.size(), 1U);
  EXPECT_EQ(dialog.Dialogs.Shown, std::vector<std::string>(2, "ask|" + dialog.Warning + "|Continue"));
}

TEST(FrmFanConfig, AnOutputThatCouldNotBePutBackIsSaidAndTriedAgainAsOftenAsAsked) {
  FanDialog dialog;
  int faults = 0;
  dialog.Dialogs.LinkFault = [&](const CommsError&) { ++faults; };
  dialog.Detected = {100, DetectionEnd::LinkFault, "Error: 57", {}, "PWM1 stands", CommsError(57, "")};
  dialog.StillNotRestored = "still";
  dialog.Dialogs.WhileOpen = [&] { dialog.Dialogs.Yes = dialog.PutBacks.size() < 2; };
  dialog.Press("cmdAutoDetect_0");
  EXPECT_EQ(dialog.Dialogs.Shown, (std::vector<std::string>{"ask|Error: 57\n\nPWM1 stands|Try again",
                                                            "ask|still|Try again", "ask|still|Try again"}));
  EXPECT_EQ(dialog.PutBacks, (std::vector<std::size_t>{0, 0}));
  EXPECT_EQ(faults, 1);
  dialog.StillNotRestored = "";
  dialog.PutBacks.clear();
  dialog.Press("cmdAutoDetect_0");
  EXPECT_EQ(dialog.Dialogs.Shown.size(), 4U) << "it is back, there is no more to ask";
}

TEST(FrmFanConfig, ShowWritesListsWhatApplyWouldWriteAndWritesNothing) {
  FanDialog dialog;
  EXPECT_FALSE(dialog.Find<QPushButton>("cmdShowWrites").isEnabled());
  dialog.Type("txtMinPWM_0", "40");
  dialog.Bench.BusTraffic();
  QString listed;
  QTimer::singleShot(0, [&] {
    QWidget* const view = QApplication::activeModalWidget();
    listed = view->findChild<QPlainTextEdit*>("txtWrites")->toPlainText();
    view->findChild<QPushButton*>()->click();
  });
  dialog.Press("cmdShowWrites");
  EXPECT_EQ(listed, "Min PWM 40\nand more");
  EXPECT_EQ(dialog.Bench.BusTraffic(), "");
}

TEST(FrmFanConfig, EvidenceIsSavedUnderItsFan) {
  FanDialog dialog;
  const QTemporaryDir directory;
  const std::string file = directory.filePath("evidence.txt").toStdString();
  dialog.Detected = {100, DetectionEnd::Cancelled, "", {DutyEvidence{}}, "", {}};
  EXPECT_FALSE(dialog.Find<QPushButton>("cmdSaveEvidence_2").isVisibleTo(&dialog.Form));
  dialog.Find<QTabWidget>("tabFans").setCurrentIndex(2);
  dialog.Press("cmdAutoDetect_2");
  EXPECT_TRUE(dialog.Find<QPushButton>("cmdSaveEvidence_2").isVisibleTo(&dialog.Form));
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
