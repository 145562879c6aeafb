#include "graphics/stored_dialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <utility>

#include "widgets/form.h"

namespace kelvo {

StoredDialog::StoredDialog(std::vector<Choice> choices, Render render, QWidget* parent)
    : QDialog(parent), choices_(std::move(choices)), render_(std::move(render)) {
  setObjectName(QStringLiteral("dlgGespeichert"));
  setWindowTitle(tr("Aus der Datenbank öffnen"));
  lstGespeichert = Named(new QListWidget, "lstGespeichert");
  lblGespeichert = Named(new QLabel, "lblGespeichert");
  lblGespeichert->setFrameShape(QFrame::StyledPanel);
  lblGespeichert->setAccessibleName(tr("Vorschau"));
  for (const Choice& choice : choices_) lstGespeichert->addItem(choice.name);
  auto* buttons = new QDialogButtonBox;
  Named(buttons->addButton(tr("Ö&ffnen"), QDialogButtonBox::AcceptRole), "cmdGespeichertOeffnen");
  Named(buttons->addButton(tr("Abbrechen"), QDialogButtonBox::RejectRole),
        "cmdGespeichertAbbrechen");
  auto* layout = new QGridLayout(this);
  layout->addWidget(LabelFor(lstGespeichert, tr("&Zeichnungen:")), 0, 0);
  layout->addWidget(lstGespeichert, 1, 0);
  layout->addWidget(lblGespeichert, 1, 1);
  layout->addWidget(buttons, 2, 0, 1, 2);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(lstGespeichert, &QListWidget::itemActivated, this, &QDialog::accept);
  connect(lstGespeichert, &QListWidget::currentRowChanged, this, &StoredDialog::ShowPreview);
  lstGespeichert->setCurrentRow(0);
}

const LoadedDrawing& StoredDialog::Chosen() const {
  return choices_[static_cast<std::size_t>(lstGespeichert->currentRow())].drawing;
}

void StoredDialog::ShowPreview() {
  lblGespeichert->setPixmap(QPixmap::fromImage(render_(Chosen().drawing)));
}

}  // namespace kelvo
