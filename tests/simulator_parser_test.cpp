#include <gtest/gtest.h>

#include "simulator/command_parser.h"
#include "simulator/parameters.h"
#include "tests/simulator_desk.h"

namespace kelvo::sim {
namespace {

/// Writes down what comes out: [name:parameters], text as it is, graphic text in braces.
class Recorder : public CommandParser::Handler {
 public:
  void OnCommand(const CommandRow& row, std::string_view parameters) override {
    heard += "[" + std::string(row.name) + ":" + std::string(parameters) + "]";
  }
  void OnText(unsigned char byte) override { heard += static_cast<char>(byte); }
  void OnGraphicText(unsigned char byte) override {
    heard += "{" + std::string(1, static_cast<char>(byte)) + "}";
  }
  std::string heard;
};

std::string Parse(std::string_view bytes) {
  CommandParser parser;
  Recorder recorder;
  for (const char byte : bytes) parser.Feed(static_cast<unsigned char>(byte), recorder);
  return recorder.heard;
}

struct Case {
  std::string line;
  std::string heard;
};

TEST(SimulatorParser, TakesTheLineApart) {
  const Case cases[] = {
      // With and without parameters, and names that begin alike.
      {Esc + "GP 10, -5;a", "[GP: 10, -5]a"},
      {Esc + "R" + Esc + "GR1,2;" + Esc + "GfR3,4;", "[R:][GR:1,2][GfR:3,4]"},
      {Esc + "EE" + Esc + "Ee" + Esc + "E?F" + Esc + "EM?" + Esc + "EMK3;" + Esc + "EA?",
       "[EE:][Ee:][E?F:][EM?:][EMK:3][EA?:]"},
      {Esc + "?C" + Esc + "?c" + Esc + "C?" + Esc + "C!" + Esc + "??" + Esc + "F??",
       "[?C:][?c:][C?:][C!:][??:][F??:]"},
      // A query is complete without an end mark; what follows is text.
      {Esc + "?V;", "[?V:];"},
      // A macro's text is raw up to ETX.
      {Esc + "EWM7,GC" + Esc + "GP1,2;x" + Etx + "b", "[EWM:7,GC" + Esc + "GP1,2;x]b"},
      // A graphic text ends at character 4 or at the next command.
      {Esc + "GTa;b" + Eot + "c" + Esc + "GTd" + Esc + "TH", "[GT:]{a}{;}{b}c[GT:]{d}[TH:]"},
      // Unknown commands are skipped, and the step is kept.
      {Esc + "Q1,2;x", "x"},
      {Esc + "GX1,2;x" + Esc + "GQ" + Esc + "TH" + Esc + ";y", "x[TH:]y"},
      // A command that the next ESC cuts short is ignored.
      {Esc + "GP1" + Esc + "GL2,3;" + Esc + Esc + "TH", "[GL:2,3][TH:]"},
      // What brings every Terminal back to its start, from whatever state.
      {Esc + "EWM1,abc" + ";" + Etx + Eot + Esc + "!A255;" + Esc + "R",
       "[EWM:1,abc;]" + Eot + "[!A:255][R:]"},
  };
  for (const Case& c : cases) EXPECT_EQ(Parse(c.line), c.heard) << c.line;
}

TEST(SimulatorParser, EveryCommandIsFoundByItsNameAlone) {
  for (const CommandRow& row : CommandRows()) {
    const NameMatch match = FindCommand(row.name);
    EXPECT_EQ(match.row, &row) << row.name;
    EXPECT_FALSE(match.mayGrow) << row.name << " is the beginning of another command";
  }
}

TEST(SimulatorParser, AnEndlessParameterListIsCut) {
  const std::string line = Esc + "GB" + std::string(CommandParser::kMaxParameters + 5000, '1');
  EXPECT_EQ(Parse(line + ";x").size(),
            std::string("[GB:]x").size() + CommandParser::kMaxParameters);
}

TEST(SimulatorParameters, AreReadAsDecimalNumbers) {
  const Parameters fields(" 10,-5,,12a,x,99999999999999999999,-99999999999");
  const int values[] = {10, -5, 0, 12, 0, 1'000'000'000, -1'000'000'000, 0};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(fields.Number(i), values[i]) << i;
  EXPECT_EQ(fields.Count(), 7);
  EXPECT_EQ(Parameters("").Count(), 0);
  EXPECT_EQ(Parameters("7,a,b").Rest(1), "a,b");
  EXPECT_EQ(Parameters("7").Rest(1), "");
}

}  // namespace
}  // namespace kelvo::sim
