#pragma once

#include <QDialog>
#include <functional>

#include "base/operator.h"
#include "interfaces/line_finder.h"

class QLabel;
class QProgressBar;
class QPushButton;
class QSpinBox;
class QTreeWidget;

namespace kelvo {

/// "Verbindung suchen …": tries how the Terminal's interface is set, shows what was heard, and asks
/// before anything is set or stored.
class FindDialog : public QDialog {
  Q_OBJECT

 public:
  struct Services {
    Exchange& exchange;
    SerialPort& com1;
    Operator& person;
    /// Makes the port ready, open if it is not; false when it cannot be opened, which was said.
    std::function<bool()> open;
    std::function<Handshaking()> handshaking;
    /// Takes what was found, for good; the port as it is then, for the operator.
    std::function<QString(const std::string& settings)> take;
    /// Makes the port again what it was before `open`.
    std::function<void()> restore;
    /// Told what came of a search.
    std::function<void(const std::string& report, bool failed)> ended{};
  };
  FindDialog(Services services, QWidget* parent);

  /// Empty again; `port` is what will be searched, for the operator.
  void Prepare(const QString& port);

  void done(int result) override;

 private:
  QLayout* MakeTop();
  void End(const QString& report, bool failed);
  void SetSearching(bool searching);
  void Search();
  void Decide(const QString& found, const std::string& settings);
  void Show(const LineResult& result);
  void cmdSuchen_Click();
  void cmdSuchenAbbrechen_Click();

  Services services_;
  LineFinder finder_;
  bool searching_ = false;
  std::vector<LineResult> results_;
  QLabel* lblSuchenAnschluss;
  QSpinBox* txtSuchenAdresse;
  QPushButton* cmdSuchen;
  QPushButton* cmdSuchenAbbrechen;
  QProgressBar* ctlSuchenFortschritt;
  QTreeWidget* ctlSuchenListe;
  QLabel* lblSuchenErgebnis;
};

}  // namespace kelvo
