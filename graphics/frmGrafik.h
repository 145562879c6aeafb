#pragma once

#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/event_loop.h"
#include "base/operator.h"
#include "graphics/counting.h"
#include "graphics/curve_panel.h"
#include "graphics/device_font.h"
#include "graphics/drawing_canvas.h"
#include "graphics/drawing_document.h"
#include "graphics/editing.h"
#include "graphics/geometry_panel.h"
#include "graphics/graphics_host.h"
#include "graphics/style_panel.h"
#include "graphics/text_typing.h"
#include "graphics/tool_desk.h"
#include "graphics/wmf.h"
#include "store/draft_file.h"

class QActionGroup;
class QDockWidget;
class QLabel;
class QMimeData;
class QScrollArea;
class QSlider;
class QSpinBox;

namespace kelvo {

struct PixelView;

class ObjectList;
class SymbolPanel;

/// What must be selected for a menu entry to do something: anything, one picture alone, at least
/// one object of a kind, also inside of groups, at least three, or some while others are not.
enum class Needs { Nothing, Selection, OnePicture, Group, Picture, Shape, Three, Others };

/// The graphics editor. It owns the one drawing; closing the window only hides it.
class frmGrafik : public QMainWindow {
  Q_OBJECT

 public:
  /// Everything handed over must outlive the window. `sendTimer` bundles the changes that are sent
  /// at once; `draftPath` is where an unsaved drawing is kept against a crash (empty: nowhere).
  frmGrafik(GraphicsHost& host, Operator& person, const DeviceFonts& fonts, Timer& sendTimer,
            QSize display, const std::string& draftPath);
  ~frmGrafik() override { typing_->GiveUp(); }  // while its document is there

  const Drawing& CurrentDrawing() const { return document_.Whole(); }
  /// Of its file, without the folder; empty until it has one. UTF-8
  std::string FileName() const;
  QSize DisplaySize() const { return {Display->DisplayWidth(), Display->DisplayHeight()}; }
  /// The drawing as commands; what goes wrong is shown in message boxes. Asks the Terminal for its
  /// version when that is needed and not known.
  std::string CreatePic() { return TryCreatePic().value_or(std::string()); }
  /// The same for callers to whom a failed translation (nothing) is not an empty drawing.
  std::optional<std::string> TryCreatePic();
  /// The option values with the display's height.
  TerminalTraits Terminal() const;
  /// What the Terminal shows when it is sent, one pixel each.
  QImage Pixels() const { return Pixels(CurrentDrawing()); }
  /// Bytes and seconds on the wire, bytes in the EEPROM, in words.
  QString CostsText() const;

  /// The Terminal's display has another size: the drawing is cleared, which can be undone.
  void SetDisplaySize(int width, int height);
  /// Asks before an unsaved drawing is lost; true when it may be.
  bool MayDiscard();
  /// The same question at the program's end; then nothing is left behind for the next start.
  bool MayEnd();
  /// An empty drawing, which counts as saved. Like loading it can be undone.
  void Clear();
  void LoadDrawing();
  /// Loads a metafile, or a text of drawing commands, in the drawing's place; one that cannot be
  /// read is named and changes nothing.
  void LoadFile(const std::string& path);
  /// False when the operator cancelled or nothing could be written.
  bool SaveDrawing();
  /// Removes what is selected.
  void DeleteSelection();
  /// Offers the drawing that a crash has left behind. What is declined, or cannot be read, is set
  /// aside; what nobody answers for stays.
  void OfferDraft();
  /// Writes the draft of an unsaved drawing, or removes that of a saved one. Runs by itself soon
  /// after each change.
  void KeepDraft();
  /// Whether the drawing goes out after each change.
  void SetAutomaticSend(bool on);
  /// The operator's own symbols may have changed.
  void ShowSymbols();
  /// The options may have changed: threshold, line rate, version.
  void OptionsChanged();

 Q_SIGNALS:
  /// The drawing, or what it looks like and costs on the present Terminal.
  void DrawingChanged();
  /// The drawing has been loaded from this file, or saved in it.
  void FileUsed(const QString& path);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  struct Entry;
  static const Entry kFileEntries[];
  static const Entry kEditEntries[];
  static const Entry kObjectEntries[];

  // Building.
  void MakeCanvas(QSize display);
  void MakePanels();
  void MakeObjectList();
  void MakeSymbolPanel();
  QDockWidget* AddList(const char* name, const QString& title, QWidget* list);
  void MakeListEntries(QMenu* view);
  struct Choice {
    const char* name;
    const char* text;
    const char* keys;
    bool atFirst;
    std::function<void(bool on)> follow;
  };
  QWidget* MakeRulers();
  bool ScreenIsRoomy() const;
  QAction* AddChoice(QMenu* menu, const Choice& choice);
  void MakeViewChoices(QMenu* view);
  void RestoreBars();
  void MakeStatusBar();
  void MakeTools();
  void MakeMenus();
  void MakeViewMenu();
  void MakeToolbar();
  void MakeContextMenu();
  template <std::size_t count>
  void AddEntries(QMenu* menu, const Entry (&entries)[count]);
  void ConnectPanels();
  void WatchFields();
  void LeaveField();
  void FitWindow();

  QImage Pixels(const Drawing& drawing) const;

  // Following the drawing.
  void ShowState();
  void ShowSelectedStyle();
  void ShowCosts();
  void ShowHints();
  void ShowGeometry();
  void ShowPointer(Point p);
  void CountLikeCommands(bool on);
  void Edited();
  void SendTick();
  void SendNow();
  void ShowSending();

