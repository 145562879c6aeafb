#include "inventory/equip_run.h"

#include <algorithm>

#include "bus/transfer.h"
#include "inventory/equip_target.h"
#include "link/commands.h"
#include "link/control_characters.h"
#include "terminal/eeprom.h"
#include "terminal/erase.h"

namespace kelvo {
namespace {

using What = EquipEntry::What;

// What comes back as something else, or not at all, may have been disturbed on the line.
constexpr int kAttempts = 3;

bool IsWorthAnotherTry(WriteVerdict verdict) {
  return verdict == WriteVerdict::Unproven || verdict == WriteVerdict::WrongSum ||
         verdict == WriteVerdict::UnknownCode || verdict == WriteVerdict::Silent;
}

bool IsThere(WriteVerdict verdict) {
  return verdict != WriteVerdict::NoTerminal && verdict != WriteVerdict::OtherAnswer &&
         verdict != WriteVerdict::Silent;
}

// Its command may have arrived, or only a part of it.
bool IsUncertain(const StepProgress& step) {
  if (step.state == StepProgress::State::Begun) return true;
  return step.state == StepProgress::State::Over && IsWorthAnotherTry(step.verdict);
}

}  // namespace

/// One target's turn.
class EquipRun::Visit {
 public:
  Visit(EquipRun& run, EquipLog& log, std::size_t target, const Listener& listener)
      : run_(run),
        services_(run.services_),
        log_(log),
        index_(target),
        target_(log.Job().targets[target]),
        listener_(listener) {}

  void Pay();
  bool Logged() const { return logged_; }

 private:
  const TargetProgress& Progress() const { return log_.Progress().targets[index_]; }
  bool Alive() const { return services_.exchange.Alive() && logged_; }
  bool GoesOn() const { return Alive() && !run_.stopping_; }

  bool Note(EquipEntry entry);
  bool Stop(const std::string& why);
  bool Meet();
  void CloseOpenMacro();
  bool CanSum() const;
  bool AskFreeAgain();
  bool Erase();
  bool Step(std::size_t step);
  bool HasRoom(std::size_t step) const;
  bool Attempt(std::size_t step);
  WriteResult Write(std::size_t step);
  std::optional<WriteResult> WriteSettings();

  EquipRun& run_;
  Services& services_;
  EquipLog& log_;
  const std::size_t index_;
  const EquipTarget& target_;
  const Listener& listener_;
  double version_ = 0;
  bool logged_ = true;
};

EquipRun::End EquipRun::Run(EquipLog& log, const Listener& listener) {
  stopping_ = false;
  bool logged = true;
  for (std::size_t i = 0; i < log.Job().targets.size(); ++i) {
    services_.loop.ProcessPending();  // a wish to stop
    if (!services_.exchange.Alive() || stopping_ || !logged) break;
    if (log.Progress().targets[i].Done()) continue;
    Visit visit(*this, log, i, listener);
    visit.Pay();
    logged = visit.Logged();
  }
  if (!logged) return End::NotLogged;
  if (!services_.exchange.Alive()) return End::LineLost;
  return stopping_ ? End::Stopped : End::Complete;
}

bool EquipRun::Visit::Note(EquipEntry entry) {
  entry.target = index_;
  entry.time = services_.loop.WallClock();
  logged_ = log_.Add(entry) && logged_;
  listener_(entry);
  return logged_;
}

// Always false: it is not the turn of this target any more.
bool EquipRun::Visit::Stop(const std::string& why) {
  if (Alive()) Note({.what = What::Stopped, .text = why});
  return false;
}

void EquipRun::Visit::Pay() {
  if (!Progress().stopped.empty() || Progress().Touched()) Note({.what = What::Resumed});
  if (!Meet() || !Erase()) return;
  for (std::size_t step = 0; step < Progress().steps.size(); ++step) {
    services_.loop.ProcessPending();
    if (!GoesOn()) return;
    if (!Progress().steps[step].Done() && !Step(step)) return;
  }
  AskFreeAgain();
}

// A Terminal that has not got the end of a macro takes all that follows for its text.
void EquipRun::Visit::CloseOpenMacro() {
  const auto& items = log_.Job().equipment.items;
  for (std::size_t step = 0; step < items.size(); ++step) {
    if (items[step].key.kind != ItemKind::Macro) continue;
    if (!IsUncertain(Progress().steps[step])) continue;
    services_.exchange.SendString(std::string_view(&kEtx, 1));
    services_.exchange.WaitAnswer({});
    return;
  }
}

// That it is the Terminal that was meant, and holds what it should.
bool EquipRun::Visit::Meet() {
  CloseOpenMacro();
  const TargetReading reading = AskTarget(services_.exchange, services_.state, target_.id.address);
  if (!reading.Complete()) return Stop(reading.problem);
  if (const auto& before = Progress().version; before && *before != reading.version) {
    return Stop("Es ist nicht mehr dasselbe Terminal: Version " + reading.version + " statt " +
                *before + ".");
  }
  version_ = reading.versionNumber;
  const auto before = Progress().freeBytes;
  const bool lessThere = Progress().Touched() && before && reading.freeBytes > *before;
  return Note({.what = What::Version, .text = reading.version}) &&
         Note({.what = What::FreeBytes, .bytes = reading.freeBytes}) &&
         (!lessThere || Note({.what = What::Anew}));
}

bool EquipRun::Visit::CanSum() const {
  return target_.checksum.value_or(version_ >= services_.sumsFrom);
}

bool EquipRun::Visit::AskFreeAgain() {
  const auto bytes = AskFreeBytesOf(services_.exchange, services_.state);
  if (!bytes) return Stop("Es hat seinen freien Platz nicht genannt.");
  return Note({.what = What::FreeBytes, .bytes = *bytes});
}

// Once, before anything is written: what has been written since must not go again.
bool EquipRun::Visit::Erase() {
  if (!log_.Job().erase || Progress().erase == TargetProgress::Erase::Done) return GoesOn();
  if (!GoesOn() || !Note({.what = What::EraseBegun})) return false;
  const bool erased =
      CountsWhileErasing(version_, services_.countsFrom)
          ? EraseCountingPatiently(services_.exchange, [this](int, int) { return GoesOn(); })
          : !ErasePlain(services_.exchange).Failed();
  if (!Alive()) return false;
  if (erased) return Note({.what = What::Erased}) && AskFreeAgain();
  Note({.what = What::EraseFailed});
  return Stop("Das Löschen wurde nicht bestätigt.");
}

bool EquipRun::Visit::Step(std::size_t step) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    if (!GoesOn()) return false;
    if (attempt > 0) CloseOpenMacro();
    if (!AskFreeAgain()) return false;
    if (!HasRoom(step)) return Note({.what = What::NoRoom, .step = step});
    if (!Attempt(step)) return false;
    if (!IsWorthAnotherTry(Progress().steps[step].verdict)) break;
  }
  const StepProgress& done = Progress().steps[step];
  if (done.state != StepProgress::State::Over) return false;
  return IsThere(done.verdict) || Stop("Es antwortet nicht mehr: " + done.detail + ".");
}

