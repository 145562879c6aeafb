#include "graphics/wmf_sources.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <utility>

#include "graphics/prepare.h"
#include "graphics/wmf_format.h"

namespace kelvo::wmf {

namespace {

constexpr int kNoThreshold = -1;

// The number of the source, and what the preparation says.
constexpr std::size_t kNumbers = 13;
using Numbers = std::array<int, kNumbers>;

// All of them fit: sides and margins of a source stay far below the bounds.
std::string Bytes(std::initializer_list<int> numbers) {
  std::string bytes;
  for (const int number : numbers) {
    const auto word = static_cast<std::uint16_t>(number);
    bytes += static_cast<char>(word & 255U);
    bytes += static_cast<char>(word >> 8);
  }
  return bytes;
}

template <std::size_t count>
std::optional<std::array<int, count>> NumbersOf(std::string_view bytes) {
  if (bytes.size() < 2 * count) return std::nullopt;
  std::array<int, count> numbers{};
  for (std::size_t i = 0; i < count; ++i) {
    const auto low = static_cast<unsigned char>(bytes[2 * i]);
    const auto high = static_cast<unsigned char>(bytes[2 * i + 1]);
    numbers[i] = static_cast<std::int16_t>(static_cast<std::uint16_t>(low | high << 8));
  }
  return numbers;
}

Preparation PreparationOf(const Numbers& n) {
  Preparation preparation;
  preparation.margins = {n[1], n[2], n[3], n[4]};
  preparation.turns = n[5];
  preparation.mirrored = n[6] != 0;
  preparation.brightness = n[7];
  preparation.contrast = n[8];
  // Outside of the enumeration it would not be a value of it: what does not fit says so.
  preparation.dithering = static_cast<Dithering>(n[9]);
  if (n[10] != kNoThreshold) preparation.threshold = n[10];
  preparation.grey = n[11] != 0;
  preparation.invert = n[12] != 0;
  return preparation;
}

std::string BytesOf(std::size_t source, const Preparation& p) {
  return Bytes({static_cast<int>(source), p.margins.left, p.margins.top, p.margins.right,
                p.margins.bottom, p.turns, p.mirrored ? 1 : 0, p.brightness, p.contrast,
                static_cast<int>(p.dithering), p.threshold.value_or(kNoThreshold), p.grey ? 1 : 0,
                p.invert ? 1 : 0});
}

std::size_t PixelsOf(const PictureSource& source) {
  const Picture& pixels = source.Pixels();
  return static_cast<std::size_t>(pixels.Width()) * static_cast<std::size_t>(pixels.Height());
}

}  // namespace

std::vector<SourceWriter::Comment> SourceWriter::Before(const DrawingObject& picture) {
  std::vector<Comment> comments;
  if (picture.source.Empty()) return comments;
  const std::optional<std::size_t> number = NumberOf(picture.source, comments);
  if (number) comments.push_back({kPreparationTag, BytesOf(*number, picture.preparation)});
  return comments;
}

// Copies of a picture share their source, in the file, too.
std::optional<std::size_t> SourceWriter::NumberOf(const PictureSource& source,
                                                  std::vector<Comment>& comments) {
  const auto known = std::find_if(written_.begin(), written_.end(),
                                  [&](const PictureSource& other) { return other.Shares(source); });
  if (known != written_.end()) return static_cast<std::size_t>(known - written_.begin());
  const WmfLimits limits;
  const std::size_t pixels = PixelsOf(source);
  if (written_.size() >= limits.sources || pixels > limits.sourcePixels - pixels_) {
    return std::nullopt;
  }
  pixels_ += pixels;
  comments.push_back({kSourceTag, Bytes({source.Pixels().Width(), source.Pixels().Height()})});
  const std::string& packed = source.Packed();
  for (std::size_t at = 0; at < packed.size(); at += kSourcePartBytes) {
    comments.push_back({kSourceDataTag, packed.substr(at, kSourcePartBytes)});
  }
  written_.push_back(source);
  return written_.size() - 1;
}

void SourceReader::Begin(std::string_view payload) {
  Finish();
  begun_ = true;
  const auto size = NumbersOf<2>(payload);
  width_ = height_ = 0;
  if (!size || sources_.size() >= limits_.sources) return;
  const std::size_t left = limits_.sourcePixels - pixels_;
  const auto [width, height] = *size;
  if (width < 1 || height < 1) return;
  const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  if (pixels > left) return;
  pixels_ += pixels;
  width_ = width;
  height_ = height;
}

// More than the largest source takes is never collected.
void SourceReader::Continue(std::string_view payload) {
  constexpr std::size_t kMostBytes = 4 * PictureSource::kMaxPixels;
  if (width_ == 0) return;
  if (payload.size() > kMostBytes - packed_.size()) {
    width_ = 0;
  } else {
    packed_ += payload;
  }
}

void SourceReader::Finish() {
  if (!std::exchange(begun_, false)) return;
  const std::string packed = std::exchange(packed_, {});
  if (sources_.size() < limits_.sources) {
    sources_.push_back(PictureSource::Unpacked(packed, width_, height_));
  }
}

void SourceReader::ReadPreparation(std::string_view payload) {
  preparation_ = std::string(payload);
}

bool SourceReader::GiveTo(DrawingObject& picture) {
  if (!preparation_) return true;
  Finish();
  const auto numbers = NumbersOf<kNumbers>(*std::exchange(preparation_, std::nullopt));
  if (!numbers || (*numbers)[0] < 0) return false;
  const auto source = static_cast<std::size_t>((*numbers)[0]);
  if (source >= sources_.size() || sources_[source].Empty()) return false;
  const Preparation preparation = PreparationOf(*numbers);
  if (!Fits(preparation, sources_[source])) return false;
  picture.source = sources_[source];
  picture.preparation = preparation;
  return true;
}

}  // namespace kelvo::wmf
