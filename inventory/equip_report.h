#pragma once

#include <string>

#include "inventory/equip_run.h"

namespace kelvo {

/// In German what a step is now. UTF-8.
std::string StepStateText(const StepProgress& step);
/// "8 von 12 geschrieben, davon 8 geprüft", and why it does not go on. UTF-8.
std::string TargetStateText(const TargetProgress& target);
/// What was written where and with which proof, what was not and why, and what is to be done by
/// hand: a text of lines. UTF-8.
std::string EquipReport(const EquipJob& job, const EquipProgress& progress);

}  // namespace kelvo
