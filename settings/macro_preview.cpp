#include "settings/macro_preview.h"

#include <QComboBox>
#include <QLabel>
#include <QStandardItemModel>
#include <QVBoxLayout>

#include "twin/preview_words.h"
#include "widgets/display_picture.h"
#include "widgets/form.h"

namespace kelvo {
namespace {

constexpr int kUsualRate = 9600;
enum Start { Empty, OnPresent };

QLabel* WrappedLabel(const char* name) {
  auto* label = Named(new QLabel, name);
  label->setWordWrap(true);
  label->setTextFormat(Qt::PlainText);
  return label;
}

}  // namespace

MacroPreview::MacroPreview(Services services, QWidget* parent)
    : QWidget(parent),
      services_(std::move(services)),
      preview_(services_.fonts),
      cboVorschauStart(Named(new QComboBox, "cboVorschauStart")),
      picVorschau(Named(new DisplayPicture(DisplayPicture::TooLarge::Shrinks), "picVorschau")),
      lblVorschauKosten(WrappedLabel("lblVorschauKosten")),
      lblVorschauHinweis(WrappedLabel("lblVorschauHinweis")) {
  cboVorschauStart->addItems({tr("auf leerem Display"), tr("auf dem jetzigen Bild")});
  cboVorschauStart->setToolTip(
      tr("Womit die Nachbildung beginnt. Zum Terminal geht dabei nichts."));
  picVorschau->setAccessibleName(tr("Vorschau"));
  auto* top = new QHBoxLayout;
  top->addWidget(LabelFor(cboVorschauStart, tr("Nachbildung")));
  top->addWidget(cboVorschauStart, 1);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(column->spacing(), 0, 0, 0);
  column->addLayout(top);
  column->addWidget(picVorschau);
  column->addWidget(lblVorschauKosten);
  column->addWidget(lblVorschauHinweis);
  column->addStretch(1);
  connect(cboVorschauStart, &QComboBox::currentIndexChanged, this, &MacroPreview::Run);
}

void MacroPreview::Show(const std::string& wire, const MacroContext& context) {
  wire_ = wire;
  context_ = context;
  if (isVisible()) Run();
}

void MacroPreview::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Run();
}

PresentTerminal MacroPreview::Present() const {
  return services_.present ? services_.present() : PresentTerminal();
}

// A picture that nobody knows cannot be chosen.
void MacroPreview::Run() {
  const PresentTerminal present = Present();
  auto* const items = qobject_cast<QStandardItemModel*>(cboVorschauStart->model());
  items->item(OnPresent)->setEnabled(present.terminal != nullptr);
  const bool onPresent =
      cboVorschauStart->currentIndex() == OnPresent && present.terminal != nullptr;
  const int rate = services_.baudRate ? services_.baudRate() : 0;
  const PreviewStart start{.width = context_.display.width,
                           .height = context_.display.height,
                           .state = onPresent ? present.terminal : nullptr,
                           .makro = context_.macroText,
                           .baud = rate > 0 ? rate : kUsualRate};
  const PreviewResult result = preview_.Run(wire_, start);
  picVorschau->Show(result.withCursor);
  ShowCosts(result, rate);
  lblVorschauHinweis->setText(Doubts(result, onPresent ? present : PresentTerminal{nullptr, true}));
  lblVorschauHinweis->setVisible(!lblVorschauHinweis->text().isEmpty());
}

// Without an open port, `rate` 0, the rate is assumed.
void MacroPreview::ShowCosts(const PreviewResult& result, int rate) {
  const double seconds = std::chrono::duration<double>(result.lineTime).count();
  lblVorschauKosten->setText(
      tr("Errechnet, nicht gelesen. %1 Zeichen, %2 s bei %3; im EEPROM %1 Byte.")
          .arg(result.characters)
          .arg(QLocale(QLocale::German).toString(seconds, 'f', 2))
          .arg(rate > 0 ? tr("%1 Bit/s").arg(rate) : tr("angenommenen %1 Bit/s").arg(kUsualRate)));
}

QString MacroPreview::Doubts(const PreviewResult& result, const PresentTerminal& begun) const {
  QStringList doubts;
  if (!begun.certain) {
    doubts << tr("Das Bild, auf dem sie beginnt, ist nicht sicher.");
  }
  if (cboVorschauStart->currentIndex() == OnPresent && begun.terminal == nullptr) {
    doubts << tr("Ein jetziges Bild ist nicht bekannt; sie beginnt auf leerem Display.");
  }
  for (const std::string& remark : PreviewRemarks(result)) doubts << QString::fromStdString(remark);
  return doubts.join(u' ');
}

}  // namespace kelvo
