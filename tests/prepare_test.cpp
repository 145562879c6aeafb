#include "graphics/prepare.h"

#include <gtest/gtest.h>

#include "graphics/dither.h"
#include "graphics/editing.h"
#include "graphics/history.h"
#include "graphics/transforms.h"
#include "graphics/wmf.h"
#include "tests/drawing_samples.h"
#include "tests/test_fonts.h"

namespace kelvo {
namespace {

// Every pixel another colour, so that each of them can be told.
Picture Sample(int width, int height) {
  std::vector<Colour> pixels;
  for (int i = 0; i < width * height; ++i)
    pixels.push_back(static_cast<Colour>(i) * 0x0b1731U % kWhite);
  return {width, height, std::move(pixels)};
}

Preparation AnyPreparation(RandomDrawings& random) {
  Preparation p;
  p.margins = {random.Number(0, 4), random.Number(0, 3), random.Number(0, 4), random.Number(0, 3)};
  p.mirrored = random.Number(0, 1) == 1;
  p.turns = random.Number(0, 3);
  p.brightness = random.Number(-40, 40);
  p.contrast = random.Number(-100, 100);
  p.dithering = static_cast<Dithering>(random.Number(0, 2));
  if (random.Number(0, 1) == 1) p.threshold = random.Number(0, 256);
  p.grey = random.Number(0, 1) == 1;
  p.invert = random.Number(0, 1) == 1;
  return p;
}

DrawingObject Prepared(const PictureSource& source, const Preparation& preparation, Box box) {
  DrawingObject object;
  object.kind = Kind::Picture;
  object.source = source;
  object.preparation = preparation;
  object.selected = true;
  SetCorners(object, box);
  PrepareForBox(object);
  return object;
}

Drawing Loaded(const std::string& bytes, std::size_t skipped = 0) {
  const WmfDrawing loaded = ReadWmf(bytes, 240, 128, TestFonts());
  EXPECT_EQ(loaded.error, "");
  EXPECT_EQ(loaded.skipped.size(), skipped);
  return loaded.drawing;
}

TEST(Prepare, ResamplingTakesTheMean) {
  const Picture four(4, 1, {0x000000, 0x0000ff, 0x646464, 0xc8c8c8});
  EXPECT_EQ(Resampled(four, {2, 1}), Picture(2, 1, {0x000080, 0x969696}));
  EXPECT_EQ(Resampled(four, {8, 2}).At(3, 1), 0x0000ffU) << "enlarged: each pixel twice";
  EXPECT_EQ(Resampled(Picture(3, 1, {kBlack, 0x5a5a5a, kWhite}), {2, 1}).At(0, 0), 0x1e1e1eU);
}

TEST(Prepare, MarginsToneAndOrientationCountAsShown) {
  const PictureSource source(Sample(6, 4));
  Preparation cut;
  cut.margins = {1, 0, 2, 1};
  EXPECT_EQ(CutSize(source, cut), (PictureSize{3, 3}));
  EXPECT_EQ(Prepared(source, cut, {0, 0, 2, 2}).picture.At(0, 0), source.Pixels().At(1, 0));
  cut.turns = 1;  // what is on the left now was below
  cut.mirrored = true;
  EXPECT_EQ(CutSize(source, cut), (PictureSize{1, 5}));
  EXPECT_EQ(Prepared(source, cut, {0, 0, 0, 4}).picture.At(0, 0), source.Pixels().At(5, 2));
  Preparation bright;
  bright.brightness = 100;
  EXPECT_EQ(Prepared(source, bright, {0, 0, 5, 3}).picture.At(0, 0), kWhite);
  bright = {};
  bright.contrast = -100;
  EXPECT_EQ(Prepared(source, bright, {0, 0, 5, 3}).picture.At(3, 3), 0x808080U);
}

// What is done to the pixels is what the preparation would do, whatever is in it.
TEST(Prepare, FlipsTurnsAndInvertingKeepPictureAndPreparationTogether) {
  RandomDrawings random(8);
  const PictureSource source(Sample(23, 17));
  for (int i = 0; i < 200; ++i) {
    Drawing drawing = {Prepared(source, AnyPreparation(random), {0, 0, random.Number(1, 30), 12})};
    for (int step = 0; step < 3; ++step) {
      switch (random.Number(0, 3)) {
        case 0:
          FlipSelected(drawing, Axis::X);
          break;
        case 1:
          FlipSelected(drawing, Axis::Y);
          break;
        case 2:
          TurnSelected(drawing);
          break;
        default:
          InvertSelected(drawing);
      }
    }
    const DrawingObject& now = drawing[0];
    ASSERT_TRUE(Fits(now.preparation, source));
    ASSERT_EQ(Prepared(source, now.preparation, BoundsOf(now)).picture, now.picture) << i;
  }
}

TEST(Prepare, AChangedSizeIsMadeFromTheSource) {
  const PictureSource source(Sample(40, 40));
  const Drawing before = {Prepared(source, {}, {0, 0, 3, 3})};
  Drawing drawing = before;
  StretchSelected(drawing, {0, 0, 3, 3}, {0, 0, 39, 39}, TestFonts());
  EXPECT_EQ(drawing[0].picture, source.Pixels()) << "all of its pixels are there again";
  StretchSelected(drawing, {0, 0, 39, 39}, {0, 0, 15999, 15999}, TestFonts());
  EXPECT_LE(drawing[0].picture.Width(), 1024) << "no picture of 256 million pixels";
  History history;
  Drawing changed = before;
  changed[0].preparation.brightness = 1;
  history.Record(before, changed);
  EXPECT_TRUE(history.CanUndo());
}

TEST(Prepare, LargeSourcesShrinkAndDamagedOnesAreEmpty) {
  const PictureSource large(Sample(3000, 1000));
  EXPECT_NEAR(large.Pixels().Width(), 1773, 1);
  EXPECT_NEAR(large.Pixels().Height(), 591, 1);
  const PictureSource small(Sample(7, 5));
  const std::string& packed = small.Packed();
  EXPECT_EQ(PictureSource::Unpacked(packed, 7, 5), small);
  for (const auto& [bytes, width, height] : {std::tuple(packed, 7, 6),
                                             {packed, 5, 5},
                                             {packed, -7, 5},
                                             {packed, 20000, 20000},
                                             {packed.substr(0, packed.size() - 6), 7, 5},
                                             {std::string(), 7, 5}}) {
    EXPECT_TRUE(PictureSource::Unpacked(bytes, width, height).Empty());
  }
}

TEST(Prepare, MetafilesCarrySourcesAndPreparations) {
  RandomDrawings random(9);
  for (int i = 0; i < 60; ++i) {
    const PictureSource one(Sample(random.Number(9, 200), random.Number(8, 200)));
    const PictureSource two(Sample(12, 11));
    const Drawing drawing = {Prepared(one, AnyPreparation(random), {0, 0, 9, 9}),
                             PictureAt({0, 9}, Sample(3, 3)),
                             GroupOf({Prepared(two, AnyPreparation(random), {5, 5, 20, 9})}),
                             Erasing(Prepared(one, AnyPreparation(random), {9, 0, 19, 9}))};
    Drawing expected = drawing;
    for (DrawingObject& object : expected) {
      const auto unselect = [](DrawingObject& o) { o.selected = false; };
      ForEachMember(object, unselect);
    }
    const Drawing loaded = Loaded(WriteWmf(drawing, 240, 128).bytes);
    ASSERT_EQ(loaded, expected);
    EXPECT_TRUE(loaded[0].source.Shares(loaded[3].source)) << "stored once";
  }
}

TEST(Prepare, DamagedSourcesLeaveThePlainPicture) {
  const Drawing drawing = {Prepared(PictureSource(Sample(60, 50)), {}, {0, 0, 9, 9})};
  const std::string good = WriteWmf(drawing, 240, 128).bytes;
  const auto damaged = [&](const char* mark, std::size_t at, char value) {
    std::string bytes = good;
    bytes[bytes.find(mark) + 6 + at] = value;
    return bytes;
  };
  // The source's width, its bytes; the preparation's source, left margin, turns, dithering.
  for (const std::string& bytes :
       {damaged("KELVOS", 0, 61), damaged("KELVOS", 1, '\xff'), damaged("KELVOD", 40, '\x7f'),
        damaged("KELVOP", 0, 1), damaged("KELVOP", 1, '\xff'), damaged("KELVOP", 2, 60),
        damaged("KELVOP", 10, 4), damaged("KELVOP", 18, 3)}) {
    const Drawing plain = Loaded(bytes, 1);
    ASSERT_EQ(plain.size(), 1U);
    EXPECT_TRUE(plain[0].source.Empty());
    EXPECT_EQ(plain[0].picture, drawing[0].picture);
  }
  WmfLimits limits;
  limits.sourcePixels = 2999;
  EXPECT_TRUE(ReadWmf(good, 240, 128, TestFonts(), limits).drawing.at(0).source.Empty());
}

}  // namespace
}  // namespace kelvo
