// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/ui/frmfanconfig.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

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
  Board EvalBoard{Bench.Bus, Flags};
  FanCommon Fans;
  std::array<std::uint8_t, 3> Codes{};
  FanConfig Config{Bench.Bus, EvalBoard, Fans, Codes};
  ScriptedDialogs Dialogs;
  DetectionResult Detected;
  FrmFanConfig Form{Config, Fans, Dialogs, {[this](std::size_t) { return Detected; }, {}}, nullptr};
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

TEST(FrmFanConfig, AChosenItemIsWrittenAndAVisitedTabWithIt) {
  FanDialog dialog;
  dialog.Choose("cmbSpinUp_0", "1 sec");
  dialog.Find<QTabWidget>("tabFans").setCurrentIndex(1);
  ASSERT_TRUE(dialog.Find<QPushButton>("cmdApply").isEnabled());
  dialog.Bench.Traffic();
  dialog.Press("cmdApply");
  const std::string traffic = dialog.Bench.Traffic();
  EXPECT_NE(traffic.find("W5C:65"), std::string::npos) << traffic;
  EXPECT_NE(traffic.find("W65:80"), std::string::npos) << "the second fan's fields as just loaded: " << traffic;
  EXPECT_FALSE(dialog.Find<QPushButton>("cmdApply").isEnabled());
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
}

TEST(FrmFanConfig, ALimitThatIsNoNumberBecomesZero) {
  FanDialog dialog;
  dialog.Type("txtTachLimit_0", "a");
  EXPECT_EQ(dialog.Find<QLineEdit>("txtTachLimit_0").text(), "0");
  dialog.Press("cmdApply");
  EXPECT_EQ(dialog.Bench.Peek(0x55) * 256 + dialog.Bench.Peek(0x54), 0xFFFF);
}

TEST(FrmFanConfig, ADetectionsResultBecomesAPendingEdit) {
  FanDialog dialog;
  dialog.Detected = {25, DetectionEnd::Found, "", {DutyEvidence{}}};
  dialog.Press("cmdAutoDetect_1");
  EXPECT_EQ(dialog.Find<QLineEdit>("txtMinPWM_1").text(), "25");
  EXPECT_TRUE(dialog.Fans.PendingChange.Has(FanSetting::MinimumDuty, 1));

  dialog.Detected = {0, DetectionEnd::NoneFound, "", {}};
  dialog.Press("cmdAutoDetect_1");
  EXPECT_EQ(dialog.Find<QLabel>("lblMinPWMRemark_1").text(), "no tested duty kept the fan running");

  dialog.Detected = {100, DetectionEnd::Absent, "Fan Not Present!", {}};
  dialog.Press("cmdAutoDetect_1");
  EXPECT_EQ(dialog.Find<QLineEdit>("txtMinPWM_1").text(), "0") << "an absent fan leaves the field";
  EXPECT_EQ(dialog.Dialogs.Shown, std::vector<std::string>{"critical|Fan Not Present!|"});
}

}  // namespace
}  // namespace krx
