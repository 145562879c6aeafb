#include "graphics/pic_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <span>
#include <utility>

#include "graphics/create_bitmap.h"
#include "graphics/editing.h"
#include "graphics/wmf_builder.h"
#include "link/command_table.h"
#include "link/control_characters.h"

namespace kelvo {

namespace {

constexpr std::string_view kLineEnds = "\r\n";
constexpr int kLowest = std::numeric_limits<std::int16_t>::min();
constexpr int kHighest = std::numeric_limits<std::int16_t>::max();

// One command as it stands in a text: [ESC letters parameters end].
struct FoundCommand {
  const CommandRow* row = nullptr;  // of what is not known: none
  std::string_view parameters;
  std::size_t length = 0;  // from ESC to behind the end mark
  bool whole = false;      // has its end mark
};

// An ESC cuts short whatever has not ended, other than a macro's text.
FoundCommand CommandAt(std::string_view wire) {
  FoundCommand found{FindCommand(wire.substr(1)), {}, 0, true};
  const std::size_t start = 1 + (found.row == nullptr ? 0 : found.row->letters.size());
  const Ending ending = found.row == nullptr ? Ending::Semicolon : found.row->ending;
  if (ending == Ending::AtOnce) {
    found.length = start;
    return found;
  }
  const char end = ending == Ending::Etx ? kEtx : ending == Ending::Eot ? kEot : kEndMark.front();
  const std::size_t cut =
      ending == Ending::Etx ? wire.size() : std::min(wire.find(kEsc, start), wire.size());
  const std::size_t at = ending == Ending::Open ? cut : std::min(wire.find(end, start), cut);
  found.parameters = wire.substr(start, at - start);
  found.whole = at < cut || ending == Ending::Open || ending == Ending::Eot;
  found.length = std::min(at + 1, cut);
  return found;
}

// A number as it stands between commas, blanks in front.
std::optional<int> NumberIn(std::string_view field, const Parameter& range) {
  field.remove_prefix(std::min(field.find_first_not_of(' '), field.size()));
  int value = 0;
  const char* const end = field.data() + field.size();
  const auto [stop, error] = std::from_chars(field.data(), end, value);
  const bool fits =
      error == std::errc() && stop == end && value >= range.lowest && value <= range.highest;
  return fits ? std::optional(value) : std::nullopt;
}

constexpr std::size_t kMostNumbers = 4;
using Numbers = std::array<int, kMostNumbers>;

// The numbers in front of `parameters`, which are taken off; each must lie in its range.
std::optional<Numbers> TakeNumbers(std::string_view& parameters, std::span<const Parameter> rows) {
  Numbers numbers{};
  std::size_t count = 0;
  for (const Parameter& row : rows) {
    if (row.form != Form::Number || count == kMostNumbers) break;
    const std::size_t comma = std::min(parameters.find(','), parameters.size());
    const auto number = NumberIn(parameters.substr(0, comma), row);
    if (!number) return std::nullopt;
    numbers[count++] = *number;
    parameters.remove_prefix(std::min(comma + 1, parameters.size()));
  }
  return numbers;
}

std::optional<unsigned> HexValue(char digit) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const std::size_t value = kDigits.find(digit);
  return value == std::string_view::npos ? std::nullopt
                                         : std::optional(static_cast<unsigned>(value));
}

// Rows of `bytes` bytes each, of which `width` pixels count.
std::optional<Picture> PictureOf(std::string_view digits, int width, int height) {
  const auto bytes = static_cast<std::size_t>(BytesPerRow(width));
  if (digits.size() != 2 * bytes * static_cast<std::size_t>(height)) return std::nullopt;
  std::vector<Colour> pixels;
  pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
    for (std::size_t x = 0; x < static_cast<std::size_t>(width); ++x) {
      const auto value = HexValue(digits[2 * bytes * y + x / 4]);
      if (!value) return std::nullopt;
      pixels.push_back((*value & 8U >> x % 4) != 0 ? kBlack : kWhite);
    }
  }
  return Picture(width, height, std::move(pixels));
}

// A length whose half, toward minus infinity, is the radius.
int SpanOf(int radius) { return radius < 0 ? 2 * radius + 1 : 2 * radius; }

bool FitsSixteen(Point p) {
  const auto fits = [](int value) { return value >= kLowest && value <= kHighest; };
  return fits(p.x) && fits(p.y);
}

class PicReader {
 public:
  PicReader(int displayHeight, const DeviceFonts& fonts, const WmfLimits& limits)
      : top_(displayHeight - 1), fonts_(fonts), builder_(limits) {}

