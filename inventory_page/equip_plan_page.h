#pragma once

#include <QWidget>
#include <map>
#include <optional>

#include "inventory/equip_plan.h"
#include "inventory_page/equip_services.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace kelvo {

class TickList;

/// What goes where, chosen and shown before anything is sent.
class EquipPlanPage : public QWidget {
  Q_OBJECT

 public:
  explicit EquipPlanPage(const EquipServices& services, QWidget* parent = nullptr);

  /// The known Terminals are read again; what was asked of the targets is forgotten.
  void Refresh();
  /// What is ticked.
  EquipJob Job() const;
  QPushButton* StartButton() { return cmdAusstatten; }

 Q_SIGNALS:
  /// The source lies in a file now: what is said of it.
  void Saved(const QString& text);

 private:
  /// Where equipment can come from.
  struct Source {
    QString title;
    std::optional<TerminalId> terminal{};
    std::optional<Equipment> file{};
  };

  QWidget* MakeSource();
  QWidget* MakeTargets();
  QWidget* MakePlan();
  void ConnectControls();
  void FillSources();
  QString NameOf(const TerminalId& id) const;
  void FillTargets();
  void AddTarget(EquipTarget target, bool ticked);
  void UntickOrigin();
  void FillItems();
  Equipment EquipmentOf(const Source& source) const;
  std::vector<TargetView> Views() const;
  TargetView ViewOf(std::size_t row) const;
  void ShowPlan();
  void ShowOutlooks(const EquipJob& job);
  void ShowReading(std::size_t row);

  void cboAusstattenQuelle_Click();
  void cmdAusstattenLaden_Click();
  void cmdAusstattenSichern_Click();
  void cmdAusstattenLesen_Click();

  EquipServices services_;
  std::vector<Source> sources_;
  Equipment equipment_;
  std::vector<EquipTarget> targets_;
  std::map<std::size_t, TargetReading> readings_;  // by row
  bool filling_ = false;

  QComboBox* cboAusstattenQuelle = nullptr;
  QPushButton* cmdAusstattenLaden = nullptr;
  QPushButton* cmdAusstattenSichern = nullptr;
  QLabel* lblAusstattenGesichert = nullptr;
  TickList* ctlAusstattenPosten = nullptr;
  TickList* ctlAusstattenZiele = nullptr;
  QPushButton* cmdAusstattenLesen = nullptr;
  QCheckBox* chkAusstattenLoeschen = nullptr;
  QPlainTextEdit* txtAusstattenPlan = nullptr;
  QPushButton* cmdAusstatten = nullptr;
};

}  // namespace kelvo
