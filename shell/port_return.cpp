#include "shell/port_return.h"

#include <utility>

namespace kelvo {

PortReturn::PortReturn(Services services) : services_(std::move(services)) {
  services_.timer.SetHandler([this] { Look(); });
}

void PortReturn::Await() { services_.timer.SetEnabled(true); }

// Not into the middle of an action; but what only waits for the operator keeps nothing waiting.
void PortReturn::Look() {
  if (services_.begun.Works() || !services_.ready()) return;
  GiveUp();
  services_.open();
}

}  // namespace kelvo
