#pragma once

#include <QString>

class QWidget;

namespace kelvo {

/// The chapter of the manual, a file's name such as "hilfe.html", about a window of its own, found
/// by its name or its kind; empty for one that has none, such as the main window.
QString ChapterOf(const QWidget& window);

/// What a message, question or input box begins with, as the chapter about them has it: up to the
/// first thing that differs from box to box. Empty for other windows, and where too little is left.
QString PassageOf(const QWidget& window);

}  // namespace kelvo
