#include <gtest/gtest.h>

#include <cmath>

#include "base/val.h"
#include "base/whole_val.h"
#include "base/wire_text.h"
#include "interfaces/port_control.h"
#include "link/answer_form.h"
#include "link/command_words.h"
#include "link/commands.h"
#include "link/echo_filter.h"
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
      {"", 0},        {"12a", 12},    {"  7", 7},    {"-5", -5},     {"+5", 5},
      {"2.10F", 2.1}, {"1.2.3", 1.2}, {"abc", 0},    {"-", 0},       {".", 0},
      {".5", 0.5},    {"1e3", 1},     {"&HFF", 255}, {"&hafg", 175}, {"&H", 0},
      {"TimeOut", 0}, {"1,5", 1},     {"inf", 0},    {"\3777", 0}};
  for (const auto& [text, value] : cases) EXPECT_DOUBLE_EQ(Val(text), value) << text;
  const double huge = Val(std::string(400, '9'));
  EXPECT_TRUE(std::isfinite(huge) && huge > 1e300);
}

TEST(ValTest, NumbersAsTextHaveNoBlanksAndNoComma) {
  EXPECT_EQ(NumberText(0), "0");
  EXPECT_EQ(NumberText(-0.0), "0");
  EXPECT_EQ(NumberText(123456789), "123456789");
  EXPECT_EQ(NumberText(-12.5), "-12.5");
  EXPECT_EQ(NumberText(2.1), "2.1");
  EXPECT_EQ(NumberText(1e20), "1E+20");
  EXPECT_EQ(RoundToEven(2.5), 2);
  EXPECT_EQ(RoundToEven(3.5), 4);
  EXPECT_EQ(RoundToEven(1e30), 2147483647);
  EXPECT_EQ(WholeVal("-2.7"), -2);
  EXPECT_EQ(WholeVal("4294967298"), 2147483647) << "not 2, which is another macro's number";
}

TEST(WireTextTest, EveryByteGoesToTheScreenAndBack) {
  std::string all;
  for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
  EXPECT_EQ(WireText(ScreenText(all)), all);
  EXPECT_EQ(WireText("ü"), "\xFC");
  for (const char* text : {"€", "日本", "\xC3", "\xC3(", "\x80", "\xF0\x9F\x98\x80"}) {
    EXPECT_EQ(WireText(text), std::nullopt) << text;
  }
  EXPECT_EQ(ReadableText("\033A\r\x9F\xA0"), "←A♪<9F>\u00A0");
  EXPECT_EQ(HexText("\x1b\x0f"
                    "A"),
            "1B 0F 41");
}

TEST(AnswerForm, VersionsAreNumbersWithWhatMayFollow) {
  for (const char* version :
       {"2", "2.10", "2.10F", "1.9 beta", "2.1.0", " 2.10", "2.10F 12.03.99"}) {
    EXPECT_TRUE(IsVersion(version)) << version;
  }
  const std::string tooLong = "2.10 " + std::string(40, 'x');
  for (const char* text : {"", " ", "F2", ".5", "2.", "2.10.2.10", "2.10F7", "2..10", "2.10\xFF",
                           "2.10 \x1b", "TimeOut", "-1", "2,10", tooLong.c_str()}) {
    EXPECT_FALSE(IsVersion(text)) << text;
  }
}

