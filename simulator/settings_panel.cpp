#include "simulator/settings_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QSpinBox>
#include <utility>

namespace kelvo::sim {
namespace {

constexpr std::pair<Fault, const char*> kFaultNames[] = {
    {Fault::None, "keine"},
    {Fault::Silent, "schweigt"},
    {Fault::Nak, "lehnt ab (NAK)"},
    {Fault::Garbled, "antwortet verstümmelt"},
    {Fault::Late, "antwortet spät"},
    {Fault::Slow, "antwortet langsam"},
    {Fault::Drops, "verliert Zeichen"},
    {Fault::Doubles, "verdoppelt Zeichen"},
    {Fault::Flips, "verfälscht Zeichen"},
};

constexpr int kUnplugged = -1;  // stands in the list of faults, but is the adapter's

}  // namespace

SettingsPanel::SettingsPanel(QWidget* parent)
    : QGroupBox(tr("Einstellungen"), parent),
      version_(new QLineEdit),
      flash_(new QCheckBox(tr("mit F&lash"))),
      address_(new QSpinBox),
      echo_(new QComboBox),
      fault_(new QComboBox) {
  version_->setObjectName(QStringLiteral("txtVersion"));
  version_->setMaxLength(19);
  // A version begins with a digit; ";" ends it on the line, "F" at its end means flash.
  version_->setValidator(new QRegularExpressionValidator(
      QRegularExpression(QStringLiteral("[0-9]([ -:<-~]*[ -:<-EG-~])?")), version_));
  flash_->setObjectName(QStringLiteral("chkFlash"));
  address_->setObjectName(QStringLiteral("txtAddress"));
  address_->setRange(0, 255);
  echo_->setObjectName(QStringLiteral("cboEcho"));
  echo_->addItems({tr("aus"), tr("Abfragen"), tr("alles (Zweidraht)")});
  fault_->setObjectName(QStringLiteral("cboFault"));
  FillFaults();

  auto* form = new QFormLayout(this);
  form->addRow(tr("&Version"), version_);
  form->addRow(QString(), flash_);
  form->addRow(tr("&Adresse"), address_);
  form->addRow(tr("E&cho"), echo_);
  form->addRow(tr("&Störung"), fault_);

  connect(version_, &QLineEdit::editingFinished, this, &SettingsPanel::Report);
  connect(flash_, &QCheckBox::toggled, this, &SettingsPanel::Report);
  connect(address_, &QSpinBox::valueChanged, this, &SettingsPanel::Report);
  connect(echo_, &QComboBox::currentIndexChanged, this, &SettingsPanel::Report);
  connect(fault_, &QComboBox::currentIndexChanged, this, &SettingsPanel::Report);
}

QString SettingsPanel::FaultName(Fault fault) {
  for (const auto& [known, name] : kFaultNames) {
    if (known == fault) return QString::fromUtf8(name);
  }
  return {};
}

void SettingsPanel::FillFaults() {
  for (const auto& [fault, name] : kFaultNames) {
    fault_->addItem(QString::fromUtf8(name), static_cast<int>(fault));
  }
  fault_->addItem(tr("abgezogen"), kUnplugged);
}

void SettingsPanel::Show(const Settings& settings) {
  if (settings == shown_ && !version_->text().isEmpty()) return;
  shown_ = settings;
  const QSignalBlocker quiet[] = {QSignalBlocker(version_), QSignalBlocker(flash_),
                                  QSignalBlocker(address_), QSignalBlocker(echo_),
                                  QSignalBlocker(fault_)};
  version_->setText(settings.version);
  flash_->setChecked(settings.flash);
  address_->setValue(settings.address);
  echo_->setCurrentIndex(static_cast<int>(settings.echo));
  const int fault = settings.unplugged ? kUnplugged : static_cast<int>(settings.fault);
  fault_->setCurrentIndex(fault_->findData(fault));
}

SettingsPanel::Settings SettingsPanel::Read() const {
  Settings settings;
  settings.version = version_->hasAcceptableInput() ? version_->text() : shown_.version;
  settings.flash = flash_->isChecked();
  settings.address = address_->value();
  settings.echo = static_cast<Echo>(echo_->currentIndex());
  const int fault = fault_->currentData().toInt();
  settings.unplugged = fault == kUnplugged;
  settings.fault = settings.unplugged ? Fault::None : static_cast<Fault>(fault);
  return settings;
}

void SettingsPanel::Report() {
  const Settings settings = Read();
  if (settings == shown_) return;
  shown_ = settings;
  Q_EMIT Changed(settings);
}

}  // namespace kelvo::sim
