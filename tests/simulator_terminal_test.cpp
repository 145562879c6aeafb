#include <gtest/gtest.h>

#include <random>

#include "tests/simulator_desk.h"

namespace kelvo::sim {
namespace {

TEST(SimulatorTerminal, AnswersQueries) {
  Desk desk({.version = "2.10", .flash = true, .address = 5});
  desk.terminal.SetP1(165);
  const std::pair<const char*, const char*> cases[] = {
      {"?V", "2.10F;"}, {"?A", "?A5;"},  {"?P", "165;"},   {"F??", "64,4096;"},
      {"E?F", "8192;"}, {"?C", "0;"},    {"T?P", "1,1;"},  {"G?P", "0,0;"},
      {"T?F", "0;"},    {"T?Z", "1,1;"}, {"EM?", "leer;"}, {"EA?", "leer;"},
  };
  for (const auto& [query, answer] : cases) EXPECT_EQ(desk.Command(query), answer);
  desk.terminal.SetVersion("1.9", false);
  EXPECT_EQ(desk.Command("?V"), "1.9;");
  EXPECT_EQ(desk.Command("F??"), "0,0;");
  desk.terminal.SetEchoQueries(true);
  EXPECT_EQ(desk.Command("?A"), Esc + "?A?A5;");
}

TEST(SimulatorTerminal, InformationFitsIntoTheTimeThatHostsWait) {
  Desk desk(
      {.version = "12.3456", .address = 255, .eepromBytes = 65536, .width = 640, .height = 480});
  const std::string information = desk.Command("??");
  EXPECT_LE(information.size(), 96u) << "100 ms at 9600 baud";
  EXPECT_EQ(information.find(';'), std::string::npos);
  EXPECT_NE(information.find("640 x 480"), std::string::npos);
}

TEST(SimulatorTerminal, ActsOnlyWhileItsAddressIsSelected) {
  Desk desk({.address = 5});
  EXPECT_EQ(desk.Command("!P1;"), "");
  EXPECT_EQ(desk.Send(Esc + "!A6;" + Esc + "!P2;" + Esc + "?A"), "");
  EXPECT_EQ(desk.terminal.P0(), 1);
  // What others are told is taken apart all the same: a selection within a macro is none.
  EXPECT_EQ(desk.Send(Esc + "EWM1," + Esc + "!A5;" + Etx + Esc + "?A"), "");
  EXPECT_EQ(desk.Send(Esc + "!A5;" + Esc + "?A"), "?A5;");
  EXPECT_EQ(desk.Send(Esc + "!A255;" + Esc + "?A"), "?A5;");
}

TEST(SimulatorTerminal, ChecksumCountsEverythingButSelections) {
  Desk desk({.address = 5});
  const std::string payload = Esc + "GC" + Esc + "!C0;" + Esc + "GTgr\xFC\xDF\xE9" + Eot;
  unsigned sum = 0;
  for (const char byte : payload + Esc + "C?") sum += static_cast<unsigned char>(byte);
  char expected[8];
  std::snprintf(expected, sizeof expected, "%X;", sum & 0xFFFF);

  desk.Send("abc" + Esc + "!A5;" + Esc + "C!" + payload);
  EXPECT_EQ(desk.Command("C?"), expected);
  // Sent to all, asked one by one; what others answer for does not count.
  desk.Send(Esc + "!A255;" + Esc + "C!" + payload + Esc + "!A254;" + Esc + "!A6;" + Esc + "C?");
  EXPECT_EQ(desk.Send(Esc + "!A5;" + Esc + "C?"), expected);

  Desk old({.checksum = false});
  EXPECT_EQ(old.Send(Esc + "C!" + Esc + "C?" + Esc + "?P"), "0;");
}

TEST(SimulatorTerminal, ConfigurationOutlivesThePower) {
  Desk desk;
  desk.Send(Esc + "!B9600,1,7,2,1;" + Esc + "!S4096;" + Esc + "!b1200,0,8,1,0;" + Esc + "2I1;" +
            Esc + "!R320,240,1;" + Esc + "!P9;" + Esc + "TF3;" + Esc + "TZ2,8;" + Esc + "!c 3,17;" +
            Esc + "!C 3;");
  EXPECT_EQ(desk.terminal.Interface1().baud, 19200) << "takes effect at the restart";
  EXPECT_EQ(desk.terminal.Display().Pixels().Width(), 240);
  EXPECT_EQ(desk.Command("EWC"), Ack);
  desk.Command("R");
  desk.Wait(Terminal::kRestartTime);
  EXPECT_EQ(desk.terminal.Interface1(), (InterfaceSettings{9600, 1, 7, 2, 1, 4096}));
  EXPECT_EQ(desk.terminal.Display().Pixels().Width(), 320);
  desk.Send(Esc + "TF0;" + Esc + "!P0;");
  desk.PowerCycle();
  EXPECT_EQ(desk.terminal.Interface1().baud, 9600);
  EXPECT_EQ(desk.terminal.Display().Pixels().Height(), 240);
  EXPECT_EQ(desk.Command("T?F") + desk.Command("T?Z") + desk.Command("?c"), "3;2,8;3,17;");
  EXPECT_EQ(desk.terminal.P0(), 9);
  EXPECT_EQ(desk.Command("2Oabc;"), "abc");
  EXPECT_EQ(desk.Command("EDC"), Ack);
  EXPECT_EQ(desk.Command("EDC"), Ack) << "is not there any more, as wanted";
  desk.PowerCycle();
  EXPECT_EQ(desk.terminal.Interface1().baud, 19200);
  EXPECT_EQ(desk.terminal.P0(), 0);
}

TEST(SimulatorTerminal, RefusesSettingsThatItDoesNotHave) {
  Desk desk;
  desk.Send(Esc + "!B115200,0,8,1,0;" + Esc + "!B9600;" + Esc + "!R9999,1;" + Esc + "R");
  EXPECT_EQ(desk.terminal.Interface1(), InterfaceSettings{});
  EXPECT_EQ(desk.terminal.Display().Pixels().Width(), 640);
  EXPECT_EQ(desk.terminal.Display().Pixels().Height(), 20);
}

TEST(SimulatorTerminal, WritesRunsAndDeletesMacros) {
  Desk desk;
  const std::string text = "x" + Esc + "!P3;" + Esc + "GTa;b" + Eot;
  EXPECT_EQ(desk.Command("EWM7," + text + Etx), Ack);
  EXPECT_EQ(desk.terminal.Memory().Read(Eeprom::Kind::Macro, 7), text);
  EXPECT_EQ(desk.Command("ECM7;"), "");
  EXPECT_EQ(desk.terminal.P0(), 3);
  EXPECT_EQ(desk.Command("T?P"), "2,1;");
  EXPECT_EQ(desk.Command("EDM7;"), Ack);
  EXPECT_EQ(desk.Send(Esc + "!P0;" + Esc + "ECM7;" + Esc + "ECM300;"), "");
  EXPECT_EQ(desk.terminal.P0(), 0);
  EXPECT_EQ(desk.Command("EWM256,a" + Etx), Nak);
  EXPECT_EQ(desk.Command("EWM5" + Etx), Nak);
  EXPECT_EQ(desk.Command("EDM;"), Nak);
}

TEST(SimulatorTerminal, MacroZeroRunsAtEveryStartAndMacrosThatNeverEndDoEnd) {
  Desk desk;
  desk.Command("EWM0," + Esc + "!P8;" + Esc + "R" + Esc + "!P9;" + Etx);
  std::string calls;
  for (int i = 0; i < 100; ++i) calls += Esc + "ECM1;";
  desk.Command("EWM1," + calls + Etx);
  desk.PowerCycle();
  EXPECT_EQ(desk.terminal.P0(), 9);
  desk.Send(Esc + "!P0;" + Esc + "R");
  desk.Wait(Terminal::kRestartTime);
  EXPECT_EQ(desk.terminal.P0(), 9);
  EXPECT_EQ(desk.Command("ECM1;"), "");
  EXPECT_EQ(desk.Command("?P"), "0;") << "and it is in step afterwards";
  // A restart ends the macro that asked for it.
  desk.Send(Esc + "EWM2," + Esc + "R" + Esc + "!P77;" + Etx + Esc + "ECM2;");
  EXPECT_EQ(desk.terminal.P0(), 9);
}

TEST(SimulatorTerminal, RefusesWhenTheEepromIsFull) {
  Desk desk({.eepromBytes = 256});
  EXPECT_EQ(desk.Command("EWM1," + std::string(252, 'a') + Etx), Ack);
  EXPECT_EQ(desk.Command("E?F"), "0;");
  EXPECT_EQ(desk.Command("EWM2," + Etx), Nak);
  EXPECT_EQ(desk.Command("EWC"), Nak);
  EXPECT_EQ(desk.Command("EWK1,80,31;"), Nak);
  EXPECT_EQ(desk.Command("EWB1,1,1,FF;"), Nak);
  EXPECT_EQ(desk.Command("EDM1;"), Ack);
  EXPECT_EQ(desk.Command("E?F"), "256;");
}

TEST(SimulatorTerminal, StoresBitmapsInBothForms) {
  Desk desk;
  const std::pair<const char*, std::string> cases[] = {
      {"EWB1,2,3,0102030405FF;", Ack}, {"EWB2,-9,1,FF80;", Ack}, {"EWB3,2,3,01020304;", Nak},
      {"EWB4,1,1,G0;", Nak},           {"EWB5,0,0,;", Nak},      {"EWB6,1,99999999,FF;", Nak},
  };
  for (const auto& [command, answer] : cases) EXPECT_EQ(desk.Command(command), answer) << command;
  EXPECT_EQ(desk.terminal.Memory().Read(Eeprom::Kind::Bitmap, 1),
            std::string("\x02\x03\x00\x01\x02\x03\x04\x05\xFF", 9));
}

TEST(SimulatorTerminal, ErasesWithOneAnswerAfterTheTimeThatItTakes) {
  Desk desk({.eepromBytes = 1024});
  desk.Command("EWM1,abc" + Etx);
  EXPECT_EQ(desk.Command("EE"), "");
  // It listens all the while, but acts afterwards.
  EXPECT_EQ(desk.Command("E?F"), "");
  desk.Wait(79ms);
  EXPECT_EQ(desk.Heard(), "");
  desk.Wait(1ms);
  EXPECT_EQ(desk.Heard(), Ack + "1024;");
}

TEST(SimulatorTerminal, RestartTakesItsTime) {
  Desk desk;
  desk.Command("EWM0," + Esc + "?P" + Etx);
  EXPECT_EQ(desk.Send(Esc + "R" + Esc + "?A"), "");
  desk.Wait(Terminal::kRestartTime - 1ms);
  EXPECT_EQ(desk.Heard(), "");
  desk.Wait(1ms);
  EXPECT_EQ(desk.Heard(), "0;?A0;") << "the autostart macro's answer and the other";
}

// A buffer of 1024 characters, of which three come to text behind the restart.
TEST(SimulatorTerminal, AsksTheHostToPauseAndLosesWhatDoesNotFit) {
  for (const char* handshake : {"0", "1"}) {
    Desk desk({.width = 640, .height = 480});
    const bool xon = *handshake == '0';
    desk.Send(Esc + "!B19200,0,8,1," + handshake + ";" + Esc + "!S1024;" + Esc + "R");
    desk.Wait(Terminal::kRestartTime);
    EXPECT_EQ(desk.Send(Esc + "R" + std::string(767, 'a')), "");
    EXPECT_TRUE(desk.terminal.ReadyToReceive());
    EXPECT_EQ(desk.Send("b"), xon ? "\x13" : "");
    EXPECT_EQ(desk.terminal.ReadyToReceive(), xon);
    desk.Send(std::string(300, 'c'));
    desk.Wait(Terminal::kRestartTime);
    EXPECT_EQ(desk.Heard(), xon ? "\x11" : "");
    EXPECT_TRUE(desk.terminal.ReadyToReceive());
    EXPECT_EQ(desk.Command("T?P"), "65,13;") << "1024 characters in rows of 80";
  }
}

TEST(SimulatorTerminal, PausesWhenTheHostAsks) {
  Desk desk;
  EXPECT_EQ(desk.Send("\x13" + Esc + "?A"), "");
  EXPECT_EQ(desk.Send("\x11"), "?A0;");
}

TEST(SimulatorTerminal, MisbehavesOnRequest) {
  Desk desk;
  desk.terminal.SetFault(Fault::Silent);
  EXPECT_EQ(desk.Command("EWC") + desk.Command("?V"), "");
  EXPECT_LT(desk.terminal.Memory().Free(), 8192) << "it has done it all the same";
  desk.terminal.SetFault(Fault::Nak);
  EXPECT_EQ(desk.Command("EDC") + desk.Command("EE") + desk.Command("?A"), Nak + Nak + "?A0;");
  desk.terminal.SetFault(Fault::Garbled);
  EXPECT_EQ(desk.Command("EDC"), "A");
  desk.terminal.SetFault(Fault::Late);
  EXPECT_EQ(desk.Command("?A"), "");
  desk.Wait(700ms);
  EXPECT_EQ(desk.Heard(), "?A0;");
  desk.terminal.SetFault(Fault::Drops);
  EXPECT_EQ(desk.Send("abcdefg" + Esc + "T?P"), "7,1;") << "one of seven is lost";
}

TEST(SimulatorTerminal, IsDeadWithoutPower) {
  Desk desk;
  desk.Command("Ee");
  desk.terminal.PowerOff();
  desk.Wait(10s);
  EXPECT_EQ(desk.Command("?V"), "");
  EXPECT_FALSE(desk.terminal.NextEvent());
  desk.terminal.PowerOn(desk.now);
  EXPECT_EQ(desk.Command("?A"), "?A0;");
}

TEST(SimulatorTerminal, KeepsAShortLogOfWhatItWasTold) {
  Desk desk;
  desk.Send("ab" + Esc + "GTxy" + Eot + Esc + "GP1,2;");
  const auto& log = desk.terminal.Log();
  ASSERT_EQ(log.size(), 3u);
  EXPECT_EQ(log[0].text, "ab");
  EXPECT_EQ(std::string(log[1].row->name) + log[1].text, "GTxy");
  EXPECT_EQ(std::string(log[2].row->name) + log[2].text, "GP1,2");
  for (int i = 0; i < 1000; ++i) desk.Command("GB0,0,1,1," + std::string(500, 'F') + ";");
  EXPECT_EQ(log.size(), Terminal::kLogEntries);
  EXPECT_EQ(log.back().text.size(), Terminal::kLogText);
}

TEST(SimulatorTerminal, SurvivesWhateverComes) {
  std::mt19937 random(20261121);
  const auto below = [&random](std::size_t n) { return random() % n; };
  const std::string numbers[] = {"0",           "-1", "255", "32767", "-32768",
                                 "99999999999", "",   " 7",  "FF"};
  Desk desk({.eepromBytes = 2048});
  for (int i = 0; i < 20'000; ++i) {
    const CommandRow& row = CommandRows()[below(CommandRows().size())];
    std::string command = Esc + std::string(row.name);
    for (std::size_t n = below(7); n > 0; --n) command += numbers[below(9)] + ",";
    command += std::string(below(12), static_cast<char>(below(256)));
    desk.Send(command + ";" + (below(4) == 0 ? Etx : ""));
    desk.Wait(10ms);
  }
  // Whatever stands in the autostart macro now: the way out is always the same.
  desk.Send(";" + Etx + Eot + Esc + "!A255;" + Esc + "EDM0;");
  desk.Wait(10s);
  desk.Heard();
  desk.PowerCycle();
  desk.Heard();
  EXPECT_EQ(desk.Command("?A"), "?A0;");
}

}  // namespace
}  // namespace kelvo::sim
