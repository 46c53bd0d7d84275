// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "link/linknewcomport06.h"
#include "registers/registermap.h"

namespace krx {

/// State of a row of the register list; it also identifies the selected register.
enum class RowState : std::uint8_t { Plain, Hovered, Selected, SelectedHovered };

/// The button beside an entry box.
enum class EntryState : std::uint8_t { Untouched, Unwritten, Written };

/// What the panel shows for the selected register.
struct RegisterView {
  std::uint8_t Register = 0;  ///< 0: none was selected yet
  std::string Address;        ///< hexadecimal without prefix; the target of the hexadecimal write
  std::string Name;
  bool BitsKnown = false;  ///< read or written since the register was selected
  std::string HexValue;    ///< of the last read
  std::string DecimalValue;
  std::array<bool, 8> Bits{};  ///< of the last read, or of the byte just written; b0 first
  std::array<std::string_view, 8> BitNames{};
  bool Editable = false;     ///< entry boxes enabled, bits clickable
  std::string_view Caution;  ///< warning about writes to this register; empty for most

  /// The byte that the bits show; nothing if it could not be read.
  std::optional<std::uint8_t> Shown() const;
};

/// The "Read/Write" panel: 90 rows, the selected register bit by bit, and the two entry boxes. Handlers throw what the
/// link throws; after a failure no value of another register is shown.
class RegisterPanel {
 public:
  static constexpr int rowCount = 90;

  explicit RegisterPanel(Link& link);

  // Rows are numbered 1..90, as in the register map.
  RowState State(int row) const { return rows_.at(static_cast<std::size_t>(row)); }
  int CurrentRow() const { return currentRow_; }
  int LastSelectedRow() const { return lastSelectedRow_; }

  /// A real click: the pointer is over the row, even if no motion was reported before. Reads the register once.
  void Click(int row);
  void Hover(int row);
  /// The pointer left the list.
  void LeaveList();
  /// The tab is shown: selects the last clicked row (initially the first) and reads it once.
  void Reselect();

  /// One tick of continuous reading.
  void ReadSelected();

  /// Inverts the shown state of a bit in the byte read again, and shows what the chip kept. Does nothing on a read-only
  /// register.
  void ClickBit(int bit);

  const std::string& HexEntry() const { return hexEntry_; }
  const std::string& DecimalEntry() const { return decimalEntry_; }
  void SetHexEntry(std::string text);
  void SetDecimalEntry(std::string text);
  EntryState HexButton() const { return hexButton_; }
  EntryState DecimalButton() const { return decimalButton_; }
  /// Why the last entry was refused: "Above 255: a byte is 0 to 255". Empty once something else was typed or selected.
  std::string_view Refusal() const { return refusal_; }

  /// Writes the entry. An invalid entry sets both boxes to "00" and writes nothing; does nothing on a read-only
  /// register.
  void WriteHexEntry();
  void WriteDecimalEntry();

  /// A register was written elsewhere: shows its byte if it is the shown register.
  void ShowWrittenElsewhere(std::uint8_t address, std::uint8_t byte);

  /// Shows the last read byte again.
  void UpdateRegisterInfo();

  const RegisterView& View() const { return view_; }
  std::uint8_t LastWritten() const { return lastWritten_; }

 private:
  const RegisterEntry& SelectedRegister() const;
  void LeaveCurrentRow();
  void ShowRegister(int row);
  void Read(std::uint8_t address);
  void ShowBits(std::uint8_t byte);
  void RejectEntries(std::string_view why);
  void ShowWritten(std::uint8_t address, std::uint8_t byte);

  Link& link_;
  std::array<RowState, rowCount + 1> rows_{};  ///< by row number; index 0 is unused
  int currentRow_ = 1;
  int lastSelectedRow_ = 1;
  std::optional<std::uint8_t> lastRead_;  ///< of the selected register
  std::uint8_t lastWritten_ = 0;
  std::string hexEntry_;
  std::string decimalEntry_;
  EntryState hexButton_ = EntryState::Untouched;
  EntryState decimalButton_ = EntryState::Untouched;
  std::string_view refusal_;
  RegisterView view_;
};

}  // namespace krx
