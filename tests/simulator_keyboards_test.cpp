#include <gtest/gtest.h>

#include "tests/simulator_desk.h"

namespace kelvo::sim {
namespace {

class KeyDesk : public Desk {
 public:
  /// What a pressed key sends; "-" when there is none.
  std::string Key(int row, int column) {
    return terminal.PressKey(row, column, now) ? Heard() : "-" + Heard();
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
  EXPECT_EQ(desk.Command("2Oabc;"), "");
  desk.Command("2I1;");
  EXPECT_EQ(desk.Command("2Oabc;"), "abc");
  EXPECT_EQ(desk.Send(Esc + "2Olost" + Esc + "?P"), "0;") << "without its end mark nothing is sent";
  desk.terminal.ReceiveInterface2("xyz", desk.now);
  EXPECT_EQ(desk.Heard(), "xyz");
}

}  // namespace
}  // namespace kelvo::sim
