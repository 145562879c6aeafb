#include <gtest/gtest.h>

#include "tests/fakes/bus_world.h"

namespace kelvo::testing_world {
namespace {

using sim::Fault;

const std::string Esc = "\x1B";
const std::string Etx = "\x03";

/// The utility's exchange and a simulated Terminal, joined by a virtual line.
class ExchangeWithTerminal : public ::testing::Test, protected BusWorld {
 protected:
  ExchangeWithTerminal() : BusWorld({{.address = 5, .eepromBytes = 2048}}) {}
  /// The error text, empty on success.
  std::string Acknowledged(const std::string& command) {
    Send(command);
    return reply.text;
  }
};

TEST_F(ExchangeWithTerminal, Understand) {
  EXPECT_EQ(Query("?V"), "2.10F");
  EXPECT_EQ(Query("?A"), "?A5");
  EXPECT_EQ(Acknowledged(Esc + "EWM7,GC" + Esc + "TH" + Etx), "");
  EXPECT_EQ(At(0).Memory().Read(sim::Eeprom::Kind::Macro, 7), "GC" + Esc + "TH");
  EXPECT_EQ(Query("E?F"), std::to_string(2048 - 5 - sim::Eeprom::kRecordOverhead));
  EXPECT_EQ(Acknowledged(Esc + "EWM8," + std::string(2048, 'x') + Etx), "EEPROM");
}

// The bus Terminal needs 2 ms; the delivered pause ends up to 20 ms after the reply.
TEST_F(ExchangeWithTerminal, PauseLetsABusTerminalTurnItsLineAround) {
  line.line.SetTurnAround(milliseconds(2));
  for (const bool echo : {false, true}) {
    line.line.SetEcho(echo);
    for (const int pause : {20, 1}) {
      tmrRS485.SetInterval(milliseconds(pause));
      int answered = 0;
      for (int i = 0; i < 10; ++i) {
        answered += Query("?V") == "2.10F" ? 1 : 0;
        answered += Query("?A") == "?A5" ? 1 : 0;
        answered += Query("E?F") == "2048" ? 1 : 0;
      }
      EXPECT_EQ(answered == 30, pause == 20) << answered << echo;
    }
  }
}

TEST_F(ExchangeWithTerminal, MisbehaviourIsReported) {
  struct Case {
    Fault fault;
    const char* acknowledged;
    const char* query;
  };
  const Case cases[] = {{Fault::Silent, "keine Reaktion", "TimeOut"},
                        {Fault::Nak, "EEPROM", "?A5"},
                        {Fault::Garbled, "unknown 65", "TimeOut"},
                        {Fault::Late, "keine Reaktion", "TimeOut"}};
  for (const Case& c : cases) {
    At(0).SetFault(c.fault);
    tmrTimeout.SetInterval(milliseconds(500));
    EXPECT_EQ(Acknowledged(Esc + "EDM1;"), c.acknowledged);
    loop.RunFor(std::chrono::seconds(2));
    EXPECT_EQ(Query("?A"), c.query) << c.acknowledged;
    loop.RunFor(std::chrono::seconds(2));
  }
}

}  // namespace
}  // namespace kelvo::testing_world
