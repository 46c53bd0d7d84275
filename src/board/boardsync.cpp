// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/boardsync.h"

#include <array>

#include "board/switches.h"
#include "link/registeraccess.h"
#include "registers/chip.h"

namespace krx {
namespace {

// Bits of the devices, by the letter of the designator.
constexpr int bitA = 0, bitB = 1, bitC = 2, bitD = 3, bitE = 4, bitG = 6, bitH = 7;

/// The three switches of a fan's group within its device, and the patterns that connect them: 101 and 010.
struct TachGroup {
  SwitchDevice Device;
  std::uint8_t Mask;
  std::uint8_t TwoWire;
  std::uint8_t ThreeWire;
};
constexpr std::array<TachGroup, 4> tachGroups{{
    {SwitchDevice::U5, 0x07, 0x05, 0x02},
    {SwitchDevice::U5, 0xE0, 0xA0, 0x40},
    {SwitchDevice::U6, 0x07, 0x05, 0x02},
    {SwitchDevice::U6, 0xE0, 0xA0, 0x40},
}};

std::uint8_t Routed(std::uint8_t states, const TachGroup& group, bool twoWire) {
  return static_cast<std::uint8_t>((states & ~group.Mask) | (twoWire ? group.TwoWire : group.ThreeWire));
}

bool Has(std::uint8_t byte, std::uint8_t mask) {
  return (byte & mask) != 0;
}

}  // namespace

void ProbeVidDrive(Board& board) {
  const Board::ReportScope report(board);
  Switch& u3 = board.Device(SwitchDevice::U3);
  std::array<bool, 2> bits{};
  for (const bool closed : {false, true}) {
    u3.SetStatus(bitD, closed);
    u3.WriteSwitch();
    bits[closed ? 1 : 0] = Has(ReadByte(board.GetLink(), chip::Vid), chip::Vid3);
  }
  board.State().VidProbeSteady = bits[0] == bits[1];
  board.State().VidProbed = !board.GetLink().WritesHeldBack;
}

std::int16_t SyncTach4Switches(Board& board) {
  const Board::ReportScope report(board);
  Link& link = board.GetLink();
  const bool enabled = Has(ReadByte(link, chip::Configuration3), chip::ThermEnabled);
  const bool on5v = enabled && Has(ReadByte(link, chip::Configuration4), chip::ThermOn5V);
  const bool onTach4 = enabled && !on5v;
  Switch& u3 = board.Device(SwitchDevice::U3);
  u3.SetStatus(bitG, onTach4);
  u3.SetStatus(bitH, !onTach4);
  if (board.State().VidProbeSteady) {
    u3.SetStatus(bitE, on5v);
    u3.SetStatus(bitC, !on5v);
  }
  u3.WriteSwitch();
  if (!enabled) return 0;
  return on5v ? 1 : 2;
}

AlertModes SyncAlertSwitches(Board& board) {
  const Board::ReportScope report(board);
  Link& link = board.GetLink();
  AlertModes modes{};
  const bool onPwm2 = Has(ReadByte(link, chip::Configuration3), chip::AlertOnPwm2);
  modes.AlertPwm2Mode = onPwm2 ? 2 : 1;
  Switch& u5 = board.Device(SwitchDevice::U5);
  u5.SetStatus(bitE, !onPwm2);
  u5.SetStatus(bitD, onPwm2);
  u5.WriteSwitch();
  if (board.State().VidProbeSteady) {
    const bool on25v = Has(ReadByte(link, chip::Configuration4), chip::AlertOn25V);
    modes.Alert25vMode = static_cast<std::int16_t>(on25v ? 2 : 1);
    Switch& u3 = board.Device(SwitchDevice::U3);
    u3.SetStatus(bitB, !on25v);
    u3.SetStatus(bitA, on25v);
    u3.WriteSwitch();
  }
  return modes;
}

void RouteTach(Board& board, int tach, bool twoWire) {
  const TachGroup& group = tachGroups.at(static_cast<std::size_t>(tach));
  const int device = static_cast<int>(group.Device);
  WriteSwitchDevice(board, device, Routed(ReadSwitchDevice(board, device), group, twoWire));
}

void RouteTachsFromChip(Board& board) {
  const Board::ReportScope report(board);
  const std::uint8_t sources = ReadByte(board.GetLink(), chip::Configuration2);
  for (std::size_t tach = 0; tach < tachGroups.size(); ++tach) {
    const TachGroup& group = tachGroups[tach];
    Switch& device = board.Device(group.Device);
    device.SetStatusByte(Routed(device.StatusByte(), group, Has(sources, chip::Tachs[tach].TwoWire)));
    device.WriteSwitch();
  }
}

}  // namespace krx
