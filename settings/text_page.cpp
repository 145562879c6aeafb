#include "settings/text_page.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <algorithm>

#include "base/val.h"
#include "link/chronicle.h"
#include "link/commands.h"
#include "settings/text_preview.h"
#include "widgets/read_mark.h"
#include "widgets/up_down.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

enum StyleList { FontList, AttributeList, ModeList };
enum ZoomAxis { ZoomX, ZoomY };

// More than the preview has room for. The text grows by all that the Terminal sends.
constexpr int kPreviewedCharacters = 2000;

QString Digits(double number) { return QString::fromStdString(NumberText(number)); }

std::string Caption(const QLabel* label) { return label->text().toStdString(); }

// An index outside of a list leaves the list as it is.
void Choose(QComboBox* list, int index) {
  if (index >= 0 && index < list->count()) list->setCurrentIndex(index);
}

}  // namespace

CursorSettings TextPage::Cursor() const {
  return {cboCursor->currentIndex(), chkCursor[1]->isChecked() ? 1 : 0, txtCursorSize->Wire(),
          txtCursorX->Wire(), txtCursorY->Wire()};
}

TextModeSettings TextPage::TextMode() const {
  return {cboTextStyle[FontList]->currentIndex(), cboTextStyle[AttributeList]->currentIndex(),
          cboTextStyle[ModeList]->currentIndex(), Caption(lblTextZoom[ZoomX]),
          Caption(lblTextZoom[ZoomY])};
}

std::string TextPage::TextModeCommand() const { return CreateTextMode(TextMode()); }

void TextPage::Shown() {
  left_ = false;
  const QScopedValueRollback<bool> filling(filling_, true);
  cmdGetCursor_Click();
  cmdGetText_Click();
}

// The reply to a query. Nothing once the page has been left, or while it only fills itself and the
// operator has begun something else: a silent Terminal would keep the line for half a second at
// each.
std::optional<Reply> TextPage::Ask(const Command& query) {
  if (left_ || (filling_ && services_.person.Begun().SomethingWaits())) return std::nullopt;
  Reply reply = services_.exchange.SendQuery(query);
  return left_ ? std::nullopt : std::optional(std::move(reply));
}

std::string TextPage::Mark(const Reply& reply) const {
  return MarkWords(reply, services_.exchange);
}

void TextPage::Received(const std::string& characters) { txtText->AppendWire(characters); }

// The cursor.

void TextPage::cmdSetCursor_Click() {
  services_.exchange.SendString(CreateCursor(Cursor()));
  ForgetChange(lblCursorStand);
}

// What is shown is not what was read.
void TextPage::Changed(ReadMark* mark) { mark->setText(tr("von Hand geändert")); }

// What was sent nobody confirms.
void TextPage::ForgetChange(ReadMark* mark) {
  if (mark->text() == tr("von Hand geändert")) mark->clear();
}

void TextPage::cmdSetCursorHome_Click() {
  const int kind = cboCursor->currentIndex();
  if (kind == CursorOff) return;
  services_.exchange.SendString(IsAtText(kind) ? MoveTextHome() : MoveGraphicHome());
  // Text positions count from 1, graphic positions from 0.
  const QString home = IsAtText(kind) ? QStringLiteral("1") : QStringLiteral("0");
  txtCursorX->setText(home);
  txtCursorY->setText(home);
}

void TextPage::cmdGetCursor_Click() {
  const auto cursor = Ask(AskCursor());
  if (!cursor) return;
  lblCursorStand->Show(Mark(*cursor));
  Choose(cboCursor, RoundToEven(cursor->Number()));
  const int kind = cboCursor->currentIndex();
  const auto shape = Ask(AskCursorShape());
  if (!shape) return;
  if (const auto index = ReadCursorShape(kind, shape->text)) {
    chkCursor[static_cast<std::size_t>(*index)]->setChecked(true);
  }
  txtCursorSize->setText(Digits(ReadCursorSize(shape->text)));
  if (shape->Failed()) lblCursorStand->Show(Mark(*shape));
  const auto reply = Ask(IsAtText(kind) ? AskTextPosition() : AskGraphicPosition());
  if (!reply) return;
  const Position position = ReadPosition(reply->text);
  txtCursorX->setText(Digits(position.x));
  txtCursorY->setText(Digits(position.y));
  if (reply->Failed()) lblCursorStand->Show(Mark(*reply));
  cboCursor_Click();
}

void TextPage::cboCursor_Click() {
  const int kind = cboCursor->currentIndex();
  for (QRadioButton* shape : chkCursor) shape->setVisible(HasShape(kind));
  txtCursorSize->setVisible(IsCross(kind));
  lblCursorSize->setVisible(IsCross(kind));
  lblCursorSizeEinheit->setVisible(IsCross(kind));
  lblCursorX->setText(IsAtText(kind) ? tr("Spalte") : tr("X-Pos"));
  lblCursorY->setText(IsAtText(kind) ? tr("Zeile") : tr("Y-Pos"));
  ShowPositionRange();
  txtCursorX->setAccessibleName(lblCursorX->text());
  txtCursorY->setAccessibleName(lblCursorY->text());
}

