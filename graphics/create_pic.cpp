#include "graphics/create_pic.h"

#include <array>
#include <charconv>
#include <string_view>
#include <utility>

#include "graphics/command_walk.h"
#include "link/commands.h"
#include "link/control_characters.h"

namespace kelvo {

namespace {

// Writes each command as
//
//   ESC letters number { "," number } ";"
//
// with two number formats: S, decimal with a leading blank unless negative, for everything drawn
// with lines; P, plain decimal, for pictures and text.
class CommandWriter : public CommandHandler {
 public:
  explicit CommandWriter(TerminalTraits& terminal) : terminal_(terminal) {}

  Translation Take() { return std::move(result_); }

  void PenMode(Ink ink) override {
    Begin(ink == Ink::Set ? CommandName::PenDraws : CommandName::PenErases);
    result_.text += kEndMark;
  }

  void Lines(const std::vector<PixelPoint>& points) override {
    SPair(CommandName::SetGraphicPosition, points.front().x, points.front().y);
    for (std::size_t i = 1; i < points.size(); ++i)
      SPair(CommandName::Line, points[i].x, points[i].y);
  }

  void Rectangle(PixelPoint from, PixelPoint to, bool filled) override {
    SPair(CommandName::SetGraphicPosition, from.x, from.y);
    SPair(filled ? CommandName::FilledRectangle : CommandName::Rectangle, to.x, to.y);
  }

  void Ellipse(PixelPoint centre, int radiusX, int radiusY, bool filled) override {
    SPair(CommandName::SetGraphicPosition, centre.x, centre.y);
    SPair(filled ? CommandName::FilledEllipse : CommandName::Ellipse, radiusX, radiusY);
  }

  void Bitmap(PixelPoint topLeft, const DrawingObject& object, int w, int h) override {
    Begin(CommandName::Bitmap);
    P(topLeft.x, ',');
    P(topLeft.y, ',');
    Translation bitmap = CreateBitmap(object, w, h, kCreateForCommand, terminal_);
    result_.text += bitmap.text;
    for (std::string& message : bitmap.messages) result_.messages.push_back(std::move(message));
  }

  void Text(PixelPoint topLeft, const TextAttributes& style, const std::string& text) override {
    PPair(CommandName::SetGraphicPosition, topLeft.x, topLeft.y);
    Begin(CommandName::SetGraphicFont);
    P(style.font, ';');
    PPair(CommandName::SetGraphicZoom, style.zoomX, style.zoomY);
    Begin(CommandName::SetGraphicAttribute);
    P((style.underline ? 1 : 0) + (style.bold ? 2 : 0) + (style.inverse ? 4 : 0), ';');
    Begin(CommandName::GraphicText);
    result_.text += text;
    result_.text += kEot;
  }

  void Overflow() override { result_.messages.emplace_back("Überlauf / CreatePic"); }

 private:
  void Begin(CommandName name) { BeginCommand(result_.text, name); }

  void P(int number, char end) {
    std::array<char, 12> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    result_.text.append(digits.data(), written.ptr);
    result_.text += end;
  }

  void S(int number, char end) {
    if (number >= 0) result_.text += ' ';
    P(number, end);
  }

  void SPair(CommandName name, int a, int b) {
    Begin(name);
    S(a, ',');
    S(b, ';');
  }

  void PPair(CommandName name, int a, int b) {
    Begin(name);
    P(a, ',');
    P(b, ';');
  }

  TerminalTraits& terminal_;
  Translation result_;
};

}  // namespace

Translation CreatePic(const Drawing& drawing, TerminalTraits& terminal) {
  CommandWriter writer(terminal);
  const bool converted = WalkDrawing(drawing, terminal.displayHeight, writer);
  Translation translation = writer.Take();
  translation.failed = !converted;
  return translation;
}

}  // namespace kelvo
