#include "graphics/symbol_panel.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>
#include <utility>

#include "graphics/symbols.h"
#include "widgets/form.h"

namespace kelvo {

namespace {

constexpr int kIconSide = 48;   // screen pixels
constexpr int kIconFrame = 56;  // with paper around

// As large as whole pixels allow, on the display's white.
QIcon IconOf(const QImage& pixels) {
  QImage paper(kIconFrame, kIconFrame, QImage::Format_RGB32);
  paper.fill(Qt::white);
  const int side = std::max({1, pixels.width(), pixels.height()});
  const int scale = std::max(1, kIconSide / side);
  const QImage large = side > kIconSide ? pixels.scaled(kIconSide, kIconSide, Qt::KeepAspectRatio,
                                                        Qt::SmoothTransformation)
                                        : pixels.scaled(pixels.size() * scale);
  QPainter painter(&paper);
  painter.drawImage((kIconFrame - large.width()) / 2, (kIconFrame - large.height()) / 2, large);
  return QIcon(QPixmap::fromImage(paper));
}

}  // namespace

const QString& SymbolList::MimeType() {
  static const QString type = QStringLiteral("application/x-kelvo-symbol");
  return type;
}

QMimeData* SymbolList::mimeData(const QList<QListWidgetItem*>& items) const {
  auto* data = new QMimeData;
  if (!items.isEmpty()) data->setData(MimeType(), items.front()->data(Qt::UserRole).toByteArray());
  return data;
}

SymbolPanel::SymbolPanel(Render render, QWidget* parent)
    : QWidget(parent), render_(std::move(render)) {
  lstSymbole = Named(new SymbolList, "lstSymbole");
  lstSymbole->setAccessibleName(tr("Symbole"));
  lstSymbole->setViewMode(QListView::IconMode);
  lstSymbole->setMovement(QListView::Static);
  lstSymbole->setResizeMode(QListView::Adjust);
  lstSymbole->setIconSize({kIconFrame, kIconFrame});
  lstSymbole->setSpacing(4);
  lstSymbole->setWordWrap(true);
  lstSymbole->setDragDropMode(QAbstractItemView::DragOnly);
  lstSymbole->setDragEnabled(true);
  lstSymbole->installEventFilter(this);
  cboSymbolGroesse = Named(new QComboBox, "cboSymbolGroesse");
  for (const int size : kSymbolSizes) cboSymbolGroesse->addItem(tr("%1 Punkte").arg(size));
  cmdSymbolEinfuegen = MakeButton("cmdSymbolEinfuegen", tr("E&infügen"),
                                  tr("Legt das Symbol in die Zeichnung [Eingabetaste]"));
  cmdSymbolUmbenennen = MakeButton("cmdSymbolUmbenennen", tr("Umb&enennen …"),
                                   tr("Gibt dem eigenen Symbol einen anderen Namen [F2]"));
  cmdSymbolLoeschen =
      MakeButton("cmdSymbolLoeschen", tr("Lös&chen"), tr("Löscht das eigene Symbol [Entf]"));
  auto* layout = new QVBoxLayout(this);
  auto* size = new QFormLayout;
  AddRow(size, tr("G&röße:"), cboSymbolGroesse);
  layout->addLayout(size);
  layout->addWidget(lstSymbole);
  auto* buttons = new QHBoxLayout;
  for (QPushButton* button : {cmdSymbolEinfuegen, cmdSymbolUmbenennen, cmdSymbolLoeschen}) {
    buttons->addWidget(button);
  }
  layout->addLayout(buttons);
  connect(cmdSymbolEinfuegen, &QPushButton::clicked, this, &SymbolPanel::Insert);
  connect(cmdSymbolUmbenennen, &QPushButton::clicked, this, &SymbolPanel::Rename);
  connect(cmdSymbolLoeschen, &QPushButton::clicked, this, &SymbolPanel::Delete);
  connect(lstSymbole, &QListWidget::itemDoubleClicked, this, &SymbolPanel::Insert);
  connect(lstSymbole, &QListWidget::currentRowChanged, this, &SymbolPanel::ShowButtons);
  connect(cboSymbolGroesse, &QComboBox::currentIndexChanged, this, &SymbolPanel::Fill);
  Fill();
}

void SymbolPanel::ShowOwn(std::vector<OwnSymbol> own) {
  own_ = std::move(own);
  Fill();
}

void SymbolPanel::Fill() {
  const int row = lstSymbole->currentRow();
  lstSymbole->clear();
  symbols_.clear();
  for (const OwnSymbol& own : own_) Add(QString::fromStdString(own.name), own.symbol, own.commands);
  const int size = kSymbolSizes[cboSymbolGroesse->currentIndex()];
  for (const DeliveredSymbol& delivered : DeliveredSymbols()) {
    const Drawing drawing = delivered.draw(size);
    Add(QString::fromUtf8(delivered.name), AsSymbol(drawing), SymbolCommands(drawing, 0).text);
  }
  lstSymbole->setCurrentRow(std::clamp(row, 0, lstSymbole->count() - 1));
  ShowButtons();
}

void SymbolPanel::Add(const QString& name, DrawingObject symbol, const std::string& commands) {
  auto* item = new QListWidgetItem(IconOf(render_(symbol)), name, lstSymbole);
  item->setData(Qt::UserRole, QByteArray::fromStdString(commands));
  const Box box = BoundsOf(symbol);
  item->setToolTip(tr("%1, %2 x %3 Punkte").arg(name).arg(box.Width()).arg(box.Height()));
  symbols_.push_back(std::move(symbol));
}

void SymbolPanel::ShowButtons() {
  const int row = lstSymbole->currentRow();
  cmdSymbolEinfuegen->setEnabled(row >= 0);
  cmdSymbolUmbenennen->setEnabled(IsOwn(row));
  cmdSymbolLoeschen->setEnabled(IsOwn(row));
}

void SymbolPanel::Choose(const std::string& name) {
  const auto found = std::find_if(own_.begin(), own_.end(),
                                  [&](const OwnSymbol& own) { return own.name == name; });
  if (found != own_.end()) lstSymbole->setCurrentRow(static_cast<int>(found - own_.begin()));
}

void SymbolPanel::Insert() {
  const int row = lstSymbole->currentRow();
  if (row < 0) return;
  const DrawingObject symbol = symbols_[static_cast<std::size_t>(row)];
  Q_EMIT InsertWanted(symbol);
}

void SymbolPanel::Rename() {
  const int row = lstSymbole->currentRow();
  if (IsOwn(row)) Q_EMIT RenameWanted(own_[static_cast<std::size_t>(row)].name);
}

void SymbolPanel::Delete() {
  const int row = lstSymbole->currentRow();
  if (IsOwn(row)) Q_EMIT DeleteWanted(own_[static_cast<std::size_t>(row)].name);
}

// The list's keys go before the window's: there F2 takes a tool and Entf deletes what is selected.
bool SymbolPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress) {
    return QWidget::eventFilter(watched, event);
  }
  const std::pair<int, void (SymbolPanel::*)()> keys[] = {{Qt::Key_Return, &SymbolPanel::Insert},
                                                          {Qt::Key_Enter, &SymbolPanel::Insert},
                                                          {Qt::Key_F2, &SymbolPanel::Rename},
                                                          {Qt::Key_Delete, &SymbolPanel::Delete}};
  const auto* const found = std::find_if(std::begin(keys), std::end(keys), [&](const auto& row) {
    return row.first == static_cast<QKeyEvent*>(event)->key();
  });
  if (found == std::end(keys)) return QWidget::eventFilter(watched, event);
  event->accept();
  if (event->type() == QEvent::KeyPress) (this->*found->second)();
  return true;
}

}  // namespace kelvo
