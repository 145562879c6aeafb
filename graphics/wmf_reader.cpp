#include <uwmf.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <optional>

#include "graphics/wmf.h"
#include "graphics/wmf_format.h"
#include "graphics/wmf_player.h"

namespace kelvo {

namespace {

using wmf::BadFile;
using wmf::Placement;
using wmf::Player;

struct Container {
  std::string_view records;
  int frameWidth = 0;  // of the placeable header; 0 without one
  int frameHeight = 0;
};

Container OpenContainer(std::string_view bytes) {
  U_WMRPLACEABLE placeable{};
  U_WMRHEADER header{};
  const char* end = bytes.data() + bytes.size();
  const int headerBytes =
      bytes.size() < U_SIZE_WMRHEADER ? 0 : wmfheader_get(bytes.data(), end, &placeable, &header);
  const bool known = headerBytes > 0 && static_cast<std::size_t>(headerBytes) <= bytes.size() &&
                     (header.iType == 1 || header.iType == 2) &&
                     header.Size16w == U_SIZE_WMRHEADER / 2;
  if (!known) throw BadFile("Die Datei ist keine Metadatei (WMF).");
  Container container{bytes.substr(static_cast<std::size_t>(headerBytes)), 0, 0};
  if (headerBytes == U_SIZE_WMRPLACEABLE + U_SIZE_WMRHEADER) {
    container.frameWidth = std::abs(placeable.Dst.right - placeable.Dst.left);
    container.frameHeight = std::abs(placeable.Dst.bottom - placeable.Dst.top);
  }
  return container;
}

// The library's own walk multiplies in 32 bits, which hostile sizes wrap round.
std::size_t RecordLength(std::string_view records) {
  std::uint32_t words = 0;
  if (records.size() < wmf::kRecordHeaderBytes) wmf::ThrowDamaged();
  std::memcpy(&words, records.data(), sizeof words);
  const std::size_t length = std::size_t{2} * words;
  if (length < wmf::kRecordHeaderBytes || length > records.size()) wmf::ThrowDamaged();
  return length;
}

void PlayAll(std::string_view records, Player& player) {
  bool more = true;
  while (more) {
    const std::size_t length = RecordLength(records);
    more = player.Play(records.substr(0, length));
    records.remove_prefix(length);
  }
}

// Where a foreign metafile goes: its frame's corner into the display's, smaller if it must. A
// metafile that names no frame is framed by what it draws.
Placement FitToDisplay(const Container& container, Player& firstLook, const Drawing& drawing,
                       int displayWidth, int displayHeight) {
  Placement placement{true, 0, 0, 1, displayHeight, displayWidth, false};
  const Point extent = firstLook.WindowExtent();
  double width = extent.x != 0 ? std::abs(extent.x) : container.frameWidth;
  double height = extent.y != 0 ? std::abs(extent.y) : container.frameHeight;
  if (width <= 0 || height <= 0) {
    const Box box = BoundsOf(drawing);
    placement.originX = box.left;
    placement.originY = displayHeight - 1 - box.top;
    width = box.Width();
    height = box.Height();
  }
  placement.scale = std::min({1.0, displayWidth / width, displayHeight / height});
  return placement;
}

WmfDrawing Read(std::string_view bytes, int displayWidth, int displayHeight,
                const DeviceFonts& fonts, const WmfLimits& limits) {
  if (bytes.size() > limits.fileBytes) throw BadFile("Die Datei ist zu groß.");
  const Container container = OpenContainer(bytes);
  Player firstLook({true, 0, 0, 1, displayHeight, displayWidth, true}, fonts, limits);
  PlayAll(container.records, firstLook);
  Drawing drawing = firstLook.Take();
  if (!firstLook.Foreign()) return {std::move(drawing), false, firstLook.Skipped(), {}};

  const Placement placement =
      FitToDisplay(container, firstLook, drawing, displayWidth, displayHeight);
  Player player(placement, fonts, limits);
  PlayAll(container.records, player);
  return {player.Take(), true, player.Skipped(), {}};
}

}  // namespace

std::size_t PicturePixels(const DrawingObject& picture) {
  const auto area = [](int width, int height) {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  };
  const Box box = BoundsOf(picture);
  return std::max(area(box.Width(), box.Height()),
                  area(picture.picture.Width(), picture.picture.Height()));
}

WmfDrawing ReadWmf(std::string_view bytes, int displayWidth, int displayHeight,
                   const DeviceFonts& fonts, const WmfLimits& limits) {
  WmfDrawing failed;
  try {
    return Read(bytes, displayWidth, displayHeight, fonts, limits);
  } catch (const BadFile& reason) {
    failed.error = reason.what();
  } catch (const std::bad_alloc&) {
    failed.error = "Zu wenig Speicher für die Datei.";
  }
  return failed;
}

}  // namespace kelvo
