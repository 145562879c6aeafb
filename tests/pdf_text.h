#pragma once

#include <QProcess>
#include <QString>
#include <string>

namespace kelvo {

/// What a reader of a PDF file finds in it, in the order in which it was drawn.
inline QString TextInPdf(const std::string& path) {
  QProcess reader;
  reader.start(QStringLiteral("pdftotext"),
               {QStringLiteral("-raw"), QStringLiteral("-enc"), QStringLiteral("UTF-8"),
                QString::fromStdString(path), QStringLiteral("-")});
  if (!reader.waitForFinished(-1) || reader.exitCode() != 0) return QStringLiteral("no text");
  return QString::fromUtf8(reader.readAllStandardOutput());
}

}  // namespace kelvo
