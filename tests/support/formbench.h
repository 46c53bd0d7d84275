// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtTest>
#include <QtWidgets>
#include <memory>
#include <stdexcept>
#include <string>

#include "console/ui/mainform.h"
#include "console/workbench.h"
#include "controls/ui/chiptimer.h"
#include "journal/busjournal.h"
#include "support/scripteddialogs.h"
#include "support/testbench.h"

namespace krx {

/// The main window with a simulated chip whose clock is advanced only by the test: the cycle reads what was poked into
/// the registers.
struct FormBench {
  explicit FormBench(TestBench::Medium medium = TestBench::Medium::Board) : Chip(medium) {}
  void Open(bool readOnly = false) {
    Form = std::make_unique<MainForm>(Bench, Turns, Dialogs, Journal, MainFormOptions{"Simulated board", readOnly});
    Form->Start();
    Form->SelectTab(MainForm::VisualDisplay);
    Chip.BusTraffic();
  }

  template <class Widget>
  Widget* Find(const char* name) const {
    auto* found = Form->findChild<Widget*>(QString::fromLatin1(name));
    if (found == nullptr) throw std::runtime_error(name);
    return found;
  }
  std::string Text(const char* label) const { return Find<QLabel>(label)->text().toStdString(); }
  void Click(const char* button) { Find<QAbstractButton>(button)->click(); }

  template <class Condition>
  bool Wait(Condition condition, int milliseconds = 5000) const {
    QElapsedTimer time;
    for (time.start(); time.elapsed() < milliseconds;) {
      if (condition()) return true;
      QApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return false;
  }
  /// Waits until the label's text holds `part`.
  bool Shows(const char* label, const char* part) const {
    return Wait([&] { return Text(label).find(part) != std::string::npos; });
  }

  TestBench Chip;
  BusJournal Journal{Chip.Time};
  ChipTurns Turns{Chip.Bus};
  ScriptedDialogs Dialogs;
  Workbench Bench{Chip.Bus};
  std::unique_ptr<MainForm> Form;
};

}  // namespace krx
