#include <QTableView>
#include <QTreeWidget>

#include "graphics/wmf.h"
#include "inventory/journal_text.h"
#include "project/project_store.h"
#include "project/project_text.h"
#include "tests/drawing_samples.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

using testing_world::ReadFile;

/// The program, and a file for its project.
class ProjectDialogTest : public WindowTest {
 protected:
  ProjectDialogTest() { person.file = folder.Path("halle.kelvo"); }

  void Export() {
    Trigger("mnuDateiExportieren");
    Click("cmdExportDatei");
  }
  std::string File() { return ReadFile(folder.Path("halle.kelvo")); }
  QTreeWidgetItem& Entry(const char* text) {
    const auto found =
        Find<QTreeWidget>("ctlExport")
            .findItems(QString::fromUtf8(text), Qt::MatchExactly | Qt::MatchRecursive);
    if (found.isEmpty()) throw std::runtime_error(std::string("no entry ") + text);
    return *found.front();
  }
  /// "Name: what is found: what will happen" of each row.
  std::vector<std::string> Rows() {
    const QAbstractItemModel& rows = *Find<QTableView>("ctlImport").model();
    std::vector<std::string> all;
    for (int i = 0; i < rows.rowCount(); ++i) {
      QStringList cells;
      for (const int column : {2, 3, 4}) cells << rows.index(i, column).data().toString();
      all.push_back(cells.join(QStringLiteral(": ")).toStdString());
    }
    return all;
  }
  std::string Content(const char* name) {
    Database database(folder.Path("kelvo.mdb"));
    Recordset records(database, "Makro");
    return records.FindFirst("Bezeichnung", std::string(name)) ? records.Text("wert").value_or("")
                                                               : "missing";
  }
};

TEST_F(ProjectDialogTest, ExportsWhatIsTickedAndSaysWhereOnlyAPartIs) {
  Start();
  Trigger("mnuDateiExportieren");
  Click("cmdExportNichts");
  EXPECT_FALSE(Find("cmdExportDatei").isEnabled());
  Entry("Rahmen").setCheckState(0, Qt::Checked);
  Entry("Terminals (0)").setCheckState(0, Qt::Checked);
  QApplication::processEvents();
  EXPECT_TRUE(Text("lblExport").starts_with("1 von"));
  Click("cmdExportDatei");
  EXPECT_EQ(File(),
            "{\n  \"kelvo\": 1,\n  \"Auszug\": [\"Makros\"],\n  \"Makros\": [\n    {\n      "
            "\"Nummer\": 2,\n      \"Bezeichnung\": \"Rahmen\",\n      \"Inhalt\": [\n        "
            "\"\\\\eGP0,0;\",\n        \"\\\\eGR239,127;\"\n      ]\n    }\n  ],\n  \"Terminals\": "
            "[]\n}\n");
  EXPECT_FALSE(Find("frmExport").isVisible());
}

TEST_F(ProjectDialogTest, ImportIsDecidedDoneAndTakenBackAndADraftStays) {
  StartOn(Tab::Macros);
  Export();
  Sql("update Makro set wert = 'anders' where Bezeichnung = 'Rahmen'");
  Sql("delete from Makro where Bezeichnung = 'Display löschen'");
  Show(Tab::Status);
  Show(Tab::Macros);
  Find<QPlainTextEdit>("txtMakro").setPlainText(QStringLiteral("Entwurf"));
  Forget();
  Trigger("mnuDateiImportieren");
  EXPECT_EQ(Rows(), (std::vector<std::string>{"Rahmen: verschieden: ? zu entscheiden",
                                              "Display löschen: neu: kommt dazu"}));
  EXPECT_FALSE(Find("cmdImportAusfuehren").isEnabled());
  EXPECT_NE(Find<QPlainTextEdit>("txtImportHier").toPlainText().indexOf(QStringLiteral("anders")),
            -1);
  Click("cmdImportOffene");
  Click("cmdImportDaneben");
  EXPECT_EQ(Rows().front(), "Rahmen: verschieden: kommt dazu als „Rahmen (2)“");
  Click("cmdImportUebernehmen");
  Click("cmdImportAusfuehren");
  EXPECT_EQ(Content("Rahmen"), "\x1bGP0,0;\x1bGR239,127;");
  EXPECT_NE(Content("Display löschen"), "missing");
  EXPECT_EQ(Find<QPlainTextEdit>("txtMakro").toPlainText(), QStringLiteral("Entwurf"));
  EXPECT_EQ(Find<QAction>("mnuBearbeitenRueckgaengig").text().toStdString(),
            "&Rückgängig: Import von „halle.kelvo“");
  Trigger("mnuBearbeitenRueckgaengig");
  EXPECT_EQ(Content("Rahmen"), "anders");
  EXPECT_EQ(Content("Display löschen"), "missing");
  EXPECT_EQ(Find<QPlainTextEdit>("txtMakro").toPlainText(), QStringLiteral("Entwurf"));
  EXPECT_TRUE(Text("lblAktivitaet").ends_with("Rückgängig: Import von „halle.kelvo“"));
  EXPECT_EQ(Written(), "");
}

TEST_F(ProjectDialogTest, WithEverythingTickedAllOfItIsExported) {
  std::ofstream(folder.Path("bestand.txt"))
      << JournalLine({{}, {"/dev/ttyS0", 3}, Event::FreeBytes, {}, {}, {}, 900});
  Start();
  Export();
  const Database database(folder.Path("kelvo.mdb"));
  WriteJournal journal(folder.Path("bestand.txt"));
  journal.Refresh();
  ASSERT_EQ(journal.Entries().size(), 1U);
  EXPECT_EQ(File(), ProjectText(EverythingOf(RecordsHere(database), journal.Entries())));
}

