// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "link/clock.h"
#include "link/commsroot.h"
#include "link/eventpump.h"
#include "link/linknewcomport06.h"
#include "simulator/simcomms.h"

namespace krx {

/// A clock advanced by the test. Every reading advances it by a microsecond, so that a loop waiting for it
/// terminates.
class ManualClock : public Clock {
 public:
  std::int64_t Frequency() override { return CountsPerSecond; }
  std::int64_t Counter() override { return ++micros_; }
  double FallbackSeconds() override { return static_cast<double>(Counter()) / 1e6; }

  void Advance(double seconds) { micros_ += std::llround(seconds * 1e6); }
  /// The present time without advancing it.
  double Seconds() const { return static_cast<double>(micros_) / 1e6; }

  std::int64_t CountsPerSecond = 1'000'000;  ///< 0: no performance counter

 private:
  std::int64_t micros_ = 0;
};

/// An event pump whose "waiting" moves the clock. `OnPump` represents the events handled meanwhile.
class ScriptedPump : public EventPump {
 public:
  explicit ScriptedPump(ManualClock& clock) : clock_(clock) {}

  void Pump(double seconds, PumpMode mode) override {
    ++Calls;
    LastMode = mode;
    if (OnPump) OnPump();
    clock_.Advance(std::min(seconds, Longest));
  }

  double Longest = std::numeric_limits<double>::infinity();  ///< seconds after which a wait returns early
  int Calls = 0;
  PumpMode LastMode = PumpMode::Everything;
  std::function<void()> OnPump;

 private:
  ManualClock& clock_;
};

/// A link on the simulated computer, ready to use: chip selected, trace empty.
struct TestBench {
  enum class Medium { Board, Smbus };

  explicit TestBench(Medium medium = Medium::Board, SimOptions options = {})
      : On(medium),
        Pump(Time),
        Sim(Time, WithWait(std::move(options))),
        Root([this] { return Sim.MakeCommsModule(); }),
        Bus(Root, Time, Pump) {
    Bus.CommsMedium = medium == Medium::Board ? 1 : 0;
    Bus.EvalBoardMedium = Bus.CommsMedium;
    Bus.ChipAddress = medium == Medium::Board ? 0x5A : 0x2E;
  }

  /// The chip of the link, advanced to the present time; Peek and Poke leave no trace.
  SimChip& Chip() { return On == Medium::Board ? Sim.BoardChip() : Sim.SmbusChip(); }
  SimPlant& Plant() { return On == Medium::Board ? Sim.BoardPlant() : Sim.SmbusPlant(); }
  std::uint8_t Peek(std::uint8_t reg) { return Chip().Peek(reg); }
  void Poke(int reg, int value) { Chip().Poke(static_cast<std::uint8_t>(reg), static_cast<std::uint8_t>(value)); }
  void Poke(std::initializer_list<std::pair<int, int>> bytes) {
    for (const auto& [reg, value] : bytes) Poke(reg, value);
  }
  /// The same, and a write, of several bytes in the notation of the trace: "5C:E2 30:90".
  void Poke(std::string_view bytes) { ForEachByte(bytes, &SimChip::Poke); }
  void Write(std::string_view bytes) { ForEachByte(bytes, &SimChip::Write); }

  /// Advances clock and model.
  void Advance(double seconds) {
    Time.Advance(seconds);
    Chip();
  }

  /// The register transfers since the last call of this or of BusTraffic: "R77 R25 W30:FF", a failed one "R77!".
  std::string Traffic() { return Take(TraceFilter::Registers); }
  /// The same with the board's transfers: "S90:10" and "V94" (switch devices), "C10", "ST", "K" (complete).
  std::string BusTraffic() { return Take(TraceFilter::Bus); }
  /// All library calls.
  std::string All() { return Take(TraceFilter::All); }

  /// The nth bus transfer from now on fails (n = 1 is the next).
  void FailTransfer(int nth, bool onward = false) {
    Fault fault;
    fault.Nth = nth;
    fault.Onward = onward;
    Sim.AddFault(fault);
  }

  Medium On;
  ManualClock Time;
  ScriptedPump Pump;
  Simulation Sim;
  CommsRoot Root;
  Link Bus;

 private:
  SimOptions WithWait(SimOptions options) {
    if (!options.Wait) options.Wait = [this](double seconds) { Time.Advance(seconds); };
    return options;
  }
  void ForEachByte(std::string_view bytes, void (SimChip::*put)(std::uint8_t, std::uint8_t)) {
    for (std::size_t at = 0; at < bytes.size(); at += 6) {
      const auto hex = [&](std::size_t from) {
        return std::stoi(std::string(bytes.substr(at + from, 2)), nullptr, 16);
      };
      (Chip().*put)(static_cast<std::uint8_t>(hex(0)), static_cast<std::uint8_t>(hex(3)));
    }
  }
  std::string Take(TraceFilter filter) {
    std::string text = Sim.Trace().Text(filter);
    Sim.Trace().Clear();
    return text;
  }
};

}  // namespace krx
