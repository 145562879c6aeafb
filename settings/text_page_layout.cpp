#include <QButtonGroup>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "base/val.h"
#include "settings/text_page.h"
#include "settings/text_preview.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/read_mark.h"
#include "widgets/up_down.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

QStringList CursorEntries() {
  return {TextPage::tr("aus"),
          TextPage::tr("blinkend an Text-Cursor-Position"),
          TextPage::tr("stehend an Text-Cursor-Position"),
          TextPage::tr("blinkendes Fadenkreuz an Grafik-Position"),
          TextPage::tr("stehendes Fadenkreuz an Grafik-Position"),
          TextPage::tr("blinkender Textcursor an Grafik-Position"),
          TextPage::tr("stehender Textcursor an Grafik-Position")};
}

// The two abbreviations of the same word are as they have always been.
QStringList StyleEntries(int list) {
  switch (list) {
    case 0:
      return {TextPage::tr("8 x 8"),
              TextPage::tr("8 x 10"),
              TextPage::tr("8 x 14"),
              TextPage::tr("8 x 16"),
              TextPage::tr("4 x 6 Mini Zahlen"),
              TextPage::tr("8 x 8 fett"),
              TextPage::tr("8 x 10 fett"),
              TextPage::tr("8 x 14 fett"),
              TextPage::tr("8 x 16 fett"),
              TextPage::tr("16 x 32 Maxi Zahlen")};
    case 1:
      return {TextPage::tr("Normal"),      TextPage::tr("Unterstrichen"),
              TextPage::tr("Fett"),        TextPage::tr("Fett+Unterstrichen"),
              TextPage::tr("Invers"),      TextPage::tr("Unterstr.+Invers"),
              TextPage::tr("Fett+Invers"), TextPage::tr("Fett+Untersr.+Invers")};
    default:
      return {TextPage::tr("Ersetzen"), TextPage::tr("Invertieren"), TextPage::tr("Löschen"),
              TextPage::tr("Setzen")};
  }
}

void RetainSize(QWidget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
}

// A field that holds a number: what is typed is rewritten with its numeric value at once.
WireField* NumberField(const char* name, Operator& person) {
  auto* field = Named(new WireField, name);
  field->setText(QStringLiteral("0"));
  field->setMaximumWidth(field->fontMetrics().horizontalAdvance(QStringLiteral("0")) * 8);
  QObject::connect(field, &QLineEdit::textChanged, field, [field](const QString& text) {
    const QString number = QString::fromStdString(NumberText(Val(text.toStdString())));
    if (number != text) field->setText(number);
  });
  QObject::connect(field, &WireField::Refused, field, [&person] { person.Beep(); });
  return field;
}

}  // namespace

TextPage::TextPage(Services services, QWidget* parent) : QWidget(parent), services_(services) {
  auto* page = new QVBoxLayout(this);
  page->addWidget(services_.rawCommand);
  auto* upper = new QHBoxLayout;
  upper->addWidget(MakeCursor(), 1);
  upper->addWidget(MakeTextStyle(), 1);
  page->addLayout(upper);
  page->addWidget(MakeText(), 1);
  page->addWidget(MakeFixedText());
  ConnectControls();
  ConnectLists();
  cboCursor_Click();
  ShowPreview();
}

QWidget* TextPage::MakeCursor() {
  auto* group = new QGroupBox(tr("Cursor"));
  cboCursor = Named(new QComboBox, "cboCursor");
  cboCursor->addItems(CursorEntries());
  cmdSetCursor = MakeButton("cmdSetCursor", tr("Cursor set&zen"));
  cmdSetCursorHome = MakeButton("cmdSetCursorHome", tr("Gr&undstellung"),
                                tr("Stellt den Cursor an den Anfang des Displays."));
  auto* shapes = new QHBoxLayout;
  const QString captions[] = {tr("U&nterstrich"), tr("Bloc&k")};
  for (std::size_t i = 0; i < chkCursor.size(); ++i) {
    chkCursor[i] =
        Named(new QRadioButton(captions[i]), ArrayName("chkCursor", static_cast<int>(i)));
    RetainSize(chkCursor[i]);
    shapes->addWidget(chkCursor[i]);
  }
  chkCursor[0]->setChecked(true);
  txtCursorSize = NumberField("txtCursorSize", services_.person);
  lblCursorSize = Named(LabelFor(txtCursorSize, tr("Gr&öße")), "lblCursorSize");
  lblCursorSizeEinheit = Named(new QLabel(tr("Pixel")), "lblCursorSizeEinheit");
  shapes->addStretch();
  for (QWidget* part :
       std::initializer_list<QWidget*>{lblCursorSize, txtCursorSize, lblCursorSizeEinheit}) {
    RetainSize(part);
    shapes->addWidget(part);
  }
  QLayout* const position = MakePosition();
  cmdGetCursor = MakeButton("cmdGetCursor", tr("Cursor &lesen"));

  auto* column = new QVBoxLayout(group);
  auto* kind = new QHBoxLayout;
  kind->addWidget(LabelFor(cboCursor, tr("A&rt:")));
  kind->addWidget(cboCursor, 1);
  column->addLayout(kind);
  column->addLayout(shapes);
  column->addLayout(position);
  column->addStretch();
  lblCursorStand = new ReadMark("lblCursorStand", tr("noch nicht gelesen"));
  column->addLayout(ButtonRow({cmdSetCursor, cmdSetCursorHome, cmdGetCursor}));
  column->addWidget(lblCursorStand);
  return group;
}

