// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/ui/frmautodetect.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "support/livebench.h"

namespace krx {
namespace {

TEST(FrmAutoDetect, CancelEndsTheRunAndPutsTheConfigurationBackWhileTimersWait) {
  LiveBench bench;
  LiveBench::Run(1100);  // the chip's first count of the tachometers
  int ticks = 0;
  ChipTimer timer(bench.Turns, "other", 10, [&] { ++ticks; });
  timer.Start();
  const std::uint8_t before = bench.Sim.SmbusChip().Peek(0x5C);
  OwedWrites owed(bench.Bus);
  const FanCommon fans;
  FrmAutoDetect form(bench.Bus, owed, fans, bench.Turns, 1, nullptr);
  QTimer::singleShot(300, &form, [&] { form.findChild<QPushButton*>("cmdCancel")->click(); });
  const DetectionResult result = form.Run(0);
  EXPECT_EQ(result.End, DetectionEnd::Cancelled);
  EXPECT_EQ(ticks, 0) << "no other handler has the chip meanwhile";
  EXPECT_EQ(bench.Sim.SmbusChip().Peek(0x5C), before);
  EXPECT_FALSE(form.isVisible());

  bool shown = false;
  QTimer::singleShot(300, &form, [&] {
    QTest::keyClick(&form, Qt::Key_Escape);
    form.close();
    shown = form.isVisible();
  });
  EXPECT_EQ(form.Run(0).End, DetectionEnd::Cancelled);
  EXPECT_TRUE(shown) << "it keeps input from the other windows until the output is as it was";
  EXPECT_FALSE(form.isVisible());
  LiveBench::Run(50);
  EXPECT_GT(ticks, 0);

  FrmAutoDetect patient(bench.Bus, owed, fans, bench.Turns, 1, nullptr);
  EXPECT_TRUE(static_cast<DetectionMonitor&>(patient).Wait(0.01)) << "nobody cancelled it";
  static_cast<DetectionMonitor&>(form).Show({15, 12.5, 40, 1200, 119.2, 2.5});
  const auto text = [&](const char* name) { return form.findChild<QLabel*>(name)->text().toStdString(); };
  EXPECT_EQ(text("lblChecking"), "Checking PWM =15%");
  EXPECT_EQ(text("lblSpeed"), "Speed: 1200 RPM, waiting for standstill, 3 s left");
  EXPECT_EQ(text("lblRemaining"), "At most 2:00 min remaining");
  EXPECT_EQ(form.findChild<QProgressBar*>("prgReadings")->value(), 40);
}

}  // namespace
}  // namespace krx
