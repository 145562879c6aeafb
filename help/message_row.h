#pragma once

#include <QTextCursor>

class QTextDocument;

namespace kelvo {

/// The row of the chapter about messages that explains the message a box shows, its first cell
/// selected. Names, numbers and reasons in a message may differ from those of its row. Without a
/// selection when no row is like it.
QTextCursor RowOfMessage(QTextDocument& chapter, const QString& message);
/// The row whose first cell holds the anchor, that cell selected; without a selection when none
/// does.
QTextCursor RowOfAnchor(QTextDocument& chapter, const QString& anchor);

}  // namespace kelvo
