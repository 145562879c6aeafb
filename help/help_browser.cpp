#include "help/help_browser.h"

#include <QImage>
#include <QScrollBar>
#include <utility>

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
    MarkRow();
  });
  connect(verticalScrollBar(), &QAbstractSlider::actionTriggered, this,
          [this] { findRow_ = nullptr; });
}

void HelpBrowser::ShowMessage(const QString& message) {
  Mark([this, message] { return RowOfMessage(*document(), message); });
}

void HelpBrowser::ShowPlace(const QString& anchor) {
  Mark([this, anchor] { return RowOfAnchor(*document(), anchor); });
}

void HelpBrowser::Mark(std::function<QTextCursor()> findRow) {
  findRow_ = std::move(findRow);
  markedPage_ = source();
  MarkRow();
}

void HelpBrowser::MarkRow() {
  if (!findRow_ || source() != markedPage_) return;
  const QTextCursor row = findRow_();
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
  MarkRow();
  if (fittedTo_ != 0 && fittedTo_ != Room()) refit_.start(0);
}

}  // namespace kelvo
