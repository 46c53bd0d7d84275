// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <array>

#include "link/searchwizard.h"

class QCheckBox;
class QLabel;
class QListWidget;
class QProgressBar;
class QPushButton;
class QVBoxLayout;

namespace krx {

class UserDialogs;

/// The program's start-up window: four panels over the search wizard. It makes no decision of its own beyond which
/// panel and which buttons are seen.
class InitForm : public QWidget {
  Q_OBJECT

 public:
  /// mediumNote: which buses are searched and why, shown below the panels.
  /// simulatedOffered: whether an empty search offers the simulated board (not when it is what was searched).
  InitForm(SearchWizard& wizard, UserDialogs& dialogs, const QString& mediumNote, bool simulatedOffered);

  /// Loads the wizard, page 1. Separate from construction, so that a failing set-up shows its box over the window.
  void Load();

  /// Loads the wizard anew on another bus and searches its printer port and what its report offers.
  void Restart(const QString& mediumNote, bool simulatedOffered);

 signals:
  /// A search is about to begin: the main window is to be made, hidden, if there is none yet.
  void MainWindowRequested();
  /// The link has its chip: the main window is to be started up and shown.
  void Finished();
  /// The chosen chip is used by another program, and the user goes on without writing: the bus is to be made anew for
  /// reading only before the slot returns.
  void ReadOnlyRequested();
  /// The user asks for the simulated board instead of the buses that were searched.
  void SimulatedBoardRequested();
  /// The wizard was left without a chip; the program ends.
  void Abandoned();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void MakeWelcomePanel();
  void MakeMediumPanel();
  void MakeSearchingPanel();
  void MakeResultsPanel();
  QWidget* MakeButtons();
  QVBoxLayout* MakePanel(SearchWizard::Page page, const QString& name, const QString& heading);

  void ShowWizard();
  void ShowChipset();
  void ShowResults();
  void Next();
  void Back();
  void Search();
  void EndSearch(const std::vector<SearchReport>& reports);
  void Finish();
  void ShowReport(const SearchReport& report);
  SearchMedia TickedMedia() const;

  SearchWizard& wizard_;
  UserDialogs& dialogs_;
  bool simulatedOffered_;
  bool finished_ = false;
  bool searching_ = false;  ///< until the input that waited during a search has been dropped
  QLabel* note_ = nullptr;
  std::array<QWidget*, 4> panels_{};
  QCheckBox* printerPortCheck_ = nullptr;
  QCheckBox* usbCheck_ = nullptr;
  QCheckBox* smbusCheck_ = nullptr;
  QLabel* smbusDescription_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QLabel* place_ = nullptr;
  QLabel* results_ = nullptr;
  QLabel* instructions_ = nullptr;
  QListWidget* list_ = nullptr;
  QPushButton* simulated_ = nullptr;
  QPushButton* back_ = nullptr;
  QPushButton* next_ = nullptr;
  QPushButton* cancel_ = nullptr;
  QPushButton* finish_ = nullptr;
};

}  // namespace krx
