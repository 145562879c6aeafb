#pragma once

#include <QString>

#include "link/tabs.h"

class QWidget;

namespace kelvo {

/// The chapter of the manual, a file's name such as "status.html", that tells of a page of the main
/// window.
QString ChapterOf(Tab tab);
/// The chapter about a window of its own, found by its name or its kind; empty for one that has
/// none, such as the main window.
QString ChapterOf(const QWidget& window);

}  // namespace kelvo
