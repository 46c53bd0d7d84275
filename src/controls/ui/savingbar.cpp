// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/savingbar.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <utility>

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t leastRows = 32;
constexpr std::size_t mostRows = 8192;
constexpr double wantedSeconds = 0.0015;  ///< of a slice: short against a tick, and against the wait before a transfer
constexpr double margin = 2;              ///< a slice may take longer than the one before
constexpr int pollMilliseconds = 1;
constexpr int shownMilliseconds = 300;

}  // namespace

SavingBar::SavingBar(QWidget* parent)
    : QWidget(parent), label_(new QLabel), bar_(new QProgressBar), cancel_(new QPushButton(u"Cancel"_s)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  bar_->setObjectName(u"barSaving"_s);
  cancel_->setObjectName(u"cmdCancelSaving"_s);
  row->addWidget(label_);
  row->addWidget(bar_, 1);
  row->addWidget(cancel_);
  connect(cancel_, &QPushButton::clicked, this, &SavingBar::Cancel);
  next_.setSingleShot(true);
  shown_.setSingleShot(true);
  connect(&next_, &QTimer::timeout, this, &SavingBar::Slice);
  connect(&shown_, &QTimer::timeout, this, [this] { setVisible(Busy()); });
  hide();
}

SavingBar::~SavingBar() {
  if (budget_) budget_->Forget(this);
}

void SavingBar::SetWaitBudget(WaitBudget* budget) {
  if (budget_) budget_->Forget(this);
  budget_ = budget;
}

void SavingBar::Save(ChartCsv values, const QString& fileName) {
  values_.emplace(std::move(values));
  file_ = std::make_unique<WholeFile>(fileName);
  rows_ = leastRows;
  label_->setText(u"Saving %1"_s.arg(QFileInfo(fileName).fileName()));
  bar_->setAccessibleName(label_->text());
  bar_->setValue(0);
  cancel_->setEnabled(true);
  shown_.start(shownMilliseconds);
  if (!file_->Open()) return Fail();
  next_.start(pollMilliseconds);
}

// In the wait before a transfer when a slice fits in; else when no transfer comes for a while, for the short pause
// between two ticks belongs to the user's input.
bool SavingBar::MayWork() {
  constexpr int pauseMilliseconds = 5;
  const double left = budget_ ? budget_->SecondsLeft() : std::numeric_limits<double>::infinity();
  if (std::isinf(left)) return !sinceWait_.isValid() || sinceWait_.elapsed() > pauseMilliseconds;
  sinceWait_.start();
  return wantedSeconds * margin <= left;
}

void SavingBar::Slice() {
  if (!Busy()) return;
  if (!MayWork()) return next_.start(pollMilliseconds);
  QElapsedTimer clock;
  clock.start();
  const std::string piece = values_->Next(rows_);
  if (!file_->WriteAll({piece.data(), static_cast<qsizetype>(piece.size())})) return Fail();
  if (values_->Done()) return Commit();
  bar_->setValue(static_cast<int>(values_->Share() * 100));
  const double seconds = static_cast<double>(clock.nsecsElapsed()) * 1e-9;
  if (seconds > wantedSeconds) rows_ = std::max(rows_ / 2, leastRows);
  if (seconds < wantedSeconds / 2) rows_ = std::min(rows_ * 2, mostRows);
  next_.start(pollMilliseconds);
}

// The system may need seconds to bring a large file to its disk, so another thread waits for it.
void SavingBar::Commit() {
  if (!Busy()) return;
  if (!committed_.valid()) {
    bar_->setValue(100);
    cancel_->setEnabled(false);
    committed_ = std::async(std::launch::async, [file = file_.get()] { return file->Commit(); });
  }
  if (committed_.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
    QTimer::singleShot(pollMilliseconds, this, &SavingBar::Commit);
    return;
  }
  if (!committed_.get()) return Fail();
  const QString name = file_->fileName();
  End();
  emit Saved(name);
}

void SavingBar::Cancel() {
  if (!Busy() || committed_.valid()) return;
  const QString name = file_->fileName();
  End();
  emit Cancelled(name);
}

void SavingBar::GiveUp() {
  next_.stop();
  shown_.stop();
  values_.reset();
  committed_ = {};  // waits
  file_.reset();
}

void SavingBar::Fail() {
  if (!Busy()) return;
  if (budget_ && !std::isinf(budget_->SecondsLeft())) return budget_->CallAfterwards(this, [this] { Fail(); });
  const QString reason = file_->Reason();
  End();
  emit Failed(reason);
}

void SavingBar::End() {
  values_.reset();
  file_.reset();  // what was not committed is dropped
  next_.stop();
  shown_.stop();
  hide();
}

}  // namespace krx
