#pragma once

#include <poll.h>
#include <unistd.h>

#include <string>
#include <string_view>

namespace kelvo::testing_world {

constexpr int kPatience = 20'000;  ///< ms; only a broken program needs it

/// What comes from a handle until it ends with `end`, or as far as it came.
inline std::string ReadUntil(int handle, std::string_view end) {
  std::string text;
  pollfd waiting{handle, POLLIN, 0};
  while (!text.ends_with(end) && poll(&waiting, 1, kPatience) > 0) {
    char byte = 0;
    if (read(handle, &byte, 1) != 1) break;
    text += byte;
  }
  return text;
}

}  // namespace kelvo::testing_world
