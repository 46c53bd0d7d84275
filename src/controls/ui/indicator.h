// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace krx {

/// What an alarm indicator shows. Hidden keeps its room, so that captions stay aligned.
enum class IndicatorState { Hidden, Unknown, Ok, Bad };

/// An alarm lamp told apart by shape and colour: a round tick (OK), a diamond with an exclamation mark (bad), an empty
/// ring (not read yet). A stale lamp keeps its shape and turns grey.
class Indicator : public QWidget {
  Q_OBJECT

 public:
  explicit Indicator(QWidget* parent = nullptr);

  IndicatorState State() const { return state_; }
  void SetState(IndicatorState state);
  bool IsStale() const { return stale_; }
  void SetStale(bool stale);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Changed();

  IndicatorState state_ = IndicatorState::Unknown;
  bool stale_ = false;
};

}  // namespace krx