// What was begun before may lie there already and is then replaced.
bool EquipRun::Visit::HasRoom(std::size_t step) const {
  const auto& items = log_.Job().equipment.items;
  if (step >= items.size()) return true;
  const std::int64_t now = *Progress().freeBytes;
  const std::int64_t room = std::max(now, Progress().steps[step].freeBefore.value_or(now));
  return static_cast<std::int64_t>(LeastBytes(items[step])) <= room - kEepromReserve;
}

// False when the line was lost in it: what came of it is not known then.
bool EquipRun::Visit::Attempt(std::size_t step) {
  if (!Note({.what = What::Begun, .step = step})) return false;
  const WriteResult result = Write(step);
  if (result.verdict == WriteVerdict::LineLost || !services_.exchange.Alive()) return false;
  return Note(
      {.what = What::Result, .step = step, .verdict = result.verdict, .text = result.detail});
}

WriteResult EquipRun::Visit::Write(std::size_t step) {
  const auto& items = log_.Job().equipment.items;
  const int address = target_.id.address;
  ProvenWrite writer(services_.exchange, services_.loop);
  if (step < items.size()) {
    const Sending made(services_.exchange, {items[step].name, RecordTyp(items[step].key.kind)});
    return writer.Write(address, CanSum(), items[step]);
  }
  if (auto failure = WriteSettings()) return *std::move(failure);
  return writer.Write(address, CanSum(), *ItemOf(WriteConfig().Text()));
}

// The settings that the configuration then keeps; nothing when they have arrived, as far as that
// can be told.
std::optional<WriteResult> EquipRun::Visit::WriteSettings() {
  Exchange& exchange = services_.exchange;
  const std::string& settings = log_.Job().equipment.settings;
  if (CanSum()) exchange.SendString(ResetChecksum());
  exchange.SendString(settings);
  if (!CanSum()) return std::nullopt;
  const Reply reply = exchange.SendQuery(AskChecksum());
  const bool right = !reply.Failed() && ReadChecksum(reply.text) == ExpectedChecksum(settings);
  if (right) return std::nullopt;
  if (!exchange.Alive()) return WriteResult{WriteVerdict::LineLost, reply};
  const bool other = !reply.Failed() && ReadChecksum(reply.text);
  return WriteResult{other ? WriteVerdict::WrongSum : WriteVerdict::Unproven, reply,
                     "die Einstellungen sind nicht geprüft", true};
}

}  // namespace kelvo