  LoadedDrawing Read(std::string_view wire) {
    std::size_t at = 0;
    while (at < wire.size()) {
      const std::size_t esc = std::min(wire.find(kEsc, at), wire.size());
      const std::size_t text = std::min(wire.find_first_not_of(kLineEnds, at), wire.size());
      if (text < esc) Skip("Text außerhalb der Befehle", text);
      if (esc == wire.size()) break;
      const FoundCommand command = CommandAt(wire.substr(esc));
      if (!Take(command)) Skip(NameOf(command), esc);
      at = esc + command.length;
    }
    CompleteLine();
    DecideInverse(true);
    LoadedDrawing loaded{builder_.Take(), false, NamedSkips(), {}};
    if (loaded.drawing.empty() && !skips_.empty()) {
      loaded.error = "Der Text enthält keine Zeichenbefehle.";
    }
    return loaded;
  }

 private:
  struct Skips {
    std::size_t first = 0;
    int count = 0;
  };

  static std::string NameOf(const FoundCommand& command) {
    if (command.row == nullptr) return "unbekannter Befehl";
    return std::string(command.row->meaning) + (IsDrawing(command.row->name) ? ", beschädigt" : "");
  }

  static bool IsDrawing(CommandName name) {
    return name >= CommandName::SetGraphicPosition && name <= CommandName::GraphicText &&
           name != CommandName::ClearDisplay && name != CommandName::AskGraphicPosition;
  }

  void Skip(const std::string& name, std::size_t at) {
    Skips& skips = skips_[name];
    if (skips.count++ == 0) skips.first = at + 1;
  }

  std::map<std::string, int> NamedSkips() const {
    std::map<std::string, int> named;
    for (const auto& [name, skips] : skips_) {
      named[name + " (ab Zeichen " + std::to_string(skips.first) + ")"] = skips.count;
    }
    return named;
  }

  // False for what is no drawing, or damaged.
  bool Take(const FoundCommand& command) {
    if (command.row == nullptr || !command.whole) return false;
    std::string_view rest = command.parameters;
    const auto numbers = TakeNumbers(rest, command.row->parameters);
    if (!numbers) return false;
    switch (command.row->name) {
      case CommandName::ClearDisplay:
        return TakeClear();
      case CommandName::PenDraws:
        return rest.empty() && SetPen(PenMode::Draw);
      case CommandName::PenErases:
        return rest.empty() && SetPen(PenMode::Erase);
      case CommandName::Bitmap:
        return TakeBitmap(*numbers, rest);
      case CommandName::GraphicText:
        return TakeText(rest);
      default:
        return rest.empty() && TakeFigure(command.row->name, *numbers);
    }
  }

  bool TakeFigure(CommandName name, const Numbers& numbers) {
    const Point at{numbers[0], top_ - numbers[1]};
    switch (name) {
      case CommandName::MoveGraphicHome:
        return MoveTo({0, top_});
      case CommandName::SetGraphicPosition:
        return FitsSixteen(at) && MoveTo(at);
      case CommandName::Line:
        return FitsSixteen(at) && LineTo(at);
      case CommandName::Rectangle:
      case CommandName::FilledRectangle:
        return FitsSixteen(at) &&
               AddBox(Kind::Rectangle, position_, at, name == CommandName::FilledRectangle);
      case CommandName::Ellipse:
      case CommandName::FilledEllipse:
        return TakeEllipse(numbers[0], numbers[1], name == CommandName::FilledEllipse);
      case CommandName::SetGraphicFont:
        style_.font = numbers[0];
        return true;
      case CommandName::SetGraphicZoom:
        style_.zoomX = numbers[0];
        style_.zoomY = numbers[1];
        return true;
      case CommandName::SetGraphicAttribute:
        style_.underline = (numbers[0] & 1) != 0;
        style_.bold = (numbers[0] & 2) != 0;
        style_.inverse = (numbers[0] & 4) != 0;
        return true;
      default:
        return false;
    }
  }

  // Each drawing begins so by itself; later it would take away what has been drawn.
  bool TakeClear() {
    SetPen(PenMode::Draw);
    announced_ = drawn_;
    return !drawn_;
  }

  bool SetPen(PenMode pen) {
    if (line_.size() > 1) CompleteLine();
    DecideInverse(line_.empty());
    announced_ = true;
    pen_ = pen;
    return true;
  }

  // A position that nothing was drawn from is a line of one point.
  bool MoveTo(Point at) {
    CompleteLine();
    position_ = at;
    line_ = {at};
    linePen_ = pen_;
    return true;
  }

  bool LineTo(Point end) {
    if (line_.size() < 2) {
      line_ = {position_};
      linePen_ = pen_;
    }
    builder_.CountVertices(1);
    line_.push_back(end);
    position_ = end;
    return true;
  }

