#include <gtest/gtest.h>

#include <cmath>

#include "base/val.h"
#include "base/wire_text.h"
#include "interfaces/port_control.h"
#include "link/command_language.h"
#include "link/line_clock.h"
#include "link/receive_events.h"
#include "tests/fakes/exchange_world.h"
#include "tests/fakes/fake_operator.h"

namespace kelvo {
namespace {

using testing_world::ExchangeWorld;
using testing_world::FakeOperator;
using testing_world::milliseconds;

TEST(ValTest, ReadsTheLongestNumberAtTheFront) {
  const std::pair<const char*, double> cases[] = {
      {"", 0},        {"12a", 12},    {"  7", 7},    {"-5", -5},  {"+5", 5},
      {"2.10F", 2.1}, {"1.2.3", 1.2}, {"abc", 0},    {"-", 0},    {".", 0},
      {".5", 0.5},    {"1e3", 1},     {"&HFF", 255}, {"&h1g", 1}, {"&H", 0},
      {"TimeOut", 0}, {"1,5", 1},     {"inf", 0},    {"\3777", 0}};
  for (const auto& [text, value] : cases) EXPECT_DOUBLE_EQ(Val(text), value) << text;
  const double huge = Val(std::string(400, '9'));
  EXPECT_TRUE(std::isfinite(huge) && huge > 1e300);
}

TEST(ValTest, NumbersAsTextHaveNoBlanksAndNoComma) {
  EXPECT_EQ(NumberText(0), "0");
  EXPECT_EQ(NumberText(-0.0), "0");
  EXPECT_EQ(NumberText(7), "7");
  EXPECT_EQ(NumberText(-12.5), "-12.5");
  EXPECT_EQ(NumberText(2.1), "2.1");
  EXPECT_EQ(NumberText(1e20), "1E+20");
  EXPECT_EQ(RoundToEven(2.5), 2);
  EXPECT_EQ(RoundToEven(3.5), 4);
  EXPECT_EQ(RoundToEven(1e30), 2147483647);
}

TEST(WireTextTest, EveryByteGoesToTheScreenAndBack) {
  std::string all;
  for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
  EXPECT_EQ(WireText(ScreenText(all)), all);
  EXPECT_EQ(WireText("ü"), "\xFC");
  for (const char* text : {"€", "日本", "\xC3", "\xC3(", "\x80", "\xF0\x9F\x98\x80"}) {
    EXPECT_EQ(WireText(text), std::nullopt) << text;
  }
  EXPECT_EQ(ReadableText("\033A\r\x80"), "←A♪<80>");
  EXPECT_EQ(HexText("\x1b\x0f"
                    "A"),
            "1B 0F 41");
}

TEST(LineClockTest, CountsWhatTheRateHasNotCarriedYet) {
  LineClock clock;
  clock.SetRate(1000, 10);  // 10 ms a character
  const milliseconds start(50);
  clock.Written(3, start);
  clock.Written(2, start + milliseconds(5));  // behind the first ones
  EXPECT_EQ(clock.CharactersLeft(start + milliseconds(5)), 5u);
  EXPECT_EQ(clock.CharactersLeft(start + milliseconds(49)), 1u);
  EXPECT_EQ(clock.CharactersLeft(start + milliseconds(50)), 0u);
  clock.Written(1, start + milliseconds(100));  // the line was idle meanwhile
  EXPECT_EQ(clock.Left(start + milliseconds(100)), milliseconds(10));
  clock.Discarded(start + milliseconds(101));
  EXPECT_EQ(clock.CharactersLeft(start + milliseconds(101)), 0u);
}

TEST(CommandLanguageTest, NamesTheCommandsOfAText) {
  EXPECT_EQ(CommandMeaning("\x1b?V"), "Version abfragen");
  EXPECT_EQ(CommandMeaning("\x1b!A5;\033C!"), "Adresse wählen; Prüfsumme beginnen");
  EXPECT_EQ(CommandMeaning("\x1bGfR 1, 2;\x1bGF3;"), "gefülltes Rechteck; Grafikschrift");
  EXPECT_EQ(CommandMeaning("\033EWM7,\x1bGC\x1bTH\x03"), "Makro schreiben");
  EXPECT_EQ(CommandMeaning("\x1bXY"), "unbekannter Befehl");
  EXPECT_EQ(CommandMeaning("\x1bR\x1bR\x1bR", 2), "Neustart; Neustart; …");
  EXPECT_EQ(CommandMeaning("no command"), "");
  EXPECT_EQ(CommandMeaning("\x1b"), "unbekannter Befehl");
}

struct PortWorld {
  testing_world::VirtualLoop loop;
  testing_world::VirtualPort port{loop};
  FakeOperator person;
  PortControl control{port, person};
};

TEST(PortControlTest, FailedOpeningIsToldApartAndGivesUpThePort) {
  const struct {
    PortError numberError, openError;
    const char* message;
    int number;
  } cases[] = {{PortOk, PortInUse, "Schnittstelle belegt", 0},
               {PortOk, PortNotAvailable, "Schnittstelle nicht vorhanden", 0},
               {PortOk, PortAlreadyOpen, "Schnittstelle bereits geöffnet", 3},
               {PortOk, PortNoPermission, "Schnittstellenfehler8012", 3},
               {PortNumberInvalid, PortOk, "Schnittstellenfehler380", 3}};
  for (const auto& c : cases) {
    PortWorld world;
    world.control.FormLoading = false;
    int fallenBack = 0;
    world.control.SetFailureHandler([&] { ++fallenBack; });
    world.port.numberError = c.numberError;
    world.port.openError = c.openError;
    EXPECT_NE(world.control.OpenCom(3), PortOk);
    EXPECT_EQ(world.port.opened, 0);
    EXPECT_EQ(world.person.LastMessage(), c.message);
    EXPECT_EQ(world.person.messages.back().icon, Icon::Exclamation);
    EXPECT_EQ(world.port.number, c.number);
    EXPECT_EQ(fallenBack, 1) << c.message;
  }
}

TEST(PortControlTest, NothingIsOpenedWhileTheMainWindowLoads) {
  PortWorld world;
  EXPECT_EQ(world.control.OpenCom(1), 0);
  EXPECT_EQ(world.port.opened, 0);
}

TEST(PortControlTest, InterfaceCommandsCarryTheNumbersOfTheLists) {
  ComNumbers numbers{9600, 1, 8, 1, 1, 4096, 1200, 3, 7, 2, 0, 16384, 2, 1};
  EXPECT_EQ(SetCom1Command(numbers), "\x1b!B9600,1,8,1,1;");
  EXPECT_EQ(SetBuffer1Command(numbers), "\x1b!S4096;");
  EXPECT_EQ(SetCom2Command(numbers), "\x1b!b1200,3,7,2,0;");
  EXPECT_EQ(SetBuffer2Command(numbers), "\x1b!s16384;");
  EXPECT_EQ(ReceiveModeCommand(numbers), "\0332I2;");
}

struct Notes : Receiver {
  void Received(const std::string& characters) override { text += characters; }
  void Tick() override { ++ticks; }
  std::string text;
  int ticks = 0;
};

class ReceiveTest : public testing::Test, protected ExchangeWorld {
 protected:
  ReceiveTest() {
    port.SetReceiveThreshold(1);
    port.SetReceiveHandler([this] { receive.com1_OnComm(); });
  }
  ReceiveEvents receive{port, exchange};
  Notes first, second;
};

TEST_F(ReceiveTest, CharactersAndTicksGoToTheReceiverInFront) {
  receive.SetFront(&first);
  port.Arrive("ab");
  receive.SetFront(&second);
  port.Arrive("c");
  loop.RunFor(tmrTimeout.Interval());
  EXPECT_EQ(first.text + "|" + second.text, "ab|c");
  EXPECT_EQ(first.ticks, 0);
  EXPECT_EQ(second.ticks, 1);
}

TEST_F(ReceiveTest, WithoutAReceiverTheCharactersAreLeftToTheNextExchange) {
  port.Arrive("7;");
  EXPECT_EQ(port.InBufferCount(), 2u);
  terminal.Answer("\x1b?A", "5;");
  EXPECT_EQ(Query("?A"), "5");
}

TEST_F(ReceiveTest, TheReceiverInFrontTakesNoReplyAway) {
  receive.SetFront(&first);
  terminal.Answer("\x1b?V", "2.1F;");
  std::string text = "\x1b?V";
  exchange.SendString(text, Pending::Keep, Acknowledge::None);
  exchange.WaitAnswer(text, {});
  EXPECT_EQ(text, "2.1F;");
  EXPECT_EQ(first.text, "");
  port.Arrive("k");
  EXPECT_EQ(first.text, "k");
}

}  // namespace
}  // namespace kelvo
