#pragma once

#include "link/link_world.h"
#include "tests/fakes/virtual_port.h"
#include "tests/fakes/virtual_time.h"

namespace kelvo::testing_world {

/// Loop, timers and port of the program, where time is a number.
struct VirtualWorld : LinkWorld<VirtualLoop, VirtualTimer, VirtualPort> {
  VirtualPort& port = com1;
  ScriptedTerminal terminal{com1};
};

}  // namespace kelvo::testing_world
