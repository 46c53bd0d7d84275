// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>

#include "board/board.h"
#include "link/commserror.h"
#include "support/testbench.h"

namespace krx {

/// The evaluation board's objects on the simulated bus.
struct BoardBench : TestBench {
  explicit BoardBench(Medium medium = Medium::Board, SimOptions options = {}) : TestBench(medium, std::move(options)) {
    Eval.SwitchesChanged = [this] { ++Reports; };
  }
  std::uint8_t Sent(SwitchDevice device) { return Sim.Board().SwitchByte(SwitchDeviceAddress(device)); }

  BoardState Flags;
  OwedWrites Owed{Bus};
  Board Eval{Bus, Flags, Owed};
  int Reports = 0;  ///< of changed switches
};

/// The transfers of `handler` up to and including the failed nth one: "R78!". It must throw.
inline std::string UpToFailure(TestBench& bench, int nth, const std::function<void()>& handler) {
  bench.BusTraffic();
  bench.FailTransfer(nth);
  try {
    handler();
  } catch (const CommsError&) {
    bench.Sim.ClearFaults();
    return bench.BusTraffic();
  }
  return "nothing was thrown";
}

/// The first n words of a traffic text, the last of them marked as failed.
inline std::string FirstFailing(std::string_view traffic, int n) {
  std::size_t end = 0;
  for (int word = 0; word < n; ++word) end = std::min(traffic.find(' ', end + 1), traffic.size());
  return std::string(traffic.substr(0, end)) + "!";
}

inline int WordCount(std::string_view traffic) {
  return traffic.empty() ? 0 : 1 + static_cast<int>(std::ranges::count(traffic, ' '));
}

}  // namespace krx
