#pragma once

#include <string>

#include "base/serial_port.h"
#include "link/exchange.h"

namespace kelvo {

/// Shows what arrives unasked, outside every exchange: key presses and the data of the Terminal's
/// second interface.
class Receiver {
 public:
  virtual ~Receiver() = default;
  /// A wire text of at least one character.
  virtual void Received(const std::string& characters) = 0;
  /// A tick of tmrTimeout.
  virtual void Tick() {}
};

/// Hands what arrives unasked to the one receiver that is in front. Without one the characters stay
/// in the input buffer until the next text is written.
class ReceiveEvents {
 public:
  ReceiveEvents(SerialPort& port, Exchange& exchange);

  /// The receiver that is in front now; nullptr for none.
  void SetFront(Receiver* receiver) { front_ = receiver; }

  /// The port's receive event.
  void com1_OnComm();

 private:
  SerialPort& port_;
  Receiver* front_ = nullptr;
};

}  // namespace kelvo
