#include "help/message_row.h"

#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
#include <algorithm>
#include <vector>

namespace kelvo {
namespace {

// Of a row's letters so many must stand in the message in their order.
constexpr double kLikeEnough = 0.4;

QStringList Words(const QString& text) {
  static const QRegularExpression word(QStringLiteral("\\p{L}+|\\d+"));
  QStringList words;
  for (auto it = word.globalMatch(text); it.hasNext();) words << it.next().captured();
  return words;
}

qsizetype Letters(const QStringList& words) { return words.join(QString()).size(); }

// The letters of the longest sequence of words that both have.
qsizetype CommonLetters(const QStringList& one, const QStringList& other) {
  std::vector<qsizetype> row(static_cast<std::size_t>(other.size()) + 1);
  for (const QString& word : one) {
    qsizetype diagonal = 0;
    for (std::size_t i = 1; i < row.size(); ++i) {
      const qsizetype above = row[i];
      const bool same = other[static_cast<qsizetype>(i) - 1] == word;
      row[i] = same ? diagonal + word.size() : std::max(above, row[i - 1]);
      diagonal = above;
    }
  }
  return row.back();
}

// How much of the row is in the message, and of the message in the row; 0 when they are not alike.
double Likeness(const QStringList& row, const QStringList& message) {
  const auto common = static_cast<double>(CommonLetters(row, message));
  const auto ofRow = static_cast<double>(Letters(row));
  if (common < kLikeEnough * ofRow) return 0;
  return 2 * common / (ofRow + static_cast<double>(Letters(message)));
}

QTextCursor Select(const QTextTableCell& cell) {
  QTextCursor cursor = cell.firstCursorPosition();
  cursor.setPosition(cell.lastCursorPosition().position(), QTextCursor::KeepAnchor);
  return cursor;
}

}  // namespace

QTextCursor RowOfMessage(QTextDocument& chapter, const QString& message) {
  const QStringList words = Words(message);
  QTextCursor best(&chapter);
  double most = 0;
  for (QTextFrame* const frame : chapter.rootFrame()->childFrames()) {
    auto* const table = qobject_cast<QTextTable*>(frame);
    if (table == nullptr) continue;
    const QString heading = Select(table->cellAt(0, 0)).selectedText();
    for (int row = 1; heading == QStringLiteral("Meldung") && row < table->rows(); ++row) {
      const QTextCursor cell = Select(table->cellAt(row, 0));
      const double likeness = Likeness(Words(cell.selectedText()), words);
      if (likeness <= most) continue;
      most = likeness;
      best = cell;
    }
  }
  return best;
}

QTextCursor RowOfAnchor(QTextDocument& chapter, const QString& anchor) {
  for (QTextBlock block = chapter.begin(); block.isValid(); block = block.next()) {
    for (auto it = block.begin(); !it.atEnd(); ++it) {
      if (!it.fragment().charFormat().anchorNames().contains(anchor)) continue;
      QTextCursor row(block);
      const QTextTable* const table = row.currentTable();
      return table != nullptr ? Select(table->cellAt(row)) : row;
    }
  }
  return QTextCursor(&chapter);
}

}  // namespace kelvo
