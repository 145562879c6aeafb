#pragma once

#include <cstdlib>
#include <random>

namespace kelvo::testing_world {

/// How often a test tries its luck: as many times as the environment says, else `few`.
inline int FireCount(int few) {
  const char* const more = std::getenv("KELVO_FIRE");
  return more != nullptr ? std::atoi(more) : few;
}
inline bool LongFire() { return std::getenv("KELVO_FIRE") != nullptr; }

/// Where the random numbers begin: at 1, or where the environment says.
inline unsigned FireSeed() {
  const char* const seed = std::getenv("KELVO_FIRE_SEED");
  return seed != nullptr ? static_cast<unsigned>(std::strtoul(seed, nullptr, 10)) : 1;
}

}  // namespace kelvo::testing_world
