#include "simulator/line_label.h"

namespace kelvo::sim {

LineLabel::LineLabel(Station& station, const std::string& portPath)
    : station_(station), final_(!portPath.empty()) {
  setObjectName(QStringLiteral("lblPort"));
  setTextInteractionFlags(Qt::TextSelectableByMouse);
  setWordWrap(true);
  setText(final_ ? tr("Schnittstelle: %1").arg(QString::fromStdString(portPath))
                 : tr("Eine Mitschrift wird abgespielt."));
}

void LineLabel::Refresh() {
  if (final_) return;
  const std::optional<ReplayReport> report = station_.Played();
  if (!report) return;
  final_ = true;
  setText(tr("Mitschrift abgespielt. Antworten: %1, davon verschieden: %2")
              .arg(report->answers)
              .arg(report->differences.size()));
}

}  // namespace kelvo::sim
