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

/// "16:31" in local time, with the day in front where that is not today: "22.11.2026 16:31".
inline QString MinuteText(std::chrono::system_clock::time_point time) {
  const auto moment = QDateTime::fromSecsSinceEpoch(std::chrono::system_clock::to_time_t(time));
  const bool today = moment.date() == QDate::currentDate();
  return moment.toString(today ? QStringLiteral("HH:mm") : QStringLiteral("dd.MM.yyyy HH:mm"));
}

}  // namespace kelvo
