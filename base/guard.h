#pragma once

#include <exception>
#include <string>
#include <utility>

#include "base/operator.h"

namespace kelvo {

/// Runs a handler. What fails in it is shown as the error's description and the routine's name; no
/// exception leaves a handler.
template <typename Handler>
void Guarded(Operator& person, const char* routine, Handler&& handler) {
  const Undertakings::Running running(person.Begun());
  try {
    std::forward<Handler>(handler)();
  } catch (const std::exception& error) {
    person.Message(std::string(error.what()) + " / " + routine, Icon::Exclamation);
  }
}

}  // namespace kelvo
