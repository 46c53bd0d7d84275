// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace krx {

class BusHost;

// The bus-access library, as pure interfaces in the order of each object's operations. Addresses are bus addresses
// and registers register pointers, each one byte. Every operation throws CommsError when it fails, NoAcknowledge when
// no device answered at the address. The objects that the root and the adapter hand out are owned by the caller:
// leaving the scope releases them.

/// The bits of heaters 1 and 2 in the control byte and in the status byte.
inline constexpr std::array<std::uint8_t, 2> heaterMasks{0x10, 0x20};

/// The two-wire bus behind the printer-port adapter. Takes bus addresses in their 8-bit form (0x58, 0x90, ...).
class BusDevice {
 public:
  virtual ~BusDevice() = default;
  virtual void SendByte(std::uint8_t address, std::uint8_t data) = 0;
  virtual std::uint8_t ReceiveByte(std::uint8_t address) = 0;
  virtual void SetControlByte(std::uint8_t value) = 0;
  /// The heaters' bits mirror those of the control byte.
  virtual std::uint8_t ReadStatusByte() = 0;
  virtual void SetDeviceAddress(std::uint8_t address) = 0;
  virtual void SetBusMode(bool mode) = 0;
  virtual bool GetBusMode() = 0;
  virtual std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg) = 0;
  virtual void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) = 0;
  /// Follows every control-byte change that switches a heater.
  virtual void Complete() = 0;
};

/// The PC side of the evaluation board.
class PrinterPortAdapter {
 public:
  virtual ~PrinterPortAdapter() = default;
  virtual std::uint8_t PortCount() = 0;
  /// port: 0 to PortCount() - 1.
  virtual void SelectPort(std::uint8_t port) = 0;
  virtual std::int32_t CurrentPort() = 0;
  /// The bus behind the selected port.
  virtual std::unique_ptr<BusDevice> ObtainBusDevice() = 0;
};

/// The PC's own SMBus host. Takes bus addresses in their 7-bit form (0x2E).
class SmbusController {
 public:
  virtual ~SmbusController() = default;
  /// Describes the host found; the search wizard compares its beginning.
  virtual std::string ChipsetReport() = 0;
  virtual void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) = 0;
  virtual std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg) = 0;
  virtual void SetTargetAddress(std::uint8_t address) = 0;
};

/// The root object; one per process, kept by CommsRoot.
class CommsModule {
 public:
  virtual ~CommsModule() = default;
  virtual std::unique_ptr<PrinterPortAdapter> ObtainPrinterPortAdapter() = 0;
  virtual std::unique_ptr<SmbusController> ObtainSmbusController() = 0;
  /// medium: 1 the printer-port adapter, 0 the SMBus.
  virtual void SelectMedium(int medium) = 0;
  /// Set over the buses of a real computer; lives as long as this object.
  virtual BusHost* Host() { return nullptr; }
};

}  // namespace krx