QLayout* TextPage::MakePosition() {
  txtCursorX = NumberField("txtCursorX", services_.person);
  txtCursorY = NumberField("txtCursorY", services_.person);
  lblCursorX = Named(LabelFor(txtCursorX, {}), "lblCursorX");
  lblCursorY = Named(LabelFor(txtCursorY, {}), "lblCursorY");
  lblCursorEinheit = Named(new QLabel, "lblCursorEinheit");
  return ButtonRow({lblCursorX, txtCursorX, lblCursorY, txtCursorY, lblCursorEinheit});
}

QWidget* TextPage::MakeTextStyle() {
  auto* group = new QGroupBox(tr("Textmodus"));
  QFormLayout* form = MakeForm(group);
  form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  const QString labels[] = {tr("Schri&ftart:"), tr("Attr&ibut:"), tr("Zeichen&modus:")};
  for (std::size_t i = 0; i < cboTextStyle.size(); ++i) {
    cboTextStyle[i] = Named(new QComboBox, ArrayName("cboTextStyle", static_cast<int>(i)));
    cboTextStyle[i]->addItems(StyleEntries(static_cast<int>(i)));
    AddRow(form, labels[i], cboTextStyle[i]);
  }
  form->addRow(new QLabel(tr("Zoom:")), MakeZoom());
  lblTextZoomStand = Named(new QLabel, "lblTextZoomStand");
  // It is never hidden: a form gives no room to a hidden row, whatever it is to retain.
  KeepRoom(lblTextZoomStand, 1);
  form->addRow(QString(), lblTextZoomStand);
  cmdSetText = MakeButton("cmdSetText", tr("Te&xtmodus setzen"));
  cmdGetText = MakeButton("cmdGetText", tr("Textmodus lesen"));
  cmdTextClr2 =
      MakeButton("cmdTextClr2", tr("Display löschen"), tr("Löscht das Display und das Textfeld."));
  form->addRow(ButtonRow({cmdSetText, cmdGetText, cmdTextClr2}));
  lblTextStand = new ReadMark("lblTextStand", tr("noch nicht gelesen"));
  form->addRow(lblTextStand);
  return group;
}

QLayout* TextPage::MakeZoom() {
  auto* row = new QHBoxLayout;
  const std::array<std::pair<QString, int>, 2> axes{
      {{tr("X"), kLargestZoomX}, {tr("Y"), kLargestZoomY}}};
  for (std::size_t i = 0; i < axes.size(); ++i) {
    const auto& [axis, largest] = axes[i];
    const int index = static_cast<int>(i);
    lblTextZoom[i] = MakeValue("lblTextZoom");
    Named(lblTextZoom[i], ArrayName("lblTextZoom", index));
    lblTextZoom[i]->setNum(1);
    lblTextZoom[i]->setAlignment(Qt::AlignCenter);
    lblTextZoom[i]->setMinimumWidth(fontMetrics().averageCharWidth() * 4);
    lblTextZoom[i]->setAccessibleName(tr("Zoom %1").arg(axis));
    ctlUpDown[i] = new UpDown(ArrayName("ctlUpDown", index), tr("Zoom %1").arg(axis));
    RetainSize(ctlUpDown[i]);
    row->addWidget(new QLabel(axis));
    row->addWidget(lblTextZoom[i]);
    row->addWidget(ctlUpDown[i]);
    row->addWidget(new QLabel(tr("1 … %1").arg(largest)));
    row->addSpacing(fontMetrics().averageCharWidth() * 3);
  }
  row->addStretch();
  return row;
}

