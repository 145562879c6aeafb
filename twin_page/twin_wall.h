#pragma once

#include <QWidget>
#include <map>
#include <utility>
#include <vector>

#include "twin_page/twin_panel.h"

class QListWidget;
class QListWidgetItem;

namespace kelvo {

/// The window "Anzeigen aller Terminals": the stored ones and whoever else has been spoken with,
/// each with its reckoned display; those never spoken with are grey.
class TwinWall : public QWidget {
  Q_OBJECT

 public:
  /// `stored`: the addresses of the stored Terminals.
  TwinWall(Twins& twins, TwinNames names, std::function<std::vector<int>()> stored,
           QWidget* parent);

  void Changed() { follower_.Changed(); }
  /// Shows it in front of the others.
  void Present();

 Q_SIGNALS:
  /// One has been chosen by a double click or the keyboard.
  void AddressChosen(int address);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  /// What a tile has been drawn from.
  struct Drawn {
    const Twin* twin;
    std::uint64_t revision;
    QString text;
    QString name;
    bool operator==(const Drawn&) const = default;
  };

  void ShowAll();
  void ShowTile(QListWidgetItem& tile, int address);

  Twins& twins_;
  TwinNames names_;
  std::function<std::vector<int>()> stored_;
  QListWidget* ctlAnzeigen;
  std::vector<int> addresses_;
  std::map<int, Drawn> drawn_;
  TwinFollower follower_;
};

}  // namespace kelvo
