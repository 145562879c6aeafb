#pragma once

#include <sys/types.h>

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
/// The process that has the device or its lock, this one included; found without opening it. 0 for
/// none, DeviceLock::kSomebody where its number is not to be had.
pid_t UserOfDevice(const std::string& path);
/// A pseudo-terminal has no request-to-send line, no parity and no 7 bits.
bool IsPseudoTerminal(const std::string& path);

}  // namespace kelvo
