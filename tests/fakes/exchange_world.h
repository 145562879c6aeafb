#pragma once

#include "link/exchange.h"
#include "tests/fakes/virtual_port.h"
#include "tests/fakes/virtual_time.h"

namespace kelvo::testing_world {

/// An exchange over an open port in virtual time.
struct ExchangeWorld {
  ExchangeWorld() { port.Open(); }

  VirtualLoop loop;
  VirtualPort port{loop};
  VirtualTimer tmrTimeout{loop, milliseconds(2000), true};
  VirtualTimer tmrRS485{loop, milliseconds(20), true};
  Exchange exchange{port, loop, tmrTimeout, tmrRS485};
  ScriptedTerminal terminal{port};

  bool Send(const std::string& text, Acknowledge acknowledge = Acknowledge::Wait) {
    exchange.CommandBuffer = text;
    return exchange.SendString(exchange.CommandBuffer, Pending::Keep, acknowledge);
  }
  std::string Query(const std::string& text) {
    std::string query = text;
    return exchange.SendQuery(query);
  }
  /// Milliseconds that `action` takes.
  template <typename Action>
  double Duration(Action action) {
    const nanoseconds start = loop.Now();
    action();
    return std::chrono::duration<double, std::milli>(loop.Now() - start).count();
  }
};

}  // namespace kelvo::testing_world
