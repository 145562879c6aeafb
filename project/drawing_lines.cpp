#include "project/drawing_lines.h"

#include <cstdio>

#include "base/wire_text.h"
#include "project/base64.h"
#include "project/notation.h"

namespace kelvo {
namespace {

std::string Member(std::string_view name, const std::string& value) {
  return ", \"" + std::string(name) + "\": " + value;
}

std::string Numbers(const std::vector<int>& numbers) {
  std::string text = "[";
  for (const int number : numbers) {
    text += (text.size() > 1 ? ", " : "") + std::to_string(number);
  }
  return text + "]";
}

std::vector<int> Flat(const std::vector<Point>& points) {
  std::vector<int> numbers;
  for (const Point& point : points) numbers.insert(numbers.end(), {point.x, point.y});
  return numbers;
}

std::string StyleText(const TextAttributes& style) {
  std::string text = Numbers({style.font, style.zoomX, style.zoomY});
  text.pop_back();
  for (const auto& [mark, word] : kTextMarks) {
    if (style.*mark) text += ", \"" + std::string(word) + "\"";
  }
  return text + "]";
}

std::string SizeText(const Picture& picture) {
  return "[" + std::to_string(picture.Width()) + ", " + std::to_string(picture.Height()) + ", ";
}

void AddRun(std::string& runs, Colour colour, std::size_t length) {
  char digits[12];
  std::snprintf(digits, sizeof digits, "%06x", colour);
  if (!runs.empty()) runs += ' ';
  runs += digits;
  if (length > 1) runs += "*" + std::to_string(length);
}

// Pixels of one colour that follow one another, the top row first.
std::string Runs(const Picture& picture) {
  std::string runs;
  Colour colour = 0;
  std::size_t length = 0;
  for (int y = 0; y < picture.Height(); ++y) {
    for (int x = 0; x < picture.Width(); ++x) {
      if (length > 0 && picture.Row(y)[x] != colour) {
        AddRun(runs, colour, length);
        length = 0;
      }
      colour = picture.Row(y)[x];
      ++length;
    }
  }
  if (length > 0) AddRun(runs, colour, length);
  return runs;
}

std::string PictureText(const Picture& picture) {
  return SizeText(picture) + "\"" + Runs(picture) + "\"]";
}

std::string SourceText(const PictureSource& source) {
  return SizeText(source.Pixels()) + "\"" + Base64(source.Packed()) + "\"]";
}

std::string PreparationText(const Preparation& preparation) {
  std::string text;
  const Margins& margins = preparation.margins;
  if (margins != Margins{}) {
    text += Member("Rand", Numbers({margins.left, margins.top, margins.right, margins.bottom}));
  }
  for (const auto& [number, name] : kPreparationNumbers) {
    if (preparation.*number != 0) text += Member(name, std::to_string(preparation.*number));
  }
  for (const auto& [mark, name] : kPreparationMarks) {
    if (preparation.*mark) text += Member(name, "true");
  }
  if (preparation.threshold) text += Member("Schwelle", std::to_string(*preparation.threshold));
  const auto dithering = static_cast<std::size_t>(preparation.dithering);
  if (dithering != 0) text += Member("Raster", JsonString(kDitherings[dithering]));
  return "{" + text.substr(text.empty() ? 0 : 2) + "}";
}

std::string ShapeText(const DrawingObject& object) {
  std::string text;
  if (object.penMode != PenMode::Draw) {
    text += Member("Stift", std::to_string(static_cast<int>(object.penMode)));
  }
  if (object.filled) text += Member("gefüllt", "true");
  if (object.corner1 != Point{} || object.corner2 != Point{}) {
    text += Member("Ecken", Numbers(Flat({object.corner1, object.corner2})));
  }
  if (!object.vertices.empty()) text += Member("Punkte", Numbers(Flat(object.vertices)));
  return text;
}

std::string ContentText(const DrawingObject& object) {
  std::string text;
  if (object.style) text += Member("Schrift", StyleText(*object.style));
  if (!object.text.empty()) text += Member("Text", JsonString(ScreenText(object.text)));
  if (object.picture.Width() > 0) text += Member("Bild", PictureText(object.picture));
  if (!object.source.Empty()) text += Member("Quelle", SourceText(object.source));
  if (object.preparation != Preparation{}) {
    text += Member("Aufbereitung", PreparationText(object.preparation));
  }
  return text;
}

std::string KindText(Kind kind) {
  for (const auto& [known, word] : kObjectKinds) {
    if (known == kind) return std::string(word);
  }
  return {};
}

}  // namespace

void AddObjectLines(std::vector<std::string>& lines, const Drawing& objects,
                    const std::string& indent) {
  for (const DrawingObject& object : objects) {
    const std::string comma = &object == &objects.back() ? "" : ",";
    std::string line = indent + "{\"Art\": \"" + KindText(object.kind) + "\"";
    line += ShapeText(object) + ContentText(object);
    if (object.members.empty()) {
      line.append("}").append(comma);
      lines.push_back(std::move(line));
      continue;
    }
    line += ", \"Objekte\": [";
    lines.push_back(std::move(line));
    AddObjectLines(lines, object.members, indent + "  ");
    lines.push_back(std::string(indent).append("]}").append(comma));
  }
}

}  // namespace kelvo
