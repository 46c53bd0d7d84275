// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QPainter;
class QPen;

namespace krx {

struct Palette;

/// A state told by shape as well as by colour.
enum class Mark {
  None,
  Unknown,    ///< empty ring: not read yet
  Good,       ///< round tick
  Attention,  ///< diamond with an exclamation mark
  Off,        ///< ring with a bar
  HeaterOn,   ///< small square
  Changed,    ///< small diamond
};

/// Draws the mark into a circle of radius 1 around the origin. Muted: grey, with the same shape.
void PaintMark(QPainter& painter, Mark mark, const Palette& palette, bool muted = false);

/// A mark as high as a line of text. It says nothing by itself: put the word beside it, or into the description.
class StateMark : public QWidget {
  Q_OBJECT
 public:
  explicit StateMark(Mark mark = Mark::None, QWidget* parent = nullptr);

  Mark Shown() const { return mark_; }
  void SetMark(Mark mark);
  void SetMuted(bool muted);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  Mark mark_;
  bool muted_ = false;
};

}  // namespace krx
