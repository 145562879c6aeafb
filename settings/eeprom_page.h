#pragma once

#include <QWidget>

#include "base/operator.h"
#include "link/exchange.h"
#include "settings/info_window.h"
#include "store/recordset.h"
#include "terminal/terminal_state.h"

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace kelvo {

class ReadMark;
class WriteDesk;

/// What runs alone while everything is erased.
inline constexpr char kErasing[] = "Das EEPROM wird gelöscht.";

/// The EEPROM page: stores and deletes the Terminal's configuration, erases everything, shows the
/// free space.
class EepromPage : public QWidget {
  Q_OBJECT

 public:
  struct Services {
    Exchange& exchange;
    Operator& person;
    TerminalState& state;
    Recordset& options;            ///< `Optionen`
    QWidget* inventory = nullptr;  ///< shown beside all else, if there is one
    /// Writes with a proof; a page without it offers none.
    WriteDesk* writeDesk = nullptr;
  };
  explicit EepromPage(Services services, QWidget* parent = nullptr);

  /// Shows the free bytes as they were read last, on whatever page. `present`: the Terminal that
  /// was asked for them is the one that listens.
  void ShowFreeBytes();

 Q_SIGNALS:
  /// Something has failed that no box tells of.
  void Failed(const QString& what);

 private:
  void MakeLayout();
  void AddGroups(QVBoxLayout* page);
  bool ErasePlain();
  bool EraseWithProgress();
  bool EraseLeft();
  bool EraseAll();
  void AskVersionToErase();
  bool StoreConfig(const std::string& suffix);
  void ReadFreeBytes();

  void cmdSetConfig_Click();
  void cmdClearConfig_Click();
  void cmdClearEEprom_Click();
  void cmdGetFreeBytes_Click();

  Services services_;
  InfoWindow* frmInfo;
  bool eraseLeft_ = false;  // the operator does not wait for its end
  QPushButton* cmdSetConfig;
  QPushButton* cmdClearConfig;
  QPushButton* cmdClearEEprom;
  QPushButton* cmdGetFreeBytes;
  QLabel* lblFreeBytes;
  ReadMark* lblFreeBytesStand;
};

}  // namespace kelvo
