#pragma once

#include <string>

// What can be told of a device without opening it. One file per operating system implements it.

namespace kelvo {

enum class DeviceState { Ready, Missing, NoPermission, NotSerial };

/// The path of a device that may be named as the system lists it ("ttyS0").
std::string DevicePath(const std::string& name);
/// Whether a device can be opened at all, by its path.
DeviceState StateOfDevice(const std::string& path);
/// The group whose members may use the device; empty when no group may, or it has no name.
std::string GroupOfDevice(const std::string& path);
/// Whether some program, this one included, has the device; found without opening it.
bool IsDeviceInUse(const std::string& path);
/// A pseudo-terminal has no request-to-send line, no parity and no 7 bits.
bool IsPseudoTerminal(const std::string& path);

}  // namespace kelvo
