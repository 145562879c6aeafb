#include <gtest/gtest.h>

#include "tests/simulator_desk.h"

namespace kelvo::sim {
namespace {

class KeyDesk : public Desk {
 public:
  /// What a pressed key sends; "-" when there is none.
  std::string Key(int row, int column) {
    const std::string wired = terminal.PressKey(row, column, now) ? "" : "-";
    terminal.ReleaseKey(now);
    Wait(Terminal::kShortestPress);
    return wired + Heard();
  }
  std::string Typed(char character) {
    terminal.Type(static_cast<unsigned char>(character), now);
    return Heard();
  }
};

// 3 columns (lines 0 to 2 of P1) and rows 0 and 2 (lines 7 and 5 of P0).
const std::string kMatrix = Esc + "MS3,3;" + Esc + "MC2,10,35,248,95,5;";

TEST(SimulatorKeypad, SendsPositionsOfWiredKeysWhileItIsScanned) {
  KeyDesk desk;
  desk.Send(kMatrix);
  EXPECT_EQ(desk.Key(0, 0), "-");
  desk.Command("ME");
  EXPECT_EQ(desk.Key(0, 0), "\x80");
  EXPECT_EQ(desk.Key(2, 1), "\xA1");
  EXPECT_EQ(desk.Key(1, 0), "-") << "its row is not wired";
  EXPECT_EQ(desk.Key(0, 3), "-") << "beyond the last column";
  EXPECT_EQ(desk.Key(8, -1), "-");
  desk.Command("MD");
  EXPECT_EQ(desk.Key(0, 0), "-");
}

TEST(SimulatorKeypad, SendsTheCodesOfTheActiveTable) {
  KeyDesk desk;
  desk.Send(kMatrix + Esc + "ME");
  EXPECT_EQ(desk.Command("EWK3,80,31,D,FF,FF,FF,FF,FF,FF;"), Ack);
  EXPECT_EQ(desk.Key(0, 0), "\x80") << "written is not active";
  desk.Command("EMK3;");
  EXPECT_EQ(desk.Key(0, 0) + desk.Key(0, 1), "1\r");
  EXPECT_EQ(desk.Key(0, 2), "") << "an unused key";
  EXPECT_EQ(desk.Key(2, 0), "\xA0") << "outside of the table";
  EXPECT_EQ(desk.Command("EM?"), "3,80,31,D,FF,FF,FF,FF,FF,FF;");
  EXPECT_EQ(desk.Command("EWC"), Ack);
  desk.PowerCycle();
  EXPECT_EQ(desk.Key(0, 0), "1");
  EXPECT_EQ(desk.Command("EDK3;"), Ack);
  EXPECT_EQ(desk.Key(0, 0), "\x80");
  EXPECT_EQ(desk.Command("EM?"), "leer;");
}

// Scans until a key counts, milliseconds of a scan, scans until it repeats, scans from then on.
TEST(SimulatorKeypad, KeyCountsAndRepeatsAtTheTimesThatAreSet) {
  struct Case {
    std::string times;
    std::vector<int> sent;  // ms after the press, within 500 ms
  };
  const Case cases[] = {{"2,10,35,0,0,5;", {20, 370, 420, 470}},
                        {"0,10,20,0,0,20;", {0, 200, 400}},
                        {"3,50,3,0,0,4;", {150, 300, 500}},
                        {"2,10,0,0,0,5;", {20}},
                        {"2,10,35,0,0,0;", {20}},
                        {"51,10,35,0,0,5;", {}}};
  for (const Case& c : cases) {
    KeyDesk desk;
    desk.Send(Esc + "MC" + c.times + Esc + "ME" + Esc + "EWC");
    desk.PowerCycle();
    std::vector<int> sent;
    desk.terminal.PressKey(1, 2, desk.now);
    for (int ms = 0; ms <= 500; ++ms, desk.Wait(1ms)) {
      if (desk.Heard().ends_with('\x92')) sent.push_back(ms);
    }
    EXPECT_EQ(sent, c.sent) << c.times;
    desk.terminal.ReleaseKey(desk.now);
    desk.Wait(10s);
    EXPECT_EQ(desk.Heard(), "") << c.times;
  }
}

TEST(SimulatorKeypad, RefusesTablesThatAreNone) {
  KeyDesk desk;
  const std::pair<std::string, std::string> cases[] = {
      {"EWK1,B8;", Ack},  {"EWK1,80,G;", Nak}, {"EWK1,80,100;", Nak},
      {"EWK1,80,;", Nak}, {"EWK1;", Nak},      {"EWK256,80,1;", Nak},
  };
  for (const auto& [command, answer] : cases) EXPECT_EQ(desk.Command(command), answer) << command;
  std::string longest = "EWK1,0";
  for (int i = 0; i < 256; ++i) longest += ",41";
  EXPECT_EQ(desk.Command(longest + ";"), Ack);
  EXPECT_EQ(desk.Command(longest + ",41;"), Nak);
}

TEST(SimulatorPcKeyboard, RecodesThroughTheActiveTable) {
  KeyDesk desk;
  EXPECT_EQ(desk.Typed('A'), "A");
  desk.Send(Esc + "EWK4,41,61,42,63;" + Esc + "EAK4;");
  EXPECT_EQ(desk.Typed('A') + desk.Typed('B') + desk.Typed('C') + desk.Typed('D'), "aBcD");
  EXPECT_EQ(desk.Typed('\xE4'), "\xE4");
  EXPECT_EQ(desk.Command("EA?"), "4,41,61,42,63;");
  // On a bus only the selected Terminal may use the line.
  desk.Command("!A9;");
  EXPECT_EQ(desk.Typed('A'), "");
}

TEST(SimulatorInterface2, ComesBackWhileReceivingIsOn) {
  KeyDesk desk;
  for (const auto& [mode, waited] : {std::pair("2I1;", "abc"), {"2I2;", ""}}) {
    desk.Command("2I0;");
    EXPECT_EQ(desk.Command("2Oabc;"), "") << "waits in the buffer";
    EXPECT_EQ(desk.Command(mode), waited);
    EXPECT_EQ(desk.Command("2Oabc;"), "abc") << mode;
  }
  EXPECT_EQ(desk.Send(Esc + "2Olost" + Esc + "?P"), "0;") << "without its end mark nothing is sent";
}

TEST(SimulatorInterface2, KeepsToItsBufferFrameAndHandshake) {
  KeyDesk desk;
  desk.Send(Esc + "!s1024;" + Esc + "2O" + std::string(2000, 'A') + ";");
  EXPECT_EQ(desk.Command("2I1;"), std::string(1024, 'A'));
  for (const auto& [bits, arrived] : {std::pair("7,1,0;", "Az"), {"8,1,1;", "\xC1\x13\x11z"}}) {
    desk.Command("!b9600,0," + std::string(bits));
    desk.terminal.ReceiveInterface2("\xC1\x13\x11z", desk.now);
    EXPECT_EQ(desk.Heard(), arrived);
  }
}

}  // namespace
}  // namespace kelvo::sim
