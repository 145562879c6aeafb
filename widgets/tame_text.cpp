#include "widgets/tame_text.h"

#include <algorithm>

namespace kelvo {
namespace {

constexpr qsizetype kLongestWord = 200;

bool IsBetween(QChar sign, char16_t first, char16_t last) { return sign >= first && sign <= last; }

bool IsWild(QChar sign) {
  if (sign < u' ') return sign != u'\n' && sign != u'\t';
  return IsBetween(sign, 0x7F, 0x9F) || sign == u'\u061C' || IsBetween(sign, 0x200B, 0x200F) ||
         IsBetween(sign, 0x2028, 0x202E) || IsBetween(sign, 0x2060, 0x2069) || sign == u'\uFEFF';
}

// The last sign of a pair stays with its first.
void CutWords(QString& text) {
  QString cut;
  qsizetype length = 0;
  for (const QChar sign : std::as_const(text)) {
    length = sign.isSpace() ? 0 : length + 1;
    if (length <= kLongestWord || (length == kLongestWord + 1 && sign.isLowSurrogate())) {
      cut += sign;
    } else if (!cut.endsWith(u'…')) {
      cut += u'…';
    }
  }
  text = cut;
}

}  // namespace

QString Tamed(const QString& text) {
  QString tame = text;
  if (std::any_of(text.begin(), text.end(), IsWild)) {
    std::replace_if(tame.begin(), tame.end(), IsWild, QChar(QChar::ReplacementCharacter));
  }
  if (tame.size() > kLongestWord) CutWords(tame);
  return tame;
}

QString TameDelegate::displayText(const QVariant& value, const QLocale& locale) const {
  return Tamed(QStyledItemDelegate::displayText(value, locale));
}

}  // namespace kelvo
