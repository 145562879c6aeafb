#include "widgets/files.h"

#include <QFile>
#include <QSaveFile>

namespace kelvo {

std::optional<std::string> ReadFile(const std::string& path, std::size_t limit) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly) || file.size() > static_cast<qint64>(limit)) {
    return std::nullopt;
  }
  return file.readAll().toStdString();
}

std::optional<std::string> WriteFile(const std::string& path, const std::string& bytes) {
  QSaveFile file(QString::fromStdString(path));
  const auto size = static_cast<qint64>(bytes.size());
  // A short text waits in the device's buffer, and commit() does not look whether it gets out.
  if (file.open(QIODevice::WriteOnly) && file.write(bytes.data(), size) == size && file.flush() &&
      file.commit()) {
    return std::nullopt;
  }
  return file.errorString().toStdString();
}

}  // namespace kelvo
