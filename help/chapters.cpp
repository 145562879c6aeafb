#include "help/chapters.h"

#include <QApplication>
#include <QDockWidget>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>

namespace kelvo {

QString ChapterOf(const QWidget& window) {
  static constexpr struct {
    const char* window;
    const char* chapter;
  } rows[] = {
      {"frmGrafik", "grafik-editor.html"},
      {"dlgBild", "grafik-editor.html#bild"},
      {"frmDovu", "senden-an-alle.html"},
      {"frmSchreiben", "geprueft.html"},
      {"frmVergleich", "vergleichen.html"},
      {"frmAusstatten", "ausstatten.html"},
      {"frmExport", "projekte.html"},
      {"frmImport", "projekte.html#importieren"},
      {"frmDatenblatt", "datenblatt.html"},
      {"frmAnschluesse", "anschluesse.html"},
      {"frmVerbindungSuchen", "schnittstellen.html#suchen"},
      {"frmDatenverkehr", "datenverkehr.html"},
      {"frmVerlauf", "fenster.html#verlauf"},
      {"frmAnzeigen", "nachbildung.html"},
      {"dckAnzeige", "nachbildung.html"},
      {"frmInfo", "eeprom.html"},
      {"frmBestandText", "bestand.html"},
      {"frmHilfe", "hilfe.html"},
      {"frmAbout", "index.html"},
  };
  const QString name = window.objectName();
  for (const auto& row : rows) {
    if (name == QLatin1String(row.window)) return QString::fromLatin1(row.chapter);
  }
  if (qobject_cast<const QFileDialog*>(&window) != nullptr) return QStringLiteral("dateien.html");
  const bool asks = qobject_cast<const QMessageBox*>(&window) != nullptr ||
                    qobject_cast<const QInputDialog*>(&window) != nullptr;
  return asks ? QStringLiteral("meldungen.html") : QString();
}

QString ChapterAt(const QWidget& widget) {
  const QWidget* at = &widget;
  while (!at->isWindow() && qobject_cast<const QDockWidget*>(at) == nullptr) {
    at = at->parentWidget();
  }
  return ChapterOf(*at);
}

QString MessageOf(const QWidget& window) {
  QString text;
  if (const auto* box = qobject_cast<const QMessageBox*>(&window)) text = box->text();
  if (const auto* input = qobject_cast<const QInputDialog*>(&window)) text = input->labelText();
  const bool titled = window.windowTitle() != QApplication::applicationDisplayName();
  return text.isEmpty() || !titled ? text : window.windowTitle() + u' ' + text;
}

}  // namespace kelvo
