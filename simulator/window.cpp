#include "simulator/window.h"

#include <QEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QStringListModel>
#include <QVBoxLayout>
#include <system_error>
#include <utility>

#include "simulator/display_view.h"
#include "simulator/line_label.h"
#include "simulator/port_panel.h"

namespace kelvo::sim {
namespace {

constexpr int kBlinkHalf = 500;  // ms

// Control characters as their codes, everything else as it is.
QString Readable(const std::string& bytes) {
  QString text;
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    if (code == kEsc) {
      text += QStringLiteral("<ESC>");
    } else if (code < 32) {
      text += QStringLiteral("<%1>").arg(code);
    } else {
      text += QChar(code);
    }
  }
  return text;
}

QString Readable(const Terminal::LogEntry& entry) {
  if (entry.row == nullptr) return Readable(entry.text) + QStringLiteral("   – Text");
  const CommandRow& row = *entry.row;
  const QString end = row.ending == Ending::Semicolon ? QStringLiteral(";") : QString();
  const auto latin = [](std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  };
  return QStringLiteral("<ESC>") + latin(row.name) + Readable(entry.text) + end +
         QStringLiteral("   – ") + latin(row.meaning);
}

KeypadPanel::Keys KeysOf(const Keyboards& keyboards) {
  KeypadPanel::Keys keys;
  for (int row = 0; row < KeypadPanel::kSide; ++row) {
    for (int column = 0; column < KeypadPanel::kSide; ++column) {
      keys[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = {
          keyboards.Wired(row, column), keyboards.MatrixCode(row, column)};
    }
  }
  return keys;
}

SettingsPanel::Settings SettingsOf(const Terminal& terminal, bool lineEcho) {
  using Echo = SettingsPanel::Echo;
  const TerminalSetup& setup = terminal.Setup();
  SettingsPanel::Settings settings;
  settings.version = QString::fromStdString(setup.version);
  settings.flash = setup.flash;
  settings.address = setup.address;
  settings.echo = lineEcho ? Echo::Line : setup.echoQueries ? Echo::Query : Echo::Off;
  settings.fault = setup.fault;
  return settings;
}

}  // namespace

SimulatorWindow::SimulatorWindow(Station& station, const std::string& portPath,
                                 std::size_t terminal)
    : station_(station), terminal_(terminal) {
  setObjectName(QStringLiteral("frmSimulator"));
  setWindowTitle(tr("Simuliertes Terminal"));
  auto* row = new QHBoxLayout(this);
  row->addWidget(CreateLeft(portPath), 1);
  row->addWidget(CreateRight());
  blink_.setInterval(kBlinkHalf);
  connect(&blink_, &QTimer::timeout, this, [this] {
    lit_ = !lit_;
    Refresh();
  });
  Refresh();
  display_->setFocus();
}

QWidget* SimulatorWindow::CreateLeft(const std::string& portPath) {
  auto* left = new QWidget;
  auto* column = new QVBoxLayout(left);
  column->setContentsMargins({});

  display_ = new DisplayView;
  display_->setObjectName(QStringLiteral("display"));
  display_->setAccessibleName(tr("Anzeige des Terminals"));
  display_->setToolTip(tr("Anklicken und tippen: die PC-Tastatur am Terminal"));
  connect(display_, &DisplayView::Typed, this, [this](const QByteArray& characters) {
    station_.With([&](Bus& bus, Line&, Time now) {
      for (const char key : characters)
        bus.At(terminal_).Type(static_cast<unsigned char>(key), now);
    });
    Q_EMIT Operated();
  });
  column->addWidget(display_, 1);

  line_ = new LineLabel(station_, portPath);
  column->addWidget(line_);

  auto* caption = new QLabel(tr("&Empfangene Befehle"));
  column->addWidget(caption);
  log_ = new QListView;
  log_->setObjectName(QStringLiteral("lstCommands"));
  log_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  log_->setUniformItemSizes(true);
  log_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  log_->setMinimumHeight(log_->fontMetrics().height() * 5);
  logModel_ = new QStringListModel(log_);
  log_->setModel(logModel_);
  caption->setBuddy(log_);
  column->addWidget(log_);
  return left;
}

QWidget* SimulatorWindow::CreateRight() {
  auto* right = new QWidget;
  auto* column = new QVBoxLayout(right);
  column->setContentsMargins({});
  column->addWidget(CreateSwitches());

  settings_ = new SettingsPanel;
  connect(settings_, &SettingsPanel::Changed, this, &SimulatorWindow::Apply);
  column->addWidget(settings_);

  ports_ = new PortPanel;
  connect(ports_, &PortPanel::P1Changed, this, [this](int lines) {
    station_.With([this, lines](Bus& bus, Line&, Time) {
      bus.At(terminal_).SetP1(static_cast<unsigned char>(lines));
    });
    Q_EMIT Operated();
  });
  column->addWidget(ports_);

  keypad_ = new KeypadPanel;
  connect(keypad_, &KeypadPanel::Pressed, this, &SimulatorWindow::PressKey);
  connect(keypad_, &KeypadPanel::Released, this, [this] {
    station_.With([this](Bus& bus, Line&, Time now) { bus.At(terminal_).ReleaseKey(now); });
  });
  column->addWidget(keypad_);

  memory_ = new MemoryPanel;
  column->addWidget(memory_);
  column->addStretch(1);
  return right;
}

QWidget* SimulatorWindow::CreateSwitches() {
  auto* switches = new QWidget;
  auto* row = new QHBoxLayout(switches);
  row->setContentsMargins({});
  power_ = new QPushButton(tr("Ein&geschaltet"));
  power_->setObjectName(QStringLiteral("cmdPower"));
  power_->setCheckable(true);
  reset_ = new QPushButton(tr("&Neustart"));
  reset_->setObjectName(QStringLiteral("cmdReset"));
  row->addWidget(power_);
  row->addWidget(reset_);
  connect(power_, &QPushButton::clicked, this, &SimulatorWindow::SetPower);
  connect(reset_, &QPushButton::clicked, this, &SimulatorWindow::Reset);
  return switches;
}

// ---- showing ----

SimulatorWindow::Snapshot SimulatorWindow::Take() {
  Snapshot now;
  now.settings.unplugged = !station_.Plugged();
  station_.With([&](Bus& bus, Line& line, Time) {
    const Terminal& terminal = bus.At(terminal_);
    const bool unplugged = now.settings.unplugged;
    now.settings = SettingsOf(terminal, line.Echo());
    now.settings.unplugged = unplugged;
    now.powered = terminal.Powered();
    now.picture = terminal.Display().Picture(lit_);
    now.blinks = terminal.Display().CursorBlinks();
    now.p0 = terminal.P0();
    now.p1 = terminal.P1();
    if (memory_->Shown() != terminal.Memory().Revision()) {
      now.memory = MemoryPanel::Read(terminal.Memory());
    }
    now.keys = KeysOf(terminal.Keys());
    now.logCount = terminal.LogCount();
    if (now.logCount == logCount_) return;
    for (const Terminal::LogEntry& entry : terminal.Log()) now.log += Readable(entry);
  });
  return now;
}

void SimulatorWindow::Refresh() {
  line_->Refresh();
  Snapshot now = Take();
  display_->Show(now.picture, now.powered);
  ports_->Show(now.p0, now.p1);
  keypad_->Show(now.keys);
  settings_->Show(now.settings);
  power_->setChecked(now.powered);
  power_->setText(now.powered ? tr("Ein&geschaltet") : tr("Aus&geschaltet"));
  reset_->setEnabled(now.powered);
  if (now.memory) memory_->Show(std::move(*now.memory));
  ShowLog(now);
  RunBlinking(now.powered && now.blinks && isVisible() && !isMinimized());
}

void SimulatorWindow::ShowLog(const Snapshot& now) {
  if (now.logCount == logCount_) return;
  logCount_ = now.logCount;
  const QScrollBar* bar = log_->verticalScrollBar();
  const bool atEnd = bar->value() == bar->maximum();
  logModel_->setStringList(now.log);
  if (atEnd) log_->scrollToBottom();
}

// Only while there is something to see, so that an idle window costs nothing.
void SimulatorWindow::RunBlinking(bool blinks) {
  if (blinks == blink_.isActive()) return;
  if (blinks) {
    blink_.start();
  } else {
    blink_.stop();
    lit_ = true;
  }
}

void SimulatorWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) Refresh();
}

void SimulatorWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Refresh();
}

void SimulatorWindow::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  RunBlinking(false);
}

// ---- operating ----

void SimulatorWindow::SetPower(bool on) {
  station_.With([this, on](Bus& bus, Line&, Time now) { bus.At(terminal_).SetPower(on, now); });
  Q_EMIT Operated();
}

void SimulatorWindow::PressKey(int row, int column) {
  station_.With(
      [=, this](Bus& bus, Line&, Time now) { bus.At(terminal_).PressKey(row, column, now); });
  Q_EMIT Operated();
}

void SimulatorWindow::Reset() {
  SetPower(false);
  SetPower(true);
}

void SimulatorWindow::Apply(const SettingsPanel::Settings& settings) {
  station_.With([&](Bus& bus, Line& line, Time) {
    Terminal& terminal = bus.At(terminal_);
    terminal.SetVersion(settings.version.toStdString(), settings.flash);
    terminal.SetAddress(settings.address);
    terminal.SetEchoQueries(settings.echo == SettingsPanel::Echo::Query);
    line.SetEcho(settings.echo == SettingsPanel::Echo::Line);
    terminal.SetFault(settings.fault);
  });
  try {
    if (settings.unplugged) {
      station_.Unplug();
    } else {
      station_.Plug();
    }
  } catch (const std::runtime_error& error) {
    QMessageBox::warning(
        this, windowTitle(),
        tr("Die Schnittstelle lässt sich nicht anlegen:\n%1").arg(QString::fromUtf8(error.what())));
  }
  Q_EMIT Operated();
}

}  // namespace kelvo::sim
