// SPDX-License-Identifier: GPL-3.0-or-later
// The program's start-up order and its main window on the live event pump with the SMBus, where every transfer handles
// events.
#include "console/ui/consolerun.h"

#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>
#include <csignal>
#include <regex>

#include "controls/ui/dutyslider.h"
#include "link/linux/fakekernel.h"
#include "link/linux/linuxcomms.h"
#include "link/ui/initform.h"
#include "simulator/simcomms.h"
#include "simulator/simwords.h"
#include "support/livebench.h"

namespace krx {
namespace {

/// A run of the program with the toolkit's own boxes. `Step` is called every few milliseconds, boxes or not, until the
/// program has ended.
struct RunBench {
  explicit RunBench(const std::string& fault, bool wizard = false) {
    if (!fault.empty()) Sim.AddFault(*ParseFault(fault));
    if (!wizard) Options.Connect = SearchMedia{.Smbus = true};
  }

  int Run() {
    QElapsedTimer time;
    time.start();
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
      if (time.elapsed() > 20'000) QApplication::exit(3);  // otherwise it would never end
      Step();
    });
    watch.start(5);
    const int result = ConsoleRun(*qApp, Time, Boxes, Medium, Options).Run();
    QCoreApplication::removePostedEvents(qApp, QEvent::Quit);  // requested twice; the next test's loop must continue
    return result;
  }

  static QMessageBox* Box() { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }
  static InitForm* Wizard() {
    for (QWidget* const widget : QApplication::topLevelWidgets())
      if (auto* const wizard = qobject_cast<InitForm*>(widget); wizard != nullptr && wizard->isVisible()) return wizard;
    return nullptr;
  }
  /// The text of a label of the main window; empty while there is none.
  static std::string Text(const char* label) {
    for (const QWidget* const widget : QApplication::topLevelWidgets())
      if (const auto* const found = widget->findChild<QLabel*>(label)) return found->text().toStdString();
    return {};
  }
  /// Presses the buttons up to the chip on the SMBus, each from the event loop like a user.
  void Press(InitForm& wizard) {
    wizard.findChild<QCheckBox*>("PPCheck")->setChecked(false);
    for (const char* const name : {"FinishCMD", "NextCMD"}) {
      auto* const button = wizard.findChild<QPushButton*>(name);
      if (finished_ || !button->isEnabled()) continue;
      finished_ = button->objectName() == "FinishCMD";
      QMetaObject::invokeMethod(button, &QPushButton::click, Qt::QueuedConnection);
    }
  }
  void PressAgain() { finished_ = false; }
  std::size_t Transfers() { return Sim.Trace().Transfers().size(); }

  SystemClock Time;
  Simulation Sim{Time, {}};
  QtUserDialogs Boxes;
  ConsoleMedium Medium{[this] { return Sim.MakeCommsModule(); }, "Simulated board", "it was chosen", true, 1};
  ConsoleRunOptions Options;
  std::function<void()> Step;

 private:
  bool finished_ = false;
};

TEST(ConsoleRun, AStartUpFailureIsOneBoxWhileTheCycleRunsAndASignalEndsBoth) {
  const struct {
    const char* Fault;
    bool Wizard;
    const char *FirstLine, *LastLine;
    bool Cycle;  ///< not without the byte that says whether the chip monitors
  } rows[] = {
      {"fail=1+,reg=5D", true, "PWM2 behaviour: ", "PWM2 behaviour: ", true},
      {"fail=1+,reg=40", false, "Power mode: ", "", false},
      {"fail=5+", false, "Programmed pulses: ", "", false},  // and all later ones: monitoring, the first page
      {"fail=5+", true, "Programmed pulses: ", "", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.Fault) + (row.Wizard ? " by the wizard" : ""));
    RunBench bench(row.Fault, row.Wizard);
    QStringList lines;
    int boxes = 0;
    const QMessageBox* box = nullptr;
    std::size_t atOpening = 0;
    QElapsedTimer open;
    bool wizardStays = false;
    bench.Step = [&] {
      auto* const wizard = RunBench::Wizard();
      if (RunBench::Box() != std::exchange(box, RunBench::Box()) && box != nullptr) {
        if (++boxes > 1) return;
        lines = box->text().split('\n');
        atOpening = bench.Transfers();
        open.start();
      }
      if (!open.isValid()) {
        if (wizard != nullptr) bench.Press(*wizard);
        return;
      }
      wizardStays = wizard != nullptr;
      if (open.elapsed() > 250) std::raise(SIGTERM);
    };
    EXPECT_EQ(bench.Run(), 0);
    EXPECT_EQ(boxes, 1);
    EXPECT_EQ(lines.value(0).toStdString(), std::string(row.FirstLine) + "Error: 57, Device I/O error");
    EXPECT_EQ(lines.value(lines.size() - 1).toStdString(), std::string(row.LastLine) + "Error: 57, Device I/O error");
    EXPECT_FALSE(wizardStays);
    EXPECT_EQ(bench.Transfers() > atOpening, row.Cycle);
  }
}

TEST(ConsoleRun, ASignalAbandonsReadOnlySequencesBetweenTwoTransfers) {
  for (const std::size_t transfer : {1, 6, 200}) {  // of the search, of the start-up, and of a tick
    RunBench bench("");
    std::size_t atSignal = 0;
    bench.Step = [&] {
      if (atSignal > 0 || bench.Transfers() < transfer) return;
      std::raise(SIGTERM);
      atSignal = bench.Transfers();
    };
    EXPECT_EQ(bench.Run(), 0);
    EXPECT_EQ(bench.Transfers(), atSignal);
  }
}

