#pragma once

#include <QProxyStyle>

namespace kelvo {

/// The desktop's style with check boxes and radio buttons that can be seen on a dark ground, too.
class IndicatorStyle : public QProxyStyle {
 public:
  using QProxyStyle::QProxyStyle;

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace kelvo
