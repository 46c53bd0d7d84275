// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

#include "control/controlreadings.h"
#include "controls/ui/card.h"

class QPushButton;

namespace krx {

class ReadingLabel;
class ReadingTable;

/// "Fan Configuration": the buttons of the fan dialogs, each with what it acts on under it.
class FanCard : public Card {
  Q_OBJECT
 public:
  FanCard();

  void ShowState(const ControlState& state);
  void ShowReadings(const ControlReadings& readings);
  void SetFanDialogAvailable(bool available);
  void SetCompact(bool compact);

 signals:
  void SwitchAccessRequested();
  void FanConfigRequested();

 private:
  QPushButton* AddButton(const QString& name, const QString& caption, QWidget* beside);
  void MakeZoneTable();
  void MakeOutputTable();

  std::array<std::array<ReadingLabel*, 3>, 3> zones_{};
  std::array<QLabel*, 3> behaviours_{};
  std::array<std::array<ReadingLabel*, 2>, 3> outputs_{};
  ReadingTable* zoneTable_ = nullptr;
  ReadingTable* outputTable_ = nullptr;
  QPushButton* temps_;
  QPushButton* switchAccess_;
  QPushButton* fanConfig_;
  QLabel* switches_;
};

}  // namespace krx
