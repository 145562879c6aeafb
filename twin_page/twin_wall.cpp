#include "twin_page/twin_wall.h"

#include <QListWidget>
#include <QPainter>
#include <QPixmap>
#include <QVBoxLayout>
#include <algorithm>

#include "widgets/form.h"

namespace kelvo {
namespace {

constexpr QSize kTile(240, 128);  // pixels
constexpr int kSpace = 12;
constexpr int kWide = 860;
constexpr int kHigh = 560;

// A larger display is made smaller; none is made larger, so that a pixel stays a pixel.
QPixmap TilePixmap(const Twin* twin) {
  QImage image = DisplayImage(TwinPixels(twin), TwinCertainty(twin));
  if (image.width() > kTile.width() || image.height() > kTile.height()) {
    image = image.scaled(kTile, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  }
  QPixmap tile(kTile);
  tile.fill(Qt::transparent);
  QPainter painter(&tile);
  const QRect place(
      QPoint((kTile.width() - image.width()) / 2, (kTile.height() - image.height()) / 2),
      image.size());
  painter.drawImage(place, image);
  if (TwinCertainty(twin) == Certainty::Doubted) PaintDoubt(painter, place);
  return tile;
}

QString StateOf(const Twin* twin) {
  if (twin == nullptr) return QObject::tr("noch nicht angesprochen");
  if (twin->Certain()) return QObject::tr("errechnet");
  return twin->OnlySizeAssumed() ? QObject::tr("unbekannt, Größe angenommen")
                                 : QObject::tr("unbekannt");
}

}  // namespace

TwinWall::TwinWall(Twins& twins, TwinNames names, std::function<std::vector<int>()> stored,
                   QWidget* parent)
    : QWidget(parent, Qt::Window),
      twins_(twins),
      names_(std::move(names)),
      stored_(std::move(stored)),
      follower_(twins, *this, [this] { ShowAll(); }) {
  Named(this, "frmAnzeigen");
  setWindowTitle(tr("Anzeigen aller Terminals (Nachbildung)"));
  ctlAnzeigen = Named(new QListWidget, "ctlAnzeigen");
  ctlAnzeigen->setAccessibleName(tr("Nachbildungen der Anzeigen"));
  ctlAnzeigen->setViewMode(QListView::IconMode);
  ctlAnzeigen->setResizeMode(QListView::Adjust);
  ctlAnzeigen->setMovement(QListView::Static);
  ctlAnzeigen->setUniformItemSizes(true);
  ctlAnzeigen->setWordWrap(true);
  ctlAnzeigen->setIconSize(kTile);
  ctlAnzeigen->setSpacing(kSpace);
  auto* const column = new QVBoxLayout(this);
  column->addWidget(ctlAnzeigen);
  resize(kWide, kHigh);
  CloseByEscape(this);
  connect(ctlAnzeigen, &QListWidget::itemActivated, this, [this](QListWidgetItem* tile) {
    Q_EMIT AddressChosen(tile->data(Qt::UserRole).toInt());
  });
}

void TwinWall::Present() {
  show();
  raise();
  activateWindow();
}

void TwinWall::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  follower_.Show();
}

void TwinWall::ShowAll() {
  std::vector<int> addresses = stored_();
  for (const auto& [address, twin] : twins_.All()) addresses.push_back(address);
  std::sort(addresses.begin(), addresses.end());
  addresses.erase(std::unique(addresses.begin(), addresses.end()), addresses.end());
  if (addresses != addresses_) {
    ctlAnzeigen->clear();
    drawn_.clear();
    addresses_ = addresses;
    for (const int address : addresses_) {
      auto* const tile = new QListWidgetItem(ctlAnzeigen);
      tile->setData(Qt::UserRole, address);
    }
  }
  for (std::size_t i = 0; i < addresses_.size(); ++i) {
    ShowTile(*ctlAnzeigen->item(static_cast<int>(i)), addresses_[i]);
  }
}

void TwinWall::ShowTile(QListWidgetItem& tile, int address) {
  const Twin* const twin = twins_.Of(address);
  const Drawn drawn{twin, twin == nullptr ? 0 : twin->terminal.Display().Revision(), TwinText(twin),
                    TwinName(address, names_)};
  const auto found = drawn_.find(address);
  if (found != drawn_.end() && found->second == drawn) return;
  drawn_.insert_or_assign(address, drawn);
  tile.setIcon(TilePixmap(twin));
  tile.setText(drawn.name + QStringLiteral("\n") + StateOf(twin));
  tile.setToolTip(drawn.text);
  tile.setFlags(twin == nullptr ? Qt::ItemIsSelectable : Qt::ItemIsSelectable | Qt::ItemIsEnabled);
}

}  // namespace kelvo
