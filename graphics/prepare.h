#pragma once

#include "graphics/drawing.h"

// From the source of a picture to its pixels, in this order: margins, size, brightness and
// contrast, black and white, inverting, mirroring, turning. What is done last can so be done to the
// pixels alone, and they are the same as if they were made anew.

namespace kelvo {

/// Width and height of something, in pixels.
struct PictureSize {
  int width = 0;
  int height = 0;
  bool operator==(const PictureSize&) const = default;
};

/// What the margins leave of a source, as large as it is shown; at least one pixel each way.
PictureSize CutSize(const PictureSource& source, const Preparation& preparation);
/// Whether margins, turns and numbers are such as can be used for this source.
bool Fits(const Preparation& preparation, const PictureSource& source);

/// The first half: what the margins leave in the size in which it is to be shown, not yet turned.
Picture Scaled(const PictureSource& source, const Preparation& preparation, PictureSize shown);
/// The second half.
Picture Finished(const Picture& scaled, const Preparation& preparation);

/// How large the picture of a box is made: as the box, but not of more than a million pixels.
PictureSize PreparedSize(PictureSize box);
/// Makes the picture of an object anew for the size of its box, if it has a source and is not of
/// that size already.
void PrepareForBox(DrawingObject& object);

/// A picture in another size: each pixel is the mean of those that lie under it.
Picture Resampled(const Picture& picture, PictureSize size);
/// Left and right change places.
Picture Mirrored(const Picture& picture);
/// By a quarter clockwise.
Picture Turned(const Picture& picture);

/// What makes the same picture, but mirrored or turned.
Preparation Mirrored(Preparation preparation);
Preparation Turned(Preparation preparation);

/// To a picture object: to its pixels and to its preparation.
void MirrorPicture(DrawingObject& object);
void TurnPicture(DrawingObject& object);
void InvertPicture(DrawingObject& object);

}  // namespace kelvo
