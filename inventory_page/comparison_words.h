#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "inventory/comparison.h"

namespace kelvo {

/// How many differences there are, and what of them can be written.
QString DifferenceWords(const std::vector<ComparisonRow>& rows);

/// Whom a reading of `asked` has reached, and whom not: "2 Terminals gelesen, 1 ohne Antwort (Pult,
/// Adresse 7), 1 nicht gefragt (Adresse 9); die Verbindung ging dabei verloren."
QString ReadWords(const ReadRun::Result& result, const std::vector<int>& asked,
                  const std::function<QString(int address)>& nameOf);

}  // namespace kelvo
