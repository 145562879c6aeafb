#include "graphics/prepare.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "graphics/dib.h"
#include "graphics/dither.h"

namespace kelvo {

namespace {

constexpr int kChannels = 3;
constexpr double kMaxBoxPixels = 1 << 20;

int Part(Colour colour, int channel) { return static_cast<int>(colour >> (8 * channel) & 255U); }

// How much of one pixel of the new size falls on the old pixels from `first` on.
struct Span {
  int first = 0;
  std::vector<int> weights;
};

// In units in which an old pixel is `to` long and a new one `from`.
std::vector<Span> Spans(int from, int to) {
  std::vector<Span> spans(static_cast<std::size_t>(to));
  for (int i = 0; i < to; ++i) {
    const std::int64_t begin = std::int64_t{i} * from;
    const std::int64_t end = begin + from;
    Span& span = spans[static_cast<std::size_t>(i)];
    span.first = static_cast<int>(begin / to);
    for (std::int64_t at = span.first; at * to < end; ++at) {
      const std::int64_t covered = std::min(end, (at + 1) * to) - std::max(begin, at * to);
      span.weights.push_back(static_cast<int>(covered));
    }
  }
  return spans;
}

using Sums = std::array<std::int64_t, kChannels>;

Sums RowSums(const Colour* row, const Span& columns) {
  Sums sums{};
  const Colour* colour = row + columns.first;
  for (const int weight : columns.weights) {
    for (int c = 0; c < kChannels; ++c) {
      sums[static_cast<std::size_t>(c)] += std::int64_t{weight} * Part(*colour, c);
    }
    ++colour;
  }
  return sums;
}

Colour Mean(const Picture& picture, const Span& columns, const Span& rows) {
  Sums sums{};
  int y = rows.first;
  for (const int weight : rows.weights) {
    const Sums row = RowSums(picture.Row(y++), columns);
    for (std::size_t c = 0; c < kChannels; ++c) sums[c] += weight * row[c];
  }
  const std::int64_t all = std::int64_t{picture.Width()} * picture.Height();
  Colour colour = 0;
  for (std::size_t c = 0; c < kChannels; ++c) {
    colour |= static_cast<Colour>((sums[c] + all / 2) / all) << (8 * c);
  }
  return colour;
}

template <typename PixelAt>
Picture Made(PictureSize size, PixelAt pixelAt) {
  std::vector<Colour> pixels;
  pixels.reserve(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) pixels.push_back(pixelAt(x, y));
  }
  return {size.width, size.height, std::move(pixels)};
}

PictureSize SizeOf(const Picture& picture) { return {picture.Width(), picture.Height()}; }

PictureSize Lying(PictureSize size) { return {size.height, size.width}; }

Margins TurnedMargins(const Margins& m) { return {m.bottom, m.left, m.top, m.right}; }

Margins MirroredMargins(const Margins& m) { return {m.right, m.top, m.left, m.bottom}; }

// As they lie on the source itself.
Margins SourceMargins(const Preparation& preparation) {
  Margins margins = preparation.margins;
  for (int i = preparation.turns; i % 4 != 0; ++i) margins = TurnedMargins(margins);
  return preparation.mirrored ? MirroredMargins(margins) : margins;
}

int Left(int length, int cutFirst, int cutLast) { return std::max(1, length - cutFirst - cutLast); }

// What each value of a channel becomes.
std::array<Colour, 256> Tones(const Preparation& preparation) {
  constexpr int kMiddle = 128;
  // Full contrast is four times the normal one, the least none at all.
  const int gain =
      preparation.contrast > 0 ? 100 + 3 * preparation.contrast : 100 + preparation.contrast;
  std::array<Colour, 256> tones{};
  for (int value = 0; value < 256; ++value) {
    const int tone = (value - kMiddle) * gain / 100 + kMiddle + preparation.brightness * 255 / 100;
    tones[static_cast<std::size_t>(value)] = static_cast<Colour>(std::clamp(tone, 0, 255));
  }
  return tones;
}

Picture Toned(const Picture& picture, const Preparation& preparation) {
  if (preparation.brightness == 0 && preparation.contrast == 0) return picture;
  const std::array<Colour, 256> tones = Tones(preparation);
  return Made(SizeOf(picture), [&](int x, int y) {
    const Colour colour = picture.Row(y)[x];
    return tones[colour & 255U] | tones[colour >> 8 & 255U] << 8 | tones[colour >> 16 & 255U] << 16;
  });
}

// The dithers compare brightness; the option's threshold is a colour value.
Picture BlackAndWhite(const Picture& picture, const Preparation& preparation) {
  const bool byThreshold = preparation.dithering == Dithering::Threshold;
  Picture shown = byThreshold && preparation.grey ? MadeGrey(picture) : picture;
  if (byThreshold && !preparation.threshold) return shown;
  const int threshold = preparation.threshold.value_or(kMiddleBrightness);
  constexpr Colour kGreyStep = 0x010101;  // from one grey to the next
  return MadeMonochrome(shown, preparation.dithering, static_cast<Colour>(threshold) * kGreyStep,
                        threshold);
}

Picture Inverted(const Picture& picture) {
  return Made(SizeOf(picture), [&](int x, int y) { return kWhite - picture.Row(y)[x]; });
}

}  // namespace

