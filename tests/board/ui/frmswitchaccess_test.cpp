// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/ui/frmswitchaccess.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include "board/switches.h"
#include "board/ui/switchsymbol.h"
#include "controls/ui/palette.h"
#include "support/boardbench.h"
#include "support/scripteddialogs.h"
#include "support/words.h"

namespace krx {
namespace {

struct SwitchDialog : BoardBench {
  explicit SwitchDialog(bool readOnly) : Form(Eval, Dialogs, readOnly, nullptr) {
    Bus.WritesHeldBack = readOnly;
    Eval.SwitchesChanged = [this] { Form.ShowLamps(); };
  }
  QPushButton& Button(const std::string& name) { return *Form.findChild<QPushButton*>(QString::fromStdString(name)); }
  QLabel& Label(const std::string& name) {
    return *Form.findChild<QLabel*>(QString::fromStdString("lmpSwitch" + name));
  }
  std::string Lamp(const std::string& name) { return Label(name).text().toStdString(); }
  ScriptedDialogs Dialogs;
  FrmSwitchAccess Form;
};

TEST(FrmSwitchAccess, ReadsTheBoardTogglesWholeBytesAndFollowsOtherWriters) {
  SwitchDialog dialog(false);
  dialog.Form.Open();
  EXPECT_EQ(dialog.BusTraffic(), "V96 V94 V90 V92 V90 V92 V94 V96");
  EXPECT_EQ(dialog.Lamp("U4E"), "closed");

  std::array<int, 4> bytes{0x00, 0x3F, 0x00, 0x00};
  for (std::size_t device = 0; device < 4; ++device) {
    for (int bit = 0; bit < 8; ++bit) {
      const std::string name = fmt::format("U{}{:c}", device + 3, 'A' + bit);
      bytes[device] ^= 1 << bit;
      dialog.Button("cmdSwitch" + name).click();
      EXPECT_EQ(dialog.BusTraffic(),
                fmt::format("S96:{:02X} S94:{:02X} S90:{:02X} S92:{:02X}", bytes[0], bytes[1], bytes[2], bytes[3]))
          << name;
      const bool closed = (bytes[device] >> bit & 1) != 0;
      EXPECT_EQ(dialog.Lamp(name), closed ? "closed" : "open") << name;
      EXPECT_EQ(dialog.Label(name).foregroundRole(), closed ? okRole : badRole) << name;
      EXPECT_EQ(dialog.Label(name).accessibleName().toStdString(), name + (closed ? " closed" : " open"));
    }
  }
  dialog.Button("cmdReadAll").click();
  EXPECT_EQ(dialog.BusTraffic(), "V96 V94 V90 V92");
  WriteSwitchDevice(dialog.Eval, 0, 0x04);
  EXPECT_EQ(dialog.Lamp("U5A"), "open");
  dialog.FailTransfer(1);
  dialog.Button("cmdReadAll").click();
  EXPECT_EQ(dialog.Dialogs.Shown.size(), 1U);
  EXPECT_EQ(dialog.Lamp("U5A"), "open") << "what could not be read stays as it was known";

  SwitchSymbol symbol(0);
  symbol.show();
  EXPECT_TRUE(Repaints(symbol, [&] { symbol.SetState(LampState::Closed); }));
  EXPECT_EQ(Flaws(dialog.Form), "");
  EXPECT_LE(dialog.Form.minimumSizeHint().width(), dialog.Form.fontMetrics().height() * 73) << "fits 1024 pixels";
  // Without its colour a lamp still differs in every state.
  const auto shape = [](LampState state) {
    SwitchLamp lamp(state);
    lamp.resize(20, 20);
    QImage image(lamp.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    lamp.render(&image, {}, {}, {});
    return image.createAlphaMask();
  };
  EXPECT_NE(shape(LampState::Closed), shape(LampState::Open));
  EXPECT_NE(shape(LampState::NotRead), shape(LampState::Open));
  dialog.Form.close();
  EXPECT_FALSE(dialog.Form.isVisible());
  dialog.Form.Open();
  QTest::keyClick(&dialog.Form, Qt::Key_Escape);
  EXPECT_FALSE(dialog.Form.isVisible());
}

TEST(FrmSwitchAccess, AReadOnlyRunShowsTheSwitchesThatAreNotTheOnesWanted) {
  SwitchDialog dialog(true);
  WriteSwitchDevice(dialog.Eval, 0, 0x02);
  dialog.Eval.Device(SwitchDevice::U5).SetStatusByte(0x05);
  dialog.Form.ShowLamps();
  EXPECT_EQ(dialog.Lamp("U5A"), "not read");
  EXPECT_FALSE(dialog.Button("cmdSwitchU5A").isEnabled());
  dialog.Form.Open();
  dialog.Eval.Device(SwitchDevice::U5).SetStatus(0, true);
  dialog.Form.ShowLamps();
  EXPECT_EQ(dialog.Lamp("U5A"), "open");
  EXPECT_EQ(dialog.Lamp("U5B"), "closed");
}

}  // namespace
}  // namespace krx
