#include "graphics/wmf.h"

#include <gtest/gtest.h>
#include <uwmf.h>

#include <cstring>

#include "graphics/create_pic.h"
#include "graphics/dib.h"
#include "graphics/text_prefix.h"
#include "tests/drawing_samples.h"
#include "tests/foreign_metafile.h"
#include "tests/test_fonts.h"

namespace kelvo {
namespace {

constexpr int kWidth = 240;
constexpr int kHeight = 128;

WmfDrawing Load(std::string_view bytes, const WmfLimits& limits = {}) {
  return ReadWmf(bytes, kWidth, kHeight, TestFonts(), limits);
}

std::string Saved(const Drawing& drawing) {
  const WmfFile file = WriteWmf(drawing, kWidth, kHeight);
  EXPECT_EQ(file.error, "");
  return file.bytes;
}

std::string CommandsOf(const Drawing& drawing) {
  TerminalTraits traits;
  traits.displayHeight = kHeight;
  traits.blackThreshold = 0x808080;
  return CreatePic(drawing, traits).text;
}

TEST(Wmf, DrawingsComeBackObjectForObject) {
  RandomDrawings drawings(20);
  for (int i = 0; i < 3000; ++i) {
    const Drawing drawing = drawings.Next();
    const WmfDrawing loaded = Load(Saved(drawing));
    ASSERT_EQ(loaded.error, "");
    ASSERT_FALSE(loaded.foreign);
    ASSERT_EQ(loaded.drawing, drawing) << "drawing " << i;
    ASSERT_EQ(CommandsOf(loaded.drawing), CommandsOf(drawing));
  }
}

TEST(Wmf, OddObjectsComeBackToo) {
  DrawingObject group = GroupOf({GroupOf({})});
  group.penMode = PenMode::Erase;
  const Drawing odd = {
      Boxed(Kind::Rectangle, {3, 4}, {30, 40}),  // crossed corners
      WithVertices(Kind::Line, {{7, 7}, {7, 7}}),
      WithVertices(Kind::Polyline, {}),
      Boxed(Kind::Text, {-29961, 32000}, {-30000, 31993}),
      TextAt({0, 0}, {1, 1, 1}, std::string("\0;\xff", 3)),
      group,
  };
  EXPECT_EQ(Load(Saved(odd)).drawing, odd);
  EXPECT_EQ(Load(Saved({})).drawing, Drawing());
  // On another display the distances from the bottom left stay.
  EXPECT_EQ(ReadWmf(Saved(odd), 640, 480, TestFonts()).drawing, odd);
}

TEST(Wmf, StoredTextsBeginWithTheirAttributes) {
  const std::tuple<std::string_view, TextAttributes, std::string_view> rows[] = {
      {"121101Hallo", {1, 2, 1, true, false, true}, "Hallo"},
      {"x1x010a;b", {0, 1, 0, false, true, false}, "a;b"},
      {"12", {1, 2, 0}, ""}};
  for (const auto& [stored, style, shown] : rows) {
    DrawingObject object;
    TakePrefixedText(object, stored);
    EXPECT_EQ(object.style, style);
    EXPECT_EQ(object.text, shown);
  }
  EXPECT_EQ(MakePrefixedText(TextAt({0, 0}, {1, 2, 1, true, false, true}, "Hallo")), "121101Hallo");
}

TEST(Wmf, SaysWhatCannotBeWritten) {
  for (const Drawing& drawing : {Drawing{WithVertices(Kind::Line, {{0, 0}, {0, -32769}})},
                                 Drawing{Boxed(Kind::Ellipse, {32767, 0}, {0, 0})},
                                 Drawing{TextAt({0, 0}, {}, std::string(40000, 'x'))}}) {
    const WmfFile file = WriteWmf(drawing, kWidth, kHeight);
    EXPECT_EQ(file.bytes, "");
    EXPECT_NE(file.error, "");
  }
}

TEST(Wmf, ForeignDrawingsBecomeObjects) {
  Foreign file;
  file.Window(100, 50, 240, 128).Brush(kDark, U_BS_NULL).Pen(kDark);
  file.Add(U_WMRMOVETO_set({100, 50})).Add(U_WMRLINETO_set({110, 177}));
  file.Add(U_WMRMOVETO_set({100, 50}))
      .Add(U_WMRLINETO_set({101, 50}))
      .Add(U_WMRLINETO_set({102, 51}));
  file.Add(U_WMRRECTANGLE_set({110, 60, 120, 70}));
  file.Brush(kDark).Add(U_WMRELLIPSE_set({110, 60, 120, 70}));
  const U_POINT16 corners[] = {{100, 50}, {110, 50}, {110, 60}};
  file.Pen(kLight).Brush(kDark, U_BS_NULL).Add(U_WMRPOLYGON_set(3, corners));
  for (int i = 0; i < 2; ++i) file.Add(U_WMREXTFLOODFILL_set(0, kDark, {5, 5}));
  const WmfDrawing loaded = Load(file.Bytes());
  EXPECT_EQ(loaded.error, "");
  EXPECT_TRUE(loaded.foreign);
  const Drawing expected = {
      WithVertices(Kind::Line, {{0, 127}, {10, 0}}),
      WithVertices(Kind::Polyline, {{0, 127}, {1, 127}, {2, 126}}),
      Boxed(Kind::Rectangle, {19, 117}, {10, 108}),
      Boxed(Kind::Ellipse, {19, 117}, {10, 108}, true),
      Erasing(WithVertices(Kind::Vertices, {{0, 127}, {10, 127}, {10, 117}})),
  };
  EXPECT_EQ(loaded.drawing, expected);
  EXPECT_EQ(loaded.skipped, (std::map<std::string, int>{{"Flächenfüllung", 2}}));
}

TEST(Wmf, ForeignInsidesAndOutlinesOfDifferentColourAreTwoObjects) {
  Foreign file;
  file.Window(0, 0, 240, 128).Brush(kLight).Pen(kDark).Add(U_WMRRECTANGLE_set({0, 0, 10, 10}));
  file.Pen(kDark, U_PS_NULL).Add(U_WMRRECTANGLE_set({0, 0, 10, 10}));
  const DrawingObject box = Boxed(Kind::Rectangle, {9, 127}, {0, 118});
  DrawingObject inside = Erasing(box);
  inside.filled = true;
  EXPECT_EQ(Load(file.Bytes()).drawing, (Drawing{inside, box, inside}));
}

TEST(Wmf, ForeignDrawingsLargerThanTheDisplayShrink) {
  Foreign file;
  file.Window(0, 1000, 2400, -1000).Brush(kDark, U_BS_NULL);  // y upward, ten times as wide
  file.Add(U_WMRRECTANGLE_set({0, 1000, 2400, 0}));
  EXPECT_EQ(Load(file.Bytes()).drawing, Drawing{Boxed(Kind::Rectangle, {239, 127}, {0, 28})});

  Foreign unframed;  // no window: what it draws is the frame
  std::string bytes =
      unframed.Brush(kDark, U_BS_NULL).Add(U_WMRRECTANGLE_set({500, 0, 980, 256})).Bytes();
  bytes.erase(0, U_SIZE_WMRPLACEABLE);
  EXPECT_EQ(Load(bytes).drawing, Drawing{Boxed(Kind::Rectangle, {239, 127}, {0, 0})});
}

TEST(Wmf, ForeignTextTakesTheNearestFont) {
  Foreign file;
  char face[] = "Arial";
  U_FONT* font = U_FONT_set(-16, 0, 0, 0, 700, 0, 0, 0, 0, 0, 0, 0, 0, face);
  file.Window(0, 0, 240, 128).Add(U_WMRCREATEFONTINDIRECT_set(font)).Add(U_WMRSELECTOBJECT_set(0));
  std::free(font);
  char text[] = "\x93Gru\xdf \xfc\x94";
  file.Add(U_WMRTEXTOUT_set({5, 7}, text));
  file.Add(U_WMRSETTEXTALIGN_set(U_TA_RIGHT | U_TA_BOTTOM));
  file.Add(U_WMREXTTEXTOUT_set({100, 100}, 2, U_ETO_OPAQUE, "ab", nullptr, {0, 0, 9, 9}));
  const Drawing drawing = Load(file.Bytes()).drawing;
  ASSERT_EQ(drawing.size(), 3U);
  EXPECT_EQ(drawing[0].text, "\"Gru\xdf \xfc\"");
  EXPECT_EQ(drawing[0].style, (TextAttributes{8, 1, 1}));
  EXPECT_EQ(BoundsOf(drawing[0]), (Box{5, 120 - 15, 5 + 8 * 8 - 1, 120}));
  DrawingObject ground = Erasing(Boxed(Kind::Rectangle, {8, 127}, {0, 119}));
  ground.filled = true;
  EXPECT_EQ(drawing[1], ground) << "what is behind an opaque text";
  EXPECT_EQ(drawing[2].text, "ab");
  EXPECT_EQ(BoundsOf(drawing[2]), (Box{84, 28, 99, 43}));
}

TEST(Wmf, TextThatBeginsWithAttributesHasThem) {
  Foreign file;
  char attributes[] = "321101Pumpe";
  char none[] = "391101Pumpe";  // there is no zoom of 9
  file.Window(0, 0, 240, 128).Add(U_WMRTEXTOUT_set({5, 7}, attributes));
  file.Add(U_WMRTEXTOUT_set({5, 60}, none));
  const Drawing drawing = Load(file.Bytes()).drawing;
  ASSERT_EQ(drawing.size(), 2U);
  EXPECT_EQ(drawing[0].text, "Pumpe");
  EXPECT_EQ(drawing[0].style, (TextAttributes{3, 2, 1, true, false, true}));
  EXPECT_EQ(drawing[1].text, "391101Pumpe");
}

// Some programs forget the outline behind a change of the inside.
TEST(Wmf, APenIsSelectedBehindEachBrush) {
  const std::string bytes = Saved({Boxed(Kind::Rectangle, {9, 9}, {0, 0}, true),
                                   Boxed(Kind::Rectangle, {29, 9}, {20, 0}, false)});
  std::vector<int> selected;
  for (std::size_t at = U_SIZE_WMRPLACEABLE + U_SIZE_WMRHEADER; at + 8 <= bytes.size();) {
    std::uint32_t words = 0;
    std::memcpy(&words, bytes.data() + at, 4);
    if (bytes[at + 4] == U_WMR_SELECTOBJECT) selected.push_back(bytes[at + 6]);
    at += 2 * std::size_t{words};
  }
  const std::vector<int> last(selected.end() - 4, selected.end());
  EXPECT_EQ(last[1], last[3]) << "the pen";
  EXPECT_NE(last[0], last[2]) << "the brush";
}

// One record after the set-up of a foreign file, as bare parameters.
std::string WithRecord(std::uint16_t type, const std::string& parameters) {
  std::string record(4, '\0');
  const auto words = static_cast<std::uint32_t>((6 + parameters.size()) / 2);
  std::memcpy(record.data(), &words, 4);
  record += static_cast<char>(type & 255);
  record += static_cast<char>(type >> 8);
  const std::string whole = Foreign().Bytes();
  return whole.substr(0, whole.size() - 6) + record + parameters + whole.substr(whole.size() - 6);
}

TEST(Wmf, DamagedFilesGiveOneMessageAndNothingElse) {
  const std::string good =
      Saved({Boxed(Kind::Rectangle, {9, 9}, {0, 0}), TextAt({9, 20}, {}, "x"),
             PictureAt({3, 30}, Picture(2, 2, {kBlack, kWhite, kWhite, kBlack}))});
  std::vector<std::string> bad = {
      "",
      "GIF89a",
      std::string(100, '\0'),
      good + "",
      WithRecord(0x0324, std::string("\x05\0\0\0", 4)),     // points missing
      WithRecord(0x0538, std::string("\xff\xff\0\0", 4)),   // counts missing
      WithRecord(0x0521, std::string("\x10\0ab", 4)),       // text missing
      WithRecord(0x041b, std::string("\1\0", 2)),           // box missing
      WithRecord(0x0626, std::string("\x0f\0\x40\0", 4))};  // comment missing
  bad[3].resize(good.size() - 1);
  for (std::size_t cut = 0; cut < good.size(); cut += 3) bad.push_back(good.substr(0, cut));
  for (std::size_t at = U_SIZE_WMRPLACEABLE + U_SIZE_WMRHEADER; at < good.size();) {
    std::uint32_t words = 0;
    std::memcpy(&words, &good[at], 4);
    for (const std::uint32_t wrong : {0U, 2U, 0x7fffffffU, 0x80000003U, 0xffffffffU}) {
      bad.push_back(good);
      std::memcpy(&bad.back()[at], &wrong, 4);
    }
    at += 2 * std::size_t{words};
  }
  for (const std::string& bytes : bad) {
    const WmfDrawing loaded = Load(bytes);
    EXPECT_NE(loaded.error, "");
    EXPECT_TRUE(loaded.drawing.empty());
  }
}

TEST(Wmf, AChangedByteNeverDoesHarm) {
  RandomDrawings drawings(3);
  for (int i = 0; i < 60; ++i) {
    const std::string good = Saved(drawings.Next());
    for (int change = 0; change < 60; ++change) {
      std::string bytes = good;
      for (int n = drawings.Number(1, 4); n > 0; --n) {
        bytes[static_cast<std::size_t>(drawings.Number(0, static_cast<int>(bytes.size()) - 1))] =
            static_cast<char>(drawings.Number(0, 255));
      }
      const WmfDrawing loaded = Load(bytes);
      EXPECT_TRUE(loaded.error.empty() || loaded.drawing.empty());
    }
  }
}

TEST(Wmf, LimitsEndTheReading) {
  const DrawingObject line = WithVertices(Kind::Line, {{0, 0}, {1, 1}});
  const std::string group = Saved({GroupOf({GroupOf({line, line})})});
  const auto limited = [](auto change) {
    WmfLimits limits;
    change(limits);
    return limits;
  };
  EXPECT_EQ(Load(group, limited([](auto& l) { l.objects = 4; })).error, "");
  EXPECT_NE(Load(group, limited([](auto& l) { l.objects = 3; })).error, "");
  EXPECT_NE(Load(group, limited([](auto& l) { l.vertices = 3; })).error, "");
  EXPECT_NE(Load(group, limited([](auto& l) { l.groupDepth = 1; })).error, "");
  EXPECT_NE(Load(group, limited([](auto& l) { l.handles = 4; })).error, "");
  EXPECT_NE(Load(group, limited([](auto& l) { l.fileBytes = 100; })).error, "");
  // Too many pixels: the picture is left out.
  const std::string picture = Saved({PictureAt({0, 0}, Picture(4, 1, {1, 2, 3, 4}))});
  EXPECT_TRUE(Load(picture, limited([](auto& l) { l.pixels = 3; })).drawing.empty());
  EXPECT_EQ(Load(picture, limited([](auto& l) { l.pixels = 3; })).skipped.size(), 1U);
  // Few pixels stretched to very many are not even written: what is saved can be read again.
  DrawingObject huge = PictureAt({0, 0}, Picture(1, 1, {kBlack}));
  huge.corner2 = {-4999, -4999};
  EXPECT_NE(WriteWmf({huge}, kWidth, kHeight).error, "");
  huge.corner2 = {-4095, -4095};
  EXPECT_EQ(Load(Saved({huge})).drawing, Drawing{huge});
  EXPECT_NE(WriteWmf({huge, huge}, kWidth, kHeight).error, "");
}

// A bitmap header of 40 bytes, and what follows it.
std::string Dib(std::int32_t width, std::int32_t height, std::uint16_t bits,
                const std::string& rest, std::uint32_t compression = 0) {
  std::string dib(40, '\0');
  dib[0] = 40;
  std::memcpy(&dib[4], &width, 4);
  std::memcpy(&dib[8], &height, 4);
  std::memcpy(&dib[14], &bits, 2);
  std::memcpy(&dib[16], &compression, 4);
  return dib + rest;
}

TEST(Dib, ReadsEveryDepth) {
  const std::string palette2("\0\0\0\0\xff\xff\xff\0", 8);
  const std::string grey(4 * 14, '\0');
  const Picture expected(2, 1, {kWhite, kBlack});
  const struct {
    std::uint16_t bits;
    std::string rest;
  } rows[] = {{1, palette2 + std::string("\x80\0\0\0", 4)},
              {4, palette2 + grey + std::string("\x10\0\0\0", 4)},
              {8, palette2 + std::string(4 * 254, '\0') + std::string("\1\0\0\0", 4)},
              {16, std::string("\xff\x7f\0\0", 4)},
              {24, std::string("\xff\xff\xff\0\0\0\0\0", 8)},
              {32, std::string("\xff\xff\xff\0\0\0\0\0", 8)}};
  for (const auto& row : rows) {
    const auto picture = ReadDib(Dib(2, 1, row.bits, row.rest), 100);
    ASSERT_TRUE(picture.has_value()) << row.bits;
    EXPECT_EQ(*picture, expected) << row.bits;
  }
  const std::string twoRows("\1\2\3\0\4\5\6\0", 8);
  EXPECT_EQ(*ReadDib(Dib(1, 2, 24, twoRows), 100), Picture(1, 2, {0x040506, 0x010203}));
  EXPECT_EQ(*ReadDib(Dib(1, -2, 24, twoRows), 100), Picture(1, 2, {0x010203, 0x040506}));
}

TEST(Dib, RefusesWhatIsDamagedOrTooLarge) {
  const std::string row(8, '\0');
  EXPECT_FALSE(ReadDib("", 100));
  EXPECT_FALSE(ReadDib(Dib(2, 1, 24, row).substr(0, 47), 100));
  EXPECT_FALSE(ReadDib(Dib(2, 1, 24, row), 1));
  EXPECT_FALSE(ReadDib(Dib(2, 1, 24, row, 1), 100));  // run-length coded
  for (const auto& [width, height] :
       {std::pair(0, 1), {-2, 1}, {2, 0}, {2, INT32_MIN}, {40000, 1}}) {
    EXPECT_FALSE(ReadDib(Dib(width, height, 24, row), 100)) << width << " " << height;
  }
  EXPECT_FALSE(ReadDib(Dib(2, 1, 7, row), 100));
}

}  // namespace
}  // namespace kelvo
