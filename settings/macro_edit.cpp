#include "settings/macro_edit.h"

#include <QKeyEvent>
#include <QListWidget>
#include <QTextBlock>
#include <algorithm>

#include "link/command_table.h"
#include "settings/macro_highlighter.h"
#include "settings/macro_hint.h"
#include "widgets/form.h"

namespace kelvo {
namespace {

constexpr int kMostRows = 9;
constexpr int kLongestLetters = 4;  // with a blank behind them

QString Row(const CommandRow& row, DisplaySize display) {
  const CommandHint hint = HintOf(row, display);
  const auto letters = static_cast<qsizetype>(row.letters.size());
  QString text = QString::fromStdString(hint.command);
  text.insert(letters, QString(kLongestLetters - letters - 1, u' '));
  const QString parameters = QString::fromStdString(ParameterWords(hint));
  return parameters.isEmpty() ? text : text + QStringLiteral(": ") + parameters;
}

}  // namespace

MacroEdit::MacroEdit(QWidget* parent)
    : WireEdit(parent),
      highlighter_(*this),
      lstMakroBefehle_(Named(new QListWidget(this), "lstMakroBefehle")) {
  lstMakroBefehle_->setFocusPolicy(Qt::NoFocus);
  lstMakroBefehle_->setFont(WireFont());
  lstMakroBefehle_->setAccessibleName(tr("Befehle zur Auswahl"));
  lstMakroBefehle_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  lstMakroBefehle_->hide();
  connect(lstMakroBefehle_, &QListWidget::itemClicked, this,
          [this](QListWidgetItem* item) { Take(lstMakroBefehle_->row(item)); });
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, &MacroEdit::FollowCaret);
}

void MacroEdit::ShowRemarks(const std::string& wire, const std::vector<Remark>& remarks) {
  highlighter_.Show(wire, remarks);
}

// A line end is one character in the document and two in the wire text.
std::size_t MacroEdit::WirePlace(int position) const {
  return static_cast<std::size_t>(position) +
         static_cast<std::size_t>(document()->findBlock(position).blockNumber());
}

std::size_t MacroEdit::Caret() const { return WirePlace(textCursor().position()); }

std::size_t MacroEdit::SelectionStart() const { return WirePlace(textCursor().selectionStart()); }

void MacroEdit::Select(std::size_t position, std::size_t length) {
  const std::string wire = Wire();
  const auto place = [this, &wire](std::size_t at) {
    std::size_t lineEnds = 0;
    for (std::size_t i = wire.find("\r\n"); i < at; i = wire.find("\r\n", i + 2)) ++lineEnds;
    return std::min(static_cast<int>(at - lineEnds), document()->characterCount() - 1);
  };
  QTextCursor cursor(document());
  cursor.setPosition(place(position));
  cursor.setPosition(place(position + length), QTextCursor::KeepAnchor);
  setTextCursor(cursor);
  ensureCursorVisible();
}

void MacroEdit::Complete() { Offer(CompletionAt(Wire(), Caret())); }

void MacroEdit::Offer(const Completion& completion) {
  completion_ = completion;
  lstMakroBefehle_->clear();
  for (const CommandRow* row : completion.rows) lstMakroBefehle_->addItem(Row(*row, display_));
  lstMakroBefehle_->setVisible(!completion.rows.empty());
  if (!completion.rows.empty()) PlaceList();
}

// Below the caret's line, or above it where there is more room.
void MacroEdit::PlaceList() {
  const QRect caret = cursorRect().translated(viewport()->pos());
  const int frame = 2 * lstMakroBefehle_->frameWidth();
  const int rows = std::min(lstMakroBefehle_->count(), kMostRows);
  const int below = height() - caret.bottom();
  const bool under = below >= caret.top();
  const int high =
      std::min(lstMakroBefehle_->sizeHintForRow(0) * rows + frame, under ? below : caret.top());
  const int wide = std::min(lstMakroBefehle_->sizeHintForColumn(0) + frame +
                                lstMakroBefehle_->fontMetrics().averageCharWidth() * 4,
                            width());
  lstMakroBefehle_->setGeometry(std::clamp(caret.left(), 0, width() - wide),
                                under ? caret.bottom() : caret.top() - high, wide, high);
  lstMakroBefehle_->raise();
}

// Writes the letters that are missing; nothing else is ever written by itself.
void MacroEdit::Take(int row) {
  const CommandRow* const chosen = completion_.rows.at(static_cast<std::size_t>(row));
  const std::size_t typed = completion_.typed;
  lstMakroBefehle_->hide();
  InsertWire(std::string(chosen->letters.substr(typed)));
}

bool MacroEdit::ListKey(const QKeyEvent& event) {
  const int row = lstMakroBefehle_->currentRow();
  const int last = lstMakroBefehle_->count() - 1;
  switch (event.key()) {
    case Qt::Key_Down:
      lstMakroBefehle_->setCurrentRow(std::min(row + 1, last));
      return true;
    case Qt::Key_Up:
      lstMakroBefehle_->setCurrentRow(std::max(row - 1, 0));
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (row >= 0) Take(row);
      return row >= 0;
    case Qt::Key_Escape:
      lstMakroBefehle_->hide();
      return true;
    default:
      return false;
  }
}

void MacroEdit::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space && event->modifiers() == Qt::ControlModifier) {
    return Complete();
  }
  if (lstMakroBefehle_->isVisible() && ListKey(*event)) return;
  const int before = document()->revision();
  WireEdit::keyPressEvent(event);
  if (document()->revision() != before) Complete();
}

// The list belongs to the place where it was opened.
void MacroEdit::FollowCaret() {
  if (lstMakroBefehle_->isVisible()) lstMakroBefehle_->hide();
}

void MacroEdit::focusOutEvent(QFocusEvent* event) {
  lstMakroBefehle_->hide();
  WireEdit::focusOutEvent(event);
}

void MacroEdit::changeEvent(QEvent* event) {
  WireEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) Q_EMIT PaletteChanged();
}

}  // namespace kelvo
