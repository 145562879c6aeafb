#include "inventory/equip_plan.h"

#include <algorithm>

#include "inventory/statement_words.h"
#include "inventory/terminal_name.h"
#include "terminal/eeprom.h"

namespace kelvo {
namespace {

std::string Bytes(std::int64_t bytes) { return std::to_string(bytes) + " Byte"; }

std::string RoomRemark(std::int64_t needed, std::int64_t free, bool fits) {
  return "Platz: gebraucht werden mindestens " + Bytes(needed) + " (errechnet) und " +
         std::to_string(kEepromReserve) + " Byte Reserve; frei sind " + Bytes(free) +
         " (gelesen)." + (fits ? "" : " Das reicht nicht.");
}

// What was read of it before, whoever has asked.
std::string KnownRoom(const Room& room) {
  const auto& last = room.LastReading();
  if (!last) return "der freie Platz ist nicht gelesen.";
  return "frei waren " + Bytes(last->bytes) + " (gelesen " + LocalMoment(last->time) +
         (room.Changed() ? ", seither geschrieben)." : ").");
}

void AddRoom(TargetPlan& plan, const EquipJob& job, const TargetView& view) {
  const auto& reading = view.reading;
  const auto needed = static_cast<std::int64_t>(LeastBytes(job.equipment.items));
  const std::string needs = "Platz: gebraucht werden mindestens " + Bytes(needed) + " (errechnet)";
  if (job.erase) {
    plan.remarks.push_back(needs + "; der freie Platz wird nach dem Löschen gelesen.");
  } else if (!reading) {
    plan.remarks.push_back(needs + " und " + std::to_string(kEepromReserve) + " Byte Reserve; " +
                           KnownRoom(view.there.FreeBytes()));
  } else {
    plan.fits = needed <= reading->freeBytes - kEepromReserve;
    plan.remarks.push_back(RoomRemark(needed, reading->freeBytes, plan.fits));
  }
}

// What stays beside that which is written.
void AddRest(TargetPlan& plan, const EquipJob& job, const Inventory& there) {
  if (job.erase) {
    plan.remarks.emplace_back("Das ganze EEPROM wird vorher gelöscht, auch die Konfiguration.");
    return;
  }
  const auto& items = job.equipment.items;
  const auto stays =
      std::count_if(there.Items().begin(), there.Items().end(), [&items](const auto& held) {
        return std::none_of(items.begin(), items.end(),
                            [&held](const Item& item) { return SamePlace(item.key, held.first); });
      });
  if (stays > 0) {
    plan.remarks.push_back("Es bleibt liegen, was sonst von hier geschrieben wurde: " +
                           std::to_string(stays) + " Posten.");
  }
  if (!there.KnownEmptyBefore()) {
    plan.remarks.emplace_back(
        "Was sonst im Terminal liegt, ist nicht bekannt. Ohne Löschen bleibt es liegen.");
  }
}

std::string Order(const EquipJob& job) {
  std::string order;
  for (std::size_t step = 0; step < job.Steps(); ++step) {
    order += (order.empty() ? "" : ", ") + StepText(job, step);
  }
  return order + ".";
}

}  // namespace

std::string StepText(const EquipJob& job, std::size_t step) {
  if (step >= job.equipment.items.size()) return "Einstellungen und Konfiguration";
  const Item& item = job.equipment.items[step];
  return ItemText(item.key) + (item.name.empty() ? "" : " „" + item.name + "“");
}

std::string TargetText(const EquipTarget& target) {
  return TerminalName(target.name, target.id.address);
}

Outlook OutlookOf(const Item& item, const Inventory* there, bool erase) {
  if (erase) return Outlook::AfterErase;
  if (there == nullptr) return Outlook::Unknown;
  if (there->DoubtAt(item.key) != nullptr) return Outlook::Doubtful;
  const Held* const held = there->At(item.key);
  if (held == nullptr) return there->KnownEmptyBefore() ? Outlook::Free : Outlook::Unknown;
  return held->item.command == item.command ? Outlook::Same : Outlook::Overwrites;
}

std::string OutlookText(Outlook outlook, const Item& item, const Inventory* there) {
  switch (outlook) {
    case Outlook::Free:
      return "frei";
    case Outlook::Same:
      return "gleich dem zuletzt von hier Geschriebenen";
    case Outlook::Doubtful:
      return "ungewiss: " + RestsWords(*there->DoubtAt(item.key));
    case Outlook::AfterErase:
      return "frei nach dem Löschen";
    case Outlook::Overwrites:
      break;
    case Outlook::Unknown:
      return "nicht bekannt";
  }
  const Item& held = there->At(item.key)->item;
  return "überschreibt " + ItemText(held.key) + (held.name.empty() ? "" : " „" + held.name + "“");
}

TargetPlan PlanFor(const EquipJob& job, const TargetView& view) {
  TargetPlan plan;
  const auto& reading = view.reading;
  if (reading && !reading->Complete()) return {{reading->problem}, false};
  if (reading) plan.remarks.push_back("Version " + reading->version + " (gelesen).");
  AddRoom(plan, job, view);
  AddRest(plan, job, view.there);
  if (view.isOrigin && !job.erase) {
    plan.remarks.emplace_back(
        "Von dieser Adresse stammt die Quelle. Ist es ein Ersatzgerät, so stimmt sein Bestand nur, "
        "wenn vorher gelöscht wird.");
  }
  return plan;
}

std::string PlanText(const EquipJob& job, const std::vector<TargetView>& targets) {
  std::string text;
  const auto add = [&text](const std::string& title, const std::vector<std::string>& lines) {
    if (!lines.empty()) text += title + "\n";
    for (const std::string& line : lines) text += "  - " + line + "\n";
  };
  add("So kann nicht begonnen werden", Obstacles(job));
  if (job.Steps() > 0) add("Geschrieben wird in dieser Reihenfolge", {Order(job)});
  for (const TargetView& view : targets) add(TargetText(view.target), PlanFor(job, view).remarks);
  add("Nicht oder nicht sicher übertragen wird", job.equipment.missing);
  add("Von Hand", {"Die Adresse wird am Gerät eingestellt; über die Leitung wird sie nicht "
                   "geändert."});
  return text;
}

std::vector<std::string> Obstacles(const EquipJob& job) {
  std::vector<std::string> obstacles;
  for (const ItemConflict& conflict : Conflicts(job.equipment.items)) {
    obstacles.push_back(conflict.text);
  }
  if (job.Steps() == 0) obstacles.emplace_back("Es ist nichts zum Schreiben gewählt.");
  if (job.targets.empty()) obstacles.emplace_back("Es ist kein Terminal als Ziel gewählt.");
  return obstacles;
}

}  // namespace kelvo
