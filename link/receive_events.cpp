#include "link/receive_events.h"

namespace kelvo {

ReceiveEvents::ReceiveEvents(SerialPort& port, Exchange& exchange) : port_(port) {
  exchange.SetTickListener([this] {
    if (front_ != nullptr) front_->Tick();
  });
}

void ReceiveEvents::com1_OnComm() {
  if (front_ == nullptr) return;
  // All that waits at once: a page that lays out its text for each character falls behind the line.
  const std::string received = port_.AllInput();
  if (!received.empty()) front_->Received(received);
}

}  // namespace kelvo
