#pragma once

class QWidget;

namespace kelvo {

/// Shows a window that only tells something, in front of all others and usable also while a modal
/// dialog or box is open.
void BringToFront(QWidget& window);

}  // namespace kelvo
