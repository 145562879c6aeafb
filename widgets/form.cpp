#include "widgets/form.h"

#include <QHBoxLayout>
#include <QShortcut>
#include <algorithm>

#include "widgets/symbol.h"

namespace kelvo {

QLabel* LabelFor(QWidget* control, const QString& text) {
  auto* label = new QLabel(text);
  label->setBuddy(control);
  QString name = text;
  name.remove(u'&').remove(u':');
  control->setAccessibleName(name.trimmed());
  return label;
}

QLabel* AddRow(QFormLayout* form, const QString& label, QWidget* control, const QString& unit) {
  QLabel* const leader = LabelFor(control, label);
  if (unit.isEmpty()) {
    form->addRow(leader, control);
    return nullptr;
  }
  auto* row = new QHBoxLayout;
  row->addWidget(control);
  auto* behind = new QLabel(unit);
  row->addWidget(behind);
  row->addStretch();
  form->addRow(leader, row);
  return behind;
}

QPushButton* MakeButton(const char* name, const QString& caption, const QString& tip) {
  auto* button = Named(new QPushButton(caption), name);
  button->setToolTip(tip);
  return button;
}

QPushButton* MakeDangerButton(const char* name, const QString& caption, const QString& tip) {
  QPushButton* const button = MakeButton(name, caption, tip);
  button->setIcon(SymbolIcon(Symbol::Danger));
  return button;
}

void AddShortcut(QPushButton* button, const QKeySequence& keys) {
  auto* shortcut = new QShortcut(keys, button);
  QObject::connect(shortcut, &QShortcut::activated, button, &QPushButton::click);
}

void KeepRoom(QLabel* label, int lines) {
  label->setMinimumHeight(label->fontMetrics().lineSpacing() * lines);
  QSizePolicy policy = label->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  label->setSizePolicy(policy);
}

void FixRoom(QLabel* label, int lines) {
  KeepRoom(label, lines);
  label->setMaximumHeight(label->minimumHeight());
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  QSizePolicy policy = label->sizePolicy();
  policy.setHorizontalPolicy(QSizePolicy::Ignored);
  label->setSizePolicy(policy);
}

void FitCaptions(QPushButton* button, std::initializer_list<QString> captions) {
  const QString shown = button->text();
  int widest = 0;
  for (const QString& caption : captions) {
    button->setText(caption);
    widest = std::max(widest, button->sizeHint().width());
  }
  button->setText(shown);
  button->setMinimumWidth(widest);
}

void CloseByEscape(QWidget* window) {
  auto* const escape = new QShortcut(QKeySequence(Qt::Key_Escape), window, nullptr, nullptr,
                                     Qt::WidgetWithChildrenShortcut);
  QObject::connect(escape, &QShortcut::activated, window, &QWidget::close);
}

QLabel* MakeValue(const char* name) {
  auto* label = Named(new QLabel, name);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  label->setTextFormat(Qt::PlainText);
  label->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("0")) * 12);
  return label;
}

QFormLayout* MakeForm(QGroupBox* group) {
  auto* form = new QFormLayout(group);
  form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
  return form;
}

QLayout* ButtonRow(std::initializer_list<QWidget*> buttons) {
  auto* row = new QHBoxLayout;
  for (QWidget* button : buttons) row->addWidget(button);
  row->addStretch();
  return row;
}

}  // namespace kelvo
