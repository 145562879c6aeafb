#pragma once

#include <QColor>
#include <QPalette>

class QWidget;

namespace kelvo {

/// How well a colour is told from the ground that it stands on: 1 (not at all) to 21.
double Contrast(const QColor& colour, const QColor& ground);

bool IsDark(const QColor& ground);

/// The colour itself, or where it could not be read on a dark ground a lighter shade of it.
QColor ReadableOn(const QColor& ground, const QColor& colour);

/// The colour of what matters less than a text: as faint as it can be and still be read on the
/// palette's base.
QColor FaintText(const QPalette& palette);

/// Lets the words in an empty field be read on every desktop.
void KeepPlaceholderReadable(QWidget* field);

}  // namespace kelvo
