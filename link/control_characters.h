#pragma once

#include <string_view>

// The command language's fixed characters. Every command starts with ESC, is named by one to three
// letters, carries decimal parameters separated by "," and is closed by ";".

namespace kelvo {

inline constexpr char Etx = '\x03';  ///< ends a macro text
inline constexpr char Eot = '\x04';  ///< ends a graphic text
inline constexpr char Ack = '\x06';
inline constexpr char CarriageReturn = '\r';  ///< ends each number of an erase count-down
inline constexpr char Nak = '\x15';
inline constexpr char Esc = '\x1b';

/// In front of every command on the wire.
inline constexpr std::string_view CmdPrefix = "\x1b";
/// End of a parameter list and of every query reply.
inline constexpr std::string_view EndMark = ";";

}  // namespace kelvo
