#include "settings/macro_highlighter.h"

#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <algorithm>

#include "widgets/contrast.h"

namespace kelvo {
namespace {

enum Hue { Red = 0, Amber = 35, Green = 140, Blue = 215, Violet = 290 };

// Legible on the palette's ground, be it light or dark.
QColor Coloured(const QPalette& palette, Hue hue) {
  const bool dark = palette.color(QPalette::Base).lightness() < 128;
  return QColor::fromHsl(hue, dark ? 190 : 255, dark ? 180 : 85);
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

MacroHighlighter::MacroHighlighter(QPlainTextEdit& editor)
    : QSyntaxHighlighter(editor.document()), editor_(editor) {}

void MacroHighlighter::Show(std::vector<Piece> pieces, std::vector<Remark> remarks) {
  pieces_ = std::move(pieces);
  remarks_ = std::move(remarks);
  MakeFormats();
  // Colours are no change of the text, which the document would report them as.
  const QSignalBlocker silent(document());
  rehighlight();
}

void MacroHighlighter::MakeFormats() {
  const QPalette& palette = editor_.palette();
  const QColor faint = FaintText(palette);
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
}

// A line end is one character here and two in the wire text.
void MacroHighlighter::highlightBlock(const QString& text) {
  const int start = currentBlock().position() + currentBlock().blockNumber();
  const int length = static_cast<int>(text.size());
  const auto inBlock = [start, length](std::size_t begin, std::size_t count) {
    const int from = std::clamp(static_cast<int>(begin) - start, 0, length);
    const int to = std::clamp(static_cast<int>(begin + count) - start, 0, length);
    return std::pair(from, to - from);
  };
  for (const Piece& piece : pieces_) {
    const auto [from, count] = inBlock(piece.begin, piece.length);
    if (count > 0) setFormat(from, count, formats_[static_cast<std::size_t>(piece.kind)]);
  }
  for (const Remark& remark : remarks_) {
    const auto [from, count] = inBlock(remark.position, std::max<std::size_t>(remark.length, 1));
    if (count > 0) Underline(remark, from, count);
  }
}

// Over the colours that are there, and never in the place of something worse.
void MacroHighlighter::Underline(const Remark& remark, int begin, int length) {
  const bool hint = remark.severity == Severity::Hint;
  for (int at = begin; at < begin + length; ++at) {
    QTextCharFormat some = format(at);
    if (some.underlineStyle() == QTextCharFormat::WaveUnderline && hint) continue;
    some.setUnderlineStyle(hint ? QTextCharFormat::DotLine : QTextCharFormat::WaveUnderline);
    some.setUnderlineColor(SeverityColour(remark.severity, editor_.palette()));
    setFormat(at, 1, some);
  }
}

}  // namespace kelvo