TEST(ConsoleRun, AChipInUseByAnotherProgramIsReadOnly) {
  for (const bool wizard : {false, true}) {
    RunBench bench("", wizard);
    TestRoots roots;
    FakeKernel kernel;
    FakeI2cAdapter adapter;
    adapter.Chips = bench.Sim.MakeCommsModule()->ObtainSmbusController();
    const std::string node = roots.Roots.Dev + "/i2c-1";
    roots.Adapter(1, "SMBus I801 adapter at 0700");
    roots.File(roots.Roots.Proc + "/4711/comm", "krx5580");
    kernel.Nodes[node] = [&] { return std::make_unique<FakeI2cFile>(adapter); };
    kernel.HeldByOthers[{node, 0x2E}] = 4711;
    LinuxOptions options;
    options.Roots = roots.Roots;
    bench.Medium = {[&] { return std::make_unique<LinuxComms>(options, kernel, bench.Time); }, "this computer's",
                    "there is an SMBus"};
    std::string box, note, medium;
    int asks = 0;
    bench.Step = [&] {
      if (auto* const asked = RunBench::Box()) {
        box = asked->text().toStdString();
        const bool no = wizard && asks++ == 0;  // leaves the wizard open
        bench.PressAgain();
        for (auto* const button : asked->buttons())
          if ((button->text() == "Cancel") == no) button->click();
      } else if (auto* const first = RunBench::Wizard()) {
        note = RunBench::Text("MediumNoteLBL");
        bench.Press(*first);
      } else if (RunBench::Text("lblCycle").find("Not monitoring") != std::string::npos && medium.empty()) {
        medium = RunBench::Text("lblMedium");
        std::raise(SIGTERM);
      }
    };
    EXPECT_EQ(bench.Run(), 0);
    EXPECT_EQ(box, wizard ? wizardtext::Held("krx5580 (process 4711)")
                          : "The chip is in use by krx5580 (process 4711). This console starts read-only: "
                            "nothing is written to the chip or the board.");
    EXPECT_EQ(note, wizard ? "Buses: this computer's. there is an SMBus." : "");
    EXPECT_EQ(medium, "SMBus I801 adapter at 0700, i2c-1 · 2Eh · read-only, 0 writes suppressed");
    EXPECT_EQ(bench.Sim.Trace().Text(TraceFilter::Registers).find('W'), std::string::npos);
  }
}

TEST(MainFormLive, AHeldGrooveWritesBetweenTicksAndNotDuringTheBoxOfAFailedWrite) {
  LiveBench live;
  for (const auto& [reg, byte] : {std::pair(0x40, 0x01), {0x5C, 0xE2}, {0x30, 0x00}})  // PWM1 manual
    live.Sim.SmbusChip().Poke(static_cast<std::uint8_t>(reg), static_cast<std::uint8_t>(byte));
  const auto busy = [&] { return live.Bus.TransferInProgress() || live.Turns.TurnRunning(); };
  BusJournal journal(live.Time);
  QtUserDialogs boxes;
  GatedDialogs gate(boxes, live.Pump, busy);
  Workbench bench{live.Bus};
  MainForm form(bench, live.Turns, gate, journal, {"Simulated board"});
  form.Start();
  form.SelectTab(MainForm::VisualDisplay);
  const auto& slider = *form.findChild<DutySlider*>();
  ASSERT_TRUE(QTest::qWaitFor([&] { return slider.isVisible() && slider.value() == 0; }));
  live.Sim.Trace().Clear();
  live.Sim.AddFault(*ParseFault("fail=5,op=write,reg=30"));
  const auto& transfers = live.Sim.Trace().Transfers();
  const auto writes = [&] { return std::ranges::count(transfers, Operation::WriteByteData, &Transfer::Op); };

  int inside = 0;
  QObject::connect(&slider, &DutySlider::ValueMoving, [&] { inside += busy() ? 1 : 0; });
  int shown = 0;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, [&] {
    QMessageBox* const box = RunBench::Box();
    if (box == nullptr || live.Bus.TransferInProgress()) return;
    ++shown;
    QTest::mouseRelease(box->windowHandle(), Qt::LeftButton, {}, QPoint(2, 2));  // it takes the release
    LiveBench::Run(400);
    EXPECT_EQ(writes(), 5) << "nothing during the box";
    box->accept();
  });
  watch.start(20);
  const QPoint end(slider.width() - 12, slider.height() / 2);
  QTest::mousePress(form.windowHandle(), Qt::LeftButton, {}, slider.mapTo(&form, end));
  EXPECT_TRUE(QTest::qWaitFor([&] { return shown > 0; }));
  LiveBench::Run(400);
  form.close();
  EXPECT_EQ(std::tuple(shown, inside, writes()), std::tuple(1, 0, 5)) << "the press, and four repeats";
  const std::regex whole(  // tick or write
      "R77 R2[5-7] (R2[8-F] ){2}R7[67] R2[0-4] R41 R42 R3[0-2] R6[DE] R6[7-9] R3[3-5] (R79 R78 )?|W30:[0-9A-F]{2}!? ");
  const std::string traffic = live.Sim.Trace().Text(TraceFilter::Registers) + " ";
  EXPECT_EQ(std::regex_replace(traffic, whole, ""), "") << traffic;
}

}  // namespace
}  // namespace krx
