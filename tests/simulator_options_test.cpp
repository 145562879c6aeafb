#include <gtest/gtest.h>

#include <vector>

#include "simulator/options.h"

namespace kelvo::sim {
namespace {

TEST(SimulatorOptions, AreTakenFromTheTable) {
  const std::vector<std::string> arguments = {
      "--version", "1.5",         "--address",     "7",         "--echo",
      "line",      "--baud",      "9600",          "--display", "320x240",
      "--p1",      "165",         "--fault",       "late",      "--eeprom-size",
      "4096",      "--no-pacing", "--display-png", "a.png",     "--commands"};
  Options options;
  EXPECT_EQ(ReadOptions(arguments, options), std::nullopt);
  EXPECT_EQ(options.terminal.version, "1.5");
  EXPECT_FALSE(options.terminal.flash);
  EXPECT_EQ(options.terminal.address, 7);
  EXPECT_TRUE(options.lineEcho);
  EXPECT_EQ(options.terminal.baud, 9600);
  EXPECT_EQ(options.terminal.width, 320);
  EXPECT_EQ(options.p1, 165);
  EXPECT_EQ(options.terminal.fault, Fault::Late);
  EXPECT_EQ(options.terminal.eepromBytes, 4096);
  EXPECT_FALSE(options.paced);
  EXPECT_FALSE(options.window);
  EXPECT_TRUE(options.commands);
}

TEST(SimulatorOptions, WrongOnesAreNamed) {
  const std::vector<std::vector<std::string>> wrong = {
      {"--nonsense"},      {"--address"},        {"--address", "256"}, {"--address", "x"},
      {"--version", "a;"}, {"--baud", "115200"}, {"--display", "1x1"}, {"--fault", "all"},
      {"--echo", "maybe"}, {"--p1", "-1"},       {"--eeprom", ""}};
  for (const auto& arguments : wrong) {
    Options options;
    const auto error = ReadOptions(arguments, options);
    ASSERT_TRUE(error) << arguments[0];
    EXPECT_NE(error->find(arguments[0]), std::string::npos);
  }
}

}  // namespace
}  // namespace kelvo::sim
