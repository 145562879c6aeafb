#include "project/read_drawing.h"

#include <charconv>
#include <limits>
#include <map>

#include "graphics/wmf.h"
#include "project/base64.h"
#include "project/drawing_lines.h"
#include "project/notation.h"

namespace kelvo {
namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kMaxSide = PictureSource::kMaxSide;
constexpr Colour kBrightest = 0xFFFFFF;

std::vector<int> NumbersOf(const NodeReader& list) {
  std::vector<int> numbers;
  for (std::size_t i = 0; i < list.Count(); ++i) {
    numbers.push_back(list.Item(i, "Zahl").Int(kLeast, kMost));
  }
  return numbers;
}

std::vector<int> NumbersOf(const NodeReader& list, std::size_t count) {
  if (list.Count() != count) list.Fail("Hier müssen " + std::to_string(count) + " Werte stehen.");
  return NumbersOf(list);
}

std::vector<Point> PointsOf(const NodeReader& list) {
  const std::vector<int> numbers = NumbersOf(list);
  if (numbers.size() % 2 != 0) list.Fail("Zu einem x fehlt das y.");
  std::vector<Point> points;
  for (std::size_t i = 0; i < numbers.size(); i += 2)
    points.push_back({numbers[i], numbers[i + 1]});
  return points;
}

TextAttributes StyleOf(const NodeReader& list) {
  if (list.Count() < 3) list.Fail("Schrift und beide Zoomwerte müssen hier stehen.");
  TextAttributes style{list.Item(0, "Wert").Int(kLeast, kMost),
                       list.Item(1, "Wert").Int(kLeast, kMost),
                       list.Item(2, "Wert").Int(kLeast, kMost)};
  for (std::size_t i = 3; i < list.Count(); ++i) {
    const std::string word = list.Item(i, "Wert").Text();
    bool known = false;
    for (const auto& [mark, name] : kTextMarks) {
      if (word == name) known = style.*mark = true;
    }
    if (!known) list.Fail("„" + word + "“ ist hier nicht bekannt.");
  }
  return style;
}

// One run of pixels: "ffffff*12".
bool TakeRun(std::string_view run, std::vector<Colour>& pixels, std::size_t most) {
  Colour colour = 0;
  std::size_t length = 1;
  const char* const end = run.data() + run.size();
  auto read = std::from_chars(run.data(), end, colour, 16);
  if (read.ec == std::errc() && read.ptr != end && *read.ptr == '*') {
    read = std::from_chars(read.ptr + 1, end, length);
  }
  if (read.ec != std::errc() || read.ptr != end || colour > kBrightest) return false;
  if (length == 0 || length > most - pixels.size()) return false;
  pixels.insert(pixels.end(), length, colour);
  return true;
}

std::pair<int, int> SizeOf(const NodeReader& list) {
  if (list.Count() != 3) list.Fail("Hier müssen Breite, Höhe und Inhalt stehen.");
  const int width = list.Item(0, "Wert").Int(1, kMaxSide);
  const int height = list.Item(1, "Wert").Int(1, kMaxSide);
  if (static_cast<std::size_t>(width) * static_cast<std::size_t>(height) > WmfLimits{}.pixels) {
    list.Fail("Das Bild ist zu groß.");
  }
  return {width, height};
}

Picture PictureOf(const NodeReader& list) {
  const auto [width, height] = SizeOf(list);
  const NodeReader content = list.Item(2, "Wert");
  const std::string runs = content.Text();
  const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  std::vector<Colour> pixels;
  for (std::size_t at = 0; at < runs.size();) {
    const std::size_t end = std::min(runs.find(' ', at), runs.size());
    if (!TakeRun(std::string_view(runs).substr(at, end - at), pixels, count)) {
      content.Fail("Die Farben des Bildes sind nicht lesbar.");
    }
    at = end + 1;
  }
  if (pixels.size() != count) content.Fail("Das Bild ist nicht vollständig.");
  return {width, height, std::move(pixels)};
}

using Sources = std::map<std::string, PictureSource>;

// Pictures that were made from one source share it again.
PictureSource SourceOf(const NodeReader& list, Sources& sources) {
  const auto [width, height] = SizeOf(list);
  const NodeReader content = list.Item(2, "Wert");
  const std::string text = content.Text();
  PictureSource& source = sources[std::to_string(width) + " " + text];
  const auto packed = FromBase64(text);
  if (packed && source.Empty()) source = PictureSource::Unpacked(*packed, width, height);
  if (source.Empty()) content.Fail("Die Quelle des Bildes ist nicht lesbar.");
  return source;
}

Dithering DitheringOf(const NodeReader& node) {
  const std::string word = node.Text();
  for (std::size_t i = 0; i < kDitherings.size(); ++i) {
    if (word == kDitherings[i]) return static_cast<Dithering>(i);
  }
  node.Fail("„" + word + "“ ist hier nicht bekannt.");
}

Preparation PreparationOf(const NodeReader& node) {
  node.Allow({"Rand", "Drehung", "Helligkeit", "Kontrast", "gespiegelt", "grau", "umgekehrt",
              "Schwelle", "Raster"});
  Preparation preparation;
  if (const auto margins = node.MemberIf("Rand")) {
    const std::vector<int> m = NumbersOf(*margins, 4);
    preparation.margins = {m[0], m[1], m[2], m[3]};
  }
  for (const auto& [number, name] : kPreparationNumbers) {
    const int most = name == "Drehung" ? 3 : Preparation::kMaxChange;
    const int least = name == "Drehung" ? 0 : -most;
    if (const auto member = node.MemberIf(name)) preparation.*number = member->Int(least, most);
  }
  for (const auto& [mark, name] : kPreparationMarks) {
    if (const auto member = node.MemberIf(name)) preparation.*mark = member->YesNo();
  }
  if (const auto threshold = node.MemberIf("Schwelle")) {
    preparation.threshold = threshold->Int(0, Preparation::kMaxThreshold);
  }
  if (const auto dithering = node.MemberIf("Raster"))
    preparation.dithering = DitheringOf(*dithering);
  return preparation;
}

Kind KindOf(const NodeReader& node) {
  const std::string word = node.Text();
  for (const auto& [kind, name] : kObjectKinds) {
    if (word == name) return kind;
  }
  node.Fail("„" + word + "“ ist kein Objekt einer Zeichnung.");
}

void TakeShape(const NodeReader& node, DrawingObject& object) {
  if (const auto pen = node.MemberIf("Stift")) {
    object.penMode = static_cast<PenMode>(pen->Int(kLeast, kMost));
  }
  if (const auto filled = node.MemberIf("gefüllt")) object.filled = filled->YesNo();
  if (const auto corners = node.MemberIf("Ecken")) {
    const std::vector<int> c = NumbersOf(*corners, 4);
    object.corner1 = {c[0], c[1]};
    object.corner2 = {c[2], c[3]};
  }
  if (const auto points = node.MemberIf("Punkte")) object.vertices = PointsOf(*points);
}

Drawing ObjectsOf(const NodeReader& list, Sources& sources);

DrawingObject ObjectOf(const NodeReader& node, Sources& sources) {
  node.Allow({"Art", "Stift", "gefüllt", "Ecken", "Punkte", "Schrift", "Text", "Bild", "Quelle",
              "Aufbereitung", "Objekte"});
  DrawingObject object;
  object.kind = KindOf(node.Member("Art"));
  TakeShape(node, object);
  if (const auto style = node.MemberIf("Schrift")) object.style = StyleOf(*style);
  if (const auto text = node.MemberIf("Text")) object.text = text->Wire();
  if (const auto picture = node.MemberIf("Bild")) object.picture = PictureOf(*picture);
  if (const auto source = node.MemberIf("Quelle")) object.source = SourceOf(*source, sources);
  if (const auto how = node.MemberIf("Aufbereitung")) object.preparation = PreparationOf(*how);
  if (const auto members = node.MemberIf("Objekte")) object.members = ObjectsOf(*members, sources);
  return object;
}

Drawing ObjectsOf(const NodeReader& list, Sources& sources) {
  Drawing objects;
  objects.reserve(list.Count());
  for (std::size_t i = 0; i < list.Count(); ++i) {
    objects.push_back(ObjectOf(list.Item(i, "Objekt"), sources));
  }
  return objects;
}

}  // namespace

ProjectDrawing DrawingOf(const NodeReader& node) {
  node.Allow({"Name", "Objekte"});
  Sources sources;
  ProjectDrawing drawing;
  drawing.name = node.Member("Name").Text();
  drawing.drawing = ObjectsOf(node.Member("Objekte"), sources);
  return drawing;
}

}  // namespace kelvo
