// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/registertablemodel.h"

#include <QFont>

#include "controls/ui/statemark.h"
#include "controls/ui/texts.h"
#include "panel/ui/rowdelegate.h"

namespace krx {
using namespace Qt::StringLiterals;
namespace {

QString Hex(std::uint8_t byte) {
  return u"%1"_s.arg(byte, 2, 16, QChar(u'0')).toUpper();
}

const RegisterEntry& EntryOf(int row) {
  return *LookupEntry(row + 1);
}

bool IsSelected(RowState state) {
  return state == RowState::Selected || state == RowState::SelectedHovered;
}

}  // namespace

RegisterTableModel::RegisterTableModel(const RegisterPanel& panel, RegisterChanges& changes)
    : panel_(panel), changes_(changes) {
  changes_.Changed = [this](std::uint8_t reg) {
    const RegisterEntry* const entry = LookupAddress(reg);
    if (entry == nullptr) return;
    Renew(entry->PanelEntry - 1);
    emit ByteSeen(entry->PanelEntry);
  };
}

RegisterTableModel::~RegisterTableModel() {
  changes_.Changed = nullptr;
}

void RegisterTableModel::Renew(int row) {
  emit dataChanged(index(row, 0), index(row, columnTotal - 1));
}

void RegisterTableModel::ShowStates() {
  for (int row = 0; row < RegisterPanel::rowCount; ++row) {
    RowState& shown = states_.at(static_cast<std::size_t>(row));
    if (std::exchange(shown, panel_.State(row + 1)) != shown) Renew(row);
  }
}

void RegisterTableModel::SetRoomy(bool shown) {
  if (std::exchange(roomy_, shown) == shown) return;
  emit dataChanged(index(0, WhetherChanged), index(RegisterPanel::rowCount - 1, WhetherChanged));
  emit headerDataChanged(Qt::Horizontal, 0, columnTotal - 1);
}

int RegisterTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : RegisterPanel::rowCount;
}

int RegisterTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columnTotal;
}

QString RegisterTableModel::Text(const RegisterEntry& entry, int column) const {
  const auto last = changes_.Last(entry.Address);
  const auto was = changes_.Was(entry.Address);
  switch (column) {
    case Address:
      return Hex(entry.Address);
    case Name:
      return QtText(entry.PanelName);
    case LastValue:
      return last ? Hex(*last) : u"–"_s;
    case WhetherChanged:
      return was && roomy_ ? u"was "_s + Hex(*was) : QString();
    default:
      return {};
  }
}

QString RegisterTableModel::ToolTip(const RegisterEntry& entry, int column) const {
  const auto was = changes_.Was(entry.Address);
  if (column == WhetherChanged) return was ? u"was %1h when it was first seen"_s.arg(Hex(*was)) : QString();
  if (column == Lock) return entry.Access == Access::ReadOnly ? u"read-only"_s : QString();
  if (column == LastValue) {
    return changes_.Last(entry.Address) ? u"The byte seen last on the bus"_s : u"Not seen on the bus yet"_s;
  }
  return u"Register %1h"_s.arg(Hex(entry.Address));
}

QString RegisterTableModel::Spoken(const RegisterEntry& entry) const {
  const auto last = changes_.Last(entry.Address);
  const auto was = changes_.Was(entry.Address);
  QStringList words{QtText(entry.PanelName), last ? Hex(*last) + u'h' : u"not seen yet"_s};
  if (IsSelected(panel_.State(entry.PanelEntry))) words << u"selected"_s;
  if (was) words << u"changed, was %1h"_s.arg(Hex(*was));
  if (entry.Access == Access::ReadOnly) words << u"read-only"_s;
  return words.join(u", "_s);
}

QVariant RegisterTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const RegisterEntry& entry = EntryOf(index.row());
  const RowState state = states_.at(static_cast<std::size_t>(index.row()));
  const int column = index.column();
  switch (role) {
    case Qt::DisplayRole:
      return Text(entry, column);
    case Qt::ToolTipRole:
      return ToolTip(entry, column);
    case Qt::AccessibleTextRole:
      return column == Name ? QVariant(Spoken(entry)) : QVariant();
    case Qt::TextAlignmentRole:
      return QVariant::fromValue(column == LastValue ? Qt::AlignRight | Qt::AlignVCenter
                                                     : Qt::AlignLeft | Qt::AlignVCenter);
    case Qt::FontRole: {
      QFont font;
      if (column == LastValue || IsSelected(state)) font.setBold(true);
      return font;
    }
    case rowStateRole:
      return static_cast<int>(state);
    case mutedRole:
      return column != Name && !IsSelected(state) && (column != LastValue || !changes_.Last(entry.Address));
    case markRole:
      return static_cast<int>(column == WhetherChanged && changes_.Was(entry.Address) ? Mark::Changed : Mark::None);
    case lockRole:
      return column == Lock && entry.Access == Access::ReadOnly;
    case nameRole:
      return u"read_writedisplaytext_%1"_s.arg(entry.PanelEntry);
    default:
      return {};
  }
}

QString RegisterTableModel::Title(int column, bool roomy) {
  static constexpr std::array<const char16_t*, columnTotal> titles{u"Address", u"Register", u"Last value", u"Changed",
                                                                   u"Read-only"};
  static constexpr std::array<const char16_t*, columnTotal> shortTitles{u"Addr.", u"Register", u"Last", u"", u""};
  return QString::fromUtf16((roomy ? titles : shortTitles).at(static_cast<std::size_t>(column)));
}

QVariant RegisterTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::AccessibleTextRole || role == Qt::ToolTipRole) return Title(section, true);
  if (role == Qt::DisplayRole) return Title(section, roomy_ && section != Lock);
  if (role == Qt::TextAlignmentRole) {
    return QVariant::fromValue(section == LastValue ? Qt::AlignRight | Qt::AlignVCenter
                                                    : Qt::AlignLeft | Qt::AlignVCenter);
  }
  return {};
}

}  // namespace krx
