// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <future>
#include <memory>
#include <optional>

#include "controls/chartcsv.h"
#include "controls/ui/filesaving.h"
#include "controls/waitbudget.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace krx {

/// Saves a chart's values beside other work, in short slices from the event loop, and shows how far it
/// is, with "Cancel". The file is replaced when all is written: whatever ends the saving earlier leaves it as it was.
class SavingBar : public QWidget {
  Q_OBJECT
 public:
  explicit SavingBar(QWidget* parent = nullptr);
  ~SavingBar() override;

  /// With a budget no slice makes a transfer late. None by default; it is to outlive the bar.
  void SetWaitBudget(WaitBudget* budget);

  /// The history behind the values is to outlive the bar. Not while it is busy.
  void Save(ChartCsv values, const QString& fileName);
  bool Busy() const { return values_.has_value(); }
  /// The file that would not be written if all ended now; empty when there is none.
  QString Unsaved() const { return Busy() && !committed_.valid() ? file_->fileName() : QString(); }
  /// The program ends, maybe without a display: drops what is not written and waits for what is just being replaced.
  void GiveUp();

 signals:
  void Saved(const QString& fileName);
  void Cancelled(const QString& fileName);
  /// Never sent during a transfer, so that a box may tell of it.
  void Failed(const QString& reason);

 private:
  void Slice();
  void Commit();
  bool MayWork();
  void Cancel();
  void Fail();
  void End();

  std::optional<ChartCsv> values_;
  std::unique_ptr<WholeFile> file_;
  std::future<bool> committed_;  ///< after the file, which it works on
  QTimer next_;
  QTimer shown_;  ///< a short saving shows no bar
  WaitBudget* budget_ = nullptr;
  std::size_t rows_ = 0;
  QElapsedTimer sinceWait_;  ///< since a transfer was seen waiting; invalid when none was
  QLabel* label_;
  QProgressBar* bar_;
  QPushButton* cancel_;
};

}  // namespace krx
