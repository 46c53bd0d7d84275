// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/registerpanel.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>
#include <utility>

#include "link/registeraccess.h"

namespace krx {
namespace {

constexpr unsigned highestByte = 255;
constexpr const char* rejectedText = "00";

struct Caution {
  std::uint8_t Address;
  std::string_view Text;
};
constexpr std::array<Caution, 4> cautions{{
    {0x40, "LOCK (bit 1) makes the limit and configuration registers read-only until the next power cycle."},
    {0x6F, "The XOR tree test takes the pins out of normal operation."},
    {0x7E, "Manufacturer test register: measurements may stop until the next power cycle."},
    {0x7F, "Manufacturer test register: measurements may stop until the next power cycle."},
}};

std::string_view CautionFor(std::uint8_t address) {
  for (const Caution& caution : cautions) {
    if (caution.Address == address) return caution.Text;
  }
  return {};
}

/// The byte of a text of digits only; empty otherwise. Unsigned, since a sign is not a digit: "-0" is not zero.
std::optional<std::uint8_t> ByteOf(std::string_view digits, int base) {
  unsigned value = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
  if (error != std::errc() || stop != end || value > highestByte) return std::nullopt;
  return static_cast<std::uint8_t>(value);
}

/// Why a text is none that can be written; empty: it is. The base is 10 or 16.
std::string_view WhyRefused(std::string_view digits, int base) {
  const bool hex = base == 16;
  if (digits.empty()) return hex ? "Nothing typed: a byte is 00 to FF" : "";
  // So that a box that was only cleared of a wrong entry does not write.
  if (digits == "0") return "A single 0 is not written: type 00";
  const auto wrong = [hex](unsigned char letter) { return (hex ? std::isxdigit(letter) : std::isdigit(letter)) == 0; };
  if (std::ranges::any_of(digits, wrong))
    return hex ? "Not hexadecimal: a byte is 00 to FF" : "Not a number from 0 to 255";
  if (!ByteOf(digits, base)) return hex ? "Above FF: a byte is 00 to FF" : "Above 255: a byte is 0 to 255";
  return {};
}

std::string Hex(std::uint8_t byte) {
  return fmt::format("{:X}", byte);
}

}  // namespace

std::optional<std::uint8_t> RegisterView::Shown() const {
  if (!BitsKnown) return std::nullopt;
  unsigned byte = 0;
  for (std::size_t bit = 0; bit < Bits.size(); ++bit) byte |= (Bits.at(bit) ? 1U : 0U) << bit;
  return static_cast<std::uint8_t>(byte);
}

RegisterPanel::RegisterPanel(Link& link) : link_(link) {}

const RegisterEntry& RegisterPanel::SelectedRegister() const {
  // Row 90 is not checked: it is selected when no other row is.
  for (int row = 1; row < rowCount; ++row) {
    if (State(row) == RowState::Selected || State(row) == RowState::SelectedHovered) return *LookupEntry(row);
  }
  return *LookupEntry(rowCount);
}

void RegisterPanel::LeaveCurrentRow() {
  RowState& state = rows_.at(static_cast<std::size_t>(currentRow_));
  if (state == RowState::Hovered) state = RowState::Plain;
  if (state == RowState::SelectedHovered) state = RowState::Selected;
}

void RegisterPanel::Hover(int row) {
  if (row != currentRow_) {
    LeaveCurrentRow();
    currentRow_ = row;
  }
  RowState& state = rows_.at(static_cast<std::size_t>(row));
  if (state == RowState::Plain) state = RowState::Hovered;
  if (state == RowState::Selected) state = RowState::SelectedHovered;
}

void RegisterPanel::LeaveList() {
  LeaveCurrentRow();
}

void RegisterPanel::Click(int row) {
  Hover(row);
  lastSelectedRow_ = row;
  RowState& state = rows_.at(static_cast<std::size_t>(row));
  if (state != RowState::SelectedHovered) rows_.fill(RowState::Plain);
  state = RowState::SelectedHovered;
  ShowRegister(row);
}

void RegisterPanel::Reselect() {
  rows_.fill(RowState::Plain);
  currentRow_ = lastSelectedRow_;
  rows_.at(static_cast<std::size_t>(lastSelectedRow_)) = RowState::Selected;
  ShowRegister(lastSelectedRow_);
}

void RegisterPanel::ShowRegister(int row) {
  const RegisterEntry& entry = *LookupEntry(row);
  refusal_ = {};
  view_.Register = entry.Address;
  view_.Name = entry.PanelName;
  view_.BitNames = BitNames(entry.Bits);
  view_.Editable = entry.Access == Access::Editable;
  view_.Caution = CautionFor(entry.Address);
  // Before the read: a failed one must leave neither address nor value of the previous register for the next write.
  view_.Address = Hex(entry.Address);
  view_.HexValue.clear();
  view_.DecimalValue.clear();
  lastRead_.reset();
  ShowBits(0);
  view_.BitsKnown = false;
  Read(entry.Address);
}

void RegisterPanel::Read(std::uint8_t address) {
  lastRead_ = ReadByte(link_, address);
  view_.Register = address;
  view_.Address = Hex(address);
  UpdateRegisterInfo();
}

void RegisterPanel::ShowBits(std::uint8_t byte) {
  for (std::size_t bit = 0; bit < view_.Bits.size(); ++bit) view_.Bits.at(bit) = (byte >> bit & 1) != 0;
  view_.BitsKnown = true;
}

void RegisterPanel::UpdateRegisterInfo() {
  if (!lastRead_) return;
  ShowBits(*lastRead_);
  view_.HexValue = Hex(*lastRead_);
  view_.DecimalValue = std::to_string(*lastRead_);
}

void RegisterPanel::ShowWrittenElsewhere(std::uint8_t address, std::uint8_t byte) {
  if (view_.Register != address) return;
  lastRead_ = byte;
  UpdateRegisterInfo();
}

void RegisterPanel::ReadSelected() {
  Read(SelectedRegister().Address);
}

void RegisterPanel::ClickBit(int bit) {
  if (!view_.Editable) return;
  const std::uint8_t address = SelectedRegister().Address;
  const bool shown = view_.Bits.at(static_cast<std::size_t>(bit));
  const std::uint8_t before = ReadByte(link_, address);
  lastRead_ = before;
  const auto mask = static_cast<std::uint8_t>(1U << bit);
  const auto after = static_cast<std::uint8_t>(shown ? before & ~mask : before | mask);
  WriteByte(link_, address, after);
  lastWritten_ = after;
  Read(address);
}

void RegisterPanel::SetHexEntry(std::string text) {
  refusal_ = {};
  if (text != hexEntry_) hexButton_ = EntryState::Unwritten;
  hexEntry_ = std::move(text);
}

void RegisterPanel::SetDecimalEntry(std::string text) {
  refusal_ = {};
  if (text != decimalEntry_) decimalButton_ = EntryState::Unwritten;
  decimalEntry_ = std::move(text);
}

void RegisterPanel::RejectEntries(std::string_view why) {
  SetHexEntry(rejectedText);
  SetDecimalEntry(rejectedText);
  refusal_ = why;
}

void RegisterPanel::WriteDecimalEntry() {
  if (const auto why = WhyRefused(decimalEntry_, 10); !why.empty()) return RejectEntries(why);
  if (!view_.Editable) return;
  decimalButton_ = EntryState::Unwritten;  // until it has succeeded
  const std::uint8_t byte = decimalEntry_.empty() ? 0 : *ByteOf(decimalEntry_, 10);
  const std::uint8_t address = SelectedRegister().Address;
  WriteByte(link_, address, byte);
  ShowWritten(address, byte);
  SetHexEntry(Hex(byte));
  hexButton_ = decimalButton_ = EntryState::Written;
}

void RegisterPanel::WriteHexEntry() {
  if (const auto why = WhyRefused(hexEntry_, 16); !why.empty()) return RejectEntries(why);
  if (!view_.Editable) return;
  // The register whose address is shown, which is the selected one.
  const auto address = ByteOf(view_.Address, 16);
  if (!address) return;
  hexButton_ = EntryState::Unwritten;
  const std::uint8_t byte = *ByteOf(hexEntry_, 16);
  WriteByte(link_, *address, byte);
  ShowWritten(*address, byte);
  SetDecimalEntry(std::to_string(byte));
  hexButton_ = decimalButton_ = EntryState::Written;
}

void RegisterPanel::ShowWritten(std::uint8_t address, std::uint8_t byte) {
  lastWritten_ = byte;
  view_.Register = address;
  view_.Address = Hex(address);
  UpdateRegisterInfo();
  // The bits show the written byte, the value labels the byte last read: a write is not verified.
  ShowBits(byte);
}

}  // namespace krx
