#include "simulator/wall_window.h"

#include <QEvent>
#include <QGridLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

#include "simulator/display_view.h"
#include "simulator/line_label.h"
#include "simulator/window.h"

namespace kelvo::sim {
namespace {

QString Caption(std::size_t number, const TerminalSetup& setup) {
  QString text = QObject::tr("%1: Adresse %2, Version %3")
                     .arg(number + 1)
                     .arg(setup.address)
                     .arg(QString::fromStdString(setup.version));
  if (!setup.checksum) text += QObject::tr(", ohne Prüfsumme");
  if (setup.fault == Fault::None) return text;
  return text + QStringLiteral(", ") + SettingsPanel::FaultName(setup.fault);
}

}  // namespace

WallWindow::WallWindow(Station& station, const std::string& portPath)
    : station_(station), portPath_(portPath) {
  setObjectName(QStringLiteral("frmWall"));
  setWindowTitle(tr("Simulierte Terminals"));
  auto* content = new QWidget;
  grid_ = new QGridLayout(content);
  const std::size_t count = station_.With([](Bus& bus, Line&, Time) { return bus.Count(); });
  for (std::size_t i = 0; i < count; ++i) tiles_.push_back(MakeTile(i));
  area_ = new QScrollArea;
  area_->setWidgetResizable(true);
  area_->viewport()->installEventFilter(this);
  connect(area_->verticalScrollBar(), &QScrollBar::valueChanged, this, &WallWindow::Refresh);
  connect(area_->horizontalScrollBar(), &QScrollBar::valueChanged, this, &WallWindow::Refresh);
  line_ = new LineLabel(station_, portPath);
  auto* column = new QVBoxLayout(this);
  column->addWidget(area_, 1);
  column->addWidget(line_);
  resize(1000, 700);
  Refresh();
  Arrange();
  area_->setWidget(content);
}

WallWindow::~WallWindow() = default;

WallWindow::Tile WallWindow::MakeTile(std::size_t terminal) {
  const int number = static_cast<int>(terminal);
  Tile tile{new DisplayView, new QPushButton};
  tile.display->setObjectName(QStringLiteral("display_%1").arg(number));
  tile.caption->setObjectName(QStringLiteral("cmdTerminal_%1").arg(number));
  tile.caption->setToolTip(tr("Zeigt dieses Terminal in einem eigenen Fenster."));
  connect(tile.caption, &QPushButton::clicked, this, [this, terminal] { Open(terminal); });
  connect(tile.display, &DisplayView::Typed, this, [this, terminal](const QByteArray& characters) {
    station_.With([&](Bus& bus, Line&, Time now) {
      for (const char key : characters) bus.At(terminal).Type(static_cast<unsigned char>(key), now);
    });
    Q_EMIT Operated();
  });
  return tile;
}

SimulatorWindow& WallWindow::Open(std::size_t terminal) {
  std::unique_ptr<SimulatorWindow>& window = windows_[terminal];
  if (!window) {
    window = std::make_unique<SimulatorWindow>(station_, portPath_, terminal);
    connect(window.get(), &SimulatorWindow::Operated, this, &WallWindow::Operated);
  }
  window->show();
  window->raise();
  return *window;
}

// As many beside each other as the window has room for, so that a long wall is only scrolled down,
// and a small one about as wide as high.
void WallWindow::Arrange() {
  int width = 1;
  for (const Tile& tile : tiles_) {
    width = std::max(
        {width, tile.display->minimumSizeHint().width(), tile.caption->minimumSizeHint().width()});
  }
  const int room = area_->viewport()->width() / (width + grid_->horizontalSpacing());
  const int square = static_cast<int>(std::ceil(std::sqrt(static_cast<double>(tiles_.size()))));
  const int columns = std::clamp(room, 1, square);
  if (columns == columns_) return;
  columns_ = columns;
  for (std::size_t i = 0; i < tiles_.size(); ++i) {
    const int number = static_cast<int>(i);
    grid_->removeWidget(tiles_[i].caption);
    grid_->removeWidget(tiles_[i].display);
    grid_->addWidget(tiles_[i].caption, number / columns * 2, number % columns);
    grid_->addWidget(tiles_[i].display, number / columns * 2 + 1, number % columns);
  }
}

bool WallWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) {
    Arrange();
    QMetaObject::invokeMethod(this, &WallWindow::Refresh, Qt::QueuedConnection);
  }
  return QWidget::eventFilter(watched, event);
}

void WallWindow::Refresh() {
  line_->Refresh();
  const std::vector<Seen> seen = station_.With([](Bus& bus, Line&, Time) {
    std::vector<Seen> all;
    for (std::size_t i = 0; i < bus.Count(); ++i) {
      const Terminal& terminal = bus.At(i);
      all.push_back({terminal.Setup(), terminal.Display().Revision(), terminal.Powered()});
    }
    return all;
  });
  for (std::size_t i = 0; i < tiles_.size(); ++i) {
    const QString caption = Caption(i, seen[i].setup);
    tiles_[i].caption->setText(caption);
    tiles_[i].display->setAccessibleName(caption);
    ShowDisplay(i, seen[i]);
  }
  for (const auto& [terminal, window] : windows_) {
    if (window->isVisible()) window->Refresh();
  }
}

// Pictures are taken one by one, only where something was drawn and only of what is in sight, so
// that the line is not kept waiting; the others are caught up with when they are scrolled to.
void WallWindow::ShowDisplay(std::size_t terminal, const Seen& seen) {
  Tile& tile = tiles_[terminal];
  if (tile.revision == seen.revision && tile.powered == seen.powered) return;
  const bool first = !tile.revision;
  if (!first && tile.display->visibleRegion().isEmpty()) return;
  tile.revision = seen.revision;
  tile.powered = seen.powered;
  tile.display->Show(station_.With([terminal](Bus& bus, Line&, Time) {
    return bus.At(terminal).Display().Picture(true);
  }),
                     tile.powered);
}

}  // namespace kelvo::sim
