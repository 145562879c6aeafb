#include <uwmf.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <utility>

#include "graphics/dib.h"
#include "graphics/text_prefix.h"
#include "graphics/wmf.h"
#include "graphics/wmf_format.h"
#include "graphics/wmf_sources.h"

namespace kelvo {

namespace {

// Leaves the writer by WriteWmf alone; its text is for the operator.
struct CannotWrite : std::runtime_error {
  using std::runtime_error::runtime_error;
};

std::int16_t Word(std::int64_t value) {
  if (value < std::numeric_limits<std::int16_t>::min() ||
      value > std::numeric_limits<std::int16_t>::max()) {
    throw CannotWrite("Die Zeichnung reicht zu weit über die Anzeige hinaus.");
  }
  return static_cast<std::int16_t>(value);
}

// The objects that are created once, in this order, and selected by number.
enum Handle : std::uint16_t {
  BlackPen,
  WhitePen,
  BlackBrush,
  WhiteBrush,
  NoBrush,
  Font,
  HandleCount
};

class WmfWriter {
 public:
  WmfWriter(int width, int height) : width_(width), height_(height) {}

  std::string Write(const Drawing& drawing) {
    WriteSetup();
    WriteLevel(drawing);
    Append(U_WMREOF_set());
    return Header() + records_;
  }

 private:
  void Append(char* record) {
    if (record == nullptr) throw CannotWrite("Zu wenig Speicher für die Datei.");
    std::uint32_t words = 0;
    std::memcpy(&words, record, sizeof words);
    records_.append(record, std::size_t{2} * words);
    largestWords_ = std::max(largestWords_, words);
    std::free(record);
  }

  std::string Header() const {
    U_PAIRF size{static_cast<float>(width_), static_cast<float>(height_)};
    constexpr unsigned kUnitsPerInch = 1;  // so that `size` above is in units
    char* made = U_WMRHEADER_set(&size, kUnitsPerInch);
    if (made == nullptr) throw CannotWrite("Zu wenig Speicher für die Datei.");
    std::string header(made, U_SIZE_WMRPLACEABLE + U_SIZE_WMRHEADER);
    std::free(made);
    PatchPlaceable(header);
    const auto words = static_cast<std::uint32_t>((U_SIZE_WMRHEADER + records_.size()) / 2);
    const std::uint16_t handles = HandleCount;
    std::memcpy(&header[U_SIZE_WMRPLACEABLE + 6], &words, sizeof words);
    std::memcpy(&header[U_SIZE_WMRPLACEABLE + 10], &handles, sizeof handles);
    std::memcpy(&header[U_SIZE_WMRPLACEABLE + 12], &largestWords_, sizeof largestWords_);
    return header;
  }

  // The frame in units, and how many of them other programs take for an inch.
  void PatchPlaceable(std::string& header) const {
    const std::int16_t box[] = {0, 0, Word(width_), Word(height_)};
    const std::int16_t unitsPerInch = 96;
    std::memcpy(&header[6], box, sizeof box);
    std::memcpy(&header[14], &unitsPerInch, sizeof unitsPerInch);
    std::int16_t words[10];
    std::memcpy(words, header.data(), sizeof words);
    std::int16_t sum = 0;
    for (const std::int16_t word : words) sum = static_cast<std::int16_t>(sum ^ word);
    std::memcpy(&header[20], &sum, sizeof sum);
  }

  void WriteSetup() {
    std::string mark(1, wmf::kFormatVersion);
    AppendNumber(mark, height_);
    WriteComment(wmf::kDrawingTag, mark);
    Append(U_WMRSETMAPMODE_set(U_MM_ANISOTROPIC));
    Append(U_WMRSETWINDOWORG_set({0, 0}));
    Append(U_WMRSETWINDOWEXT_set({Word(width_), Word(height_)}));
    Append(U_WMRSETBKMODE_set(U_TRANSPARENT));
    Append(U_WMRSETPOLYFILLMODE_set(U_ALTERNATE));
    Append(U_WMRSETTEXTALIGN_set(U_TA_LEFT | U_TA_TOP));
    WritePenMode(penMode_);
    const U_COLORREF black{0, 0, 0, 0};
    const U_COLORREF white{255, 255, 255, 0};
    Append(U_WMRCREATEPENINDIRECT_set(U_PEN_set(U_PS_SOLID, 1, black)));
    Append(U_WMRCREATEPENINDIRECT_set(U_PEN_set(U_PS_SOLID, 1, white)));
    Append(U_WMRCREATEBRUSHINDIRECT_set(U_WLOGBRUSH_set(U_BS_SOLID, black, 0)));
    Append(U_WMRCREATEBRUSHINDIRECT_set(U_WLOGBRUSH_set(U_BS_SOLID, white, 0)));
    Append(U_WMRCREATEBRUSHINDIRECT_set(U_WLOGBRUSH_set(U_BS_NULL, black, 0)));
    Append(U_WMRSELECTOBJECT_set(pen_));
    Append(U_WMRSELECTOBJECT_set(brush_));
  }

