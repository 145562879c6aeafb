#include "help/help_file.h"

namespace kelvo {
namespace {

// As in handbuch/kelvo.qhp.
constexpr char kManualNamespace[] = "kelvo.handbuch";
constexpr char kManualFolder[] = "handbuch";

}  // namespace

HelpFile::HelpFile() : engine_(folder_.filePath(QStringLiteral("hilfe.qhc"))) {
  engine_.setReadOnly(false);
}

std::unique_ptr<HelpFile> HelpFile::Open(const QString& path) {
  if (QHelpEngineCore::namespaceName(path) != QLatin1String(kManualNamespace)) return nullptr;
  std::unique_ptr<HelpFile> file(new HelpFile);
  const bool opened = file->engine_.setupData() && file->engine_.registerDocumentation(path);
  if (!opened || file->Page(QStringLiteral("index.html")).isEmpty()) return nullptr;
  return file;
}

QUrl HelpFile::Page(const QString& chapter) const {
  QUrl address;
  address.setScheme(QStringLiteral("qthelp"));
  address.setHost(QLatin1String(kManualNamespace));
  address.setPath(
      QStringLiteral("/%1/%2").arg(QLatin1String(kManualFolder), chapter.section(u'#', 0, 0)));
  QUrl found = engine_.findFile(address);
  if (!found.isEmpty() && chapter.contains(u'#')) found.setFragment(chapter.section(u'#', 1));
  return found;
}

}  // namespace kelvo
