// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "fans/fancommon.h"
#include "link/linknewcomport06.h"

namespace krx {

// Conversions that access the chip or use the bytes last seen on the bus. The former throw what the link throws; a
// channel, zone or fan out of range is a programming error and throws std::out_of_range before any transfer.

/// The two fraction bits of a temperature.
struct TempFractionReading {
  std::string Text;  ///< " " (one blank), ".25", ".5" or ".75"
  float Value;
};

/// Reads 0x77; the value register is read after it. channel: 0 Local, 1 Remote1, 2 Remote2.
TempFractionReading TempFraction(Link& link, int channel);

/// Reads 0x76 or 0x77: the two lowest bits of the 10-bit code, 0..3. channel: 0..4.
int VoltageExtension(Link& link, int channel);

/// The present duty of output 0..2 as last seen on the bus, "29 %"; "an unknown duty" if it was not seen. No transfer.
std::string SeenDuty(const Link& link, std::size_t output);

/// Reads 0x6D or 0x6E: °C, 0..15. zone: 0 Local, 1 Remote1, 2 Remote2.
int HysteresisOf(Link& link, int zone);

/// Writes the tachometer minimum of fan 1..4, low byte then high byte. A speed that has no count (see TachLimitCount)
/// throws OutOfRange before the first of the two.
void TachLimitWrite(Link& link, const FanCommon& fans, int fan, float rpm);

}  // namespace krx