void TextPage::ShowPositionRange() {
  const int kind = cboCursor->currentIndex();
  const int lowest = IsAtText(kind) ? 1 : 0;
  const QString range = IsAtText(kind) ? tr("ab 1") : tr("Pixel, ab 0");
  const bool outside =
      kind != CursorOff && (Val(txtCursorX->Wire()) < lowest || Val(txtCursorY->Wire()) < lowest);
  lblCursorEinheit->setText(outside ? tr("%1 – die Werte liegen davor").arg(range) : range);
}

// The text mode.

void TextPage::cmdSetText_Click() {
  if (!TextMode().ZoomKnown()) {
    ShowZoomState(tr("nicht gesendet: weder gelesen noch gewählt"));
  }
  services_.exchange.SendString(TextModeCommand());
  ForgetChange(lblTextStand);
}

void TextPage::cmdGetText_Click() {
  const std::pair<StyleList, Command> styles[] = {
      {FontList, AskTextFont()}, {AttributeList, AskTextAttribute()}, {ModeList, AskTextMode()}};
  std::string lack;
  for (const auto& [list, query] : styles) {
    const auto reply = Ask(query);
    if (!reply) return;
    Choose(cboTextStyle[list], ReadDigit(reply->text));
    if (lack.empty()) lack = Mark(*reply);
    lblTextStand->Show(lack);
  }
  const auto reply = Ask(AskTextZoom());
  if (!reply) return;
  const Zoom zoom = ReadZoom(reply->text);
  lblTextZoom[ZoomX]->setNum(zoom.x);
  lblTextZoom[ZoomY]->setText(Digits(zoom.y));
  const std::string zoomLack = Mark(*reply);
  lblTextStand->Show(lack.empty() ? zoomLack : lack);
  const QString none = tr("kein Zoom gelesen");
  ShowZoomState(zoomLack.empty() ? none : QString::fromStdString(zoomLack + ": ") + none);
  ShowPreview();
}

void TextPage::ForgetClosedPort(const QString& closed) {
  if (zoomLack_.startsWith(closed)) ShowZoomState(tr("kein Zoom gelesen"));
}

// A zoom that is there needs no explanation.
void TextPage::ShowZoomState(const QString& lack) {
  zoomLack_ = lack;
  lblTextZoomStand->setText(TextMode().ZoomKnown() ? QString() : lack);
}

void TextPage::cboTextStyle_Click() {
  const bool zooms = HasZoom(cboTextStyle[FontList]->currentIndex());
  for (UpDown* buttons : ctlUpDown) buttons->setVisible(zooms);
  if (!zooms) {
    for (QLabel* zoom : lblTextZoom) zoom->setNum(1);
  }
  ShowZoomState(zoomLack_);
}

// One step of a zoom, within its limits.
void TextPage::Step(int zoom, int by) {
  QLabel* const caption = lblTextZoom[static_cast<std::size_t>(zoom)];
  const int present = RoundToEven(Val(Caption(caption)));
  const int largest = zoom == ZoomX ? kLargestZoomX : kLargestZoomY;
  if (by < 0 ? present > 1 : present < largest) caption->setNum(present + by);
  ShowZoomState(zoomLack_);
  ShowPreview();
}

TextStyle TextPage::PreviewStyle() const {
  const TextModeSettings text = TextMode();
  TextStyle style;
  style.font = text.font;
  style.zoomX = RoundToEven(Val(text.zoomX));
  style.zoomY = RoundToEven(Val(text.zoomY));
  style.underline = (text.attribute & 1) != 0;
  style.bold = (text.attribute & 2) != 0;
  style.inverse = (text.attribute & 4) != 0;
  style.mode = static_cast<kelvo::TextMode>(std::max(text.mode, 0));
  return style;
}

void TextPage::ShowPreview() {
  ctlVorschau->Show(txtText->WireStart(kPreviewedCharacters), PreviewStyle());
}

// The text.

void TextPage::cmdTextClear_Click() {
  services_.exchange.SendString(ClearDisplay());
  txtText->clear();
}

void TextPage::cmdSenden_Click() {
  const std::string text = txtText->Wire();
  cmdSetText_Click();
  services_.exchange.SendString(text);
  Q_EMIT TextSent();
}

void TextPage::cmdSetFesttext_Click() {
  // `chkFesttextB` chooses nothing yet: no command belongs to it.
  for (const int option : {0, 1}) {
    if (!chkFesttextA[static_cast<std::size_t>(option)]->isChecked()) continue;
    return void(services_.exchange.SendString(SelectAddress(1 - option)));
  }
  const bool b = chkFesttextB[0]->isChecked() || chkFesttextB[1]->isChecked();
  Q_EMIT Hint(b ? tr("Nichts gesendet: Zu B gehört kein Befehl; bei A ist nichts gewählt.")
                : tr("Nichts gesendet: Bei A ist kein Terminal gewählt."));
}

}  // namespace kelvo
