#include "help/help_desk.h"

#include <QApplication>
#include <QFileInfo>
#include <QKeyEvent>
#include <filesystem>

#include "help/chapters.h"
#include "widgets/front.h"

namespace kelvo {
namespace {

constexpr char kBuiltInName[] = "kelvo.hlp";

}  // namespace

HelpDesk::HelpDesk(Operator& person, std::string programFolder,
                   std::function<QString()> shownChapter)
    : person_(person),
      programFolder_(std::move(programFolder)),
      shownChapter_(std::move(shownChapter)),
      file_(kBuiltInName) {
  qApp->installEventFilter(this);
}

frmHilfe* HelpDesk::Window() {
  if (window_ != nullptr || telling_) return window_.get();
  const bool absolute = file_.starts_with('/');
  const std::string path = absolute ? file_ : programFolder_ + "/" + file_;
  const QString name = FileName(path);
  if (auto file = HelpFile::Open(name)) {
    window_ = std::make_unique<frmHilfe>(std::move(file));
    Q_EMIT WindowMade(*window_);
    return window_.get();
  }
  // F1 in the message itself must not bring another one.
  telling_ = true;
  person_.Message("Die Hilfedatei \"" + path +
                      (QFileInfo::exists(name) ? "\" kann nicht gelesen werden." : "\" fehlt."),
                  Icon::Exclamation);
  telling_ = false;
  return nullptr;
}

// Where its name is no text there is a link to it that has one.
QString HelpDesk::FileName(const std::string& path) {
  const QString name = QString::fromStdString(path);
  if (name.toStdString() == path) return name;
  if (!link_) link_.emplace();
  const QString link = link_->filePath(QString::fromLatin1(kBuiltInName));
  std::error_code there;
  std::filesystem::create_symlink(path, link.toStdString(), there);
  return link;
}

void HelpDesk::ShowContents() {
  if (frmHilfe* const window = Window()) {
    window->ShowContents();
    Present();
  }
}

void HelpDesk::ShowIndex() {
  if (frmHilfe* const window = Window()) {
    Present();
    window->ShowIndex();
  }
}

void HelpDesk::ShowPage() { ShowChapter(shownChapter_()); }

void HelpDesk::ShowChapter(const QString& chapter, const QString& message) {
  if (frmHilfe* const window = Window()) {
    window->ShowChapter(chapter);
    if (!message.isEmpty()) window->ShowMessage(message);
    Present();
  }
}

void HelpDesk::Present() { BringToFront(*window_); }

void HelpDesk::Close() {
  if (window_ != nullptr) window_->close();
}

bool HelpDesk::eventFilter(QObject* object, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !object->isWidgetType()) return false;
  const auto& key = static_cast<const QKeyEvent&>(*event);
  if (key.key() != Qt::Key_F1 || key.modifiers() != Qt::NoModifier) return false;
  const QWidget& front = *static_cast<const QWidget*>(object)->window();
  const QString chapter = ChapterOf(front);
  ShowChapter(chapter.isEmpty() ? shownChapter_() : chapter, MessageOf(front));
  return true;
}

}  // namespace kelvo
