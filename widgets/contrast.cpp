#include "widgets/contrast.h"

#include <QEvent>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

constexpr double kReadable = 4.5;
constexpr double kColoured = 7.0;  // of thin letters in a colour on a dark ground
constexpr int kDark = 128;         // lightness
constexpr int kSteps = 20;

double Linear(double part) {
  return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
  return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) +
         0.0722 * Linear(colour.blueF());
}

// `share` of the colour over the ground.
QColor Mixed(const QColor& colour, const QColor& ground, float share) {
  const auto mix = [share](float over, float under) { return under + share * (over - under); };
  return QColor::fromRgbF(mix(colour.redF(), ground.redF()), mix(colour.greenF(), ground.greenF()),
                          mix(colour.blueF(), ground.blueF()));
}

class PlaceholderKeeper : public QObject {
 public:
  explicit PlaceholderKeeper(QWidget* field) : QObject(field), field_(*field) {
    field->installEventFilter(this);
    Keep();
  }

 private:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::PaletteChange) Keep();
    return false;
  }
  void Keep() {
    QPalette palette = field_.palette();
    const QColor faint = FaintText(palette);
    if (palette.color(QPalette::PlaceholderText) == faint) return;
    palette.setColor(QPalette::PlaceholderText, faint);
    field_.setPalette(palette);
  }

  QWidget& field_;
};

}  // namespace

double Contrast(const QColor& colour, const QColor& ground) {
  const double one = Luminance(colour);
  const double other = Luminance(ground);
  return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

bool IsDark(const QColor& ground) { return ground.lightness() < kDark; }

QColor ReadableOn(const QColor& ground, const QColor& colour) {
  if (!IsDark(ground)) return colour;
  for (int step = kSteps; step > 0; --step) {
    const QColor mixed = Mixed(colour, Qt::white, static_cast<float>(step) / kSteps);
    if (Contrast(mixed, ground) >= kColoured) return mixed;
  }
  return Qt::white;
}

QColor FaintText(const QPalette& palette) {
  const QColor base = palette.color(QPalette::Base);
  const QColor text = palette.color(QPalette::Text);
  for (int step = kSteps / 2; step < kSteps; ++step) {
    const QColor mixed = Mixed(text, base, static_cast<float>(step) / kSteps);
    if (Contrast(mixed, base) >= kReadable) return mixed;
  }
  return text;
}

void KeepPlaceholderReadable(QWidget* field) { new PlaceholderKeeper(field); }

}  // namespace kelvo