  // Changing it.
  void Edit(const std::function<void(Drawing&)>& change, const std::string& mergeKey = {});
  void MoveSelection(int dx, int dy);
  void TypeBox(const Box& box, const std::string& mergeKey);
  void ChoosePenMode(PenMode penMode);
  void ChooseFilled(bool filled);
  void ChooseText(const TextChange& change);
  void TakeTool(ToolKind kind);
  void SelectUnder(Point at);
  void OpenSelected();
  void SelectRows(const std::vector<std::size_t>& rows);
  std::optional<std::string> AskText(const std::string& proposed,
                                     const std::function<void(const std::string&)>& typed);

  void mnuGrafikNeu_Click();
  void mnuGrafikLaden_Click();
  void mnuGrafikDatenbank_Click();
  void mnuGrafikSpeichern_Click();
  void mnuGrafikPng_Click();
  void mnuGrafikDrucken_Click();
  void mnuGrafikZeichnung_Click();
  void MakePicture(void (*make)(Drawing&, const PixelView&));
  void ShowSelection();
  void WalkObjects(bool forward);
  void LeaveTool();
  void StepBack();
  void mnuGrafikBild_Click();
  void mnuGrafikBildBearbeiten_Click();
  void mnuGrafikBildEEProm_Click();
  void mnuGrafikSenden_Click();
  void mnuGrafikSchliessen_Click();
  void mnuGrafikRueckgaengig_Click();
  void mnuGrafikWiederholen_Click();
  void mnuGrafikAusschneiden_Click();
  void mnuGrafikKopieren_Click();
  void mnuGrafikEinfuegen_Click();
  void mnuGrafikDuplizieren_Click();
  void mnuGrafikLoeschen_Click();
  void mnuGrafikAlles_Click();
  void mnuGrafikGruppieren_Click();
  void mnuGrafikAufloesen_Click();
  void mnuGrafikUmwandeln_Click();
  void mnuGrafikText_Click();
  void mnuGrafikSymbolMerken_Click();
  void InsertSymbol(const DrawingObject& symbol, std::optional<Point> at);
  bool DropSymbol(const QDropEvent& event);
  std::optional<std::string> AskSymbolName(const std::string& proposed);
  void RenameSymbol(const std::string& name);
  void DeleteSymbol(const std::string& name);
  void mnuGrafikPunktEinfuegen_Click();
  void mnuGrafikPunktEntfernen_Click();
  void ShowPointActions();
  bool CanRemovePoint() const;
  QString PointText() const;
  void MovePoint(std::size_t index, int dx, int dy);
  void PickUnder(Point at);
  void Reorder(Order order);
  void Align(Alignment alignment);
  void Distribute(Axis axis);

  // Files, pictures, clipboard.
  WmfDrawing FromWmf(std::string_view bytes) const;
  WmfFile ToWmf(const Drawing& drawing) const;
  void TakeFile(const QString& path, std::optional<Point> at);
  void InsertFile(const QString& path, std::optional<Point> at);
  void InsertImage(const QImage& image, std::optional<Point> at);
  Colour BlackThreshold() const;
  void InsertText(const QString& text, std::optional<Point> at);
  bool InsertMime(const QMimeData& data, std::optional<Point> at);
  Point VisibleMiddle() const;
  /// Where the lower left corner comes of what has this size and no place yet: in that middle, and
  /// wholly on the display where it fits there.
  Point PlaceFor(const Box& box) const;
  Point OntoDisplay(Point corner, const Box& box) const;
  LoadedDrawing FromCommands(std::string_view commands) const;
  LoadedDrawing ReadDrawing(const std::string& path) const;
  bool TakeLoaded(const LoadedDrawing& loaded, const std::string& path);
  void ReportLoaded(const LoadedDrawing& loaded);
  bool StoreDrawing(const std::string& path);

  void SetZoom(int zoom, QPointF anchor);
  void ShowZoom();
  void FollowZoom(QSize before);

  GraphicsHost& host_;
  Operator& person_;
  const DeviceFonts& fonts_;
  Timer& sendTimer_;
  DraftFile draft_;
  DrawingDocument document_;
  Counting counting_;
  std::optional<Point> pointed_;  // where the pointer was last
  QTimer draftTimer_{this};
  QTimer lineTimer_{this};  // while something is being sent
  bool automaticSend_ = false;
  bool sendPending_ = false;
  int pasteCount_ = 0;
  bool pictureOpen_ = false;        // its dialog is
  std::optional<Point> menuPoint_;  // where the context menu is open
  std::string path_;                // of the drawing; empty until it has one

  QScrollArea* scroll_ = nullptr;
  DrawingCanvas* Display = nullptr;
  TextTyping* typing_ = nullptr;
  StylePanel* style_ = nullptr;
  CurvePanel* curve_ = nullptr;
  GeometryPanel* geometry_ = nullptr;
  ObjectList* objects_ = nullptr;
  SymbolPanel* symbols_ = nullptr;
  std::vector<QWidget*> rulers_;
  QLabel* lblKoordinaten = nullptr;
  QLabel* lblKosten = nullptr;
  QLabel* lblHinweis = nullptr;
  QLabel* lblSenden = nullptr;
  QLabel* lblZaehlung = nullptr;
  QSlider* ctlZoom = nullptr;
  QLabel* lblZoom = nullptr;
  QSpinBox* txtRaster = nullptr;
  QAction* mnuGrafikRaster = nullptr;
  QAction* mnuGrafikFang = nullptr;
  QAction* toolAuswahl = nullptr;
  QActionGroup* tools_ = nullptr;
  std::vector<std::pair<QAction*, Needs>> needing_;
  QAction* mnuGrafikRueckgaengig = nullptr;
  QAction* mnuGrafikWiederholen = nullptr;
  std::unique_ptr<ToolDesk> desk_;
  std::unique_ptr<Tool> tool_;
};

}  // namespace kelvo
