#pragma once

#include "shell/tabs.h"
#include "tour/album.h"
#include "tour/live_program.h"
#include "tour/simulator_process.h"

namespace kelvo {

/// One Terminal: every page and every dialog of the program.
class TerminalTour {
 public:
  TerminalTour(LiveProgram& program, SimulatorProcess& simulator, Album& album);
  void Run();

 private:
  void Connect();
  void Interfaces();
  void Status();
  void WriteMacro();
  void CheckMacro();
  void RunMacro();
  void Drawing();
  void DrawWithTools(WindowDriver& hands);
  void InsertPicture(WindowDriver& hands);
  void SendDrawing();
  void TextPage();
  void AtKeyboard();
  void MatrixKeyboard();
  void Eeprom();
  void DataSheet();
  void Erase();
  void Traffic();
  void Twin();
  void Ports();
  void Projects();
  void ChooseFile(const QString& path);
  void OpenDialog(const char* menuEntry, const char* name);
  void Boxes();
  void Help();

  void Step(const char* text) { album_.Step(text); }
  void Shoot(QWidget& window, const char* name) { album_.Shoot(window, name); }
  void ShootDisplay(const char* name) { simulator_.Picture(album_.File(name)); }
  void Show(Tab tab) { driver_.ShowTab(static_cast<int>(tab)); }
  void Click(const char* name) { driver_.Click(QString::fromUtf8(name)); }
  void Type(const char* name, const char* text) {
    driver_.Type(QString::fromUtf8(name), QString::fromUtf8(text));
  }
  /// The next dialog is photographed, answered, and left with the button of this caption.
  void OnDialog(const char* picture, const char* button, const char* answer = nullptr);
  void TerminalIsThrough();

  LiveProgram& program_;
  SimulatorProcess& simulator_;
  Album& album_;
  frmhaupt& window_;
  WindowDriver driver_;
};

}  // namespace kelvo
