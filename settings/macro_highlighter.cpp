#include "settings/macro_highlighter.h"

#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextLayout>
#include <algorithm>

#include "widgets/contrast.h"

namespace kelvo {
namespace {

enum Hue { Red = 0, Amber = 35, Green = 140, Blue = 215, Violet = 290 };
enum Remarked : std::uint8_t { Not, Hinted, Warned, Wrong };

constexpr std::size_t kKinds = kPieceKinds + 1;  // the last one is text for the display

// Legible on the palette's ground, be it light or dark.
QColor Coloured(const QPalette& palette, Hue hue) {
  const bool dark = palette.color(QPalette::Base).lightness() < 128;
  return QColor::fromHsl(hue, dark ? 190 : 255, dark ? 180 : 85);
}

Remarked RemarkedAs(Severity severity) {
  switch (severity) {
    case Severity::Error:
      return Wrong;
    case Severity::Warning:
      return Warned;
    case Severity::Hint:
      break;
  }
  return Hinted;
}

void Underline(QTextCharFormat& format, Severity severity, const QPalette& palette) {
  format.setUnderlineStyle(severity == Severity::Hint ? QTextCharFormat::DotLine
                                                      : QTextCharFormat::WaveUnderline);
  format.setUnderlineColor(SeverityColour(severity, palette));
}

}  // namespace

QColor SeverityColour(Severity severity, const QPalette& palette) {
  switch (severity) {
    case Severity::Error:
      return Coloured(palette, Red);
    case Severity::Warning:
      return Coloured(palette, Amber);
    case Severity::Hint:
      break;
  }
  return FaintText(palette);
}

MacroHighlighter::MacroHighlighter(QPlainTextEdit& editor) : editor_(editor) {
  QObject::connect(
      editor.document(), &QTextDocument::contentsChange, &editor,
      [this](int position, int removed, int added) { Follow(position, removed, added); });
}

void MacroHighlighter::Show(const std::string& wire, const std::vector<Remark>& remarks) {
  MakeFormats();
  const std::vector<Look> looks = LooksOf(wire, remarks);
  const QTextDocument& document = *editor_.document();
  // A line end is one character here and two in the wire text.
  std::size_t lineEnds = 0;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    const std::size_t start = static_cast<std::size_t>(block.position()) + lineEnds++;
    if (start + static_cast<std::size_t>(block.length()) - 1 > looks.size()) return;
    ShowBlock(block, looks.data() + start);
  }
}

std::vector<MacroHighlighter::Look> MacroHighlighter::LooksOf(const std::string& wire,
                                                              const std::vector<Remark>& remarks) {
  std::vector<std::uint8_t> worst(wire.size());
  for (const Remark& remark : remarks) {
    const std::size_t end = remark.position + std::max<std::size_t>(remark.length, 1);
    for (std::size_t at = remark.position; at < std::min(end, wire.size()); ++at) {
      worst[at] = std::max<std::uint8_t>(worst[at], RemarkedAs(remark.severity));
    }
  }
  std::vector<Look> looks(wire.size(), kPieceKinds);
  for (const Piece& piece : PiecesOf(wire)) {
    const auto begin = looks.begin() + static_cast<std::ptrdiff_t>(piece.begin);
    std::fill_n(begin, piece.length, static_cast<Look>(piece.kind));
  }
  for (std::size_t at = 0; at < looks.size(); ++at) {
    looks[at] = static_cast<Look>(looks[at] + kKinds * worst[at]);
  }
  return looks;
}

void MacroHighlighter::MakeFormats() {
  const QPalette& palette = editor_.palette();
  const QColor faint = FaintText(palette);
  formats_ = {};
  const std::pair<PieceKind, QColor> colours[] = {
      {PieceKind::Letters, Coloured(palette, Blue)},
      {PieceKind::Unknown, faint},
      {PieceKind::Parameter, Coloured(palette, Green)},
      {PieceKind::Mark, faint},
      {PieceKind::GraphicText, Coloured(palette, Violet)},
      {PieceKind::Control, Coloured(palette, Amber)}};
  for (const auto& [kind, colour] : colours) {
    QTextCharFormat& format = formats_[static_cast<std::size_t>(kind)];
    format.setForeground(colour);
    const bool letters = kind == PieceKind::Letters || kind == PieceKind::Unknown;
    format.setFontWeight(letters ? QFont::Bold : QFont::Normal);
  }
  for (const Severity severity : {Severity::Hint, Severity::Warning, Severity::Error}) {
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
      QTextCharFormat& format = formats_[kKinds * RemarkedAs(severity) + kind];
      format = formats_[kind];
      Underline(format, severity, palette);
    }
  }
}

void MacroHighlighter::ShowBlock(const QTextBlock& block, const Look* looks) const {
  QList<QTextLayout::FormatRange> ranges;
  const int length = block.length() - 1;
  for (int begin = 0, end = 0; begin < length; begin = end) {
    for (end = begin + 1; end < length && looks[end] == looks[begin];) ++end;
    if (looks[begin] == kPieceKinds) continue;
    ranges.push_back({begin, end - begin, formats_[looks[begin]]});
  }
  if (ranges == block.layout()->formats()) return;
  block.layout()->setFormats(ranges);
  editor_.document()->markContentsDirty(block.position(), block.length());
}

// What is typed into the middle of something mostly belongs to it. So the line is laid out once,
// with what it will look like, instead of again when that has been found out.
void MacroHighlighter::Follow(int position, int removed, int added) const {
  const QTextBlock block = editor_.document()->findBlock(position);
  const int at = position - block.position();
  if (at + added >= block.length()) return;
  QList<QTextLayout::FormatRange> ranges;
  const auto moved = [at, removed, added](int place) {
    return place >= at + removed ? place - removed + added : std::min(place, at);
  };
  for (QTextLayout::FormatRange range : block.layout()->formats()) {
    const int end = moved(range.start + range.length);
    range.start = range.start == at && removed == 0 ? at + added : moved(range.start);
    range.length = end - range.start;
    if (range.length > 0) ranges.push_back(range);
  }
  block.layout()->setFormats(ranges);
}

}  // namespace kelvo
