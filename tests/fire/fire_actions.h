#pragma once

#include <vector>

#include "tests/fire/fire_program.h"

namespace kelvo::fire {

/// One action for each thing that the window sends to one Terminal, always the same.
const std::vector<FireProgram::Action>& Script();
/// The search up to address 5, and the drawing that is sent to all that are listed.
const std::vector<FireProgram::Action>& BusScript();

}  // namespace kelvo::fire
