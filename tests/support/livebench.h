// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QTimer>

#include "controls/ui/chiptimer.h"
#include "controls/ui/qteventpump.h"
#include "link/registeraccess.h"
#include "simulator/simcomms.h"

namespace krx {

/// A wait budget with the remaining seconds set by the test.
struct ScriptedBudget : WaitBudget {
  double SecondsLeft() const override { return Left; }
  void CallAfterwards(const void*, std::function<void()> work) override { Afterwards = std::move(work); }
  void Forget(const void*) override { Afterwards = nullptr; }
  double Left = std::numeric_limits<double>::infinity();
  std::function<void()> Afterwards;
};

/// A link on the simulated SMBus with the real clock and event loop, for effects of real waits.
struct LiveBench {
  LiveBench() {
    Bus.CommsMedium = 0;
    Bus.ChipAddress = 0x2E;
  }

  /// Lets the main loop run.
  static void Run(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
  }

  bool UnderWay() const { return Bus.TransferInProgress() || Turns.TurnRunning(); }

  /// Some transfers, with their live waits.
  void Read(int times) {
    for (int i = 0; i < times; ++i) ReadByte(Bus, 0x26);
  }

  void FailTransfer(int nth) {
    Fault fault;
    fault.Nth = nth;
    Sim.AddFault(fault);
  }

  SystemClock Time;
  QtEventPump Pump;
  Simulation Sim{Time, {}};
  CommsRoot Root{[this] { return Sim.MakeCommsModule(); }};
  Link Bus{Root, Time, Pump};
  ChipTurns Turns{Bus};
};

}  // namespace krx
