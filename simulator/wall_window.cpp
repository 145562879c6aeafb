#include "simulator/wall_window.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <cmath>

#include "simulator/display_view.h"
#include "simulator/window.h"

namespace kelvo::sim {
namespace {

QString Caption(std::size_t number, const Terminal& terminal) {
  const TerminalSetup& setup = terminal.Setup();
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
  auto* grid = new QGridLayout(content);
  const std::size_t count = station_.With([](Bus& bus, Line&, Time) { return bus.Count(); });
  const int columns = std::max(1, static_cast<int>(std::sqrt(static_cast<double>(count))));
  for (std::size_t i = 0; i < count; ++i) tiles_.push_back(MakeTile(i, *grid, columns));
  auto* area = new QScrollArea;
  area->setWidget(content);
  area->setWidgetResizable(true);
  auto* port = new QLabel(tr("Schnittstelle: %1").arg(QString::fromStdString(portPath)));
  port->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* column = new QVBoxLayout(this);
  column->addWidget(area, 1);
  column->addWidget(port);
  resize(1000, 700);
  Refresh();
}

WallWindow::~WallWindow() = default;

WallWindow::Tile WallWindow::MakeTile(std::size_t terminal, QGridLayout& grid, int columns) {
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
  grid.addWidget(tile.caption, number / columns * 2, number % columns);
  grid.addWidget(tile.display, number / columns * 2 + 1, number % columns);
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

// Pictures are taken only where something was drawn, so that the line is not kept waiting.
void WallWindow::Refresh() {
  for (std::size_t i = 0; i < tiles_.size(); ++i) {
    Tile& tile = tiles_[i];
    PixelMap picture;
    QString caption;
    const bool changed = station_.With([&](Bus& bus, Line&, Time) {
      const Terminal& terminal = bus.At(i);
      caption = Caption(i, terminal);
      if (terminal.Display().Revision() == tile.revision && terminal.Powered() == tile.powered) {
        return false;
      }
      tile.revision = terminal.Display().Revision();
      tile.powered = terminal.Powered();
      picture = terminal.Display().Picture(true);
      return true;
    });
    tile.caption->setText(caption);
    tile.display->setAccessibleName(caption);
    if (changed) tile.display->Show(picture, tile.powered);
  }
  for (const auto& [terminal, window] : windows_) {
    if (window->isVisible()) window->Refresh();
  }
}

}  // namespace kelvo::sim
