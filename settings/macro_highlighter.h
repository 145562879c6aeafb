#pragma once

#include <QColor>
#include <QTextCharFormat>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "settings/macro_check.h"
#include "settings/macro_text.h"

class QPlainTextEdit;
class QTextBlock;

namespace kelvo {

/// Colours a macro text in its editor: what each character is, and what is remarked on it. Only
/// blocks that come to look otherwise are laid out anew, because a line of a thousand characters
/// takes its time; the toolkit's own highlighter lays it out three times for each key.
class MacroHighlighter {
 public:
  explicit MacroHighlighter(QPlainTextEdit& editor);

  /// The wire text that the editor holds, and what is remarked on it.
  void Show(const std::string& wire, const std::vector<Remark>& remarks);

 private:
  /// How a character looks: what it is, and how bad what is remarked on it.
  using Look = std::uint8_t;
  static constexpr std::size_t kLooks = (kPieceKinds + 1) * 4;

  static std::vector<Look> LooksOf(const std::string& wire, const std::vector<Remark>& remarks);
  void MakeFormats();
  void ShowBlock(const QTextBlock& block, const Look* looks) const;
  void Follow(int position, int removed, int added) const;

  QPlainTextEdit& editor_;
  std::array<QTextCharFormat, kLooks> formats_;  // in the palette's colours
};

/// The colour of a severity on the ground of this palette.
QColor SeverityColour(Severity severity, const QPalette& palette);

}  // namespace kelvo
