#include "graphics/object_names.h"

#include "base/wire_text.h"

namespace kelvo {

namespace {

constexpr std::size_t kLongestText = 24;  // characters of a text that a name shows

std::string Pair(Point p) { return std::to_string(p.x) + "," + std::to_string(p.y); }

std::string FromTo(Point from, Point to) { return " " + Pair(from) + " – " + Pair(to); }

std::string Place(const DrawingObject& object, const Counting& counting) {
  const Box box = BoundsOf(object);
  return FromTo(counting.FirstCorner(box), counting.LastCorner(box));
}

std::string LineName(const DrawingObject& line, const Counting& counting) {
  if (line.vertices.empty()) return "Linie";
  const Point from = counting.Shown(line.vertices.front());
  const Point to = counting.Shown(line.vertices.back());
  return from == to ? "Punkt " + Pair(from) : "Linie" + FromTo(from, to);
}

std::string TextName(const DrawingObject& text, const Counting& counting) {
  const std::string shown = ReadableText(text.text.substr(0, kLongestText));
  return "Text „" + shown + (text.text.size() > kLongestText ? "…" : "") + "“ " +
         Pair(counting.FirstCorner(BoundsOf(text)));
}

std::string PictureName(const DrawingObject& picture, const Counting& counting) {
  const Box box = BoundsOf(picture);
  return "Bild " + std::to_string(box.Width()) + " x " + std::to_string(box.Height()) + " " +
         Pair(counting.FirstCorner(box));
}

std::string Counted(const char* name, std::size_t count) {
  return std::string(name) + " (" + std::to_string(count) + ")";
}

}  // namespace

std::string NameOf(const DrawingObject& object, const Counting& counting) {
  switch (object.kind) {
    case Kind::Line:
      return LineName(object, counting);
    case Kind::Rectangle:
      return "Rechteck" + Place(object, counting);
    case Kind::Ellipse:
      return "Ellipse" + Place(object, counting);
    case Kind::Polyline:
      return Counted("Linienzug", object.vertices.size()) + Place(object, counting);
    case Kind::Vertices:
      return Counted("Vieleck", object.vertices.size()) + Place(object, counting);
    case Kind::Picture:
      return PictureName(object, counting);
    case Kind::Text:
      return TextName(object, counting);
    case Kind::Group:
      break;
  }
  return Counted("Gruppe", object.members.size()) + Place(object, counting);
}

}  // namespace kelvo