  void WriteLevel(const std::vector<DrawingObject>& objects) {
    for (const DrawingObject& object : objects) {
      if (object.penMode != penMode_) WritePenMode(object.penMode);
      WriteObject(object);
    }
  }

  void WritePenMode(PenMode penMode) {
    penMode_ = penMode;
    Append(U_WMRSETROP2_set(static_cast<std::uint16_t>(Word(static_cast<int>(penMode)))));
  }

  void WriteObject(const DrawingObject& object) {
    switch (object.kind) {
      case Kind::Group:
        WriteComment(wmf::kGroupTag, {});
        WriteLevel(object.members);
        WriteComment(wmf::kGroupEndTag, {});
        break;
      case Kind::Line:
      case Kind::Polyline:
        WriteLines(object);
        break;
      case Kind::Vertices:
        SelectTools(object);
        Append(U_WMRPOLYGON_set(Count(object), FilePoints(object).data()));
        break;
      case Kind::Rectangle:
        SelectTools(object);
        Append(U_WMRRECTANGLE_set(FileBox(object)));
        break;
      case Kind::Ellipse:
        SelectTools(object);
        Append(U_WMRELLIPSE_set(FileBox(object)));
        break;
      case Kind::Picture:
        WritePicture(object);
        break;
      case Kind::Text:
        WriteText(object);
        break;
    }
  }

  void WriteLines(const DrawingObject& object) {
    SelectTools(object);
    const std::vector<U_POINT16> points = FilePoints(object);
    if (object.kind == Kind::Line && points.size() == 2) {
      Append(U_WMRMOVETO_set(points[0]));
      Append(U_WMRLINETO_set(points[1]));
    } else {
      Append(U_WMRPOLYLINE_set(Count(object), points.data()));
    }
  }

  // What could not be read again is not written.
  void CountPixels(const DrawingObject& picture) {
    pixels_ += PicturePixels(picture);
    if (pixels_ > WmfLimits().pixels) {
      throw CannotWrite("Die Bilder der Zeichnung sind zusammen größer, als eine Datei fasst.");
    }
  }

  // A picture without pixels becomes a white one.
  void WritePicture(const DrawingObject& object) {
    CountPixels(object);
    for (const auto& [tag, payload] : sources_.Before(object)) WriteComment(tag, payload);
    const Picture& picture = object.picture.Width() > 0 ? object.picture : Picture(1, 1, {kWhite});
    U_BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = picture.Width();
    info.bmiHeader.biHeight = picture.Height();
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    const std::string rows = MakeDibRows(picture);
    const U_POINT16 size{Word(object.corner1.x - object.corner2.x + 1),
                         Word(object.corner1.y - object.corner2.y + 1)};
    Append(U_WMRSTRETCHDIB_set(FilePoint({object.corner2.x, object.corner1.y}), size, {0, 0},
                               {Word(picture.Width()), Word(picture.Height())}, U_DIB_RGB_COLORS,
                               U_SRCCOPY, &info, static_cast<std::uint32_t>(rows.size()),
                               rows.data()));
  }

  // The comment says it all; the rest shows other programs something like it.
  void WriteText(const DrawingObject& object) {
    std::string comment;
    for (const Point& corner : {object.corner1, object.corner2}) {
      AppendNumber(comment, corner.x);
      AppendNumber(comment, height_ - 1 - corner.y);
    }
    const std::string stored = MakePrefixedText(object);
    AppendNumber(comment, static_cast<int>(Word(static_cast<std::int64_t>(stored.size()))));
    WriteComment(wmf::kTextTag, comment + stored);
    if (!object.style || object.text.empty()) return;

    const TextAttributes& style = *object.style;
    const bool blackLetters = style.inverse == (object.penMode == PenMode::Erase);
    WriteFont(object, style);
    Append(U_WMRSETTEXTCOLOR_set(ColourOf(blackLetters)));
    Append(U_WMRSETBKCOLOR_set(ColourOf(!blackLetters)));
    Append(U_WMRSETBKMODE_set(style.inverse ? U_OPAQUE : U_TRANSPARENT));
    Append(U_WMREXTTEXTOUT_set(FilePoint({object.corner2.x, object.corner1.y}),
                               Word(static_cast<std::int64_t>(object.text.size())), 0,
                               object.text.data(), nullptr, U_RECT16{}));
    Append(U_WMRDELETEOBJECT_set(Font));
  }