QWidget* TextPage::MakeText() {
  auto* group = new QGroupBox(tr("Text"));
  txtText = Named(new WireEdit, "txtText");
  txtText->setMinimumHeight(fontMetrics().lineSpacing() * 5 / 2);
  ctlVorschau = Named(new TextPreview(services_.fonts), "ctlVorschau");
  cmdSenden = MakeButton("cmdSenden_1", tr("&Text senden"),
                         tr("Setzt den Textmodus und sendet den Text, wie er dasteht."));
  cmdTextClear = MakeButton("cmdTextClear", tr("Displa&y löschen"),
                            tr("Löscht das Display und das Textfeld."));
  auto* fields = new QGridLayout;
  fields->addWidget(LabelFor(txtText, tr("Anzei&getext, auch was das Terminal sendet:")), 0, 0);
  fields->addWidget(new QLabel(tr("Vorschau, links auf leerem, rechts auf vollem Grund:")), 0, 1);
  fields->addWidget(txtText, 1, 0);
  fields->addWidget(ctlVorschau, 1, 1);
  fields->setColumnStretch(0, 1);
  fields->setColumnStretch(1, 1);
  fields->setRowStretch(1, 1);
  auto* column = new QVBoxLayout(group);
  column->addLayout(fields, 1);
  column->addLayout(ButtonRow({cmdSenden, cmdTextClear}));
  return group;
}

QWidget* TextPage::MakeFixedText() {
  auto* group = new QGroupBox(tr("Festtext"));
  auto* row = new QHBoxLayout(group);
  const auto addOptions = [row, group](const char* name, const QString& caption, const QString& tip,
                                       std::array<QRadioButton*, 2>& options) {
    auto* const choice = new QButtonGroup(group);
    for (std::size_t i = 0; i < options.size(); ++i) {
      const int index = static_cast<int>(i);
      options[i] = Named(new QRadioButton(caption.arg(1 - index)), ArrayName(name, index));
      options[i]->setToolTip(tip);
      choice->addButton(options[i]);
      row->addWidget(options[i]);
    }
  };
  addOptions("chkFesttextA", tr("A: Terminal %1"), tr("Wählt das Terminal mit dieser Adresse."),
             chkFesttextA);
  addOptions("chkFesttextB", tr("B: %1"), tr("Ohne Wirkung: dazu gehört kein Befehl."),
             chkFesttextB);
  cmdSetFesttext = MakeButton("cmdSetFesttext", tr("Festtext wählen"));
  row->addWidget(cmdSetFesttext);
  row->addStretch();
  return group;
}

void TextPage::ConnectControls() {
  Operator& person = services_.person;
  OnSend(cmdSetCursor, this, person, &TextPage::cmdSetCursor_Click);
  OnSend(cmdSetCursorHome, this, person, &TextPage::cmdSetCursorHome_Click);
  OnSend(cmdGetCursor, this, person, &TextPage::cmdGetCursor_Click);
  OnSend(cmdSetText, this, person, &TextPage::cmdSetText_Click);
  OnSend(cmdGetText, this, person, &TextPage::cmdGetText_Click);
  OnSend(cmdTextClear, this, person, &TextPage::cmdTextClear_Click);
  OnSend(cmdTextClr2, this, person, &TextPage::cmdTextClear_Click);
  OnSend(cmdSenden, this, person, &TextPage::cmdSenden_Click);
  OnSend(cmdSetFesttext, this, person, &TextPage::cmdSetFesttext_Click);
}

void TextPage::ConnectLists() {
  connect(cboCursor, &QComboBox::currentIndexChanged, this, &TextPage::cboCursor_Click);
  connect(cboTextStyle[0], &QComboBox::currentIndexChanged, this, &TextPage::cboTextStyle_Click);
  for (QComboBox* list : cboTextStyle) {
    connect(list, &QComboBox::currentIndexChanged, this, &TextPage::ShowPreview);
  }
  for (int zoom = 0; zoom < 2; ++zoom) {
    UpDown* const buttons = ctlUpDown[static_cast<std::size_t>(zoom)];
    connect(buttons, &UpDown::Up, this, [this, zoom] { Step(zoom, 1); });
    connect(buttons, &UpDown::Down, this, [this, zoom] { Step(zoom, -1); });
    for (const auto step : {&UpDown::Up, &UpDown::Down}) {
      connect(buttons, step, this, [this] { Changed(lblTextStand); });
    }
  }
  for (QComboBox* list : cboTextStyle) {
    connect(list, &QComboBox::activated, this, [this] { Changed(lblTextStand); });
  }
  connect(cboCursor, &QComboBox::activated, this, [this] { Changed(lblCursorStand); });
  for (QRadioButton* shape : chkCursor) {
    connect(shape, &QRadioButton::clicked, this, [this] { Changed(lblCursorStand); });
  }
  for (WireField* field : {txtCursorSize, txtCursorX, txtCursorY}) {
    connect(field, &QLineEdit::textEdited, this, [this] { Changed(lblCursorStand); });
    connect(field, &QLineEdit::textChanged, this, &TextPage::ShowPositionRange);
  }
  connect(txtText, &WireEdit::textChanged, this, &TextPage::ShowPreview);
  connect(txtText, &WireEdit::Refused, this, [this] { services_.person.Beep(); });
}

}  // namespace kelvo
