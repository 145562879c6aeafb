#include "inventory_page/comparison_words.h"

#include <QCoreApplication>
#include <QStringList>
#include <algorithm>
#include <iterator>

#include "widgets/texts.h"

namespace kelvo {
namespace {

constexpr qsizetype kMostNames = 4;

QString tr(const char* text) { return QCoreApplication::translate("Comparison", text); }

template <typename Test>
int Count(const std::vector<ComparisonRow>& rows, Test test) {
  return static_cast<int>(std::count_if(rows.begin(), rows.end(), test));
}

QString Counted(int count, const QString& one, const QString& many) {
  return count == 1 ? one : many.arg(count);
}

// What has changed is ticked in the dialog that writes, what is missing only stands there.
QStringList Offers(const std::vector<ComparisonRow>& rows) {
  const int changed = Count(rows, [](const auto& row) { return row.order.has_value(); });
  const int missing =
      Count(rows, [](const auto& row) { return row.offer && row.compared == Compared::Different; });
  const int perhaps =
      Count(rows, [](const auto& row) { return row.offer && row.compared != Compared::Different; });
  QStringList offers;
  if (changed > 0) {
    offers << Counted(changed, tr("1 geänderten Satz (angekreuzt)"),
                      tr("%1 geänderte Sätze (angekreuzt)"));
  }
  if (missing > 0) {
    offers << Counted(missing, tr("1 fehlenden Satz"), tr("%1 fehlende Sätze"));
  }
  if (perhaps > 0) {
    offers << Counted(perhaps, tr("1 vielleicht fehlenden Satz"),
                      tr("%1 vielleicht fehlende Sätze"));
  }
  return offers;
}

QString Names(const std::vector<int>& addresses, const std::function<QString(int)>& nameOf) {
  QStringList names;
  for (const int address : addresses) names << nameOf(address);
  const qsizetype more = names.size() - kMostNames;
  if (more <= 1) return names.join(QStringLiteral("; "));
  return tr("%1 und %2 weitere").arg(names.first(kMostNames).join(QStringLiteral("; "))).arg(more);
}

bool Has(const std::vector<int>& addresses, int address) {
  return std::find(addresses.begin(), addresses.end(), address) != addresses.end();
}

std::vector<int> NotAsked(const ReadRun::Result& result, const std::vector<int>& asked) {
  std::vector<int> left;
  std::copy_if(asked.begin(), asked.end(), std::back_inserter(left), [&result](int address) {
    return !Has(result.answered, address) && !Has(result.partly, address) &&
           !Has(result.silent, address);
  });
  return left;
}

}  // namespace

QString DifferenceWords(const std::vector<ComparisonRow>& rows) {
  const int different =
      Count(rows, [](const auto& row) { return row.compared == Compared::Different; });
  const bool anyRead = Count(rows, [](const auto& row) { return row.readAt.has_value(); }) > 0;
  const QStringList offers = Offers(rows);
  const int uncertain = Count(rows, [](const auto& row) { return row.uncertain; });
  const QString found = different > 0
                            ? Counted(different, tr("1 Unterschied"), tr("%1 Unterschiede"))
                        : anyRead ? tr("Kein Unterschied bekannt")
                                  : tr("Nichts gelesen, kein Unterschied bekannt");
  const QString words =
      found + (uncertain > 0 ? tr(", %1 ungewiss.").arg(uncertain) : QStringLiteral("."));
  if (!offers.isEmpty()) {
    return words + tr(" „Geändertes schreiben …“ bietet an: %1.").arg(offers.join(tr(", ")));
  }
  return different > 0 ? words + tr(" Durch Schreiben lässt sich daran nichts ändern.") : words;
}

QString ReadWords(const ReadRun::Result& result, const std::vector<int>& asked,
                  const std::function<QString(int address)>& nameOf) {
  const auto count = static_cast<int>(result.answered.size());
  const QString none =
      result.partly.empty() ? tr("Kein Terminal gelesen") : tr("Kein Terminal ganz gelesen");
  QString text =
      count == 0 ? none : Counted(count, tr("1 Terminal gelesen"), tr("%1 Terminals gelesen"));
  const auto add = [&](const QString& words, const std::vector<int>& some) {
    if (!some.empty()) text += words.arg(some.size()).arg(Names(some, nameOf));
  };
  add(tr(", %1 nur zum Teil (%2)"), result.partly);
  add(tr(", %1 ohne Antwort (%2)"), result.silent);
  add(tr(", %1 nicht gefragt (%2)"), NotAsked(result, asked));
  text += result.complete ? tr(".")
          : result.lost   ? tr("; die Verbindung ging dabei verloren.")
                          : tr("; abgebrochen.");
  if (!result.notKept) return text;
  return text +
         tr(" Die Antworten konnten nicht aufbewahrt werden: %1.").arg(Text(*result.notKept));
}

}  // namespace kelvo
