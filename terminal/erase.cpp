#include "terminal/erase.h"

#include <algorithm>

#include "base/val.h"
#include "link/control_characters.h"

namespace kelvo {
namespace {

constexpr std::chrono::milliseconds kEraseInterval{30000};

}  // namespace

Reply ErasePlain(Exchange& exchange) { return exchange.SendString(EraseEEprom(), kEraseInterval); }

bool EraseCounting(Exchange& exchange, const EraseProgress& progress) {
  const std::string_view countEnd(&kCarriageReturn, 1);
  exchange.SendString(EraseEEpromCounting());
  double count = exchange.WaitAnswer(countEnd).Number();
  const int blocks = std::max(RoundToEven(count), 1);
  bool goesOn = progress(0, blocks);
  while (goesOn && count > 0) {
    count = exchange.WaitAnswer(countEnd).Number();
    goesOn = progress(RoundToEven(blocks - count), blocks);
  }
  if (!goesOn) return false;
  return exchange.WaitAnswer({}).text.find(kAck) != std::string::npos;
}

}  // namespace kelvo
