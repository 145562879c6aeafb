#include "widgets/indicator_style.h"

#include <QStyleOption>

#include "widgets/contrast.h"

namespace kelvo {
namespace {

constexpr int kDisabledEdge = 125;  // percent of what is faint

}  // namespace

// Their edge is a darker shade of the window's colour, whatever the ground is.
void IndicatorStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                   QPainter* painter, const QWidget* widget) const {
  const bool indicator = element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton;
  const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option);
  if (!indicator || button == nullptr || !IsDark(option->palette.color(QPalette::Window))) {
    return QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
  QStyleOptionButton seen(*button);
  QPalette usual = seen.palette;
  usual.setCurrentColorGroup(QPalette::Active);
  const QColor edge = FaintText(usual);
  seen.palette.setColor(QPalette::Window, (seen.state & State_Enabled) != 0
                                              ? edge.lighter()
                                              : edge.lighter(kDisabledEdge));
  QProxyStyle::drawPrimitive(element, &seen, painter, widget);
}

}  // namespace kelvo
