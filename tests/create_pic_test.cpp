#include "graphics/create_pic.h"

#include <gtest/gtest.h>

#include "tests/drawing_samples.h"

namespace kelvo {
namespace {

// ESC as "^" and the text end as "~", so that the expectations can be read.
std::string Readable(std::string text) {
  for (char& c : text) c = c == '\x1b' ? '^' : c == '\x04' ? '~' : c;
  return text;
}

TerminalTraits Traits() {
  TerminalTraits traits;
  traits.displayHeight = 64;
  traits.blackThreshold = 0x800000;
  traits.pixelWidthVersion = 2;
  traits.terminalVersion = 2.1;
  return traits;
}

Translation Translate(const Drawing& drawing) {
  TerminalTraits traits = Traits();
  return CreatePic(drawing, traits);
}

std::string Commands(const Drawing& drawing) {
  const Translation result = Translate(drawing);
  EXPECT_TRUE(result.messages.empty());
  return Readable(result.text);
}

const DrawingObject kLine = WithVertices(Kind::Line, {{10, 58}, {-3, 0}});
const std::string kLineText = "^GP 10, 5;^GL-3, 63;";

TEST(CreatePic, WritesEachKind) {
  const struct {
    DrawingObject object;
    const char* commands;
  } rows[] = {
      {kLine, "^GP 10, 5;^GL-3, 63;"},
      {Boxed(Kind::Rectangle, {20, 10}, {5, 3}, true), "^GP 20, 53;^GfR 5, 60;"},
      {Boxed(Kind::Rectangle, {20, 70}, {5, 3}), "^GP 20,-7;^GR 5, 60;"},
      {Boxed(Kind::Ellipse, {9, 63}, {0, 56}, true), "^GP 4, 3;^GfE 4, 3;"},
      {Boxed(Kind::Ellipse, {0, 10}, {9, 4}), "^GP 4, 56;^GE-5, 3;"},  // -9 / 2 goes to -5
      {WithVertices(Kind::Polyline, {{0, 63}, {1, 62}, {2, 0}}), "^GP 0, 0;^GL 1, 1;^GL 2, 63;"},
      {WithVertices(Kind::Polyline, {{7, 7}}), "^GP 7, 56;"},
      {WithVertices(Kind::Vertices, {{0, 63}, {1, 62}, {2, 0}}), ""},
      {PictureAt({4, 63}, Picture(1, 2, {kBlack, kWhite})), "^GB4,0,-1,2,8000;"},
      {TextAt({0, 63}, {1, 2, 1, true, false, true}, "Hallo"), "^GP0,0;^GF1;^GZ2,1;^GA3;^GTHallo~"},
      {TextAt({0, 63}, {0, 1, 0, false, true, false}, "a;b"), "^GP0,0;^GF0;^GZ1,0;^GA4;^GTa;b~"},
      {TextAt({-1, 70}, {1, 2, 0}, ""), "^GP-1,-7;^GF1;^GZ2,0;^GA0;^GT~"},
      {Boxed(Kind::Text, {39, 63}, {0, 56}), ""},
      {WithVertices(static_cast<Kind>(3), {{0, 0}}), ""},
      {GroupOf({}), ""},
  };
  for (const auto& row : rows) EXPECT_EQ(Commands({row.object}), row.commands);
  EXPECT_EQ(Commands({}), "");
}

TEST(CreatePic, EmitsAPenModeOnlyWhereItChanges) {
  DrawingObject inverse = Boxed(Kind::Text, {0, 63}, {0, 63});
  inverse.penMode = PenMode::InverseText;
  EXPECT_EQ(Commands({Erasing(kLine), Erasing(kLine), kLine}),
            "^GM1;" + kLineText + kLineText + "^GM0;" + kLineText);
  // An unknown mode is remembered without a word, and the next one is emitted again.
  EXPECT_EQ(Commands({inverse, kLine}), "^GM0;" + kLineText);
  EXPECT_EQ(Commands({Erasing(kLine), inverse, Erasing(kLine)}),
            "^GM1;" + kLineText + "^GM1;" + kLineText);
  // What is not sent counts for the mode all the same.
  EXPECT_EQ(Commands({Erasing(WithVertices(Kind::Vertices, {{0, 0}})), kLine}),
            "^GM1;^GM0;" + kLineText);
}

TEST(CreatePic, GroupsKeepTheirPenModeToThemselves) {
  EXPECT_EQ(Commands({Erasing(GroupOf({kLine}))}), kLineText);
  EXPECT_EQ(Commands({GroupOf({Erasing(kLine)}), kLine}), "^GM1;" + kLineText + kLineText);
  EXPECT_EQ(Commands({Erasing(kLine), GroupOf({kLine, GroupOf({Erasing(kLine)})}), kLine}),
            "^GM1;" + kLineText + kLineText + "^GM1;" + kLineText + "^GM0;" + kLineText);
}

TEST(CreatePic, ALevelThatLeavesSixteenBitsIsEmptyAndSaysSo) {
  const DrawingObject far[] = {
      WithVertices(Kind::Line, {{0, 0}, {0, -32705}}),  // 63 + 32705 = 32768
      WithVertices(Kind::Polyline, {{40000, 0}}),
      Boxed(Kind::Rectangle, {0, -40000}, {0, 0}),
      Boxed(Kind::Ellipse, {20000, 0}, {-20000, 0}),
      Boxed(Kind::Picture, {32767, 0}, {0, 0}),  // w = 32768
      WithVertices(Kind::Vertices, {{0, 32768}}),
      TextAt({32768, 0}, {}, "x"),
  };
  for (const DrawingObject& object : far) {
    const Translation result = Translate({kLine, object, kLine});
    EXPECT_EQ(result.text, "");
    EXPECT_TRUE(result.failed);
    EXPECT_EQ(result.messages, std::vector<std::string>{"Überlauf / CreatePic"});
    const Translation inGroup = Translate({kLine, GroupOf({kLine, object}), kLine});
    EXPECT_EQ(Readable(inGroup.text), kLineText + kLineText);
    EXPECT_EQ(inGroup.messages.size(), 1U);
    EXPECT_FALSE(inGroup.failed);
  }
  EXPECT_FALSE(Translate({}).failed);
  EXPECT_EQ(Commands({WithVertices(Kind::Polyline, {{-32768, -32704}, {32767, 32767}})}),
            "^GP-32768, 32767;^GL 32767,-32704;");
  // The lower edge itself, which would be the 32831st row, is not part of an ellipse's commands.
  EXPECT_EQ(Commands({Boxed(Kind::Ellipse, {9, -32577}, {0, -32768})}), "^GP 4, 32735;^GE 4, 95;");
}

TEST(CreatePic, AsksForTheVersionOnceAndOnlyForPictures) {
  int asked = 0;
  TerminalTraits traits = Traits();
  traits.terminalVersion = 0;
  traits.queryVersion = [&] {
    ++asked;
    return 1.5;
  };
  CreatePic({kLine}, traits);
  EXPECT_EQ(asked, 0);
  const DrawingObject picture = PictureAt({0, 63}, Picture(1, 1, {kBlack}));
  EXPECT_EQ(Readable(CreatePic({picture, picture}, traits).text), "^GB0,0,1,1,80;^GB0,0,1,1,80;");
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(traits.terminalVersion, 1.5);
}

}  // namespace
}  // namespace kelvo
