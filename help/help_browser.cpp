#include "help/help_browser.h"

#include <QImage>
#include <QScrollBar>

#include "help/help_file.h"
#include "help/message_row.h"

namespace kelvo {
namespace {

constexpr int kMargin = 12;  // around a page, pixels

}  // namespace

HelpBrowser::HelpBrowser(const HelpFile& file, QWidget* parent)
    : QTextBrowser(parent), file_(file) {
  setOpenExternalLinks(false);
  document()->setDocumentMargin(kMargin);
  refit_.setSingleShot(true);
  connect(&refit_, &QTimer::timeout, this, [this] {
    const int place = verticalScrollBar()->value();
    reload();
    verticalScrollBar()->setValue(place);
    MarkMessage();
  });
  connect(verticalScrollBar(), &QAbstractSlider::actionTriggered, this,
          [this] { message_.clear(); });
}

void HelpBrowser::ShowMessage(const QString& message) {
  message_ = message;
  messagePage_ = source();
  MarkMessage();
}

void HelpBrowser::MarkMessage() {
  if (message_.isEmpty() || source() != messagePage_) return;
  const QTextCursor row = RowOfMessage(*document(), message_);
  if (!row.hasSelection()) return;
  setTextCursor(row);
  QTextCursor start(row);
  start.setPosition(row.selectionStart());
  QScrollBar* const bar = verticalScrollBar();
  bar->setValue(bar->value() + cursorRect(start).top() - viewport()->height() / 4);
}

QVariant HelpBrowser::loadResource(int type, const QUrl& name) {
  const QUrl address = source().resolved(name);
  if (type == QTextDocument::HtmlResource) fittedTo_ = 0;
  const QByteArray bytes = file_.Data(address);
  return type == QTextDocument::ImageResource ? Fitted(bytes) : QVariant(bytes);
}

QVariant HelpBrowser::Fitted(const QByteArray& bytes) {
  const QImage picture = QImage::fromData(bytes);
  if (picture.width() <= Room()) return picture;
  fittedTo_ = Room();
  return picture.scaledToWidth(Room(), Qt::SmoothTransformation);
}

// Without the scroll bar, whether it is there yet or not.
int HelpBrowser::Room() const {
  const int edges = 2 * (kMargin + frameWidth());
  return std::max(width() - verticalScrollBar()->sizeHint().width() - edges, 100);
}

void HelpBrowser::resizeEvent(QResizeEvent* event) {
  QTextBrowser::resizeEvent(event);
  MarkMessage();
  if (fittedTo_ != 0 && fittedTo_ != Room()) refit_.start(0);
}

}  // namespace kelvo
