// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <optional>

#include "monitor/visualmodel.h"

namespace krx {

class Indicator;

/// One measured channel: trace colour, lamp, caption and the latest value. Its text() is the caption; a click selects.
class ChannelTile : public QAbstractButton {
  Q_OBJECT
 public:
  /// lamp: the channel's alarm indicator, which the tile shows at its left and owns.
  explicit ChannelTile(Indicator* lamp, QWidget* parent = nullptr);

  /// Trace of the chart that draws this channel (its colour in the palette); none: no trace colour.
  void SetTrace(std::optional<int> trace);
  void SetReading(const QString& value, const QString& unit);
  /// Why the channel's alarm is set; empty while it is not. A tile in alarm is red.
  void SetAlarm(const QString& words);
  /// Bright and dark green are fixed colours that no theme's background leaves readable as text, so they fill the
  /// ground behind the caption, whose letters are then black or white.
  void SetMark(CaptionMark mark);
  /// Values that are no longer refreshed are greyed and carry the word "old".
  void SetOld(bool old);

  QString Value() const { return value_; }
  QString Unit() const { return unit_; }
  CaptionMark Mark() const { return mark_; }
  bool IsOld() const { return old_; }
  const QString& Alarm() const { return alarm_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  QFont ValueFont() const;
  QFont UnitFont() const;
  int LampLeft() const;
  void Describe();

  Indicator* lamp_;
  std::optional<int> trace_;
  QString value_;
  QString unit_;
  CaptionMark mark_ = CaptionMark::Plain;
  QString alarm_;
  bool old_ = false;
};

}  // namespace krx
