// SPDX-License-Identifier: GPL-3.0-or-later
// The main window on the live event pump over the SMBus, where boxes, held input and turns meet.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTest>
#include <QWindow>
#include <regex>

#include "console/ui/mainform.h"
#include "console/workbench.h"
#include "controls/ui/dutyslider.h"
#include "controls/ui/gateddialogs.h"
#include "link/busjournal.h"
#include "simulator/simwords.h"
#include "support/livebench.h"

namespace krx {
namespace {

struct LiveConsole : LiveBench {
  LiveConsole() {
    Sim.SmbusChip().Poke(0x40, 0x01);
    Sim.SmbusChip().Poke(0x5C, 0xE2);  // PWM1 by hand
    Sim.SmbusChip().Poke(0x30, 0x00);
    Form.SetWaitBudget(&Pump);
    Form.Start();
    Form.SelectTab(MainForm::VisualDisplay);
    Sim.Trace().Clear();
  }

  std::string Text(const char* label) { return Form.findChild<QLabel*>(label)->text().toStdString(); }
  int Writes() {
    const auto& transfers = Sim.Trace().Transfers();
    return static_cast<int>(std::ranges::count(transfers, Operation::WriteByteData, &Transfer::Op));
  }
  template <class Condition>
  bool Wait(Condition condition, int milliseconds = 5000) {
    QElapsedTimer time;
    for (time.start(); time.elapsed() < milliseconds && !condition();) Run(5);
    return condition();
  }

  BusJournal Journal{Time};
  QtUserDialogs Boxes;
  GatedDialogs Gate{Boxes, Pump, [this] { return Bus.TransferInProgress() || Turns.TurnRunning(); }};
  Workbench Bench{Bus};
  MainForm Form{Bench, Turns, Gate, Journal, {"Simulated board"}};
};

QPoint GrooveEnd(DutySlider& slider) {
  QStyleOptionSlider option;
  option.initFrom(&slider);
  const QRect groove = slider.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, &slider);
  return slider.mapTo(slider.window(), QPoint(groove.right() - 3, slider.height() / 2));
}

TEST(MainFormLive, AHeldGrooveWritesBetweenTicksAndNotBehindTheBoxOfAFailedWrite) {
  LiveConsole console;
  auto& slider = *console.Form.findChild<DutySlider*>();
  ASSERT_TRUE(slider.isVisible());
  ASSERT_TRUE(console.Wait([&] { return slider.value() == 0; })) << slider.value();
  int moved = 0;
  int inside = 0;
  QObject::connect(&slider, &DutySlider::ValueMoving, [&] {
    ++moved;
    inside += console.Bus.TransferInProgress() || console.Turns.TurnRunning() ? 1 : 0;
  });
  console.Sim.AddFault(*ParseFault("fail=5,op=write,reg=30"));

  // The box is the toolkit's; it takes the release, as a real one does.
  int boxes = 0;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, [&] {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr || console.Bus.TransferInProgress()) return;
    watch.stop();
    ++boxes;
    EXPECT_EQ(console.Writes(), 5);
    QTest::mouseRelease(box->windowHandle(), Qt::LeftButton, {}, QPoint(2, 2));
    LiveBench::Run(400);
    EXPECT_EQ(console.Writes(), 5);
    box->accept();
  });
  watch.start(20);

  QTest::mousePress(console.Form.windowHandle(), Qt::LeftButton, {}, GrooveEnd(slider));
  EXPECT_TRUE(console.Wait([&] { return boxes > 0; }));
  LiveBench::Run(400);
  EXPECT_EQ(boxes, 1);
  EXPECT_EQ(inside, 0);
  EXPECT_EQ(moved, 5) << "the press, and four repeats up to the failing one";
  EXPECT_EQ(console.Writes(), 5);

  // Between two writes there are whole ticks only; each begins with the fraction of a temperature.
  console.Form.close();
  const std::string traffic = console.Sim.Trace().Text(TraceFilter::Registers) + " ";
  const std::regex tick(
      "R77 (R26 |R25 |R27 )(R2[8-F] ){2}R7[67] R2[0-4] R41 R42 R3[0-2] R6[DE] R6[789] R3[345] "
      "(R79 R78 (R7D )?)?|W30:[0-9A-F]{2}!? ");
  EXPECT_EQ(std::regex_replace(traffic, tick, ""), "") << traffic;
}

TEST(MainFormLive, ABusThatFailsIsReadEverMoreSeldomAndAtOnceAgainWhenItAnswers) {
  LiveConsole console;
  console.Sim.AddFault(*ParseFault("fail=1+"));
  LiveBench::Run(1000);
  // 0, 10, 110, 310, 710 ms, and some time for each transfer.
  EXPECT_LE(console.Sim.Trace().Transfers().size(), 16U);
  EXPECT_TRUE(console.Wait([&] { return console.Text("lblCycle").find("The bus fails") != std::string::npos; }))
      << console.Text("lblCycle");
  console.Sim.ClearFaults();
  EXPECT_TRUE(console.Wait([&] { return console.Text("lblCycle").find("Monitoring") != std::string::npos; }));
  console.Sim.Trace().Clear();
  LiveBench::Run(300);
  EXPECT_GE(console.Sim.Trace().Transfers().size(), 20U);
}

}  // namespace
}  // namespace krx
