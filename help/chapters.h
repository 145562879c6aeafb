#pragma once

#include <QString>

class QWidget;

namespace kelvo {

/// The chapter of the manual, a file's name such as "hilfe.html", about a window of its own, found
/// by its name or its kind; empty for one that has none, such as the main window.
QString ChapterOf(const QWidget& window);

/// What a message, question or input box says, its title included; empty for other windows.
QString MessageOf(const QWidget& window);

}  // namespace kelvo
