// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include "fans/fanconfig.h"

namespace krx {

class ChipTurns;
class FrmFanConfig;
class FrmSwitchAccess;
class UserDialogs;
struct Workbench;

/// Opens the main window's other windows, each at most once, and gives each what it needs.
class WindowOpener : public QObject {
  Q_OBJECT
 public:
  /// fanSecondsPerSecond: how much faster than the clock the fans live. All are to outlive the opener; the windows
  /// belong to `parent`, as it does itself.
  WindowOpener(Workbench& bench, ChipTurns& turns, UserDialogs& dialogs, bool readOnly, double fanSecondsPerSecond,
               QWidget* parent);

  void OpenSwitchAccess();
  void OpenFanConfig();
  void OpenSetupLog();
  void ShowAbout();

  // What an open window shows has changed behind its back.
  void SwitchesChanged();
  void RenewFanConfig();

 signals:
  /// The fan dialog has applied its fields.
  void FansApplied();
  /// A line for the status bar.
  void Notice(const QString& text);

 private:
  QStringList PreviewFanWrites(const AllFanFields& fields);

  Workbench& bench_;
  ChipTurns& turns_;
  UserDialogs& dialogs_;
  bool readOnly_;
  double fanSecondsPerSecond_;
  QWidget* parent_;
  QPointer<FrmSwitchAccess> switchAccess_;
  QPointer<FrmFanConfig> fanConfig_;
};

}  // namespace krx
