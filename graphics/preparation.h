#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "graphics/picture.h"

// What the picture of a drawing is made from, and how.

namespace kelvo {

/// The picture that was inserted, in its colours. It never changes, and copies share it.
class PictureSource {
 public:
  static constexpr std::size_t kMaxPixels = std::size_t{1} << 20;
  static constexpr int kMaxSide = 20000;

  PictureSource() = default;
  /// A larger picture is made smaller.
  explicit PictureSource(const Picture& picture);
  /// What Packed() has given, for a picture of this size. Empty when it is damaged or too large.
  static PictureSource Unpacked(std::string_view packed, int width, int height);

  bool Empty() const { return contents_ == nullptr; }
  const Picture& Pixels() const;
  /// Its pixels as bytes for a file, much fewer than they are.
  const std::string& Packed() const;
  /// Whether it is the same, not only an equal one.
  bool Shares(const PictureSource& other) const { return contents_ == other.contents_; }
  bool operator==(const PictureSource& other) const;

 private:
  struct Contents {
    Picture pixels;
    std::string packed;
  };
  std::shared_ptr<const Contents> contents_;
};

enum class Dithering {
  Threshold,  ///< as the Terminal's bitmaps are made: colours below the threshold are black
  Diffusion,  ///< the error of each pixel goes to its neighbours
  Ordered,    ///< a fixed pattern of eight by eight
};

/// Pixels of the source that are cut off at the edges.
struct Margins {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  bool operator==(const Margins&) const = default;
};

/// How a source becomes a picture. Margins and all that is chosen for the eye count as the picture
/// is shown, mirrored and turned.
struct Preparation {
  static constexpr int kMaxChange = 100;     ///< of brightness and contrast, either way
  static constexpr int kMaxThreshold = 256;  ///< above all colours

  Margins margins;
  bool mirrored = false;  ///< left and right change places, before the turns
  int turns = 0;          ///< quarters clockwise, 0..3
  int brightness = 0;
  int contrast = 0;
  Dithering dithering = Dithering::Threshold;
  /// 0..256. Without one the colours stay, and the option's threshold decides when they are shown.
  std::optional<int> threshold;
  bool grey = false;    ///< brightness decides, not the colour's number
  bool invert = false;  ///< black and white change places at last
  bool operator==(const Preparation&) const = default;
};

}  // namespace kelvo