PictureSize CutSize(const PictureSource& source, const Preparation& preparation) {
  const Margins cut = SourceMargins(preparation);
  const Picture& pixels = source.Pixels();
  const PictureSize size{Left(pixels.Width(), cut.left, cut.right),
                         Left(pixels.Height(), cut.top, cut.bottom)};
  return preparation.turns % 2 == 0 ? size : Lying(size);
}

bool Fits(const Preparation& preparation, const PictureSource& source) {
  const Margins cut = SourceMargins(preparation);
  const auto within = [](int value, int low, int high) { return value >= low && value <= high; };
  const Picture& pixels = source.Pixels();
  constexpr int kMax = Preparation::kMaxChange;
  return std::min({cut.left, cut.top, cut.right, cut.bottom}) >= 0 &&
         cut.left + cut.right < pixels.Width() && cut.top + cut.bottom < pixels.Height() &&
         within(preparation.turns, 0, 3) && within(preparation.brightness, -kMax, kMax) &&
         within(preparation.contrast, -kMax, kMax) &&
         within(preparation.threshold.value_or(0), 0, Preparation::kMaxThreshold) &&
         within(static_cast<int>(preparation.dithering), 0, static_cast<int>(Dithering::Ordered));
}

Picture Scaled(const PictureSource& source, const Preparation& preparation, PictureSize shown) {
  const Margins cut = SourceMargins(preparation);
  const Picture& whole = source.Pixels();
  const PictureSize size = preparation.turns % 2 == 0 ? shown : Lying(shown);
  if (cut == Margins()) return Resampled(whole, size);
  return Resampled(Cropped(whole, cut.left, cut.top, Left(whole.Width(), cut.left, cut.right),
                           Left(whole.Height(), cut.top, cut.bottom)),
                   size);
}

Picture Finished(const Picture& scaled, const Preparation& preparation) {
  Picture picture = BlackAndWhite(Toned(scaled, preparation), preparation);
  if (preparation.invert) picture = Inverted(picture);
  if (preparation.mirrored) picture = Mirrored(picture);
  for (int i = 0; i < preparation.turns; ++i) picture = Turned(picture);
  return picture;
}

PictureSize PreparedSize(PictureSize box) {
  const double pixels = static_cast<double>(box.width) * box.height;
  const double share = pixels > kMaxBoxPixels ? std::sqrt(kMaxBoxPixels / pixels) : 1;
  const auto side = [share](int length) { return std::max(1, static_cast<int>(length * share)); };
  return {side(box.width), side(box.height)};
}

void PrepareForBox(DrawingObject& object) {
  if (object.kind != Kind::Picture || object.source.Empty()) return;
  const Box box = BoundsOf(object);
  const PictureSize size = PreparedSize({box.Width(), box.Height()});
  if (size == SizeOf(object.picture)) return;
  object.picture = Finished(Scaled(object.source, object.preparation, size), object.preparation);
}

Picture Resampled(const Picture& picture, PictureSize size) {
  if (size == SizeOf(picture) || picture.Width() == 0) return picture;
  const std::vector<Span> columns = Spans(picture.Width(), size.width);
  const std::vector<Span> rows = Spans(picture.Height(), size.height);
  return Made(size, [&](int x, int y) {
    return Mean(picture, columns[static_cast<std::size_t>(x)], rows[static_cast<std::size_t>(y)]);
  });
}

Picture Mirrored(const Picture& picture) {
  const int last = picture.Width() - 1;
  return Made(SizeOf(picture), [&](int x, int y) { return picture.Row(y)[last - x]; });
}

Picture Turned(const Picture& picture) {
  const int last = picture.Height() - 1;
  return Made(Lying(SizeOf(picture)), [&](int x, int y) { return picture.Row(last - x)[y]; });
}

// What mirrors a turned picture turns the mirrored one the other way.
Preparation Mirrored(Preparation preparation) {
  preparation.mirrored = !preparation.mirrored;
  preparation.turns = (4 - preparation.turns) % 4;
  preparation.margins = MirroredMargins(preparation.margins);
  return preparation;
}

Preparation Turned(Preparation preparation) {
  preparation.turns = (preparation.turns + 1) % 4;
  preparation.margins = TurnedMargins(preparation.margins);
  return preparation;
}

void MirrorPicture(DrawingObject& object) {
  object.picture = Mirrored(object.picture);
  if (!object.source.Empty()) object.preparation = Mirrored(object.preparation);
}

void TurnPicture(DrawingObject& object) {
  object.picture = Turned(object.picture);
  if (!object.source.Empty()) object.preparation = Turned(object.preparation);
}

void InvertPicture(DrawingObject& object) {
  object.picture = Inverted(object.picture);
  if (!object.source.Empty()) object.preparation.invert = !object.preparation.invert;
}

}  // namespace kelvo