TEST_F(ProjectDialogTest, ATypedNameTakesARecordBesideAndTheCommonStateDecidesTheRest) {
  Start();
  Export();
  Sql("update Makro set wert = 'anders' where Bezeichnung = 'Rahmen'");
  Trigger("mnuDateiImportieren");
  Find<QLineEdit>("txtImportName").setText(QStringLiteral("Kasten"));
  Q_EMIT Find<QLineEdit>("txtImportName").textEdited(QStringLiteral("Kasten"));
  EXPECT_EQ(Rows().front(), "Rahmen: verschieden: kommt dazu als „Kasten“");
  EXPECT_TRUE(Find("cmdImportAusfuehren").isEnabled());
  Q_EMIT Find<QLineEdit>("txtImportName").textEdited(QStringLiteral("Begrüßung"));
  EXPECT_EQ(Rows().front(), "Rahmen: verschieden: ? „Begrüßung“ gibt es hier schon");
  EXPECT_FALSE(Find("cmdImportAusfuehren").isEnabled());
  EXPECT_TRUE(Text("lblImport")
                  .ends_with("Kein Satz ändert sich, 1 ist noch zu entscheiden. So geht es nicht: "
                             "„Begrüßung“ gibt es "
                             "hier schon."))
      << Text("lblImport");
  EXPECT_FALSE(Find("txtImportStand").isVisible());
  Click("cmdImportStand");
  EXPECT_EQ(Rows().front(), "Rahmen: nur hier geändert: bleibt, wie es hier ist");
  EXPECT_TRUE(Find("txtImportStand").isVisible());
  EXPECT_EQ(Find<QPlainTextEdit>("txtImportStand").toPlainText(),
            Find<QPlainTextEdit>("txtImportDatei").toPlainText());
  EXPECT_EQ(person.dialogs.back(), "open|Gemeinsamer Stand|kelvo-Projekt |*.kelvo");
  EXPECT_FALSE(Find("cmdImportAusfuehren").isEnabled()) << "there is nothing to do";
}

TEST_F(ProjectDialogTest, ADialogThatIsShownAgainIsWhereItWasBesideItsOwner) {
  Start();
  Export();
  Trigger("mnuDateiImportieren");
  QWidget& dialog = Find("frmImport");
  dialog.resize(500, 400);
  dialog.move(120, 90);
  const QPoint place = dialog.geometry().topLeft();
  Click("cmdImportSchliessen");
  Trigger("mnuDateiImportieren");
  EXPECT_EQ(dialog.geometry().topLeft(), place);
  Click("cmdImportSchliessen");
  const QPoint before = Root().geometry().topLeft();
  Root().move(Root().pos() + QPoint(30, 20));
  Trigger("mnuDateiImportieren");
  EXPECT_EQ(dialog.geometry().topLeft(), place + Root().geometry().topLeft() - before);
}

TEST_F(ProjectDialogTest, AnotherProgramThatComesFirstIsShownInsteadOfOverwritten) {
  Start();
  Export();
  Sql("update Makro set wert = 'anders' where Bezeichnung = 'Rahmen'");
  Trigger("mnuDateiImportieren");
  Click("cmdImportUebernehmen");
  Sql("update Makro set wert = 'noch anders' where Bezeichnung = 'Rahmen'");
  Click("cmdImportAusfuehren");
  EXPECT_TRUE(person.LastMessage().starts_with("Ein Satz wurde inzwischen"));
  EXPECT_EQ(Content("Rahmen"), "noch anders");
  EXPECT_EQ(Rows().front(), "Rahmen: verschieden: ? zu entscheiden");
}

TEST_F(ProjectDialogTest, DamagedFileIsRefusedWithItsPlace) {
  Start();
  std::ofstream(folder.Path("halle.kelvo")) << "{\"kelvo\": 1,\n\"Makros\": 7}";
  Trigger("mnuDateiImportieren");
  EXPECT_NE(person.LastMessage().find("Zeile 2, Spalte 11 (Makros): Hier muss eine Liste"),
            std::string::npos);
  EXPECT_EQ(Root().findChild<QWidget*>(QStringLiteral("frmImport")), nullptr);
  const std::string damaged = File();
  Export();
  Trigger("mnuDateiImportieren");
  std::ofstream(folder.Path("halle.kelvo")) << damaged;
  Click("cmdImportStand");
  EXPECT_TRUE(person.LastMessage().starts_with("Der gemeinsame Stand ist nicht lesbar:\n"));
}

TEST_F(ProjectDialogTest, DrawingFilesGoInAsObjectsAndOutAsFiles) {
  Start();
  const Drawing drawing{Boxed(Kind::Rectangle, {60, 40}, {10, 20}, true)};
  person.file = folder.Path("Plan.wmf");
  std::ofstream(*person.file, std::ios::binary) << WriteWmf(drawing, 240, 128).bytes;
  Trigger("mnuDateiExportieren");
  Click("cmdExportZeichnung");
  person.file = folder.Path("halle.kelvo");
  Click("cmdExportDatei");
  EXPECT_NE(File().find("{\"Art\": \"Rechteck\", \"gefüllt\": true, \"Ecken\": [60, 40, 10, 20]}"),
            std::string::npos);
  Trigger("mnuDateiImportieren");
  EXPECT_EQ(Text("cmdImportZeichnungen"), "1 &Zeichnung speichern …");
  person.file = folder.Path("Neu.wmf");
  Click("cmdImportZeichnungen");
  EXPECT_EQ(ReadWmf(ReadFile(folder.Path("Neu.wmf")), 240, 128, DeviceFonts()).drawing, drawing);
}

}  // namespace
}  // namespace kelvo
