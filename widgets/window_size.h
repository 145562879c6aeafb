#pragma once

#include <QSize>

class QDialog;
class QWidget;

namespace kelvo {

/// Gives a window the size that it would like to have, or what of it its screen has room for.
void ResizeWithinScreen(QWidget* window, QSize wanted);
/// Lets a dialog that is shown again stand where it was, as seen from its owner.
void KeepPlace(QDialog* dialog);

}  // namespace kelvo
