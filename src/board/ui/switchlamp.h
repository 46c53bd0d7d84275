// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace krx {

enum class LampState { NotRead, Open, Closed };

/// A switch's state by shape and colour: a full green disc is closed, an empty red square open, a grey bar not read.
/// The word stands beside it.
class SwitchLamp : public QWidget {
  Q_OBJECT
 public:
  explicit SwitchLamp(LampState state = LampState::NotRead);

  void SetState(LampState state);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  LampState state_;
};

/// "closed", "open", "not read"
QString LampWord(LampState state);

}  // namespace krx
