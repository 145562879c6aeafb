#include "shell/traffic_view.h"

#include <QApplication>
#include <QBoxLayout>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QTableView>
#include <QTime>

#include "base/wire_text.h"
#include "widgets/files.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

QString Text(const std::string& text) { return QString::fromStdString(text); }

}  // namespace

void TrafficModel::Add(Direction direction, std::string_view characters) {
  const std::chrono::milliseconds now(QTime::currentTime().msecsSinceStartOfDay());
  const int rows = rowCount();
  switch (log_.ChangeBy(now, direction)) {
    case TrafficLog::Change::Grown:
      log_.Add(now, direction, characters);
      Q_EMIT dataChanged(index(rows - 1, 0), index(rows - 1, ColumnCount - 1));
      break;
    case TrafficLog::Change::Added:
      beginInsertRows({}, rows, rows);
      log_.Add(now, direction, characters);
      endInsertRows();
      break;
    case TrafficLog::Change::AddedAndDropped:
      beginResetModel();
      log_.Add(now, direction, characters);
      endResetModel();
      break;
  }
}

void TrafficModel::Clear() {
  beginResetModel();
  log_.Clear();
  endResetModel();
}

int TrafficModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(log_.Size());
}

int TrafficModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant TrafficModel::data(const QModelIndex& index, int role) const {
  if (role == Qt::FontRole && (index.column() == Readable || index.column() == Hex)) {
    return WireFont();
  }
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
  const TrafficEntry& entry = Entry(index.row());
  switch (index.column()) {
    case Time:
      return Text(ClockText(entry.timeOfDay));
    case Way:
      return Text(DirectionText(entry.direction));
    case Readable:
      return Text(ReadableText(entry.characters));
    case Hex:
      return Text(HexText(entry.characters));
    default:
      return Text(entry.meaning);
  }
}

QVariant TrafficModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
  const QStringList titles{tr("Zeit"), tr("Richtung"), tr("Zeichen"), tr("Hexadezimal"),
                           tr("Bedeutung")};
  return titles.value(section);
}

void TrafficFilter::SetFilter(const QString& text, int direction) {
  text_ = text;
  direction_ = direction;
  invalidateFilter();
}

bool TrafficFilter::filterAcceptsRow(int row, const QModelIndex& parent) const {
  const auto& model = static_cast<const TrafficModel&>(*sourceModel());
  if (direction_ >= 0 && static_cast<int>(model.Entry(row).direction) != direction_) return false;
  if (text_.isEmpty()) return true;
  for (int column = TrafficModel::Readable; column < TrafficModel::ColumnCount; ++column) {
    const QString cell = model.index(row, column, parent).data().toString();
    if (cell.contains(text_, Qt::CaseInsensitive)) return true;
  }
  return false;
}

TrafficView::TrafficView(LineWatch& line, Operator& person, QWidget* parent)
    : QWidget(parent, Qt::Window), person_(person) {
  line.FollowTraffic([this](Direction way, std::string_view text) {
    if (listening_) Add(way, text);
  });
  Named(this, "frmDatenverkehr");
  setWindowTitle(tr("Datenverkehr"));
  filter_.setSourceModel(&model_);
  ctlVerkehr = Named(new QTableView, "ctlVerkehr");
  ctlVerkehr->setModel(&filter_);
  ctlVerkehr->setSelectionBehavior(QAbstractItemView::SelectRows);
  ctlVerkehr->setWordWrap(false);
  ctlVerkehr->setTabKeyNavigation(false);
  ctlVerkehr->setAccessibleName(tr("Datenverkehr"));
  ctlVerkehr->verticalHeader()->hide();
  ctlVerkehr->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() * 3 / 2);
  const int em = fontMetrics().averageCharWidth();
  for (const auto& [column, widths] : {std::pair{TrafficModel::Time, 18},
                                       {TrafficModel::Way, 20},
                                       {TrafficModel::Readable, 40},
                                       {TrafficModel::Hex, 40}}) {
    ctlVerkehr->setColumnWidth(column, em * widths);
  }
  ctlVerkehr->horizontalHeader()->setStretchLastSection(true);
  auto* page = new QVBoxLayout(this);
  page->addWidget(MakeControls());
  page->addWidget(ctlVerkehr, 1);
  page->addWidget(lblVerkehr);
  resize(em * 150, fontMetrics().lineSpacing() * 26);
}

