// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "link/clock.h"
#include "link/commsmodule.h"
#include "simulator/simboard.h"
#include "simulator/simchip.h"
#include "simulator/simfaults.h"
#include "simulator/simoptions.h"
#include "simulator/simplant.h"
#include "simulator/simtrace.h"

namespace krx {

/// The simulated computer: chips with their fans and temperatures, boards on the printer ports, the SMBus, the trace of
/// all operations and the injected faults. The model advances on each access, in steps of 10 ms of simulated time, so
/// the same seed, operations and clock readings give the same bytes.
///
/// After a gap of more than an hour of simulated time only the last hour is computed: computing days at once would take
/// too long (an hour takes a fraction of a second), and everything but a slow dynamic Tmin has settled by then. Board
/// and SMBus advance independently, so that an unused medium costs nothing.
class Simulation {
 public:
  Simulation(Clock& clock, SimOptions options);
  ~Simulation();
  Simulation(const Simulation&) = delete;
  Simulation& operator=(const Simulation&) = delete;

  /// A bus-access library for this simulation, which must outlive it and all objects it hands out.
  std::unique_ptr<CommsModule> MakeCommsModule();

  SimTrace& Trace() { return trace_; }

  /// Injects a fault; faults of the same kind add up. Counting for FailTransfer starts here.
  void AddFault(const Fault& fault);
  void ClearFaults();
  /// Number of transfers failed by injection since the last ClearFaults.
  int FaultsFired() const { return plan_.Fired(); }

  // Direct access without a trace; the model is advanced to the present time first. Throws std::out_of_range for a chip
  // or board that does not exist.
  SimChip& BoardChip(std::size_t index = 0);
  SimChip& SmbusChip(std::size_t index = 0);
  SimBoard& Board(std::size_t port = 0);
  /// The fans and temperatures around a chip.
  SimPlant& BoardPlant(std::size_t index = 0);
  SimPlant& SmbusPlant(std::size_t index = 0);
  /// Adapters, bus devices and controllers handed out and not yet released.
  int LiveHandles() const { return liveHandles_; }
  /// Clock seconds since the simulation was created.
  double Seconds();

 private:
  friend class SimBus;
  struct Unit;

  /// The chips of one medium and how far they have been computed.
  struct Side {
    std::vector<std::unique_ptr<Unit>> Units;
    std::int64_t Step = 0;
  };
  Unit& UnitNow(Side& side, std::size_t index);
  void Advance(Side& side);
  static void Step(Unit& unit, const PlantFaults& faults, std::int64_t step);
  void RefreshPins(Unit& unit) const;

  Clock& clock_;
  SimOptions options_;
  double startSeconds_ = 0;
  std::vector<SimBoard> boards_;
  Side boardSide_;
  Side smbusSide_;
  SimTrace trace_;
  FaultPlan plan_;
  double extraSeconds_ = 0;
  double slowedSeconds_ = 0;  ///< total delay added so far
  std::optional<double> absentFrom_;
  PlantFaults plantFaults_;
  std::array<bool, 2> openDiode_{};
  std::optional<std::uint8_t> companyId_;
  std::array<std::uint8_t, 256> stuckBits_{};  ///< by register
  std::uint8_t selectedPort_ = 0;
  int liveHandles_ = 0;
};

}  // namespace krx
