// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <vector>

#include "fans/fanconfig.h"

class QDialog;

namespace krx {

class ChipTurns;
class ControlPage;
class FrmFanConfig;
class MainMenu;
class MainPage;
class UserDialogs;
class VisualDisplayPage;
struct Workbench;

/// The console's windows beside the main one.
enum class AppWindow { SwitchAccess, FanConfig, SetupLog, About, Help };

/// Opens the main window's other windows and gives each what it needs. A new window is one row of the table in the
/// constructor and one connection in Serve.
class WindowOpener : public QObject {
  Q_OBJECT
 public:
  /// fanSecondsPerSecond: how much faster than the clock the fans live. All are to outlive the opener; the windows
  /// belong to `parent`, as it does itself.
  WindowOpener(Workbench& bench, ChipTurns& turns, UserDialogs& dialogs, bool readOnly, double fanSecondsPerSecond,
               QWidget* parent);

  /// Opens what the pages and the menu ask for.
  void Serve(const MainPage& main, const VisualDisplayPage& visual, const ControlPage& control, const MainMenu& menu);

  /// Returns the window, nullptr where it could not be opened or has closed again.
  QDialog* Open(AppWindow which);

  // What an open window shows has changed behind its back.
  void SwitchesChanged();
  void RenewFanConfig();
  /// old: the cycle does not run.
  void ShowReadings(bool old);

 signals:
  /// The fan dialog has applied its fields.
  void FansApplied();
  /// A line for the status bar.
  void Notice(const QString& text);

 private:
  struct Row {
    AppWindow Which;
    bool Single;  ///< asked for again, the open window is shown again
    std::function<QDialog*()> Make;
    std::function<void(QDialog&)> Show;
    QPointer<QDialog> Window = {};
  };
  FrmFanConfig* MakeFanConfig();
  QStringList PreviewFanWrites(const AllFanFields& fields);
  template <class Window>
  Window* Opened(AppWindow which) const;

  Workbench& bench_;
  ChipTurns& turns_;
  UserDialogs& dialogs_;
  bool readOnly_;
  double fanSecondsPerSecond_;
  QWidget* parent_;
  std::vector<Row> rows_;
  bool old_ = true;
};

}  // namespace krx
