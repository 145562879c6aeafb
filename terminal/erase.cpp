#include "terminal/erase.h"

#include <algorithm>

#include "base/val.h"
#include "link/control_characters.h"
#include "link/intervals.h"

namespace kelvo {
namespace {

constexpr std::chrono::milliseconds kEraseInterval{30000};

// Whether it was waited for to its end, or to the end of what came.
bool CountDown(Exchange& exchange, const EraseProgress& progress) {
  const std::string_view countEnd(&kCarriageReturn, 1);
  exchange.SendString(EraseEEpromCounting());
  double count = exchange.WaitAnswer(countEnd).Number();
  const int blocks = std::max(RoundToEven(count), 1);
  bool goesOn = progress(0, blocks);
  while (goesOn && count > 0) {
    count = exchange.WaitAnswer(countEnd).Number();
    goesOn = progress(RoundToEven(blocks - count), blocks);
  }
  return goesOn;
}

}  // namespace

Reply ErasePlain(Exchange& exchange) { return exchange.SendString(EraseEEprom(), kEraseInterval); }

bool EraseCounting(Exchange& exchange, const EraseProgress& progress) {
  return CountDown(exchange, progress) &&
         exchange.WaitAnswer({}).text.find(kAck) != std::string::npos;
}

bool EraseCountingPatiently(Exchange& exchange, const EraseProgress& progress) {
  exchange.SetInterval(kProvenWriteInterval);
  const bool acknowledged =
      CountDown(exchange, progress) && !exchange.WaitAnswer(std::string_view(&kAck, 1)).Failed();
  exchange.SetInterval(kUsualInterval);
  return acknowledged;
}

}  // namespace kelvo
