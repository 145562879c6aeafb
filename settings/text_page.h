#pragma once

#include <QWidget>
#include <array>
#include <string>

#include "base/operator.h"
#include "graphics/device_font.h"
#include "graphics/raster.h"
#include "link/exchange.h"
#include "link/receive_events.h"
#include "settings/text_mode.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;

namespace kelvo {

class ReadMark;

class TextPreview;
class UpDown;
class WireEdit;
class WireField;

/// The text page: the Terminal's cursor and text mode, free text for its display, and single
/// commands.
class TextPage : public QWidget, public Receiver {
  Q_OBJECT

 public:
  struct Services {
    Exchange& exchange;
    Operator& person;
    const DeviceFonts& fonts;
    QWidget* rawCommand;  ///< a single command, shown above the page's own
  };
  explicit TextPage(Services services, QWidget* parent = nullptr);

  /// The page is shown: cursor and text mode are read from the Terminal.
  void Shown();
  /// Another page is shown: what is still to be asked is not asked.
  void Left() { left_ = true; }
  /// What the Terminal sent unasked.
  void Received(const std::string& characters) override;
  /// There is a port again; `closed` are the words for none.
  void ForgetClosedPort(const QString& closed);
  /// The command text of the text mode that the page shows.
  std::string TextModeCommand() const;

 Q_SIGNALS:
  /// A text has gone to the display; what is known about the system may be out of date.
  void TextSent();
  /// A line for the status bar.
  void Hint(const QString& text);

 private:
  QWidget* MakeCursor();
  QLayout* MakePosition();
  QWidget* MakeTextStyle();
  QLayout* MakeZoom();
  QWidget* MakeText();
  QWidget* MakeFixedText();
  void ConnectControls();
  void ConnectLists();

  CursorSettings Cursor() const;
  TextModeSettings TextMode() const;
  TextStyle PreviewStyle() const;
  std::string Mark(const Reply& reply) const;
  std::optional<Reply> Ask(const Command& query);
  void ShowPreview();
  void ShowZoomState(const QString& lack);
  void ShowPositionRange();
  static void Changed(ReadMark* mark);
  static void ForgetChange(ReadMark* mark);
  void Step(int zoom, int by);

  void cmdSetCursor_Click();
  void cmdSetCursorHome_Click();
  void cmdGetCursor_Click();
  void cboCursor_Click();
  void cboTextStyle_Click();
  void cmdSetText_Click();
  void cmdGetText_Click();
  void cmdTextClear_Click();
  void cmdSenden_Click();
  void cmdSetFesttext_Click();

  Services services_;
  bool left_ = false;
  bool filling_ = false;  // the page reads because it is shown, not because a button was pressed
  QString zoomLack_;      // why no zoom is known
  QComboBox* cboCursor;
  std::array<QRadioButton*, 2> chkCursor{};
  QLabel* lblCursorSize;
  WireField* txtCursorSize;
  QLabel* lblCursorSizeEinheit;
  QLabel* lblCursorX;
  QLabel* lblCursorY;
  WireField* txtCursorX;
  WireField* txtCursorY;
  QLabel* lblCursorEinheit;
  QPushButton* cmdSetCursor;
  QPushButton* cmdSetCursorHome;
  QPushButton* cmdGetCursor;
  ReadMark* lblCursorStand;
  std::array<QComboBox*, 3> cboTextStyle{};
  std::array<QLabel*, 2> lblTextZoom{};
  std::array<UpDown*, 2> ctlUpDown{};
  QLabel* lblTextZoomStand;
  TextPreview* ctlVorschau;
  QPushButton* cmdSetText;
  QPushButton* cmdGetText;
  ReadMark* lblTextStand;
  QPushButton* cmdTextClear;
  QPushButton* cmdTextClr2;
  WireEdit* txtText;
  QPushButton* cmdSenden;  // index 1; index 0 stands beside the single command
  std::array<QRadioButton*, 2> chkFesttextA{};
  std::array<QRadioButton*, 2> chkFesttextB{};
  QPushButton* cmdSetFesttext;
};

}  // namespace kelvo
