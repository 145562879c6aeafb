#include <gtest/gtest.h>

#include "simulator/eeprom.h"

namespace kelvo::sim {
namespace {

using Kind = Eeprom::Kind;

TEST(SimulatorEeprom, RunsOutAndReusesWhatIsReplacedOrDeleted) {
  Eeprom eeprom(100);
  EXPECT_TRUE(eeprom.Write(Kind::Macro, 1, std::string(46, 'a')));
  EXPECT_EQ(eeprom.Free(), 50);
  EXPECT_FALSE(eeprom.Write(Kind::Macro, 2, std::string(47, 'b')));
  EXPECT_EQ(eeprom.Free(), 50);
  EXPECT_TRUE(eeprom.Write(Kind::Macro, 2, std::string(46, 'b')));
  EXPECT_EQ(eeprom.Free(), 0);
  EXPECT_FALSE(eeprom.Write(Kind::Config, 0, ""));
  // A record is replaced in its own room, and a refused one keeps the old content.
  EXPECT_TRUE(eeprom.Write(Kind::Macro, 1, std::string(46, 'c')));
  EXPECT_FALSE(eeprom.Write(Kind::Macro, 1, std::string(47, 'd')));
  EXPECT_EQ(eeprom.Read(Kind::Macro, 1), std::string(46, 'c'));
  eeprom.Delete(Kind::Macro, 2);
  eeprom.Delete(Kind::Macro, 2);
  EXPECT_EQ(eeprom.Free(), 50);
  EXPECT_FALSE(eeprom.Read(Kind::Macro, 2));
}

Eeprom Filled() {
  Eeprom eeprom(1000);
  eeprom.Write(Kind::Config, 0, "abc");
  eeprom.Write(Kind::Macro, 255, std::string("\0\x1B\x03;\xFF", 5));
  eeprom.Write(Kind::Macro, 7, "");
  eeprom.Write(Kind::Bitmap, 7, std::string(300, '\x80'));
  return eeprom;
}

TEST(SimulatorEeprom, ComesBackFromItsFile) {
  const Eeprom before = Filled();
  Eeprom after(1000);
  ASSERT_TRUE(after.Load(before.Save()));
  EXPECT_EQ(after.Records(), before.Records());
  EXPECT_EQ(after.Free(), before.Free());
}

TEST(SimulatorEeprom, AnyDamageLeavesItEmpty) {
  const std::string file = Filled().Save();
  for (std::size_t i = 0; i < file.size(); ++i) {
    std::string flipped = file;
    flipped[i] = static_cast<char>(flipped[i] ^ 0x10);
    for (const std::string& damaged : {flipped, file.substr(0, i)}) {
      Eeprom eeprom(1000);
      eeprom.Write(Kind::Macro, 1, "old");
      ASSERT_FALSE(eeprom.Load(damaged)) << i;
      ASSERT_EQ(eeprom.Free(), 1000) << i;
    }
  }
  Eeprom small(100);
  EXPECT_FALSE(small.Load(file)) << "holds more than there is room for";
  EXPECT_EQ(small.Free(), 100);
}

}  // namespace
}  // namespace kelvo::sim
