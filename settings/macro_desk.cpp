#include "settings/macro_desk.h"

#include <QLabel>
#include <QShortcut>
#include <QSplitter>
#include <QTextDocumentFragment>
#include <QVBoxLayout>

#include "settings/macro_edit.h"
#include "settings/macro_hint.h"
#include "settings/remark_list.h"
#include "widgets/contrast.h"
#include "widgets/form.h"

namespace kelvo {
namespace {

// The parameter at the caret stands out.
QString RichText(const CommandHint& hint) {
  QString text = QString::fromStdString(hint.command).toHtmlEscaped();
  for (std::size_t i = 0; i < hint.parameters.size(); ++i) {
    const QString words = QString::fromStdString(hint.parameters[i]).toHtmlEscaped();
    text += (i == 0 ? QStringLiteral(": ") : QStringLiteral(", ")) +
            (static_cast<int>(i) == hint.current ? QStringLiteral("<b>%1</b>").arg(words) : words);
  }
  if (hint.end.empty()) return text;
  return text + MacroDesk::tr("; Ende: %1").arg(QString::fromStdString(hint.end).toHtmlEscaped());
}

}  // namespace

MacroDesk::MacroDesk(QWidget* parent)
    : QWidget(parent),
      txtMakro(Named(new MacroEdit, "txtMakro")),
      lblMakroParameter(Named(new QLabel, "lblMakroParameter")),
      lstMakroHinweise(Named(new RemarkList, "lstMakroHinweise")),
      divider_(Named(new QSplitter(Qt::Vertical), "splMakroHinweise")),
      hintRow_(new QHBoxLayout) {
  txtMakro->setPlaceholderText(tr("(Makrotext)"));
  KeepPlaceholderReadable(txtMakro);
  txtMakro->setAccessibleName(tr("Makrotext"));
  lblMakroParameter->setTextFormat(Qt::RichText);
  // A long line must not widen the page.
  lblMakroParameter->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  lblMakroParameter->setWordWrap(true);
  lblMakroParameter->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  KeepRoom(lblMakroParameter, 3);
  divider_->addWidget(txtMakro);
  divider_->addWidget(lstMakroHinweise);
  divider_->setChildrenCollapsible(false);
  divider_->setStretchFactor(0, 1);
  divider_->setSizes({300, lstMakroHinweise->fontMetrics().lineSpacing() * 7 / 2});
  lstMakroHinweise->setMinimumHeight(lstMakroHinweise->fontMetrics().lineSpacing() * 3 / 2);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->addWidget(divider_, 1);
  hintRow_->addWidget(lblMakroParameter, 1);
  column->addLayout(hintRow_);
  connect(txtMakro, &QPlainTextEdit::textChanged, this, &MacroDesk::Check);
  connect(txtMakro, &MacroEdit::PaletteChanged, this, &MacroDesk::Check);
  connect(txtMakro, &QPlainTextEdit::cursorPositionChanged, this, &MacroDesk::ShowHint);
  connect(lstMakroHinweise, &RemarkList::Chosen, this, [this](const Remark& remark) {
    txtMakro->Select(remark.position, remark.length);
    txtMakro->setFocus();
  });
  connect(new QShortcut(Qt::Key_F8, this), &QShortcut::activated, this, [this] { Jump(false); });
  connect(new QShortcut(Qt::SHIFT | Qt::Key_F8, this), &QShortcut::activated, this,
          [this] { Jump(true); });
  Check();
  ShowHint();
}

void MacroDesk::AddBesideHint(QWidget* widget) { hintRow_->addWidget(widget, 0, Qt::AlignTop); }

void MacroDesk::SetContext(MacroContext context) {
  context_ = std::move(context);
  txtMakro->SetDisplay(context_.display);
  Check();
  ShowHint();
}

void MacroDesk::Check() {
  const std::string wire = txtMakro->Wire();
  std::vector<Remark> remarks = CheckMacro(wire, context_);
  txtMakro->ShowRemarks(wire, remarks);
  lstMakroHinweise->Show(std::move(remarks));
  Q_EMIT Checked(wire);
}

void MacroDesk::ShowHint() {
  const QString text = RichText(HintAt(txtMakro->Wire(), txtMakro->Caret(), context_.display));
  lblMakroParameter->setText(text);
  lblMakroParameter->setToolTip(QTextDocumentFragment::fromHtml(text).toPlainText());
}

void MacroDesk::Jump(bool backwards) {
  lstMakroHinweise->GoOnFrom(txtMakro->SelectionStart(), backwards);
}

}  // namespace kelvo
