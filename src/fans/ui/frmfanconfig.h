// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <optional>

#include "fans/fandialogmodel.h"
#include "fans/fanreading.h"
#include "fans/minimumpwm.h"

class QPushButton;
class QTabWidget;

namespace krx {

class FanTab;
class UserDialogs;

/// "Fan Configuration": one tab a fan over the dialog's model.
class FrmFanConfig : public QDialog {
  Q_OBJECT

 public:
  /// What the dialog has others do for it.
  struct Services {
    /// Runs a minimum-PWM detection of output 0..2; throws what the link throws.
    std::function<DetectionResult(std::size_t index)> Detect;
    /// What to ask before a detection; empty: nothing.
    std::function<std::string()> Warning = {};
    /// Tries again to put an output back after a detection; how it stands when that failed, else empty.
    std::function<std::string(std::size_t index)> PutBack = {};
    /// Lists what Apply would write, a line each; throws what the link throws.
    std::function<QStringList(const AllFanFields& fields)> Preview = {};
    /// Speed and duty of a fan as the console knows them; without any transfer.
    std::function<FanReading(std::size_t fan)> Reading = {};
  };

  FrmFanConfig(FanConfig& config, FanCommon& fans, UserDialogs& dialogs, Services services, QWidget* parent);

  /// Reads the first fan and shows the window. False when the chip could not be read; a box has said so.
  bool Open();

  /// The fields are shown but cannot be edited.
  void SetReadOnly(bool readOnly);

  /// Speeds and duties were measured, or are old now; without any transfer.
  void ShowReadings();

  /// The chip was changed from elsewhere: shows that, unless edits are pending.
  void Renew();

 signals:
  /// Labels or pulses may have changed.
  void Applied();
  /// A line for the status bar.
  void Notice(const QString& text);
  /// Closed, by whatever way.
  void Closed();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void reject() override;

 private:
  void ShowTab(int index);
  bool Apply();
  void Ok();
  void ShowWrites();
  void AutoDetect(std::size_t fan);
  void ShowOutcome(std::size_t fan, const DetectionResult& result);
  void SaveEvidence(std::size_t fan);
  void ShowButtons();

  FanDialogModel model_;
  UserDialogs& dialogs_;
  Services services_;
  QTabWidget* tabs_;
  std::array<FanTab*, fanCount> pages_{};
  bool readOnly_ = false;
  std::array<std::optional<DetectionResult>, pwmCount> evidence_;
  QPushButton* writes_;
  QPushButton* apply_;
};

}  // namespace krx
