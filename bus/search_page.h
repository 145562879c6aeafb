#pragma once

#include <QWidget>
#include <chrono>
#include <functional>
#include <vector>

#include "base/event_loop.h"
#include "base/operator.h"
#include "bus/quick_search.h"
#include "bus/terminal_search.h"
#include "store/recordset.h"

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTableView;

namespace kelvo {

class TerminalListModel;
class TickList;

/// The bus page: the search for Terminals, its results, and the stored Terminals.
class SearchPage : public QWidget {
  Q_OBJECT

 public:
  struct Services {
    Exchange& exchange;
    EventLoop& loop;
    Operator& person;
    TerminalState& state;
    const Recordset& options;  ///< `Optionen`
    Recordset& terminals;      ///< `DOVU`, ordered by address
    std::function<bool()> reopenPort;
    SerialPort& com1;
  };
  explicit SearchPage(Services services, QWidget* parent = nullptr);

  /// A search is under way.
  bool Searching() const { return searching_; }
  /// Deletes the current record without asking and moves to the next.
  void DeleteTerminal();
  /// The page is shown: the stored Terminals are read again.
  void Refresh();

 Q_SIGNALS:
  /// The stored Terminals have been read again, or one has been changed.
  void StoredChanged();
  /// The operator has moved to the stored Terminal of this address.
  void AddressChosen(int address);
  /// The drawing is to be sent to the stored Terminals.
  void SendRequested();
  /// Terminals are to be equipped with what another one held.
  void EquipRequested();
  /// The data sheet of the Terminal that is chosen is wanted.
  void SheetRequested();
  /// A line for the status bar.
  void Hint(const QString& text);
  /// A search has begun or ended.
  void SearchingChanged();
  /// A search is over: what came of it.
  void Finished(const QString& result, bool failed);

 private:
  QWidget* MakeSearch();
  QWidget* MakeStored();
  void MakeResultList();
  void MakeProgress();
  void ConnectControls();

  void SetSearching(bool searching);
  void ShowProgress(int address, int last);
  QString TimeLeft(int done, int all) const;
  using Search =
      std::function<TerminalSearch::End(int last, double from, const TerminalSearch::Listener&)>;
  void RunSearch(const Search& search);
  void cmdDovuSchnellsuche_Click();
  void AddResult(const SearchResult& result);
  void ShowEnd(TerminalSearch::End end, int last);
  std::string Found() const;
  void SelectCurrent();
  void RowChosen(int row);
  void TellAddress();
  bool TakeOver(int position);
  void AddTerminal(std::int64_t address, const std::string& name, bool checksum);

  void txtmaxDovu_LostFocus();
  void cmdDovusuchen_Click();
  void cmdDovuAbbrechen_Click();
  void cmdDovuUebernehmen_Click();
  void cmdDovuExport_Click();
  void cmdDovuNeu_Click();
  void cmdClearDovuData_Click();
  void cmdDovuSenden_Click();
  void cmdDovuAusstatten_Click();
  void cmdDovuDatenblatt_Click();

  Services services_;
  TerminalSearch search_;
  QuickSearch quickSearch_;
  bool searching_ = false;
  bool selecting_ = false;
  std::chrono::nanoseconds searchStart_{0};
  std::vector<SearchResult> results_;
  TerminalListModel* model_;

  QLineEdit* txtmaxDovu = nullptr;
  QPushButton* cmdDovusuchen = nullptr;
  QPushButton* cmdDovuSchnellsuche = nullptr;
  QPushButton* cmdDovuAbbrechen = nullptr;
  QProgressBar* ctlDovuFortschritt = nullptr;
  QLabel* lblDovuStand = nullptr;
  TickList* ctlDovuSuchListe = nullptr;
  QPushButton* cmdDovuUebernehmen = nullptr;
  QPushButton* cmdDovuExport = nullptr;
  QTableView* ctlDovuListe = nullptr;
  QPushButton* cmdDovuSenden = nullptr;
  QPushButton* cmdDovuAusstatten = nullptr;
  QPushButton* cmdDovuDatenblatt = nullptr;
  QPushButton* cmdDovuNeu = nullptr;
  QPushButton* cmdClearDovuData = nullptr;
};

}  // namespace kelvo
