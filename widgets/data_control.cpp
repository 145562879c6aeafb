#include "widgets/data_control.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <exception>

#include "store/recordset.h"
#include "widgets/form.h"

namespace kelvo {

DataControl::DataControl(const char* name, Recordset& records, QWidget* parent)
    : QWidget(parent), records_(records) {
  Named(this, name);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  caption_ = Named(new QLabel, QString::fromUtf8(name) + QStringLiteral("_Caption"));
  caption_->setAlignment(Qt::AlignCenter);
  caption_->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  caption_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00000000")));
  first_ =
      AddButton("_First", Symbol::First, tr("Erster Satz"), [](Recordset& r) { r.MoveFirst(); });
  previous_ = AddButton("_Previous", Symbol::Previous, tr("Voriger Satz"),
                        [](Recordset& r) { r.MovePrevious(); });
  next_ = AddButton("_Next", Symbol::Next, tr("Nächster Satz"), [](Recordset& r) { r.MoveNext(); });
  last_ = AddButton("_Last", Symbol::Last, tr("Letzter Satz"), [](Recordset& r) { r.MoveLast(); });
  for (QWidget* part : std::initializer_list<QWidget*>{first_, previous_, caption_, next_, last_}) {
    row->addWidget(part);
  }
  row->addStretch();
  setFocusProxy(next_);
}

QToolButton* DataControl::AddButton(const char* suffix, Symbol symbol, const QString& tip,
                                    void (*go)(Recordset&)) {
  auto* button = Named(new QToolButton, objectName() + QString::fromUtf8(suffix));
  button->setIcon(SymbolIcon(symbol));
  button->setToolTip(tip);
  button->setAccessibleName(tip);
  button->setFocusPolicy(Qt::StrongFocus);
  connect(button, &QToolButton::clicked, this, [this, go] {
    try {
      go(records_);
      Update();
    } catch (const std::exception& error) {
      Q_EMIT Failed(QString::fromUtf8(error.what()));
    }
  });
  return button;
}

void DataControl::SetCaption(const QString& caption) { caption_->setText(caption); }

QString DataControl::Caption() const { return caption_->text(); }

void DataControl::Update() {
  const std::size_t count = records_.RecordCount();
  const bool before = records_.Position() > 0;
  const bool after = records_.Position() + 1 < count;
  first_->setEnabled(before);
  previous_->setEnabled(before);
  next_->setEnabled(after);
  last_->setEnabled(after);
}

}  // namespace kelvo
