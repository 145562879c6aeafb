#include "graphics/draft.h"

#include <QFile>

#include "graphics/wmf.h"
#include "widgets/files.h"

namespace kelvo {

std::optional<std::string> Draft::Write(const std::string& bytes) const {
  return path_.empty() ? std::nullopt : WriteFile(path_, bytes);
}

std::optional<std::string> Draft::Read() const {
  if (path_.empty()) return std::nullopt;
  return ReadFile(path_, WmfLimits().fileBytes);
}

void Draft::Remove() const {
  if (!path_.empty()) QFile::remove(QString::fromStdString(path_));
}

}  // namespace kelvo
