#pragma once

#include <QDateTime>
#include <QString>
#include <chrono>
#include <string_view>

namespace kelvo {

/// A UTF-8 text of the rooms without Qt, as the widgets take it.
inline QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// "16:31", in local time.
inline QString MinuteText(std::chrono::system_clock::time_point time) {
  return QDateTime::fromSecsSinceEpoch(std::chrono::system_clock::to_time_t(time))
      .toString(QStringLiteral("HH:mm"));
}

}  // namespace kelvo
