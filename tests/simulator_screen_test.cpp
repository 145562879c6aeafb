#include <gtest/gtest.h>

#include "tests/pixel_picture.h"
#include "tests/simulator_desk.h"

namespace kelvo::sim {
namespace {

/// A Terminal with a small display.
class SmallDesk : public Desk {
 public:
  explicit SmallDesk(int width = 20, int height = 20) : Desk({.width = width, .height = height}) {}
  const Screen& Display() const { return terminal.Display(); }
  int Set() const { return SetPixels(Display().Pixels()); }
};

TEST(SimulatorScreen, DrawsBitmapsInBothForms) {
  SmallDesk desk(20, 20);
  desk.Command("GB1,1,1,2,81FF;");
  desk.Command("GB0,5,-3,2,FFFF;");     // pixels: the rest of the byte is not drawn
  desk.Command("GB18,8,1,1,FF;");       // clipped
  desk.Command("GB0,12,1,3,F0;");       // fewer digits than rows
  desk.Command("GB0,0,32767,32767,;");  // no digits
  EXPECT_EQ(desk.Set(), 2 + 8 + 6 + 2 + 4);
  desk.Send(Esc + "GM1;" + Esc + "GB1,1,1,1,80;");
  EXPECT_FALSE(desk.Display().Pixels().At(1, 1)) << "erased where the picture is black";
  EXPECT_TRUE(desk.Display().Pixels().At(8, 1)) << "and kept where it is white";
}

// A drawing may end in erase mode, and the next one, or the same again, begins with the pen that
// draws.
TEST(SimulatorScreen, ClearedDisplayTakesTheSameDrawingAsANewOne) {
  for (const std::string shape : {"GfR9,9;", "GB0,0,1,1,FF;", "GL9,9;", "GTx\x04"}) {
    SmallDesk fresh;
    SmallDesk used;
    used.Send(Esc + "GP3,3;" + Esc + shape + Esc + "GM1;" + Esc + shape);
    for (SmallDesk* desk : {&fresh, &used}) desk->Send(Esc + "GC" + Esc + "GP0,0;" + Esc + shape);
    EXPECT_GT(fresh.Set(), 0) << shape;
    EXPECT_EQ(used.Display().Pixels(), fresh.Display().Pixels()) << shape;
  }
}

TEST(SimulatorScreen, GraphicTextHasItsOwnStyleAndMovesThePosition) {
  SmallDesk desk(100, 60);
  desk.Send(Esc + "TF4;" + Esc + "GP3,4;" + Esc + "GF8;" + Esc + "GZ2,3;" + Esc + "GTa;" + Eot);
  EXPECT_EQ(desk.Command("G?P"), "35,4;") << "behind the text";
  EXPECT_EQ(desk.Command("T?F"), "4;");
}

TEST(SimulatorScreen, PutsTextIntoCellsOfItsFont) {
  SmallDesk desk(32, 24);  // 4 columns, 3 rows of 8 x 8
  PixelMap expected(32, 24);
  DrawText(expected, TestFonts(), 8, 16, "X", {});
  desk.Send(Esc + "TP2,3;X");
  EXPECT_EQ(desk.Display().Pixels(), expected);
  const std::pair<std::string, const char*> steps[] = {{"", "3,3;"},
                                                       {"\r", "1,3;"},
                                                       {"\n", "1,1;"},
                                                       {"ab", "3,1;"},
                                                       {"\b", "2,1;"},
                                                       {"\b\b\b", "1,1;"},
                                                       {"abcd", "1,2;"},
                                                       {"abcdabcd", "1,1;"},
                                                       {"\x01\x07", "1,1;"},
                                                       {Esc + "TP99,99;", "4,3;"},
                                                       {Esc + "TP-5,0;", "1,1;"},
                                                       {Esc + "TP3,3;" + Esc + "TZ2,2;x", "1,1;"}};
  for (const auto& [text, position] : steps) {
    desk.Send(text);
    EXPECT_EQ(desk.Command("T?P"), position) << text;
  }
}

TEST(SimulatorScreen, CursorIsShownAboveThePicture) {
  struct Case {
    std::string commands;
    const char* kind;
    const char* shape;
    int lit;
    int dark;
  };
  const Case cases[] = {
      {Esc + "!c 1,0;" + Esc + "!C 1;" + Esc + "TP1,1;", "1;", "0;", 8, 0},
      {Esc + "!c 2,1;" + Esc + "!C 2;" + Esc + "TP2,2;", "2;", "1;", 64, 64},
      {Esc + "TZ2,2;" + Esc + "!c 2,0;" + Esc + "!C 2;", "2;", "0;", 32, 32},
      {Esc + "!c 3,5;" + Esc + "!C 3;" + Esc + "GP10,10;", "3;", "3,5;", 21, 0},
      {Esc + "!c 4,5;" + Esc + "!C 4;" + Esc + "GP0,0;", "4;", "4,5;", 11, 11},
      {Esc + "!c 5,1;" + Esc + "!C 5;" + Esc + "GP16,16;", "5;", "5,1;", 16, 0},
      {Esc + "!c 6,0;" + Esc + "!C 6;" + Esc + "GP0,0;", "6;", "6,0;", 8, 8},
      {Esc + "!c 0;" + Esc + "!C 0;", "0;", "0;", 0, 0},
      {Esc + "!C9;" + Esc + "!c4,999999;", "0;", "0;", 0, 0},
  };
  for (const Case& c : cases) {
    SmallDesk desk;
    desk.Send(c.commands);
    EXPECT_EQ(desk.Command("?C"), c.kind);
    EXPECT_EQ(desk.Command("?c"), c.shape);
    EXPECT_EQ(SetPixels(desk.Display().Picture(true)), c.lit) << c.kind;
    EXPECT_EQ(SetPixels(desk.Display().Picture(false)), c.dark) << c.kind;
    EXPECT_EQ(desk.Set(), 0);
  }
  EXPECT_TRUE(Terminal::CursorLit(10s));
  EXPECT_FALSE(Terminal::CursorLit(10s + 500ms));
}

TEST(SimulatorScreen, HostileNumbersAreClipped) {
  SmallDesk desk;
  const std::string huge = "999999999999";
  desk.Send(Esc + "GP-" + huge + ",-" + huge + ";" + Esc + "GfR" + huge + "," + huge + ";");
  EXPECT_EQ(desk.Set(), 400);
  desk.Send(Esc + "GM1;" + Esc + "GfE" + huge + "," + huge + ";" + Esc + "GL" + huge + "," + huge +
            ";" + Esc + "GT" + std::string(1000, 'x') + Eot);
  EXPECT_EQ(desk.Command("G?P"), "32767,32767;");
  desk.Send(Esc + "GF-3;" + Esc + "GZ0,99;" + Esc + "TM77;" + Esc + "TF10;" + Esc + "TZ-1,99;");
  EXPECT_EQ(desk.Command("T?M") + desk.Command("T?F") + desk.Command("T?Z"), "3;0;1,8;");
}

}  // namespace
}  // namespace kelvo::sim
