#pragma once

#include <QString>

class QWidget;

namespace kelvo {

/// The chapter of the manual, a file's name such as "hilfe.html", about a window of its own, found
/// by its name or its kind; empty for one that has none, such as the main window.
QString ChapterOf(const QWidget& window);

/// The same for what a widget stands in, a dock or a window.
QString ChapterAt(const QWidget& widget);

/// What a message, question or input box says, its title included; empty for other windows.
QString MessageOf(const QWidget& window);

}  // namespace kelvo
