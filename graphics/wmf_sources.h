#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "graphics/wmf.h"

// The comments in which a metafile carries the sources of its pictures; wmf.h tells the format.

namespace kelvo::wmf {

/// The comments that stand in front of a picture's record.
class SourceWriter {
 public:
  struct Comment {
    char tag;
    std::string payload;
  };
  /// None for a picture without a source, and where the limits are reached.
  std::vector<Comment> Before(const DrawingObject& picture);

 private:
  std::optional<std::size_t> NumberOf(const PictureSource& source, std::vector<Comment>& comments);

  std::vector<PictureSource> written_;
  std::size_t pixels_ = 0;
};

/// Collects them again. What is damaged or too large is only missing then.
class SourceReader {
 public:
  explicit SourceReader(const WmfLimits& limits) : limits_(limits) {}

  void Begin(std::string_view payload);
  void Continue(std::string_view payload);
  void ReadPreparation(std::string_view payload);
  /// Gives the next picture what was read for it. False when that cannot be used.
  bool GiveTo(DrawingObject& picture);
  /// What was read for the next picture stood in front of something else.
  void Forget() { preparation_.reset(); }

 private:
  void Finish();

  const WmfLimits& limits_;
  std::vector<PictureSource> sources_;
  std::size_t pixels_ = 0;
  int width_ = 0;  // of the source that has begun; 0: none has, or it is refused
  int height_ = 0;
  std::string packed_;
  bool begun_ = false;
  std::optional<std::string> preparation_;
};

}  // namespace kelvo::wmf
