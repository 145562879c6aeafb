#pragma once

#include <QDialog>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "base/event_loop.h"
#include "base/operator.h"
#include "sheet/sheet_maker.h"
#include "sheet_page/sheet_layout.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPrinter;
class QProgressBar;
class QPushButton;
class QSpinBox;

namespace kelvo {

class SheetOutput;
class SheetView;
class TickList;

/// Makes the data sheet of the Terminals that are ticked, shows it, and brings it to paper or into
/// a file. Nothing is asked of any Terminal.
class SheetDialog : public QDialog {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Operator& person;
    const DeviceFonts& fonts;
    /// All that there are, those of the list first.
    std::function<std::vector<SheetTerminal>()> terminals;
    /// What is known of these.
    std::function<SheetSources(std::vector<SheetTerminal> terminals)> sources;
    /// Sets a printer up; false when that was cancelled.
    std::function<bool(QPrinter& printer, QWidget* parent)> choosePrinter;
  };
  explicit SheetDialog(Services services, QWidget* parent = nullptr);
  ~SheetDialog() override;

  /// Shows the sheet of this Terminal, or of all of the list.
  void Present(const std::optional<TerminalId>& terminal);
  void reject() override;

 Q_SIGNALS:
  /// A file has been written, or the sheet printed: what came of it.
  void Finished(const QString& result, bool failed);

 private:
  QLayout* MakeChoice();
  QLayout* MakeChapters();
  QLayout* MakePreview();
  QLayout* MakeButtons();
  void ConnectControls();

  void FillTerminals(const std::optional<TerminalId>& terminal);
  std::vector<SheetTerminal> Ticked() const;
  void TickAll(bool ticked);
  /// Something is ticked, or no more: what was made holds no longer.
  void Chosen();
  void Remake();
  void Work();
  bool WorkOnce();
  bool Make();
  void EndMaking();
  void EndOutput();
  QString StateText() const;
  void ShowProgress();
  void ShowState();
  void ShowPageNumber();
  void Begin(std::unique_ptr<SheetOutput> output, std::string path);
  void Turn(int pages);

  void cmdDatenblattPdf_Click();
  void cmdDatenblattDrucken_Click();

  Services services_;
  std::vector<SheetTerminal> terminals_;
  std::unique_ptr<SheetMaker> maker_;
  std::unique_ptr<SheetLayout> layout_;
  std::unique_ptr<SheetOutput> output_;
  std::string path_;  // that the output goes to; empty for a printer
  QString news_;      // what came of the last one
  QTimer work_;
  bool filling_ = false;
  bool made_ = false;
  TickList* ctlDatenblattListe = nullptr;
  QPushButton* cmdDatenblattAlle = nullptr;
  QPushButton* cmdDatenblattKeine = nullptr;
  std::map<SheetChapter, QCheckBox*> chkDatenblattKapitel;
  QCheckBox* chkDatenblattDatum = nullptr;
  SheetView* ctlDatenblatt = nullptr;
  QSpinBox* txtDatenblattSeite = nullptr;
  QLabel* lblDatenblattSeiten = nullptr;
  QComboBox* cboDatenblattZoom = nullptr;
  QLabel* lblDatenblattStand = nullptr;
  QProgressBar* ctlDatenblattFortschritt = nullptr;
  QPushButton* cmdDatenblattPdf = nullptr;
  QPushButton* cmdDatenblattDrucken = nullptr;
  QPushButton* cmdDatenblattSchliessen = nullptr;
};

}  // namespace kelvo
