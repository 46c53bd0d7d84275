// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/savingbar.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>
#include <chrono>
#include <utility>

namespace krx {
namespace {

constexpr std::size_t firstRows = 256;
constexpr std::size_t mostRows = 8192;
constexpr double wantedSeconds = 0.002;  ///< of a slice: short against a tick, and against the wait before a transfer
constexpr double margin = 1.3;           ///< of what the last slice took
constexpr int shownMilliseconds = 300;

}  // namespace

SavingBar::SavingBar(QWidget* parent)
    : QWidget(parent), label_(new QLabel), bar_(new QProgressBar), cancel_(new QPushButton(tr("Cancel"))) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  bar_->setObjectName(QStringLiteral("barSaving"));
  cancel_->setObjectName(QStringLiteral("cmdCancelSaving"));
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
  rows_ = firstRows;
  sliceSeconds_ = 0;
  label_->setText(tr("Saving %1").arg(QFileInfo(fileName).fileName()));
  bar_->setAccessibleName(label_->text());
  bar_->setValue(0);
  cancel_->setEnabled(true);
  shown_.start(shownMilliseconds);
  if (!file_->Open()) return Fail();
  next_.start(0);
}

// Leaves the work for later when a transfer would be late for it.
bool SavingBar::PutOff(double seconds, void (SavingBar::*work)()) {
  if (!budget_ || seconds * margin <= budget_->SecondsLeft()) return false;
  budget_->CallAfterwards(this, [this, work] { (this->*work)(); });
  return true;
}

void SavingBar::Slice() {
  if (!Busy() || PutOff(sliceSeconds_, &SavingBar::Slice)) return;
  QElapsedTimer clock;
  clock.start();
  const std::string piece = values_->Next(rows_);
  if (!file_->WriteAll({piece.data(), static_cast<qsizetype>(piece.size())})) return Fail();
  if (values_->Done()) return Commit();
  bar_->setValue(static_cast<int>(values_->Share() * 100));
  sliceSeconds_ = static_cast<double>(clock.nsecsElapsed()) * 1e-9;
  if (sliceSeconds_ > wantedSeconds) rows_ = std::max(rows_ / 2, firstRows);
  if (sliceSeconds_ < wantedSeconds / 2) rows_ = std::min(rows_ * 2, mostRows);
  next_.start(0);
}

// The system may need seconds to bring a large file to its disk, so another thread waits for it.
void SavingBar::Commit() {
  constexpr int pollMilliseconds = 10;
  if (!committed_.valid()) {
    bar_->setValue(100);
    cancel_->setEnabled(false);
    committed_ = std::async(std::launch::async, [file = file_.get()] { return file->commit(); });
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

void SavingBar::Fail() {
  // Longer than any wait: a box stays open as long as the user likes.
  if (!Busy() || PutOff(1e6, &SavingBar::Fail)) return;
  const QString reason = file_->errorString();
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
