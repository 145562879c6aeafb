#include "settings/text_mode.h"

#include "base/val.h"
#include "link/commands.h"

namespace kelvo {
namespace {

// What follows the first comma, looked for from `from` on; the whole text without one.
std::string_view AfterComma(std::string_view text, std::size_t from = 0) {
  const std::size_t comma = text.find(',', from);
  return comma == std::string_view::npos ? text : text.substr(comma + 1);
}

std::string ShapeParameter(const CursorSettings& cursor) {
  if (HasShape(cursor.kind)) return std::to_string(cursor.shape);
  if (IsCross(cursor.kind)) return cursor.size;
  return {};
}

}  // namespace

std::string CreateCursor(const CursorSettings& cursor) {
  const Command shape = DefineCursor(cursor.kind, ShapeParameter(cursor));
  const Command kind = SwitchCursor(cursor.kind);
  if (cursor.kind == CursorOff) return Sequence({shape, kind});
  const auto position = IsAtText(cursor.kind) ? SetTextPosition : SetGraphicPosition;
  return Sequence({shape, kind, position(cursor.x, cursor.y)});
}

std::optional<int> ReadCursorShape(int kind, std::string_view reply) {
  if (!HasShape(kind)) return std::nullopt;
  const double shape = Val(IsAtText(kind) ? reply : AfterComma(reply, 1));
  if (shape != 0 && shape != 1) return std::nullopt;
  return static_cast<int>(shape);
}

double ReadCursorSize(std::string_view reply) { return Val(AfterComma(reply)); }

Position ReadPosition(std::string_view reply) {
  return {RoundToEven(Val(reply.substr(0, reply.find(',')))), Val(AfterComma(reply))};
}

bool TextModeSettings::ZoomKnown() const { return Val(zoomX) >= 1 && Val(zoomY) >= 1; }

std::string CreateTextMode(const TextModeSettings& text) {
  const std::string style =
      Sequence({SetTextFont(text.font), SetTextAttribute(text.attribute), SetTextMode(text.mode)});
  return text.ZoomKnown() ? style + SetTextZoom(text.zoomX, text.zoomY).Text() : style;
}

int ReadDigit(std::string_view reply) { return static_cast<int>(Val(reply.substr(0, 1))); }

Zoom ReadZoom(std::string_view reply) {
  return {ReadDigit(reply), Val(reply.size() > 2 ? reply.substr(2) : std::string_view())};
}

}  // namespace kelvo
