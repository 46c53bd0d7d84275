// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/parportnode.h"

#include <fmt/format.h>
#include <linux/parport.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

#include "link/commserror.h"
#include "link/linux/nodeholder.h"

namespace krx {

namespace {

constexpr double claimLimitSeconds = 0.5;
constexpr const char* idlePort = "none";         // the kernel's name for the holder of an idle port
constexpr const char* programsDriver = "ppdev";  // the driver used by programs
constexpr LockRange wholePort{0, 128};           // one byte per bus address

[[noreturn]] void FailedOpen(int number, const std::string& path) {
  switch (number) {
    case ENOENT:
      throw CommsError(number, fmt::format("{} does not exist: load its driver with \"modprobe ppdev\", "
                                           "or choose another port with --printer-port",
                                           path));
    case EACCES:
      throw CommsError(number, fmt::format("no permission for {}: join the group lp (\"adduser USER lp\") "
                                           "and log in again",
                                           path));
    case ENXIO:
    case ENODEV:
      throw CommsError(number, fmt::format("no printer port for {}: the driver parport_pc is not loaded, "
                                           "or the PC has no such port",
                                           path));
    default:
      throw CommsError(number, fmt::format("cannot use {} ({})", path, ErrorSymbol(number)));
  }
}

std::string PortDirectory(const KernelRoots& roots, int number) {
  return fmt::format("{}/sys/dev/parport/parport{}", roots.Proc, number);
}

}  // namespace

std::vector<int> ListPrinterPorts(const KernelRoots& roots) {
  // The kernel's list includes ports whose node is missing; using one of them then reports what to do.
  auto ports = NumberedEntries(roots.Dev, "parport");
  const auto registered = NumberedEntries(roots.Sys + "/bus/parport/devices", "parport");
  ports.insert(ports.end(), registered.begin(), registered.end());
  std::sort(ports.begin(), ports.end());
  ports.erase(std::unique(ports.begin(), ports.end()), ports.end());
  return ports;
}

ParportNode::ParportNode(Kernel& kernel, KernelRoots roots) : roots_(std::move(roots)), node_(kernel) {}

void ParportNode::Open(int number) {
  if (number != number_) {
    Close();
    worked_ = false;
  }
  number_ = number;
  if (node_.IsOpen()) return;
  if (const int result = node_.Open(Path()); result < 0) Failed(-result);
}

std::optional<std::string> ParportNode::Holder(WriteRight right) {
  if (taken_) return std::nullopt;
  const bool take = right == WriteRight::Take;
  if (const auto process = node_.OtherHolder(wholePort, take)) return ProcessText(roots_, *process);
  taken_ = take;
  return std::nullopt;
}

void ParportNode::Claim() {
  const auto active = ActiveDriver();
  if (active && !active->starts_with(programsDriver)) Used(*active);
  int result = 0;
  {
    // The kernel lets a claim wait without limit.
    const InterruptTimer timer(claimLimitSeconds);
    result = node_.Ioctl(PPCLAIM);
  }
  // When a program has exclusive access to the port, the kernel returns ENXIO as if there were no port.
  const bool refused = result == -ENXIO && std::filesystem::exists(PortDirectory(roots_, number_));
  if (refused || result == -EINTR || result == -EAGAIN || result == -EBUSY) {
    Used(ActiveDriver().value_or(programsDriver));
  }
  if (result < 0) Failed(-result);
  worked_ = true;
  // Only bidirectional ports support this request; the others always drive the data lines.
  int outputs = 0;
  node_.Ioctl(PPDATADIR, &outputs);
}

void ParportNode::Release() {
  node_.Ioctl(PPRELEASE);
}

void ParportNode::Close() {
  node_.Close();
  taken_ = false;
}

std::uint8_t ParportNode::Read(PortRegister which) {
  std::uint8_t value = 0;
  switch (which) {
    case PortRegister::Data:
      Access(PPRDATA, value);
      break;
    case PortRegister::Status:
      Access(PPRSTATUS, value);
      break;
    case PortRegister::Control:
      Access(PPRCONTROL, value);
      break;
  }
  return value;
}

void ParportNode::Write(PortRegister which, std::uint8_t value) {
  Access(which == PortRegister::Control ? PPWCONTROL : PPWDATA, value);
}

void ParportNode::Access(unsigned long request, std::uint8_t& value) {
  const int result = node_.Ioctl(request, &value);
  if (result >= 0) return;
  Close();
  throw CommsError(-result, fmt::format("printer port {} does not respond ({})", number_, ErrorSymbol(-result)));
}

void ParportNode::Used(const std::string& by) {
  std::string user = by;
  if (by.starts_with(programsDriver)) {
    const auto process = node_.OtherHolder(wholePort, false);
    user = process ? ProcessText(roots_, *process) : NodeUser(roots_, Path());
  }
  // This also cancels a queued claim, which the kernel would grant later.
  Close();
  throw CommsError(EBUSY, fmt::format("printer port {} is in use by {}", number_, user));
}

void ParportNode::Failed(int number) {
  Close();
  if (worked_ && (number == ENOENT || number == ENXIO || number == ENODEV)) {
    throw CommsError(number, fmt::format("printer port {} was disconnected: plug its adapter in again", number_));
  }
  FailedOpen(number, Path());
}

std::string ParportNode::Path() const {
  return fmt::format("{}/parport{}", roots_.Dev, number_);
}

std::optional<std::string> ParportNode::ActiveDriver() const {
  auto active = FirstLine(PortDirectory(roots_, number_) + "/devices/active");
  if (active && *active == idlePort) active.reset();
  return active;
}

}  // namespace krx
