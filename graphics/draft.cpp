#include "graphics/draft.h"

#include <QFile>
#include <QSaveFile>

#include "graphics/wmf.h"

namespace kelvo {

std::optional<std::string> ReadFile(const std::string& path, std::size_t limit) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly) || file.size() > static_cast<qint64>(limit)) {
    return std::nullopt;
  }
  return file.readAll().toStdString();
}

bool WriteFile(const std::string& path, const std::string& bytes) {
  QSaveFile file(QString::fromStdString(path));
  const auto size = static_cast<qint64>(bytes.size());
  return file.open(QIODevice::WriteOnly) && file.write(bytes.data(), size) == size && file.commit();
}

bool Draft::Write(const std::string& bytes) const {
  return !path_.empty() && WriteFile(path_, bytes);
}

std::optional<std::string> Draft::Read() const {
  if (path_.empty()) return std::nullopt;
  return ReadFile(path_, WmfLimits().fileBytes);
}

void Draft::Remove() const {
  if (!path_.empty()) QFile::remove(QString::fromStdString(path_));
}

}  // namespace kelvo
