#pragma once

#include <QString>
#include <string_view>

namespace kelvo {

/// A UTF-8 text of the rooms without Qt, as the widgets take it.
inline QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace kelvo
