#pragma once

#include <QSyntaxHighlighter>
#include <array>
#include <vector>

#include "settings/macro_check.h"
#include "settings/macro_text.h"

class QPlainTextEdit;

namespace kelvo {

/// Colours a macro text in its editor: what each character is, and what is remarked on it.
class MacroHighlighter : public QSyntaxHighlighter {
  Q_OBJECT

 public:
  explicit MacroHighlighter(QPlainTextEdit& editor);

  /// Places are those of the wire text that the editor holds.
  void Show(std::vector<Piece> pieces, std::vector<Remark> remarks);

 protected:
  void highlightBlock(const QString& text) override;

 private:
  void MakeFormats();
  void Underline(const Remark& remark, int begin, int length);

  const QPlainTextEdit& editor_;
  std::array<QTextCharFormat, kPieceKinds> formats_;  // by PieceKind, in the palette's colours
  std::vector<Piece> pieces_;
  std::vector<Remark> remarks_;
};

/// The colour of a severity on the ground of this palette.
QColor SeverityColour(Severity severity, const QPalette& palette);

}  // namespace kelvo
