#pragma once

#include <string_view>

// The command language's fixed characters. Every command starts with ESC, is named by one to three
// letters, carries decimal parameters separated by "," and is closed by ";".

namespace kelvo {

inline constexpr char kEtx = '\x03';  ///< ends a macro text
inline constexpr char kEot = '\x04';  ///< ends a graphic text
inline constexpr char kAck = '\x06';
inline constexpr char kCarriageReturn = '\r';  ///< ends each number of an erase count-down
inline constexpr char kNak = '\x15';
inline constexpr char kEsc = '\x1b';

/// In front of every command on the wire.
inline constexpr std::string_view CmdPrefix = "\x1b";
/// End of a parameter list and of every query reply.
inline constexpr std::string_view kEndMark = ";";

}  // namespace kelvo
