#pragma once

#include "link/exchange.h"
#include "tests/fakes/virtual_world.h"

namespace kelvo::testing_world {

/// An exchange over an open port in virtual time.
struct ExchangeWorld : VirtualWorld {
  ExchangeWorld() {
    port.Open();
    tmrTimeout.SetEnabled(true);
    tmrRS485.SetInterval(milliseconds(20));
  }

  Exchange exchange{com1, loop, tmrTimeout, tmrRS485};
  Reply reply;  ///< to the last of these
  /// Whether it failed.
  bool Send(const std::string& text, Acknowledge acknowledge = Acknowledge::Wait) {
    reply = exchange.SendString(text, Pending::Keep, acknowledge);
    return reply.Failed();
  }
  /// The reply to the query with these letters.
  std::string Query(const std::string& letters) {
    reply = exchange.SendQuery(Command(FindCommand(letters)->name));
    return reply.text;
  }
  std::string Collect(const std::string& endMark) {
    reply = exchange.WaitAnswer(endMark);
    return reply.text;
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