  void WriteFont(const DrawingObject& object, const TextAttributes& style) {
    const Box box = BoundsOf(object);
    const auto letters = static_cast<std::int64_t>(object.text.size());
    char face[] = "Courier New";
    U_FONT* font =
        U_FONT_set(Word(box.Height()), Word(box.Width() / letters), 0, 0,
                   style.bold || DeviceFonts::IsBold(style.font) ? U_FW_BOLD : U_FW_NORMAL, 0,
                   style.underline ? 1 : 0, 0, U_ANSI_CHARSET, 0, 0, 0, U_FIXED_PITCH, face);
    Append(U_WMRCREATEFONTINDIRECT_set(font));
    std::free(font);
    Append(U_WMRSELECTOBJECT_set(Font));
  }

  static U_COLORREF ColourOf(bool black) {
    return black ? U_COLORREF{0, 0, 0, 0} : U_COLORREF{255, 255, 255, 0};
  }

  void SelectTools(const DrawingObject& object) {
    const bool erase = object.penMode == PenMode::Erase;
    const Handle pen = erase ? WhitePen : BlackPen;
    const Handle brush = !object.filled ? NoBrush : erase ? WhiteBrush : BlackBrush;
    if (pen == pen_ && brush == brush_) return;
    pen_ = pen;
    brush_ = brush;
    // Both, although one may be the same: some programs draw no outline behind another brush until
    // a pen is selected again.
    Append(U_WMRSELECTOBJECT_set(brush_));
    Append(U_WMRSELECTOBJECT_set(pen_));
  }

  void WriteComment(char tag, const std::string& payload) {
    std::string data = std::string(wmf::kCommentMark) + tag + payload;
    if (data.size() % 2 != 0) data += '\0';  // the library drops the last byte of odd lengths
    const auto length = static_cast<std::uint16_t>(Word(static_cast<std::int64_t>(data.size())));
    Append(U_WMRESCAPE_set(wmf::kCommentEscape, length, data.data()));
  }

  static void AppendNumber(std::string& bytes, int number) {
    const auto word = static_cast<std::uint16_t>(Word(number));
    bytes += static_cast<char>(word & 255U);
    bytes += static_cast<char>(word >> 8);
  }

  U_POINT16 FilePoint(Point p) const { return {Word(p.x), Word(std::int64_t{height_} - 1 - p.y)}; }

  std::vector<U_POINT16> FilePoints(const DrawingObject& object) const {
    std::vector<U_POINT16> points;
    for (const Point& p : object.vertices) points.push_back(FilePoint(p));
    return points;
  }

  static std::uint16_t Count(const DrawingObject& object) {
    return static_cast<std::uint16_t>(Word(static_cast<std::int64_t>(object.vertices.size())));
  }

  // Corners in their own order, so that they come back as they were.
  U_RECT16 FileBox(const DrawingObject& object) const {
    const U_POINT16 upperLeft = FilePoint({object.corner2.x, object.corner1.y});
    const U_POINT16 lowerRight = FilePoint({object.corner1.x + 1, object.corner2.y - 1});
    return {upperLeft.x, upperLeft.y, lowerRight.x, lowerRight.y};
  }

  int width_;
  int height_;
  PenMode penMode_ = PenMode::Draw;
  Handle pen_ = BlackPen;
  Handle brush_ = NoBrush;
  std::string records_;
  std::uint32_t largestWords_ = 0;
  std::size_t pixels_ = 0;
  wmf::SourceWriter sources_;
};

}  // namespace

WmfFile WriteWmf(const Drawing& drawing, int displayWidth, int displayHeight) {
  try {
    return {WmfWriter(displayWidth, displayHeight).Write(drawing), {}};
  } catch (const CannotWrite& reason) {
    return {{}, reason.what()};
  } catch (const std::bad_alloc&) {
    return {{}, "Zu wenig Speicher für die Datei."};
  }
}

}  // namespace kelvo
