#include "twin/preview.h"

#include <gtest/gtest.h>

#include <map>

#include "tests/random_macros.h"
#include "tests/test_fonts.h"

namespace kelvo {
namespace {

using Makros = std::map<int, std::string>;

constexpr int kOwn = 7;  // the number of the macro that is looked at

std::function<std::optional<std::string>(int)> TextsOf(const Makros& makros) {
  return [&makros](int number) {
    const auto found = makros.find(number);
    return found == makros.end() ? std::nullopt : std::optional(found->second);
  };
}

/// A Terminal that has got these macros over its line, and runs one of them.
class Written {
 public:
  Written(const Makros& makros, int width, int height)
      : terminal_({.eepromBytes = 65536, .width = width, .height = height}, TestFonts()) {
    terminal_.PowerOn({});
    for (const auto& [number, text] : makros) {
      Send(
          "\x1B"
          "EWM" +
          std::to_string(number) + "," + text + "\x03");
    }
    Send(RandomMacros::Call(kOwn));
  }
  const sim::Terminal& Terminal() const { return terminal_; }
  void Send(const std::string& text) {
    for (const char byte : text) terminal_.Receive(static_cast<unsigned char>(byte), {});
  }

 private:
  sim::Terminal terminal_;
};

const std::string Esc = "\x1B";

// Macros as they are used, with what is to be told of each.
TEST(Preview, ShowsWhatTheTerminalShowsAndTellsWhatBecomesOfTheMakro) {
  const struct {
    const char* what;
    std::string text;
    Makros others{};
    std::vector<int> unknown{};
    bool restarts = false;
    bool neverEnds = false;
    bool handsOver = false;
  } cases[] = {
      {"nothing", ""},
      {"text", "Guten Tag\r\nund weiter"},
      {"picture",
       Esc + "GC" + Esc + "GP10,10;" + Esc + "GfR60,40;" + Esc + "GM1;" + Esc + "GE9,9;"},
      {"calls", Esc + "ECM3;" + Esc + "TH" + "x", {{3, Esc + "GP5,5;" + Esc + "GR50,50;"}}},
      {"calls what is not there", "a" + Esc + "ECM200;b", {}, {200}},
      {"calls itself", Esc + "GL9,9;" + Esc + "ECM7;", {}, {}, false, true},
      {"circle",
       Esc + "ECM8;",
       {{8, "8" + Esc + "ECM9;"}, {9, "9" + Esc + "ECM8;"}},
       {},
       false,
       true},
      {"restarts", "never" + Esc + "R" + "seen", {{0, "start"}}, {}, true},
      {"restarts into the unknown", Esc + "R", {}, {0}, true},
      {"hands over", "mine" + Esc + "!A9;yours", {}, {}, false, false, true},
      {"cut short", Esc + "TP3,3;x" + Esc + "GP4"},
      {"new size", Esc + "!R60,30;" + Esc + "R", {{0, Esc + "GfR99,99;"}}, {}, true},
      {"styled text", Esc + "TF2;" + Esc + "TZ2,3;" + Esc + "TA4;" + Esc + "TM1;" + "Halt"},
      {"graphic text", Esc + "GP8,40;" + Esc + "GF3;" + Esc + "GZ2,2;" + Esc + "GA1;" + Esc +
                           "GTHallo\x04" + Esc + "GL9,9;"},
      {"erasing",
       Esc + "GfR60,40;" + Esc + "GM1;" + Esc + "GfE30,20;" + Esc + "GM0;" + Esc + "GE80,60;"},
      {"beyond the display", Esc + "GP150,70;" + Esc + "GR400,-20;" + Esc + "GL-5,200;"},
      {"all rows full", std::string(300, 'x') + "\b\b\r\ny"},
      {"cursor", Esc + "!c 4,3;" + Esc + "!C 4;" + Esc + "GP20,20;" + Esc + "TP2,2;"},
      {"calls twice", Esc + "ECM3;" + Esc + "GP40,0;" + Esc + "ECM3;", {{3, Esc + "GE70,50;"}}},
      {"clears", "alt" + Esc + "GfR99,50;" + Esc + "GC" + "neu"},
  };
  for (const auto& c : cases) {
    Makros makros = c.others;
    makros[kOwn] = c.text;
    const Written written(makros, 160, 80);
    const PreviewResult result =
        Preview(TestFonts())
            .Run(c.text, {.width = 160, .height = 80, .makro = TextsOf(makros), .baud = 1000});
    EXPECT_EQ(result.picture, written.Terminal().Display().Pixels()) << c.what;
    EXPECT_EQ(result.unknown, c.unknown) << c.what;
    EXPECT_EQ(result.restarts, c.restarts) << c.what;
    EXPECT_EQ(result.neverEnds, c.neverEnds) << c.what;
    EXPECT_EQ(result.handsOver, c.handsOver) << c.what;
    EXPECT_EQ(result.lineTime, std::chrono::milliseconds(10) * c.text.size()) << c.what;
  }
}

TEST(Preview, EqualsTheTerminalForRandomMakros) {
  RandomMacros random(20261122);
  int drawn = 0;
  for (int run = 0; run < 500; ++run) {
    Makros makros;
    for (const int number : {0, 1, kOwn}) {
      makros[number] = random.Strokes(number == kOwn ? 60 : 10);
      if (random.Chance(40)) makros[number] += RandomMacros::Call(random.Number(0, 3));
      if (random.Chance(10)) makros[number] += Esc + "R";
      makros[number] += random.Strokes(3);
    }
    const int width = random.Number(20, 320);
    const int height = random.Number(20, 240);
    const Written written(makros, width, height);
    const PreviewResult result =
        Preview(TestFonts())
            .Run(makros[kOwn], {.width = width, .height = height, .makro = TextsOf(makros)});
    ASSERT_EQ(result.picture, written.Terminal().Display().Pixels()) << run;
    ASSERT_EQ(result.withCursor, written.Terminal().Display().Picture(true)) << run;
    drawn += result.picture == PixelMap(width, height) ? 0 : 1;
  }
  EXPECT_GT(drawn, 400);
}

// From what another macro has left: pen, position and picture, and the macros in the EEPROM.
TEST(Preview, GoesOnFromAStateAndLeavesItAlone) {
  const Makros makros = {{kOwn, Esc + "GP5,5;" + Esc + "GM1;"}, {4, Esc + "GfR50,30;"}};
  Written written(makros, 100, 60);
  written.Send(Esc + "GM0;" + Esc + "GfR99,59;" + Esc + "GM1;" + Esc + "!A77;");
  const PixelMap before = written.Terminal().Display().Pixels();
  const PreviewResult result =
      Preview(TestFonts()).Run(RandomMacros::Call(4), {.state = &written.Terminal()});
  EXPECT_EQ(written.Terminal().Display().Pixels(), before);
  written.Send(Esc + "!A0;" + RandomMacros::Call(4));
  EXPECT_NE(written.Terminal().Display().Pixels(), before);
  EXPECT_EQ(result.picture, written.Terminal().Display().Pixels());
  EXPECT_EQ(result.called, std::vector<int>{4});
  EXPECT_FALSE(result.CalledUnknown());
}

}  // namespace
}  // namespace kelvo
