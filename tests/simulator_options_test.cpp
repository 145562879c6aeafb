#include <gtest/gtest.h>

#include <vector>

#include "simulator/options.h"

namespace kelvo::sim {
namespace {

TEST(SimulatorOptions, AreTakenFromTheTable) {
  const std::vector<std::string> arguments = {
      "--version", "1.5",        "--address",     "7",       "--echo",      "line",
      "--baud",    "9600",       "--display",     "320x240", "--p1",        "165",
      "--fault",   "late",       "--eeprom-size", "4096",    "--no-pacing", "--display-png",
      "a.png",     "--commands", "--frame",       "7S"};
  Options options;
  EXPECT_EQ(ReadOptions(arguments, options), std::nullopt);
  EXPECT_EQ(options.terminal.setup.version, "1.5");
  EXPECT_FALSE(options.terminal.setup.flash);
  EXPECT_EQ(options.terminal.setup.address, 7);
  EXPECT_TRUE(options.lineEcho);
  EXPECT_EQ(options.terminal.setup.baud, 9600);
  EXPECT_EQ(options.terminal.setup.width, 320);
  EXPECT_EQ(options.terminal.p1, 165);
  EXPECT_EQ(options.terminal.setup.fault, Fault::Late);
  EXPECT_EQ(options.terminal.setup.eepromBytes, 4096);
  EXPECT_FALSE(options.paced);
  EXPECT_EQ(std::pair(options.hostBits, options.hostParity), std::pair(7, 1));
  EXPECT_FALSE(options.window);
  EXPECT_TRUE(options.commands);
}

TEST(SimulatorOptions, DescribeABusLineByLine) {
  Options options;
  options.terminal.setup.width = 320;
  std::vector<TerminalOptions> bus;
  EXPECT_EQ(ReadBus("# two\naddress=5 version=1.9 fault=flips:500\r\n\n"
                    "address=5  checksum=off eeprom=a.eeprom",
                    options.terminal, bus),
            std::nullopt);
  ASSERT_EQ(bus.size(), 2U);
  EXPECT_EQ(bus[0].setup.version, "1.9");
  EXPECT_EQ(bus[0].setup.fault, Fault::Flips);
  EXPECT_EQ(bus[0].setup.faultEvery, 500);
  EXPECT_EQ(bus[1].setup.fault, Fault::None);
  EXPECT_FALSE(bus[1].setup.checksum);
  EXPECT_EQ(bus[1].eepromFile, "a.eeprom");
  EXPECT_EQ(bus[1].setup.width, 320);
}

TEST(SimulatorOptions, WrongBusLinesAreNumbered) {
  std::string tooMany;
  for (int i = 0; i < 257; ++i) tooMany += "address=1\n";
  const std::pair<std::string, const char*> wrong[] = {
      {"address=1\naddress=256", "Zeile 2: ungültiger Wert für address: 256"},
      {"address", "Zeile 1: ungültiger Wert für address: "},
      {"port=x", "Zeile 1: unbekannte Option: port"},
      {"fault=flips:0", "Zeile 1: ungültiger Wert für fault: flips:0"},
      {"# nobody\n", "kein Terminal beschrieben"},
      {tooMany, "Zeile 257: zu viele Terminals"}};
  for (const auto& [file, reason] : wrong) {
    std::vector<TerminalOptions> bus;
    EXPECT_EQ(ReadBus(file, {}, bus), reason);
  }
}

TEST(SimulatorOptions, WrongOnesAreNamed) {
  const std::vector<std::vector<std::string>> wrong = {{"--nonsense"},
                                                       {"--address"},
                                                       {"--address", "256"},
                                                       {"--address", "x"},
                                                       {"--version", "a;"},
                                                       {"--baud", "115200"},
                                                       {"--display", "1x1"},
                                                       {"--fault", "all"},
                                                       {"--echo", "maybe"},
                                                       {"--p1", "-1"},
                                                       {"--eeprom", ""},
                                                       {"--frame", "9N"},
                                                       {"--frame", "8"},
                                                       {"--fast"},
                                                       {"--replay", "a", "--record", "b"},
                                                       {"--replay", "a", "--port", "b"},
                                                       {"--replay", "a", "--commands"},
                                                       {"--replay", "a", "--fast", "--window"}};
  for (const auto& arguments : wrong) {
    Options options;
    const auto error = ReadOptions(arguments, options);
    ASSERT_TRUE(error) << arguments[0];
    EXPECT_NE(error->find(arguments[0]), std::string::npos);
  }
}

}  // namespace
}  // namespace kelvo::sim
