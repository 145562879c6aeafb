#include "graphics/pic_reader.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "graphics/create_pic.h"
#include "graphics/painter.h"
#include "tests/drawing_samples.h"
#include "tests/test_fonts.h"

namespace kelvo {
namespace {

constexpr int kHeight = 128;
constexpr std::int64_t kThreshold = 0x800000;

std::string CommandsFor(const Drawing& drawing, double version = 2.1) {
  TerminalTraits traits;
  traits.displayHeight = kHeight;
  traits.blackThreshold = kThreshold;
  traits.pixelWidthVersion = 2;
  traits.terminalVersion = version;
  return CreatePic(drawing, traits).text;
}

// ESC as "^" and the text end as "~".
LoadedDrawing Read(std::string text) {
  for (char& c : text) c = c == '^' ? '\x1b' : c == '~' ? '\x04' : c;
  return ReadPic(text, kHeight, TestFonts());
}

PixelMap Pixels(const Drawing& drawing) {
  PixelMap map(240, kHeight);
  PaintDrawing(map, drawing, TestFonts(), kThreshold);
  return map;
}

bool IsFlat(const Drawing& drawing) {
  return std::none_of(drawing.begin(), drawing.end(), [](const DrawingObject& object) {
    return object.kind == Kind::Group || object.kind == Kind::Vertices;
  });
}

TEST(PicReader, GivesBackWhatMadeTheCommands) {
  RandomDrawings random(11);
  int flat = 0;
  for (int i = 0; i < 3000; ++i) {
    const Drawing drawing = random.Next();
    for (const double version : {1.0, 2.1}) {
      const std::string commands = CommandsFor(drawing, version);
      const LoadedDrawing loaded = ReadPic(commands + "\r\n", kHeight, TestFonts());
      ASSERT_EQ(loaded.error, "") << i;
      ASSERT_TRUE(loaded.skipped.empty()) << i << " " << loaded.skipped.begin()->first;
      ASSERT_EQ(Pixels(loaded.drawing), Pixels(drawing)) << i;
      const std::string again = CommandsFor(loaded.drawing, version);
      // Groups and what is not sent tell the pen more often than one level of objects does.
      if (IsFlat(drawing)) {
        ASSERT_EQ(again, commands) << i;
        ++flat;
      }
      ASSERT_EQ(CommandsFor(ReadPic(again, kHeight, TestFonts()).drawing, version), again) << i;
    }
  }
  EXPECT_GT(flat, 1000);
  const Drawing extremes = {
      Boxed(Kind::Ellipse, {-32768, 0}, {-32767, 9}),
      Boxed(Kind::Ellipse, {32767, 50}, {1, 0}),
      WithVertices(Kind::Polyline, {{-32768, -32640}, {32767, 32767}, {0, 0}}),
      TextAt({32767, 0}, {9, 0, 9, true, true, true}, "am Rand"),
      Erasing(WithVertices(Kind::Polyline, {{5, 5}})),
      Erasing(TextAt({0, 9}, {0, 1, 1, false, true, false}, "\xE4;\x7F"))};
  EXPECT_EQ(CommandsFor(Read(CommandsFor(extremes)).drawing), CommandsFor(extremes));
}

TEST(PicReader, FollowsTheTerminalThroughCommandsWrittenByHand) {
  EXPECT_EQ(
      CommandsFor(
          Read("^GC^GP8,40;^GF3;^GZ2,2;^GA0;^GTHallo^GP1,2;^GR3,4;^GL5,6;^GH^GL7,8;").drawing),
      CommandsFor(Read("^GP8,40;^GF3;^GZ2,2;^GA0;^GTHallo~^GP1,2;^GR3,4;^GP1,2;^GL5,6;^GP0,0;"
                       "^GL7,8;")
                      .drawing));
  const Drawing words = Read("^GP0,0;^GTab~^GTc~^GM1;^GL9,9;").drawing;
  ASSERT_EQ(words.size(), 3U);
  EXPECT_EQ(words[1].corner2.x, words[0].corner1.x + 1);
  EXPECT_EQ(words[2].vertices[0].x, words[1].corner1.x + 1);
  EXPECT_EQ(words[2].penMode, PenMode::Erase);
  EXPECT_EQ(Read("").error + Read("\r\n").error, "");
}

TEST(PicReader, SaysWhatItLeavesOut) {
  using Skipped = std::map<std::string, int>;
  const struct {
    const char* text;
    Skipped skipped;
  } rows[] = {
      {"^GP1,1;^GL2,2;^GC^GL3,3;", {{"Display löschen (ab Zeichen 15)", 1}}},
      {"^ECM5;^GP0,0;^GL9,9;^ECM6;", {{"Makro ausführen (ab Zeichen 1)", 2}}},
      {"^EWM7,^GP3,3;^GL1,1;\x03^GL9,9;x^GL1;",
       {{"Makro schreiben (ab Zeichen 1)", 1},
        {"Text außerhalb der Befehle (ab Zeichen 29)", 1},
        {"Linie, beschädigt (ab Zeichen 30)", 1}}},
      {"^GL9,9;^GL1,70000;^GL 1,,2;^GL1,2", {{"Linie, beschädigt (ab Zeichen 8)", 3}}},
      {"^GL9,9;^GB0,0,-8,2,FF;^GB0,0,1,1,fg;^GB0,0,1,1,FF;",
       {{"Bitmap, beschädigt (ab Zeichen 8)", 2}}},
      {"^QQ;^GL9,9;", {{"unbekannter Befehl (ab Zeichen 1)", 1}}},
  };
  for (const auto& row : rows) {
    const LoadedDrawing loaded = Read(row.text);
    EXPECT_EQ(loaded.skipped, row.skipped) << row.text;
    EXPECT_FALSE(loaded.drawing.empty());
  }
  for (const char* text : {"Guten Tag", "^ECM5;"}) {
    EXPECT_EQ(Read(text).error, "Der Text enthält keine Zeichenbefehle.") << text;
  }
  WmfLimits limits;
  limits.objects = 2;
  EXPECT_NE(ReadPic("\x1bGR1,1;\x1bGR2,2;\x1bGR3,3;", 64, TestFonts(), limits).error, "");
}

// Whatever a file holds: nothing is read beyond it, and what comes out can be sent.
TEST(PicReader, DamagedTextsDoNoHarm) {
  RandomDrawings random(5);
  for (int i = 0; i < 2000; ++i) {
    std::string text = CommandsFor(random.Next());
    for (int hits = random.Number(0, 4); hits > 0 && !text.empty(); --hits) {
      const auto at = static_cast<std::size_t>(random.Number(0, static_cast<int>(text.size()) - 1));
      text[at] = static_cast<char>(random.Number(0, 255));
      if (random.Number(0, 3) == 0) text.resize(at);
    }
    const Drawing drawing = ReadPic(text, kHeight, TestFonts()).drawing;
    EXPECT_EQ(drawing.empty(), CommandsFor(drawing).empty()) << text;
  }
}

}  // namespace
}  // namespace kelvo
