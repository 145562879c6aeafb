#include "cli/write.h"

#include <algorithm>
#include <filesystem>

#include "cli/connection.h"
#include "cli/content.h"
#include "cli/verbs.h"
#include "inventory/equip_report.h"
#include "inventory/equip_run.h"
#include "link/addresses.h"
#include "link/commands.h"

namespace kelvo::cli {
namespace {

constexpr Column kWriteColumns[] = {{"adresse", "Adresse"},  {"name", "Name"},
                                    {"fertig", "fertig"},    {"geschrieben", "geschrieben"},
                                    {"geprueft", "geprüft"}, {"posten", "von"},
                                    {"grund", "Grund"}};

constexpr char kLogName[] = "kelvo-cli-";
constexpr char kLogEnding[] = ".ausstattung";
constexpr char kNoSum[] = "nicht geprüft: das Terminal bildet keine Prüfsumme";
constexpr char kNotReached[] = "nicht an der Reihe gewesen";

bool IsProven(const StepProgress& step) {
  return step.Done() && step.verdict == WriteVerdict::Proven;
}

std::size_t CountProven(const TargetProgress& target) {
  return static_cast<std::size_t>(
      std::count_if(target.steps.begin(), target.steps.end(), IsProven));
}

bool IsUntouched(const TargetProgress& target) {
  return !target.version && target.stopped.empty() && !target.Touched();
}

// Why a Terminal does not hold all of it: what has stopped it, and each step that has failed.
std::string ReasonOf(const EquipJob& job, const TargetProgress& target, bool prove) {
  if (target.Done()) return prove && CountProven(target) < target.steps.size() ? kNoSum : "";
  if (IsUntouched(target)) return kNotReached;
  std::string why = target.stopped;
  for (std::size_t step = 0; step < target.steps.size(); ++step) {
    const StepProgress& progress = target.steps[step];
    const bool open = progress.state == StepProgress::State::Open;
    if (progress.Done() || (open && !why.empty())) continue;
    why += (why.empty() ? "" : " ") + StepText(job, step) + ": " + StepStateText(progress) + ".";
  }
  return why;
}

bool IsWell(const TargetProgress& target, bool prove) {
  return target.Done() && (!prove || CountProven(target) == target.steps.size());
}

// With it nobody is in a job who cannot prove.
bool BegunWithoutProof(const EquipJob& job) {
  return std::any_of(job.targets.begin(), job.targets.end(),
                     [](const EquipTarget& target) { return !target.checksum.value_or(true); });
}

/// A run, new or gone on with.
class Writing {
 public:
  explicit Writing(Bench& bench) : bench_(bench), line_(bench) {}
  Status Run();

 private:
  std::optional<EquipJob> NewJob();
  bool AllCanProve(const std::vector<EquipTarget>& targets);
  std::optional<EquipLog> LogOf(const std::optional<EquipJob>& job);
  EquipRun::End Write(EquipLog& log);
  void Show(const EquipJob& job, const EquipEntry& entry);
  Status End(const EquipLog& log, EquipRun::End end);
  std::string EndText(EquipRun::End end) const;
  void Say(const std::string& text) { bench_.Operator().Say(text); }