TEST(AnswerForm, AnswersHaveTheirValuesInTheirRanges) {
  const struct {
    CommandName asked;
    std::vector<const char*> good;
    std::vector<const char*> bad;
  } cases[] = {
      {CommandName::AskAddress, {"0", "?A17", "?A?A255", "x 5"}, {"", "?A", "256", "2.1", "0\x10"}},
      {CommandName::AskPort, {"165", " 7"}, {"0\x10\x10", "?P5", "256", "-1"}},
      {CommandName::AskFlash, {"64,4096"}, {"64", "64,4096,1", ",4096"}},
      {CommandName::AskFreeBytes, {"8142"}, {"EEPROM", "81 42"}},
      {CommandName::AskTextFont, {"9"}, {"10", ""}},
      {CommandName::AskTextZoom, {"2,3"}, {"2", "0,0"}},
      {CommandName::AskCursorShape, {"1", "3,40"}, {"", "1,"}},
      {CommandName::AskChecksum, {"1aF", "0"}, {"12345", "G", ""}},
      {CommandName::AskMatrixTable, {"leer", "3,80,\xE4"}, {"3,8\x10"}}};
  for (const auto& c : cases) {
    const CommandRow& row = RowOf(c.asked);
    for (const char* text : c.good) EXPECT_TRUE(HasForm(row, text)) << row.letters << text;
    for (const char* text : c.bad) EXPECT_FALSE(HasForm(row, text)) << row.letters << text;
  }
  EXPECT_TRUE(CanAnswer("\x1b?V", "\x1b?V2.10F;"));
  EXPECT_TRUE(CanAnswer("\x1b??", "\x1b??Display;\r\n"));
  EXPECT_FALSE(CanAnswer("\x1b??", "Di;\x02"));
  EXPECT_TRUE(
      CanAnswer("\x1b"
                "EWC",
                "\x06"));
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

TEST(CommandLanguageTest, SaysCommandsWithTheirParameters) {
  const std::pair<std::string, const char*> cases[] = {
      {WriteMakro(7, std::string(49, 'x') + '\x1b').Text(), "Makro 7 schreiben, 50 Zeichen"},
      {"\x1bGR229,117;", "Rechteck bis 229,117"},
      {SelectAddress(7).Text() + SelectAddress(255).Text(),
       "Terminal mit Adresse 7 wählen; alle Terminals wählen"},
      {WriteKeyTable("2", "1F", ",41,42,43").Text(),
       "Tastaturtabelle 2 schreiben, ab Code $1F, 3 Codes"},
      {WriteBitmap(3, "2,8,00FF00FF;").Text(), "Bitmap 3 schreiben, 4 Byte"},
      {SetMatrixConfig(15, 240).Text(),
       "Matrix: Konfiguration: freie Eingänge 15, freie Ausgänge 240"},
      {SetResolution("240", "128", "").Text(), "Auflösung setzen: Breite 240, Höhe 128"},
      {SwitchCursor(1).Text(), "Cursor ein/aus: Art 1"},
      {"\x1bGTHalle\x04rest\x1bTH-\x1bGTa;b",
       "Grafiktext „Halle“; Text „rest“; Textcursor nach Hause; … und 2 weitere"},
      {"\x1bGR 5;\x1bGR", "Rechteck: X 5; Rechteck"},
      {"\x1bXY;", "unbekannter Befehl „XY;“"},
      {"\x1b", "ESC ohne Befehl"},
      {";\x03", "Text „;♥“"},
      {"", ""}};
  for (const auto& [wire, words] : cases) EXPECT_EQ(CommandWords(wire, 3), words);
  std::string drawing;
  for (int i = 0; i < 40; ++i) drawing += "\x1bGL1,2;";
  EXPECT_EQ(CommandWords(drawing, 1), "Linie bis 1,2; … und 39 weitere");
}

TEST(CommandTest, IsWrittenAsTheTableSays) {
  const std::pair<std::string, std::string> cases[] = {
      {WriteMakro(7, "GC\x1bTH").Text(), "\033EWM7,GC\x1bTH\x03"},
      {DeleteMakro("300").Text(), "\033EDM300;"},
      {SelectAddress(5).Text(), "\x1b!A5;"},
      {AskVersion().Text(), "\x1b?V"},
      {WriteBitmap(7, "2,1,0000;").Text(), "\033EWB7,2,1,0000;"},
      {WriteKeyTable("3", "80", ",31,D").Text(), "\033EWK3,80,31,D;"},
      {SetMatrixConfig(254, 0).Text(), "\033MC2,10,35,254,0,5;"},
      {DefineCursor(0, "").Text() + SwitchCursor(0).Text(), "\x1b!c 0;\033!C 0;"},
      {DefineCursor(3, "5").Text() + CursorOffForDrawing().Text(), "\x1b!c 3,5;\033!C0;"},
      {SendToInterface2("x\r").Text(), "\0332Ox\r"},
      {Sequence({ClearDisplay(), SetGraphicPosition("1", "2")}) + OpenGraphicText("a"),
       "\033GC\033GP1,2;\033GTa"}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(text, expected);
  EXPECT_TRUE(WriteConfig().IsAcknowledged());
  EXPECT_FALSE(EraseEEpromCounting().IsAcknowledged());
  EXPECT_FALSE(RunMakro(1).IsAcknowledged());
}

TEST(CommandTest, EachIsFoundByItsOwnLetters) {
  for (const CommandRow& row : CommandTable()) {
    EXPECT_EQ(FindCommand(std::string(row.letters) + "5;"), &row) << row.letters;
  }
}

// What comes through when `arriving` arrives after `written`, in two pieces cut anywhere.
std::string Heard(const std::vector<std::string>& written, const std::string& arriving) {
  std::string first;
  for (std::size_t cut = 0; cut <= arriving.size(); ++cut) {
    EchoFilter filter;
    for (const std::string& text : written) filter.Written(text, milliseconds(0), milliseconds(9));
    std::string heard = filter.Arrived(arriving.substr(0, cut));
    heard += filter.Arrived(arriving.substr(cut));
    if (cut == 0) first = heard;
    EXPECT_EQ(heard, first) << "cut at " << cut;
  }
  return first;
}

TEST(EchoFilterTest, AnExactCopyIsEchoAndAllElseIsTheAnswer) {
  const std::string select = "\x1b!A5;";
  const std::string query = "\x1b?A";
  const std::string write = "\033EWC";
  EXPECT_EQ(Heard({write}, write), "");
  EXPECT_EQ(Heard({write}, write + "\x06"), "\x06");
  EXPECT_EQ(Heard({write}, "\x15"), "\x15");
  EXPECT_EQ(Heard({write}, write + write), write);
  EXPECT_EQ(Heard({select, query}, select + query + query + "5;"), query + "5;");
  EXPECT_EQ(Heard({select, query}, query + "5;"), "5;");
  EXPECT_EQ(Heard({select, query}, "?A5;"), "?A5;");
  // A text of which only a part has left before it was discarded.
  EXPECT_EQ(Heard({select, query}, "\x1b!A" + query + "5;"), "5;");
  for (std::size_t damaged = 0; damaged < write.size(); ++damaged) {
    std::string echo = write;
    echo[damaged] = 'x';
    EXPECT_EQ(Heard({write}, echo + "\x06"), echo.substr(damaged) + "\x06");
  }
}

TEST(EchoFilterTest, WhatFollowsTheAnswerIsNoEchoThoughItLooksLikeOne) {
  EchoFilter filter;
  filter.Written("\x1b?A", milliseconds(0), milliseconds(10));
  EXPECT_EQ(filter.Arrived("?A5;"), "?A5;");
  EXPECT_EQ(filter.Arrived("\x1b?A"), "\x1b?A");
}

TEST(EchoFilterTest, EchoThatIsOverdueIsNotExpectedAnyMore) {
  EchoFilter filter;
  filter.Written("\033EWC", milliseconds(0), milliseconds(10));
  EXPECT_EQ(filter.Arrived("\x1b"), "");
  EXPECT_EQ(filter.Expire(milliseconds(10) + EchoFilter::kHeldBack), "");
  EXPECT_EQ(filter.Expire(milliseconds(11) + EchoFilter::kHeldBack), "\x1b");
  EXPECT_EQ(filter.Arrived("\033EWC"), "\033EWC");
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
    EXPECT_EQ(world.control.OpenCom(3), std::max<int>(c.numberError, c.openError));
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
  EXPECT_EQ(SetInterface1(InterfaceNumbersFrom(numbers, ComBaud1)).Text(), "\x1b!B9600,1,8,1,1;");
  EXPECT_EQ(SetInterface2(InterfaceNumbersFrom(numbers, ComBaud2)).Text(), "\x1b!b1200,3,7,2,0;");
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

TEST_F(ReceiveTest, OnlyTheNewestStaysWhileNobodyReads) {
  const std::string kept(BufferedPort::kKept, 'k');
  for (int i = 0; i < 50; ++i) port.Arrive(std::string(10000, 'x') + "\n");
  EXPECT_EQ(port.InBufferCount(), kept.size());
  port.Arrive("x" + kept);
  receive.SetFront(&first);
  port.Arrive("!");
  EXPECT_EQ(first.text.size(), kept.size());
  EXPECT_EQ(first.text, kept.substr(1) + "!");
  terminal.Answer("\x1b?A", kept + kept + ";");
  EXPECT_EQ(Query("?A"), kept + kept);
}

TEST_F(ReceiveTest, TheReceiverInFrontTakesNoReplyAway) {
  receive.SetFront(&first);
  terminal.Answer("\x1b?V", "2.1F;");
  Send("\x1b?V", Acknowledge::None);
  EXPECT_EQ(Collect(""), "2.1F;");
  EXPECT_EQ(first.text, "");
  port.Arrive("k");
  EXPECT_EQ(first.text, "k");
}

}  // namespace
}  // namespace kelvo
