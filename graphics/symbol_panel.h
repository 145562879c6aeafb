#pragma once

#include <QListWidget>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "graphics/drawing.h"

class QComboBox;
class QPushButton;

namespace kelvo {

/// A list whose entries can be dragged into the drawing.
class SymbolList : public QListWidget {
  Q_OBJECT

 public:
  using QListWidget::QListWidget;
  /// What is dragged are the commands of a symbol.
  static const QString& MimeType();

 protected:
  QStringList mimeTypes() const override { return {MimeType()}; }
  QMimeData* mimeData(const QList<QListWidgetItem*>& items) const override;
  Qt::DropActions supportedDropActions() const override { return Qt::CopyAction; }
};

/// The operator's own symbols, then those that come with the program, in one of their sizes.
class SymbolPanel : public QWidget {
  Q_OBJECT

 public:
  struct OwnSymbol {
    std::string name;  ///< UTF-8
    DrawingObject symbol;
    std::string commands;
  };
  using Render = std::function<QImage(const DrawingObject& symbol)>;

  /// `render` gives a symbol's own pixels.
  explicit SymbolPanel(Render render, QWidget* parent = nullptr);

  void ShowOwn(std::vector<OwnSymbol> own);
  /// Selects an own symbol.
  void Choose(const std::string& name);

 Q_SIGNALS:
  /// Its lower left corner lies at 0,0.
  void InsertWanted(const DrawingObject& symbol);
  void RenameWanted(const std::string& name);
  void DeleteWanted(const std::string& name);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Fill();
  void Add(const QString& name, DrawingObject symbol, const std::string& commands);
  void ShowButtons();
  bool IsOwn(int row) const { return row >= 0 && static_cast<std::size_t>(row) < own_.size(); }
  void Insert();
  void Rename();
  void Delete();

  Render render_;
  std::vector<OwnSymbol> own_;
  std::vector<DrawingObject> symbols_;  // one for each row
  SymbolList* lstSymbole = nullptr;
  QComboBox* cboSymbolGroesse = nullptr;
  QPushButton* cmdSymbolEinfuegen = nullptr;
  QPushButton* cmdSymbolUmbenennen = nullptr;
  QPushButton* cmdSymbolLoeschen = nullptr;
};

}  // namespace kelvo
