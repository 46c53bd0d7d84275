// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace krx {

/// Noise that depends only on seed, step and channel, so that a reading at a given time does not depend on what was
/// read before it.
class SimNoise {
 public:
  /// scale: 0 switches the noise off.
  SimNoise(std::uint32_t seed, double scale) : seed_(seed), scale_(scale) {}

  /// Uniformly distributed over -amplitude..amplitude (times the scale).
  double At(std::int64_t step, unsigned channel, double amplitude) const {
    // A 64-bit finaliser: every input bit reaches every output bit.
    std::uint64_t x = (static_cast<std::uint64_t>(seed_) << 40) ^ (static_cast<std::uint64_t>(step) << 5) ^ channel;
    x += 0x9E3779B97F4A7C15u;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9u;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBu;
    x ^= x >> 31;
    const double unit = static_cast<double>(x >> 11) / static_cast<double>(std::uint64_t{1} << 53);
    return (2 * unit - 1) * amplitude * scale_;
  }

 private:
  std::uint32_t seed_;
  double scale_;
};

}  // namespace krx