  Bench& bench_;
  Connection line_;
};

Status Writing::Run() {
  std::optional<EquipJob> job;
  if (!bench_.Asked().goOn) {
    job = NewJob();
    if (!job) return SomethingFailed;
  }
  // Behind the port, so that no two runs have one log.
  if (!line_.Open()) return SomethingFailed;
  std::optional<EquipLog> log = LogOf(job);
  if (!log) return SomethingFailed;
  return End(*log, Write(*log));
}

// As far as the list knows them: those that it says cannot are named.
bool Writing::AllCanProve(const std::vector<EquipTarget>& targets) {
  bool all = true;
  for (const EquipTarget& target : targets) {
    if (target.checksum.value_or(true)) continue;
    all = false;
    bench_.Operator().Say(
        TargetText(target) +
            ": Die Liste der Terminals sagt, dass es keine Prüfsumme bilden kann; so lässt sich "
            "nicht beweisen, was es empfängt.",
        "Kann es das doch, so ist auf der Seite Terminals „Checksum“ anzukreuzen; sonst hilft nur "
        "write ohne --prove.");
  }
  return all;
}

// Nothing where something of it cannot be written: all of that is said, and nothing sent.
std::optional<EquipJob> Writing::NewJob() {
  Contents contents = ContentsOf(bench_);
  EquipJob job;
  job.equipment = EquipmentOf(contents);
  job.targets = TargetsOf(bench_, line_.Device());
  const bool provable = !bench_.Asked().prove || AllCanProve(job.targets);
  for (EquipTarget& target : job.targets) {
    if (!bench_.Asked().prove) target.checksum = false;
  }
  for (const Fault& fault : contents.faults) Say(fault.place + ": " + fault.reason);
  for (const std::string& obstacle : Obstacles(job)) Say(obstacle);
  if (provable && contents.faults.empty() && Obstacles(job).empty()) return job;
  Say("Es wurde nichts gesendet.");
  return std::nullopt;
}

std::optional<EquipLog> Writing::LogOf(const std::optional<EquipJob>& job) {
  const std::string path = WriteLogPath(bench_.DataPath(), line_.Device());
  std::optional<EquipLog> log = EquipLog::Open(path);
  if (!job) {
    if (!log) Say("An diesem Anschluss gibt es nichts fortzusetzen.");
    if (log && bench_.Asked().prove && BegunWithoutProof(log->Job())) {
      Say("Was hier fortzusetzen ist, wurde ohne --prove begonnen und geht nur so weiter. Es wurde "
          "nichts gesendet.");
      return std::nullopt;
    }
    return log;
  }
  if (log && !log->Progress().Done()) {
    Say("Was hier begonnen und nicht zu Ende war, lässt sich nicht mehr fortsetzen.");
  }
  log = EquipLog::Create(path, *job);
  if (!log) {
    Say("Die Datei \"" + path +
        "\" kann nicht geschrieben werden. Ohne sie könnte nach einer Unterbrechung nicht "
        "fortgesetzt werden; es wird nichts gesendet.");
  }
  return log;
}

std::string Writing::EndText(EquipRun::End end) const {
  if (end == EquipRun::End::Complete) return "Nicht alles ist geschrieben.";
  return line_.Lost() ? "Abgebrochen." : "Angehalten.";
}

EquipRun::End Writing::Write(EquipLog& log) {
  const Recordset& options = bench_.Data().Optionen;
  EquipRun run({line_.exchange, bench_.World().loop, line_.terminal,
                options.Number("EEPromelegantlöschenabVer"), options.Number("ChecksumabVer")});
  line_.SetStop([&run] { run.Stop(); });
  const EquipRun::End end = run.Run(log, [&](const EquipEntry& entry) { Show(log.Job(), entry); });
  line_.SetStop({});
  if (line_.exchange.Alive()) line_.exchange.SendString(SelectAddress(kClosingAddress));
  return end;
}

void Writing::Show(const EquipJob& job, const EquipEntry& entry) {
  std::string text = std::to_string(entry.target + 1) + " von " +
                     std::to_string(job.targets.size()) + ": " +
                     TargetText(job.targets[entry.target]);
  if (entry.what == EquipEntry::What::Begun) text += ", " + StepText(job, entry.step);
  bench_.Shown().Show(text);
}

Status Writing::End(const EquipLog& log, EquipRun::End end) {
  const EquipJob& job = log.Job();
  const bool prove = bench_.Asked().prove;
  bench_.Print(WriteTable(job, log.Progress(), prove));
  line_.TellLoss();
  const auto& targets = log.Progress().targets;
  const bool well = std::all_of(targets.begin(), targets.end(),
                                [prove](const auto& target) { return IsWell(target, prove); });
  if (end == EquipRun::End::NotLogged) {
    Say("Der Stand konnte nicht mehr aufgezeichnet werden; es wurde nichts mehr gesendet.");
  }
  if (log.Progress().Done()) {
    static_cast<void>(log.Discard());  // one that says that all is done is gone on with by nobody
  } else {
    Say(EndText(end) + " \"kelvo-cli write --continue\" schreibt, was fehlt.");
  }
  return well ? AllWell : SomethingFailed;
}

}  // namespace

std::string WriteLogPath(const std::string& dataFolder, const std::string& device) {
  std::string name = std::filesystem::path(device).lexically_relative("/").string();
  std::replace(name.begin(), name.end(), '/', '_');
  return dataFolder + "/" + kLogName + name + kLogEnding;
}

Table WriteTable(const EquipJob& job, const EquipProgress& progress, bool prove) {
  Table table{{std::begin(kWriteColumns), std::end(kWriteColumns)}, {}};
  for (std::size_t i = 0; i < job.targets.size(); ++i) {
    const TargetProgress& target = progress.targets[i];
    table.rows.push_back({std::int64_t{job.targets[i].id.address}, job.targets[i].name,
                          IsWell(target, prove), static_cast<std::int64_t>(target.StepsDone()),
                          static_cast<std::int64_t>(CountProven(target)),
                          static_cast<std::int64_t>(target.steps.size()),
                          ReasonOf(job, target, prove)});
  }
  return table;
}

Status RunWrite(Bench& bench) { return Writing(bench).Run(); }

}  // namespace kelvo::cli