  void CompleteLine() {
    if (line_.empty()) return;
    const bool toldBehind = line_.size() == 1 && pen_ != linePen_;
    DrawingObject object;
    object.kind = line_.size() == 2 ? Kind::Line : Kind::Polyline;
    object.vertices = std::exchange(line_, {});
    Add(std::move(object), linePen_);
    announced_ = toldBehind;
  }

  // What is drawn at the position has used it.
  void UsePosition() {
    if (line_.size() == 1) line_.clear();
    CompleteLine();
  }

  bool AddBox(Kind kind, Point corner1, Point corner2, bool filled) {
    UsePosition();
    DrawingObject object;
    object.kind = kind;
    object.filled = filled;
    object.corner1 = corner1;
    object.corner2 = corner2;
    Add(std::move(object), pen_);
    return true;
  }

  bool TakeEllipse(int radiusX, int radiusY, bool filled) {
    const Point topLeft{position_.x - radiusX, position_.y + radiusY};
    const Point corner1{topLeft.x + SpanOf(radiusX), topLeft.y};
    const Point corner2{topLeft.x, topLeft.y - SpanOf(radiusY)};
    return FitsSixteen(corner1) && FitsSixteen(corner2) &&
           AddBox(Kind::Ellipse, corner1, corner2, filled);
  }

  // Its place stands in the command itself; the width is in bytes, or in pixels when negative.
  bool TakeBitmap(const Numbers& numbers, std::string_view digits) {
    const auto [x, y, given, height] = numbers;
    if (given == 0) return false;
    const int width = given < 0 ? -given : 8 * given;
    if (digits.size() > builder_.PixelsLeft() / 4) return false;
    auto picture = PictureOf(digits, width, height);
    const Point topLeft{x, top_ - y};
    const Point corner1{x + width - 1, topLeft.y};
    const Point corner2{x, topLeft.y - height + 1};
    if (!picture || !FitsSixteen(corner1) || !FitsSixteen(corner2)) return false;
    builder_.CountPixels(4 * digits.size());
    CompleteLine();
    DrawingObject object;
    object.kind = Kind::Picture;
    object.corner1 = corner1;
    object.corner2 = corner2;
    object.picture = std::move(*picture);
    Add(std::move(object), pen_);
    return true;
  }

  bool TakeText(std::string_view text) {
    if (text.size() > kHighest) return false;
    DrawingObject object = MakeText(position_, style_, std::string(text), fonts_);
    UsePosition();
    if (!text.empty()) position_.x = std::min(object.corner1.x + 1, kHighest);
    Add(std::move(object), pen_);
    return true;
  }

  void Add(DrawingObject object, PenMode pen) {
    drawn_ = true;
    object.penMode = pen;
    if (object.kind == Kind::Text && object.style->inverse) {
      if (inverse_.empty()) inverseAnnounced_ = announced_;
      inverse_.push_back(std::move(object));
    } else {
      DecideInverse(false);
      builder_.Add(std::move(object));
    }
    announced_ = false;
  }

  // The editor gives inverse texts a pen mode of their own, for which no command is sent; behind
  // them the pen is therefore told anew. Where it is not, they were drawn with the pen as it is.
  // Before the first of them it may have been told as well, which then was for that one.
  void DecideInverse(bool penToldBehind) {
    bool own = penToldBehind && !inverseAnnounced_;
    for (DrawingObject& text : inverse_) {
      if (own) text.penMode = PenMode::InverseText;
      builder_.Add(std::move(text));
      own = penToldBehind;
    }
    inverse_.clear();
  }

  int top_;
  const DeviceFonts& fonts_;
  wmf::Builder builder_;
  std::map<std::string, Skips> skips_;
  bool drawn_ = false;
  PenMode pen_ = PenMode::Draw;
  bool announced_ = false;  // the pen was told since the last object
  Point position_{0, top_};
  TextAttributes style_;
  std::vector<Point> line_;  // from where the pen was set down
  PenMode linePen_ = PenMode::Draw;
  std::vector<DrawingObject> inverse_;  // the newest objects, if they are inverse texts
  bool inverseAnnounced_ = false;       // the pen was told in front of them
};

}  // namespace

LoadedDrawing ReadPic(std::string_view commands, int displayHeight, const DeviceFonts& fonts,
                      const WmfLimits& limits) {
  LoadedDrawing failed;
  try {
    if (commands.size() <= limits.fileBytes) {
      return PicReader(displayHeight, fonts, limits).Read(commands);
    }
    failed.error = "Die Datei ist zu groß.";
  } catch (const wmf::BadFile& reason) {
    failed.error = reason.what();
  }
  return failed;
}

bool LooksLikePic(std::string_view text) {
  return text.starts_with(kEsc) && FindCommand(text.substr(1)) != nullptr;
}

}  // namespace kelvo
