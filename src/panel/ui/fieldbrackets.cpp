// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/fieldbrackets.h"

#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

#include "controls/ui/palette.h"
#include "registers/fields.h"
#include "registers/registermap.h"

namespace krx {
using namespace Qt::StringLiterals;
namespace {

constexpr int bracketHeight = 6;
QString Text(const std::string& text) {
  return QString::fromStdString(text);
}

/// Broken at its blanks into lines that fit; a longer word has a line of its own. The toolkit's own breaking measures
/// otherwise than it paints on a scaled screen.
QStringList Lines(const QFontMetrics& metrics, int width, const QString& text) {
  QStringList lines;
  for (const QString& word : text.split(u' ')) {
    const QString longer = lines.isEmpty() ? word : lines.last() + u' ' + word;
    if (!lines.isEmpty() && metrics.horizontalAdvance(longer) <= width) {
      lines.last() = longer;
    } else {
      lines << word;
    }
  }
  return lines;
}

/// Of a single bit the digit can be seen above, so what it means is enough where there is little room.
QString CaptionFor(const FieldRow& row, const QFontMetrics& metrics, int width) {
  const QString caption = Text(row.Caption);
  const bool spare = row.High == row.Low && row.Caption != row.Value && !row.Meaning.empty();
  return spare && metrics.horizontalAdvance(caption) > width ? Text(row.Meaning) : caption;
}

}  // namespace

FieldBrackets::FieldBrackets(int gap) : gap_(gap), nameFont_(font()), valueFont_(font()) {
  setObjectName(u"pnlFields"_s);
  nameFont_.setPointSizeF(font().pointSizeF() * 0.88);
  valueFont_ = nameFont_;
  valueFont_.setBold(true);
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

void FieldBrackets::Show(std::vector<FieldRow> rows) {
  rows_ = std::move(rows);
  QStringList spoken;
  for (const FieldRow& row : rows_) spoken << Text(row.FullName) + u": "_s + Text(row.Caption);
  setAccessibleName(spoken.join(u"; "_s));
  update();
}

QRect FieldBrackets::Place(const FieldRow& row, int total) const {
  const double bit = (total + gap_) / 8.0;
  const int left = qRound((7 - row.High) * bit);
  return {left, 0, qRound((8 - row.Low) * bit) - gap_ - left, height()};
}

FieldBrackets::Texts FieldBrackets::TextsOf(const FieldRow& row, int width) const {
  const QFontMetrics values(valueFont_);
  return {Lines(QFontMetrics(nameFont_), width, Text(row.Name)), Lines(values, width, CaptionFor(row, values, width))};
}

int FieldBrackets::heightForWidth(int width) const {
  int& height = heights_[width];
  if (height > 0) return height;
  qsizetype most = 0;
  for (const RegisterEntry& entry : Registers()) {
    for (const int byte : {0x00, 0xFF}) {
      for (const FieldRow& row : FieldRows(entry.Address, static_cast<std::uint8_t>(byte))) {
        const Texts texts = TextsOf(row, Place(row, width).width());
        most = std::max(most, texts.Name.size() + texts.Value.size());
      }
    }
  }
  return height = bracketHeight + static_cast<int>(most) * QFontMetrics(valueFont_).height() + 2;
}

void FieldBrackets::paintEvent(QPaintEvent*) {
  const Palette& colours = Palette::For(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  for (const FieldRow& row : rows_) {
    const QRect place = Place(row, width());
    QPainterPath bracket(QPointF(place.left() + 0.5, 0));
    bracket.lineTo(place.left() + 0.5, bracketHeight - 1.5);
    bracket.lineTo(place.right() + 0.5, bracketHeight - 1.5);
    bracket.lineTo(place.right() + 0.5, 0);
    painter.setPen(colours.outline);
    painter.drawPath(bracket);
    const Texts texts = TextsOf(row, place.width());
    const int height = QFontMetrics(valueFont_).height();
    QRect line(place.left() - gap_ / 2, bracketHeight, place.width() + gap_, height);
    const auto paint = [&](const QFont& font, const QColor& colour, const QStringList& lines) {
      painter.setFont(font);
      painter.setPen(colour);
      for (const QString& text : lines) {
        painter.drawText(line, Qt::AlignHCenter | Qt::AlignVCenter | Qt::TextDontClip, text);
        line.translate(0, height);
      }
    };
    paint(nameFont_, colours.mutedText, texts.Name);
    paint(valueFont_, colours.text, texts.Value);
  }
}

bool FieldBrackets::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto& help = *static_cast<QHelpEvent*>(event);
  for (const FieldRow& row : rows_) {
    if (Place(row, width()).contains(help.pos()))
      QToolTip::showText(help.globalPos(), Text(row.FullName) + u": "_s + Text(row.Caption), this);
  }
  return true;
}

}  // namespace krx
