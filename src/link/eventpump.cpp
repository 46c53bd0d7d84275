// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/eventpump.h"

#include <chrono>
#include <thread>

namespace krx {

void SleepingPump::Pump(double seconds, PumpMode) {
  if (seconds > 0) std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

}  // namespace krx