QWidget* TrafficView::MakeControls() {
  auto* bar = new QWidget;
  auto* row = new QHBoxLayout(bar);
  row->setContentsMargins(0, 0, 0, 0);
  txtVerkehrFilter = Named(new QLineEdit, "txtVerkehrFilter");
  txtVerkehrFilter->setClearButtonEnabled(true);
  cboVerkehrRichtung = Named(new QComboBox, "cboVerkehrRichtung");
  cboVerkehrRichtung->addItem(tr("beide Richtungen"), -1);
  for (const Direction way : {Direction::ToTerminal, Direction::FromTerminal}) {
    cboVerkehrRichtung->addItem(Text(DirectionText(way)), static_cast<int>(way));
  }
  cmdVerkehrPause = MakeButton("cmdVerkehrPause", tr("&Pause"));
  cmdVerkehrPause->setCheckable(true);
  auto* copy = MakeButton("cmdVerkehrKopieren", tr("&Kopieren"),
                          tr("Kopiert die gewählten Zeilen, sonst alle (Strg+C)."));
  auto* save = MakeButton("cmdVerkehrSpeichern", tr("&Speichern …"));
  auto* clear = MakeButton("cmdVerkehrLeeren", tr("&Leeren"));
  lblVerkehr = Named(new QLabel, "lblVerkehr");
  row->addWidget(LabelFor(txtVerkehrFilter, tr("&Filter:")));
  row->addWidget(txtVerkehrFilter, 1);
  row->addWidget(LabelFor(cboVerkehrRichtung, tr("&Richtung:")));
  row->addWidget(cboVerkehrRichtung);
  for (QWidget* button : {cmdVerkehrPause, copy, save, clear}) row->addWidget(button);

  const auto filter = [this] {
    filter_.SetFilter(txtVerkehrFilter->text(), cboVerkehrRichtung->currentData().toInt());
    ShowState();
  };
  connect(txtVerkehrFilter, &QLineEdit::textChanged, this, filter);
  connect(cboVerkehrRichtung, &QComboBox::currentIndexChanged, this, filter);
  connect(cmdVerkehrPause, &QPushButton::toggled, this, [this](bool on) { Listen(!on); });
  OnClick(copy, this, person_, &TrafficView::cmdVerkehrKopieren_Click);
  OnClick(save, this, person_, &TrafficView::cmdVerkehrSpeichern_Click);
  OnClick(clear, this, person_, &TrafficView::cmdVerkehrLeeren_Click);
  connect(new QShortcut(QKeySequence::Copy, ctlVerkehr), &QShortcut::activated, copy,
          &QPushButton::click);
  return bar;
}

void TrafficView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Listen(!cmdVerkehrPause->isChecked());
}

void TrafficView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  Listen(false);
}

void TrafficView::Listen(bool on) {
  listening_ = on && isVisible();
  ShowState();
}

void TrafficView::Add(Direction direction, std::string_view characters) {
  const QScrollBar* bar = ctlVerkehr->verticalScrollBar();
  const bool atEnd = bar->value() == bar->maximum();
  model_.Add(direction, characters);
  ShowState();
  if (atEnd) ctlVerkehr->scrollToBottom();
}

void TrafficView::ShowState() {
  lblVerkehr->setText(tr("%1 von %2 Einträgen%3")
                          .arg(filter_.rowCount())
                          .arg(model_.rowCount())
                          .arg(cmdVerkehrPause->isChecked() ? tr(" – Pause") : QString()));
}

std::string TrafficView::Lines(bool selectedOnly) const {
  std::string lines;
  const QItemSelectionModel* selection = ctlVerkehr->selectionModel();
  for (int row = 0; row < filter_.rowCount(); ++row) {
    if (selectedOnly && !selection->isRowSelected(row, {})) continue;
    lines += TrafficLine(model_.Entry(filter_.mapToSource(filter_.index(row, 0)).row())) + '\n';
  }
  return lines;
}

void TrafficView::cmdVerkehrKopieren_Click() {
  QApplication::clipboard()->setText(Text(Lines(ctlVerkehr->selectionModel()->hasSelection())));
}

void TrafficView::cmdVerkehrSpeichern_Click() {
  const std::string lines = Lines(false);
  const auto name = person_.SaveFile("Datenverkehr speichern", "Text (txt) |*.txt");
  if (!name) return;
  const auto reason = WriteFile(*name, lines);
  if (!reason) return;
  person_.Message("Die Datei \"" + *name + "\" wurde nicht geschrieben: " + *reason,
                  Icon::Exclamation);
}

void TrafficView::cmdVerkehrLeeren_Click() {
  model_.Clear();
  ShowState();
}

}  // namespace kelvo
