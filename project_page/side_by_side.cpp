#include "project_page/side_by_side.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QVBoxLayout>

#include "project/merge.h"
#include "widgets/contrast.h"
#include "widgets/form.h"

namespace kelvo {
namespace {

constexpr int kMarkStrength = 60;  // of 255, over the text's ground
constexpr int kMarkOnDark = 130;

QString LineOf(const SideBySide::Lines& lines, std::optional<std::size_t> line) {
  return line ? QString::fromStdString(lines[*line]) : QString();
}

void Mark(QPlainTextEdit& text, const std::vector<int>& lines) {
  QColor colour = text.palette().color(QPalette::Highlight);
  const bool dark = IsDark(text.palette().color(QPalette::Base));
  colour.setAlpha(dark ? kMarkOnDark : kMarkStrength);
  QList<QTextEdit::ExtraSelection> marks;
  for (const int line : lines) {
    QTextEdit::ExtraSelection mark;
    mark.format.setBackground(colour);
    mark.format.setProperty(QTextFormat::FullWidthSelection, true);
    mark.cursor = QTextCursor(text.document()->findBlockByNumber(line));
    marks.append(mark);
  }
  text.setExtraSelections(marks);
}

QString Joined(const SideBySide::Lines& lines) {
  QStringList all;
  for (const std::string& line : lines) all << QString::fromStdString(line);
  return all.join(u'\n');
}

}  // namespace

SideBySide::SideBySide(QWidget* parent)
    : QWidget(parent),
      base_(MakePane("txtImportStand", tr("Ge&meinsamer Stand:"))),
      here_(MakePane("txtImportHier", tr("&Hier:"))),
      there_(MakePane("txtImportDatei", tr("In der &Datei:"))),
      result_(MakePane("txtImportErgebnis", tr("Zusamme&ngeführt:"))) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins({});
  for (const Pane& pane : {base_, here_, there_, result_}) row->addWidget(pane.whole, 1);
  Follow(here_.text, there_.text);
  Follow(there_.text, here_.text);
}

SideBySide::Pane SideBySide::MakePane(const char* name, const QString& caption) {
  auto* const text = Named(new QPlainTextEdit, name);
  text->setReadOnly(true);
  text->setTabChangesFocus(true);
  text->setLineWrapMode(QPlainTextEdit::NoWrap);
  text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  auto* const whole = new QWidget;
  auto* const column = new QVBoxLayout(whole);
  column->setContentsMargins({});
  column->addWidget(LabelFor(text, caption));
  column->addWidget(text, 1);
  return {whole, text};
}

void SideBySide::Follow(QPlainTextEdit* leader, QPlainTextEdit* follower) {
  connect(leader->verticalScrollBar(), &QScrollBar::valueChanged, follower->verticalScrollBar(),
          &QScrollBar::setValue);
}

void SideBySide::Show(const Lines& here, const Lines& there, const std::optional<Lines>& base,
                      const std::optional<Lines>& result) {
  QStringList left;
  QStringList right;
  std::vector<int> different;
  for (const auto& [one, other] : AlignedLines(here, there)) {
    if (!one || !other || here[*one] != there[*other]) {
      different.push_back(static_cast<int>(left.size()));
    }
    left << LineOf(here, one);
    right << LineOf(there, other);
  }
  here_.text->setPlainText(left.join(u'\n'));
  there_.text->setPlainText(right.join(u'\n'));
  const bool both = !here.empty() && !there.empty();
  Mark(*here_.text, both ? different : std::vector<int>());
  Mark(*there_.text, both ? different : std::vector<int>());
  ShowIf(base_, base);
  ShowIf(result_, result);
}

void SideBySide::ShowIf(const Pane& pane, const std::optional<Lines>& lines) {
  pane.whole->setVisible(lines.has_value());
  pane.text->setPlainText(lines ? Joined(*lines) : QString());
}

}  // namespace kelvo
