#include "shell/box_text.h"

#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QRegularExpression>

#include "widgets/form.h"

namespace kelvo {
namespace {

constexpr qsizetype kMostCharacters = 1500;
constexpr qsizetype kMostLines = 25;
constexpr int kFieldLines = 12;
constexpr int kFieldCharacters = 80;
// The box's own labels.
const QString kText = QStringLiteral("qt_msgbox_label");
const QString kHint = QStringLiteral("qt_msgbox_informativelabel");

bool IsTooLong(qsizetype characters, qsizetype lines) {
  return characters > kMostCharacters || lines > kMostLines;
}

// For its many lines, or for a line that cannot be broken between words, such as a table's codes.
bool NeedsField(const QString& text) {
  static const QRegularExpression longWord(QStringLiteral("\\S{81}"));
  return IsTooLong(text.size(), text.count(u'\n')) || text.contains(longWord);
}

// In place of the box's label: wraps where it has to, scrolls, and adds no character.
void ShowInField(QMessageBox& box, const QString& labelName, const char* name) {
  auto* const label = box.findChild<QLabel*>(labelName);
  auto* const grid = qobject_cast<QGridLayout*>(box.layout());
  if (label == nullptr || grid == nullptr) return;
  auto* field = Named(new QPlainTextEdit(label->text()), name);
  field->setReadOnly(true);
  field->setTabChangesFocus(true);
  field->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  field->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  field->setAccessibleName(box.windowTitle());
  const QFontMetrics metrics = field->fontMetrics();
  field->setFixedSize(metrics.averageCharWidth() * kFieldCharacters,
                      metrics.lineSpacing() * kFieldLines);
  delete grid->replaceWidget(label, field);
  label->hide();
}

}  // namespace

void FitTexts(QMessageBox& box) {
  for (const QPlainTextEdit* before : box.findChildren<QPlainTextEdit*>()) {
    delete before;
    for (const QString& name : {kText, kHint}) {
      if (auto* const label = box.findChild<QLabel*>(name)) label->show();
    }
  }
  const QString text = box.text();
  const QString hint = box.informativeText();
  // Two texts of which each would fit may be too much together; the longer one gives way.
  const bool both = IsTooLong(text.size() + hint.size(), text.count(u'\n') + hint.count(u'\n'));
  const bool longerHint = hint.size() > text.size();
  if (NeedsField(text) || (both && !longerHint)) {
    ShowInField(box, kText, "txtMeldung");
  }
  if (NeedsField(hint) || (both && longerHint)) {
    ShowInField(box, kHint, "txtErlaeuterung");
  }
}

}  // namespace kelvo
