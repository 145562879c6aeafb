#include <gtest/gtest.h>

#include "link/exchange.h"
#include "tests/fakes/simulated_terminal.h"

namespace kelvo::testing_world {
namespace {

using sim::Fault;
using std::chrono::milliseconds;

const std::string Esc = "\x1B";
const std::string Etx = "\x03";

/// The utility's exchange and a simulated Terminal, joined by a virtual line.
class ExchangeWithTerminal : public ::testing::Test {
 protected:
  explicit ExchangeWithTerminal(const sim::TerminalSetup& setup = {.address = 5,
                                                                   .eepromBytes = 2048})
      : device(loop, port, fonts, setup) {
    port.characterTime = nanoseconds(520'833);
    port.Open();
    tmrTimeout.SetHandler([this] { exchange.tmrTimeout_Timer(); });
    tmrRS485.SetHandler([this] { exchange.tmrRS485_Timer(); });
  }
  std::string Query(std::string text) { return exchange.SendQuery(text); }
  /// The error text, empty on success.
  std::string Acknowledged(std::string text) {
    exchange.SendString(text, Pending::Keep, Acknowledge::Wait);
    return text;
  }

  VirtualLoop loop;
  VirtualPort port{loop};
  DeviceFonts fonts;
  SimulatedTerminal device;
  VirtualTimer tmrTimeout{loop, milliseconds(1000), true};
  VirtualTimer tmrRS485{loop, milliseconds(30), true};
  Exchange exchange{port, loop, tmrTimeout, tmrRS485};
};

TEST_F(ExchangeWithTerminal, Understand) {
  EXPECT_EQ(Query("?V"), "2.10F");
  EXPECT_EQ(Query("?A"), "?A5");
  EXPECT_EQ(Acknowledged(Esc + "EWM7,GC" + Esc + "TH" + Etx), "");
  EXPECT_EQ(device.Terminal().Memory().Read(sim::Eeprom::Kind::Macro, 7), "GC" + Esc + "TH");
  EXPECT_EQ(Query("E?F"), std::to_string(2048 - 5 - sim::Eeprom::kRecordOverhead));
  EXPECT_EQ(Acknowledged(Esc + "EWM8," + std::string(2048, 'x') + Etx), "EEPROM");
}

TEST_F(ExchangeWithTerminal, TheSumOfATransferIsTheTerminalsChecksum) {
  const std::string payload = Esc + "GC" + Esc + "!C0;" + Esc + "GP 1, 2;" + Esc + "GT\xFC\x04";
  std::string text = Esc + "!A5;" + Esc + "C!" + payload;
  exchange.SendString(text, Pending::Keep, Acknowledge::None);
  const std::string answer = Query("C?");
  const auto sum = static_cast<std::uint16_t>(StringSum(payload + Esc + "C?"));
  EXPECT_EQ(std::stoi(answer, nullptr, 16), sum);
}

TEST_F(ExchangeWithTerminal, TheUtilityHearsTheEraseCountDown) {
  std::string text = Esc + "Ee";
  exchange.SendString(text, Pending::Keep, Acknowledge::None);
  std::string reply;
  for (int blocks = 2048 / 256; blocks >= 0; --blocks) {
    EXPECT_FALSE(exchange.WaitAnswer(reply, "\r"));
    EXPECT_EQ(reply, std::to_string(blocks));
  }
  exchange.WaitAnswer(reply, "");
  EXPECT_EQ(reply, "\x06");
}

TEST_F(ExchangeWithTerminal, EchoesDoNotDisturb) {
  device.Terminal().SetEchoQueries(true);
  EXPECT_EQ(Query("?V"), "2.10F");
  device.Terminal().SetEchoQueries(false);
  device.line.SetEcho(true);
  EXPECT_EQ(Query("?V"), "2.10F");
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
    device.Terminal().SetFault(c.fault);
    tmrTimeout.SetInterval(milliseconds(500));
    EXPECT_EQ(Acknowledged(Esc + "EDM1;"), c.acknowledged);
    loop.RunFor(std::chrono::seconds(2));
    EXPECT_EQ(Query("?A"), c.query) << c.acknowledged;
    loop.RunFor(std::chrono::seconds(2));
  }
}

}  // namespace
}  // namespace kelvo::testing_world
