#pragma once

#include <cstddef>
#include <string>

// What Qt's serial port does not tell about a device. One file per operating system implements it.

namespace kelvo {

enum class DeviceState { Ready, Missing, NoPermission };

/// Whether a device can be opened at all, by its path.
DeviceState StateOfDevice(const std::string& path);
/// The group whose members may use the device; empty when no group may, or it has no name.
std::string GroupOfDevice(const std::string& path);
/// Whether some program, this one included, has the device; found without opening it.
bool IsDeviceInUse(const std::string& path);
/// A pseudo-terminal has no request-to-send line, no parity and no 7 bits.
bool IsPseudoTerminal(const std::string& path);

/// Takes the device for this program alone; false when another program has it.
bool LockDevice(int handle);
/// True when the other end is gone (adapter unplugged, pseudo-terminal closed).
bool HungUp(int handle);
/// Characters that the driver holds and has not sent.
std::size_t DriverQueue(int handle);
/// What has arrived; never waits. Sets `gone` when the device is.
std::string ReadAvailable(int handle, bool& gone);

}  // namespace kelvo
