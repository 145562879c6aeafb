#pragma once

#include "adapters/held_input.h"
#include "adapters/qt_event_loop.h"

namespace kelvo {

/// The loop of a program with windows: in a wait that takes no input, keys and the mouse wait, too.
class WindowLoop : public QtEventLoop {
 protected:
  void ServeHeld() override {
    const HeldInput input;
    QtEventLoop::ServeHeld();
  }
};

}  // namespace kelvo
