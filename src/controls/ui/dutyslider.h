// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSlider>

namespace krx {

/// `analog_output_slider`: a duty of 0..255. Its signals tell only what the user does; the wheel does nothing.
class DutySlider : public QSlider {
  Q_OBJECT

 public:
  explicit DutySlider(QWidget* parent = nullptr);

  /// "Fan1", "Fan2" or "Fan3": names the output that the slider stands for; also its accessible name.
  QString Caption() const { return caption_; }
  void SetCaption(const QString& caption);

  /// Ends what the user holds, as letting go of the button does, whose release will not come.
  void LetGo();

  /// Shows a duty without a signal. Refused (false) while the user holds the slider.
  bool SetValue(int value);

 signals:
  void Pressed();
  void ValueMoving(int value);
  void Released();
  /// After Released when the value was moved meanwhile; also after each keyboard step, which presses nothing.
  void ReleasedAfterMove(int value);

 protected:
  void timerEvent(QTimerEvent* event) override;
  void changeEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  QString caption_;
  bool moved_ = false;
};

}  // namespace krx
