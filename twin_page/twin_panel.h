#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>

#include "twin/twins.h"
#include "widgets/display_picture.h"

class QBoxLayout;
class QLabel;
class QScrollArea;

namespace kelvo {

/// A Terminal's stored name; empty for none.
using TwinNames = std::function<std::string(int address)>;

/// "Pumpe 3, Adresse 5"
QString TwinName(int address, const TwinNames& names);
/// What is said of it; of null that nobody has been spoken with.
QString TwinText(const Twin* twin);
/// The model's display with its cursor, as far as that is known; of null an empty one.
PixelMap TwinPixels(const Twin* twin);
Certainty TwinCertainty(const Twin* twin);

/// Lets a widget that is seen follow the models, without a timer while nothing happens.
class TwinFollower {
 public:
  TwinFollower(Twins& twins, QWidget& seen, std::function<void()> show);
  /// Something has happened on the line.
  void Changed();
  /// At once.
  void Show();

 private:
  Twins& twins_;
  QWidget& seen_;
  std::function<void()> show_;
  QTimer pause_;
};

/// The display of the Terminal that is of interest now, as far as it can be reckoned, and what that
/// rests on.
class TwinPanel : public QWidget {
  Q_OBJECT

 public:
  /// `absent`: the address under which nobody is known to listen, if that is so; another than the
  /// model's where nobody has been selected on purpose. Empty: everybody spoken to is there.
  /// `silent`: the absent one is selected all the same, and keeps silent.
  TwinPanel(Twins& twins, TwinNames names, std::function<std::optional<int>()> absent = {},
            std::function<bool()> silent = {}, QWidget* parent = nullptr);

  void Changed() { follower_.Changed(); }
  const DisplayPicture& Picture() const { return *ctlAnzeigeBild; }

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Arrange();
  void ShowTwin();
  QString Who(std::optional<int> absent) const;

  Twins& twins_;
  TwinNames names_;
  std::function<std::optional<int>()> absent_;
  std::function<bool()> silent_;
  QLabel* lblAnzeigeWer;
  DisplayPicture* ctlAnzeigeBild;
  QLabel* lblAnzeigeStand;
  QBoxLayout* sides_;
  QScrollArea* room_;
  TwinFollower follower_;
};

}  // namespace kelvo
