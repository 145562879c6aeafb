#pragma once

#include <QSize>

class QWidget;

namespace kelvo {

/// Gives a window the size that it would like to have, or what of it its screen has room for.
void ResizeWithinScreen(QWidget* window, QSize wanted);

}  // namespace kelvo
