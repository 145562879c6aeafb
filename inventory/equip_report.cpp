#include "inventory/equip_report.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>

namespace kelvo {
namespace {

using State = StepProgress::State;

// In local time.
std::string ReportMoment(JournalTime time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  const std::time_t moment = std::chrono::system_clock::to_time_t(seconds);
  std::tm local{};
  localtime_r(&moment, &local);
  char text[40];
  const std::size_t length = std::strftime(text, sizeof text, "%d.%m.%Y %H:%M:%S", &local);
  return {text, length};
}

std::string WhenText(JournalTime time) { return " (" + ReportMoment(time) + ")"; }

std::string ProofText(WriteVerdict verdict) {
  return verdict == WriteVerdict::Proven ? "geschrieben, mit Prüfsumme geprüft"
                                         : "geschrieben und bestätigt, ohne Prüfsumme";
}

std::size_t Proven(const TargetProgress& target) {
  return static_cast<std::size_t>(
      std::count_if(target.steps.begin(), target.steps.end(), [](const StepProgress& step) {
        return step.Done() && step.verdict == WriteVerdict::Proven;
      }));
}

// How many steps have failed, and why the first of them.
std::string FailedText(const TargetProgress& target) {
  const auto first =
      std::find_if(target.steps.begin(), target.steps.end(), std::mem_fn(&StepProgress::Failed));
  if (first == target.steps.end()) return {};
  const auto count =
      std::count_if(target.steps.begin(), target.steps.end(), std::mem_fn(&StepProgress::Failed));
  return ", " + std::to_string(count) + " fehlgeschlagen" + (count > 1 ? ", zuerst: " : ": ") +
         StepStateText(*first);
}

std::string EraseText(const EquipJob& job, const TargetProgress& target) {
  if (!job.erase) return "  Vorher nicht gelöscht.\n";
  switch (target.erase) {
    case TargetProgress::Erase::Done:
      return "  EEPROM gelöscht und bestätigt" + WhenText(target.eraseTime) + ".\n";
    case TargetProgress::Erase::Begun:
      return "  Löschen begonnen" + WhenText(target.eraseTime) +
             "; ob es ausgeführt wurde, ist nicht bekannt.\n";
    case TargetProgress::Erase::Failed:
      return "  Löschen gesendet, aber nicht bestätigt" + WhenText(target.eraseTime) + ".\n";
    case TargetProgress::Erase::No:
      break;
  }
  return "  Nicht gelöscht.\n";
}

std::string StepLine(const std::string& what, const StepProgress& step) {
  std::string line = "  " + what + ": " + StepStateText(step);
  if (step.state != State::Open) line += WhenText(step.time);
  return line + "\n";
}

std::string TargetReport(const EquipJob& job, const EquipTarget& target,
                         const TargetProgress& progress) {
  std::string text = TargetText(target) + " an " + target.id.device + "\n";
  text += "  " + TargetStateText(progress) + "\n";
  if (progress.version) text += "  Version " + *progress.version + " (gelesen)\n";
  text += EraseText(job, progress);
  if (progress.anew) {
    text +=
        "  Das Terminal hatte mehr freien Platz als zuvor; alles wurde noch einmal "
        "geschrieben.\n";
  }
  for (std::size_t step = 0; step < progress.steps.size(); ++step) {
    text += StepLine(StepText(job, step), progress.steps[step]);
  }
  if (progress.freeBytes) {
    text += "  Freier Platz zuletzt: " + std::to_string(*progress.freeBytes) + " Byte (gelesen)\n";
  }
  return text + "\n";
}

// What no command does, or what no command was sent for.
std::string ByHand(const EquipJob& job) {
  std::string text = "Von Hand bleibt zu tun\n";
  for (const std::string& missing : job.equipment.missing) text += "  - " + missing + "\n";
  text += "  - Die Adresse ist am Gerät einzustellen.\n";
  text += job.HasSettings()
              ? "  - Nach einem Neustart gelten die gespeicherten Einstellungen, auch die der "
                "Schnittstelle; der Neustart wurde nicht gesendet.\n"
              : "  - Einstellungen (Auflösung, Schnittstellen, Cursor, Text, Tastaturen) sind von "
                "Hand zu setzen und mit „Konfiguration speichern“ zu sichern.\n";
  return text;
}

}  // namespace

std::string StepStateText(const StepProgress& step) {
  const std::string why = step.detail.empty() ? "" : ": " + step.detail;
  switch (step.state) {
    case State::Open:
      return "nicht geschrieben";
    case State::Begun:
      return "begonnen, die Antwort wurde nicht gesehen";
    case State::NoRoom:
      return "nicht geschrieben: nicht genügend Platz im EEPROM";
    case State::Over:
      break;
  }
  return step.Done() ? ProofText(step.verdict) : VerdictText(step.verdict) + why;
}

std::string TargetStateText(const TargetProgress& target) {
  std::string text = std::to_string(target.StepsDone()) + " von " +
                     std::to_string(target.steps.size()) + " geschrieben";
  if (target.StepsDone() > 0) text += ", davon " + std::to_string(Proven(target)) + " geprüft";
  return text + FailedText(target) + (target.stopped.empty() ? "" : ". " + target.stopped);
}

std::string EquipReport(const EquipJob& job, const EquipProgress& progress) {
  std::string text = "Terminal ausstatten: Bericht\n\nQuelle: " + job.equipment.origin + "\n";
  if (progress.first) {
    text += "Begonnen: " + ReportMoment(*progress.first) +
            "\nStand: " + ReportMoment(progress.last) + "\n";
  }
  text += "\n";
  for (std::size_t i = 0; i < job.targets.size(); ++i) {
    text += TargetReport(job, job.targets[i], progress.targets[i]);
  }
  return text + ByHand(job);
}

}  // namespace kelvo
