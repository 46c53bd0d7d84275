// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/historymodel.h"

#include <QFont>
#include <algorithm>
#include <cmath>

#include "panel/ui/rowdelegate.h"

namespace krx {
using namespace Qt::StringLiterals;

HistoryModel::HistoryModel(RegisterHistory& history, QDateTime journalStart)
    : history_(history), start_(std::move(journalStart)) {}

bool HistoryModel::Follow(std::uint8_t reg) {
  const RegisterHistory::News news = history_.Follow(reg);
  if (news == RegisterHistory::News::SameRows) emit dataChanged(index(0, 0), index(0, columnTotal - 1));
  if (news != RegisterHistory::News::OtherRows) return false;
  beginResetModel();
  rows_ = static_cast<int>(history_.Rows().size());
  endResetModel();
  return true;
}

std::optional<int> HistoryModel::RowOf(std::uint64_t number) const {
  const auto row = std::ranges::find(history_.Rows(), number, &HistoryRow::Number);
  if (row == history_.Rows().end()) return std::nullopt;
  return static_cast<int>(row - history_.Rows().begin());
}

int HistoryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int HistoryModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columnTotal;
}

QString HistoryModel::ChangedText(const HistoryRow& row) {
  if (!row.Note.empty()) return row.Skipped ? u"not written"_s : u"failed"_s;
  const QString bits = QString::fromStdString(row.ChangedText());
  return row.Count > 1 ? (bits + u" ×%1"_s.arg(row.Count)).trimmed() : bits;
}

QString HistoryModel::Text(const HistoryRow& row, int column) const {
  switch (column) {
    case Time:
      return start_.addMSecs(std::llround(row.Seconds * 1000)).toString(u"HH:mm:ss.zzz"_s);
    case Origin:
      return QString::fromStdString(row.OriginText());
    case Hex:
      return row.Byte ? u"%1"_s.arg(*row.Byte, 2, 16, QChar(u'0')).toUpper() : u"–"_s;
    case Changed:
      return ChangedText(row);
    default:
      return {};
  }
}

QString HistoryModel::ToolTip(const HistoryRow& row) const {
  QStringList lines{u"%1 by %2"_s.arg(row.Write ? u"Written"_s : u"Read"_s, QString::fromStdString(row.Origin)),
                    u"%1 s in the bus journal"_s.arg(row.Seconds, 0, 'f', 3)};
  if (!row.Note.empty()) lines << QString::fromStdString(row.Note);
  return lines.join(u'\n');
}

QVariant HistoryModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= static_cast<int>(history_.Rows().size())) return {};
  const HistoryRow& row = history_.Rows()[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
      return Text(row, index.column());
    case Qt::ToolTipRole:
      return ToolTip(row);
    case Qt::FontRole: {
      QFont font;
      if (index.column() == Hex) font.setBold(true);
      return font;
    }
    case mutedRole:
      return index.column() == Time || index.column() == Changed || !row.Write;
    default:
      return {};
  }
}

QVariant HistoryModel::headerData(int section, Qt::Orientation orientation, int role) const {
  static constexpr std::array<const char16_t*, columnTotal> titles{u"Time", u"Origin", u"Hex", u"Changed"};
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
  return QString::fromUtf16(titles.at(static_cast<std::size_t>(section)));
}

}  // namespace krx
