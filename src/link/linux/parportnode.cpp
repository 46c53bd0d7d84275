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

namespace krx {

namespace {

constexpr double claimLimitSeconds = 0.5;
constexpr const char* nobody = "none";  // what the kernel calls the holder of an idle port

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
      throw CommsError(number, fmt::format("no printer port behind {}: the driver parport_pc is not loaded, "
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
  // The kernel's own list knows ports whose node is missing; those are offered so that using one tells what to do.
  auto ports = NumberedEntries(roots.Dev, "parport");
  const auto registered = NumberedEntries(roots.Sys + "/bus/parport/devices", "parport");
  ports.insert(ports.end(), registered.begin(), registered.end());
  std::sort(ports.begin(), ports.end());
  ports.erase(std::unique(ports.begin(), ports.end()), ports.end());
  return ports;
}

ParportNode::ParportNode(Kernel& kernel, KernelRoots roots) : roots_(std::move(roots)), node_(kernel) {}

void ParportNode::Claim(int number) {
  if (number != number_) Close();
  number_ = number;
  if (!node_.IsOpen()) {
    ClaimAlone();
  } else if (shared_) {
    ClaimShared();
  } else if (const int result = node_.Ioctl(PPCLAIM); result < 0) {
    Close();
    FailedOpen(-result, fmt::format("{}/parport{}", roots_.Dev, number_));
  }
  // Only ports that can turn the data lines round know this request; the others always drive them.
  int outputs = 0;
  node_.Ioctl(PPDATADIR, &outputs);
}

void ParportNode::Release() {
  node_.Ioctl(PPRELEASE);
}

void ParportNode::Close() {
  node_.Close();
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

void ParportNode::Open() {
  const std::string path = fmt::format("{}/parport{}", roots_.Dev, number_);
  const int opened = node_.Open(path);
  if (opened < 0) FailedOpen(-opened, path);
}

void ParportNode::ClaimAlone() {
  Open();
  shared_ = false;
  int result = node_.Ioctl(PPEXCL);
  // Alone on the port nobody can make this block: it is granted or refused.
  if (result >= 0) result = node_.Ioctl(PPCLAIM);
  if (result >= 0) return;
  node_.Close();
  std::error_code error;
  const bool refused = result == -ENXIO || result == -EBUSY || result == -EAGAIN;
  if (!refused || !std::filesystem::exists(PortDirectory(roots_, number_), error)) {
    FailedOpen(-result, fmt::format("{}/parport{}", roots_.Dev, number_));
  }
  // A wish for exclusiveness stays with the descriptor, so sharing takes a new one.
  Open();
  shared_ = true;
  ClaimShared();
}

void ParportNode::ClaimShared() {
  if (const std::string active = ActiveDriver(); active != nobody) Used(active);
  int result = 0;
  {
    // The kernel lets a claim wait for as long as the other driver likes.
    const InterruptTimer timer(claimLimitSeconds);
    result = node_.Ioctl(PPCLAIM);
  }
  if (result >= 0) return;
  const std::string active = ActiveDriver();
  Used(active == nobody ? RegisteredDrivers() : active);
}

void ParportNode::Access(unsigned long request, std::uint8_t& value) {
  const int result = node_.Ioctl(request, &value);
  if (result >= 0) return;
  Close();
  throw CommsError(-result, fmt::format("printer port {} does not answer ({})", number_, ErrorSymbol(-result)));
}

void ParportNode::Used(const std::string& by) {
  // Closing also takes back a claim that is still queued; the kernel would grant it later, behind our back.
  Close();
  throw CommsError(EBUSY, fmt::format("printer port {} is used by {}", number_, by));
}

std::string ParportNode::ActiveDriver() const {
  return FirstLine(PortDirectory(roots_, number_) + "/devices/active").value_or("another driver");
}

std::string ParportNode::RegisteredDrivers() const {
  std::string names;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(PortDirectory(roots_, number_) + "/devices", error)) {
    if (!entry.is_directory(error)) continue;
    names += (names.empty() ? "" : ", ") + entry.path().filename().string();
  }
  return names.empty() ? "another driver" : names;
}

}  // namespace krx
