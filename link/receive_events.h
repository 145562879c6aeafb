#pragma once

#include <functional>
#include <map>
#include <string>

#include "link/exchange.h"
#include "link/key_display.h"
#include "link/serial_port.h"
#include "link/tabs.h"

namespace kelvo {

/// What arrives unasked, outside every exchange: key presses and the data of the Terminal's second
/// interface. Where it is shown depends on the page in front; on a page that shows none of it the
/// characters stay in the input buffer until the next exchange empties it.
class ReceiveEvents {
 public:
  using Show = std::function<void(const std::string& received)>;

  ReceiveEvents(SerialPort& port, Exchange& exchange) : port_(port), exchange_(exchange) {}

  /// The page that is in front now.
  void SetTab(Tab tab) { tab_ = tab; }
  /// A page's own display of received wire text, each at least one character: interfaces
  /// (`txtReceiveCom2`), text (`txtText`), AT keyboard (`lblATKlartext`, `lblAThexcode`).
  void Connect(Tab tab, Show show) { shows_[tab] = std::move(show); }
  /// The key grid of the matrix keyboard page.
  void Connect(KeyGrid& grid) { keys_.Connect(&grid); }

  /// The port's receive event.
  void com1_OnComm();
  /// Each tick of tmrTimeout also releases the key that is shown.
  void tmrTimeout_Timer();

  int KeyHighlightIndex() const { return keys_.KeyHighlightIndex; }

 private:
  void ShowKey();

  SerialPort& port_;
  Exchange& exchange_;
  Tab tab_ = Tab::Drawing;
  std::map<Tab, Show> shows_;
  KeyDisplay keys_;
};

}  // namespace kelvo
