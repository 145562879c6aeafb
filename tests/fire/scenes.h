#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QTabWidget>
#include <QWidget>

#include "shell/tabs.h"

namespace kelvo {

/// What the program may be at when something happens to it, at a line where nobody answers.
struct Scene {
  const char* what;
  Tab tab;
  const char* button;  ///< or the menu entry; empty: nothing
  bool asks = false;   ///< a box or a dialog waits for the operator
};
inline constexpr Scene kScenes[] = {
    {"idle", Tab::Status, ""},
    {"a question for the version", Tab::Status, "cmdGetVersion"},
    {"a macro is written", Tab::Macros, "cmdSetMakro"},
    {"the search for Terminals", Tab::Terminals, "cmdDovusuchen"},
    {"the quick search", Tab::Terminals, "cmdDovuSchnellsuche"},
    {"the question before erasing", Tab::Eeprom, "cmdClearEEprom", true},
    {"the name of a record", Tab::Macros, "cmdToolbar_8", true},
    {"a file dialog", Tab::Drawing, "mnuDateiLoad", true},
    {"the ports", Tab::Interfaces, "mnuOptionenAnschluesse", true},
    {"the search for a connection", Tab::Interfaces, "cmdVerbindungSuchen", true},
};

inline void ShowPageOf(const Scene& scene, const QWidget& window) {
  window.findChild<QTabWidget*>(QStringLiteral("cmdTab"))
      ->setCurrentIndex(static_cast<int>(scene.tab));
}
/// Returns when the scene is over.
inline void Begin(const Scene& scene, const QWidget& window) {
  const QString wanted = QString::fromUtf8(scene.button);
  if (wanted.isEmpty()) return;
  if (auto* const entry = window.findChild<QAction*>(wanted)) return entry->trigger();
  if (auto* const button = window.findChild<QAbstractButton*>(wanted)) button->click();
}

}  // namespace kelvo
