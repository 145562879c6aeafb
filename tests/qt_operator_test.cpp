#include "shell/qt_operator.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QCompleter>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <filesystem>
#include <fstream>

#include "tests/fakes/temporary_folder.h"
#include "tests/fakes/virtual_time.h"

namespace kelvo {
namespace {

class QtOperatorTest : public testing::Test {
 protected:
  /// Does what the person does in the box or dialog that comes next.
  template <typename Box>
  void Next(const std::function<void(Box&)>& act) {
    QTimer::singleShot(0, qApp, [act] {
      auto* const box = qobject_cast<Box*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      act(*box);
      if (box->isVisible()) box->reject();
    });
  }

  testing_world::VirtualLoop loop;
  QtOperator person{loop};
};

TEST_F(QtOperatorTest, LongTextIsShownAndCopiedAsItCame) {
  std::string table = "3";
  for (int code = 0; code < 1000; ++code) table += "," + std::to_string(code);
  Next<QMessageBox>([&](QMessageBox& box) {
    EXPECT_EQ(box.text().toStdString(), table);
    auto* const field = box.findChild<QPlainTextEdit*>();
    ASSERT_NE(field, nullptr);
    field->selectAll();
    field->copy();
  });
  person.Message(table, Icon::None, {}, {});
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), table);
}

TEST_F(QtOperatorTest, EveryBoxFitsTheScreenWithItsTextAndItsButtons) {
  const std::string word(5000, 'W');
  std::string words;
  std::string lines;
  for (int i = 0; i < 1000; ++i) words += "Wort ";
  for (int i = 0; i < 200; ++i) lines += "Zeile\n";
  const auto fits = [](QMessageBox& box) {
    const QRect inside(QPoint(0, 0), box.size());
    EXPECT_LE(box.width(), box.screen()->availableGeometry().width());
    EXPECT_LE(box.height(), box.screen()->availableGeometry().height());
    EXPECT_GT(box.width(), 300);
    for (const QPlainTextEdit* field : box.findChildren<QPlainTextEdit*>()) {
      EXPECT_TRUE(field->isVisible() && inside.contains(field->geometry()));
      EXPECT_GT(field->height(), 100);
    }
    for (const QAbstractButton* button : box.buttons()) {
      const QRect place(button->mapTo(&box, QPoint(0, 0)), button->size());
      EXPECT_TRUE(button->isVisible() && inside.contains(place));
      for (const QPlainTextEdit* field : box.findChildren<QPlainTextEdit*>()) {
        EXPECT_FALSE(place.intersects(field->geometry()));
      }
    }
  };
  const std::string shortText = "Eine Meldung von gewöhnlicher Länge, wie sie meistens kommt.";
  for (const std::string& text : {shortText, word, words, lines}) {
    for (const std::string& hint : {std::string(), shortText, word, words, lines}) {
      SCOPED_TRACE(text.substr(0, 5) + " / " + hint.substr(0, 5));
      Next<QMessageBox>(fits);
      person.Message(text, Icon::Exclamation, {}, hint);
      Next<QMessageBox>(fits);
      person.Ask(text, Icon::Question, {}, Proposal::ByIcon, hint);
    }
    Next<QMessageBox>(fits);
    person.AskToSave(text);
    person.Notify(text, Icon::None);
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    fits(*box);
    box->reject();
  }
}

TEST_F(QtOperatorTest, HastyKeyDestroysNothing) {
  const struct {
    Icon icon;
    Proposal proposal;
    QMessageBox::Icon shown;
    bool proposed;
  } cases[] = {{Icon::Question, Proposal::ByIcon, QMessageBox::Question, true},
               {Icon::Question, Proposal::No, QMessageBox::Question, false},
               {Icon::Exclamation, Proposal::ByIcon, QMessageBox::Warning, false},
               {Icon::Exclamation, Proposal::YesAlways, QMessageBox::Warning, true}};
  for (const auto& c : cases) {
    Next<QMessageBox>([&](QMessageBox& box) {
      EXPECT_EQ(box.icon(), c.shown);
      box.defaultButton()->click();
    });
    EXPECT_EQ(person.Ask("Text", c.icon, {}, c.proposal, {}), c.proposed);
    Next<QMessageBox>([](QMessageBox& box) { box.close(); });
    EXPECT_EQ(person.Ask("Text", c.icon, {}, c.proposal, {}), c.proposal == Proposal::YesAlways);
  }
  Next<QMessageBox>([](QMessageBox& box) { box.buttons().last()->click(); });
  EXPECT_FALSE(person.Ask("Text", Icon::Question, {}, Proposal::YesAlways, {})) << "it was No";
}

TEST_F(QtOperatorTest, AFailureLeadsToItsExplanationAndToTheTraffic) {
  std::vector<std::string> shown;
  person.SetAdviser(
      {[](const std::string& text) {
         return text == "Fehler" ? std::optional(Advice{"darum", "kapitel.html"}) : std::nullopt;
       },
       [&](const std::string& chapter) { shown.push_back(chapter); },
       [&] { shown.emplace_back("traffic"); }});
  const auto press = [](const char* name) {
    return [name](QMessageBox& box) {
      EXPECT_EQ(box.informativeText(), QStringLiteral("darum"));
      auto* const button = box.findChild<QPushButton*>(QString::fromUtf8(name));
      ASSERT_NE(button, nullptr);
      button->click();
    };
  };
  Next<QMessageBox>([&](QMessageBox& box) {
    press("cmdHilfe")(box);
    EXPECT_TRUE(box.isVisible()) << "the help stands beside it";
  });
  person.Message("Fehler", Icon::None, {}, {});
  Next<QMessageBox>(press("cmdVerkehr"));
  person.Message("Fehler", Icon::None, {}, {});
  Next<QMessageBox>([&](QMessageBox& box) {
    press("cmdVerkehr")(box);
    EXPECT_TRUE(box.isVisible()) << "to look is no answer";
    box.defaultButton()->click();
  });
  EXPECT_FALSE(person.Ask("Fehler", Icon::Question, {}, Proposal::ByIcon, {})) << "proposed";
  EXPECT_EQ(shown, (std::vector<std::string>{"kapitel.html", "traffic", "traffic"}));
  Next<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.findChild<QPushButton*>(QStringLiteral("cmdHilfe")), nullptr);
  });
  person.Message("Gut", Icon::None, {}, {});
}

TEST_F(QtOperatorTest, OneBoxTellsOfALossWhateverFailsByIt) {
  int loss = 1;
  person.SetAdviser({[&](const std::string& text) {
                       return text == "Frage"
                                  ? std::nullopt
                                  : std::optional(Advice{"darum", "k.html", true, loss});
                     },
                     [](const std::string&) {}, [] {}});
  const auto boxes = [] {
    int open = 0;
    for (const QWidget* window : QApplication::topLevelWidgets()) {
      open += qobject_cast<const QMessageBox*>(window) != nullptr && window->isVisible() ? 1 : 0;
    }
    return open;
  };
  // The failure comes first, then the loss, then another failure.
  Next<QMessageBox>([&](QMessageBox& box) {
    person.Notify("verloren", Icon::None);
    person.Message("zweites", Icon::None, {}, {});
    EXPECT_EQ(boxes(), 1);
    EXPECT_EQ(box.text(), QStringLiteral("erstes"));
    EXPECT_EQ(box.informativeText(), QStringLiteral("darum\n\nverloren\n\nzweites"));
  });
  person.Message("erstes", Icon::None, {}, {});
  person.Message("drittes", Icon::None, {}, {});  // it would wait for its OK
  EXPECT_EQ(boxes(), 0);
  // The next loss is told; the same words count once.
  ++loss;
  person.Notify("verloren", Icon::None);
  auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
  ASSERT_NE(box, nullptr);
  ++loss;
  person.Notify("verloren", Icon::None);
  person.Message("zweites", Icon::None, {}, {});
  EXPECT_EQ(boxes(), 1);
  EXPECT_EQ(box->informativeText(), QStringLiteral("darum\n\nzweites"));
  box->reject();
}

TEST_F(QtOperatorTest, BoxComesUpOverTheWindowThatIsActive) {
  QWidget main;
  QDialog dialog(&main);
  person.SetWindow(&main);
  const auto owner = [this] {
    QWidget* found = nullptr;
    Next<QMessageBox>([&](QMessageBox& box) { found = box.parentWidget(); });
    person.Ask("Text", Icon::Question, {}, Proposal::ByIcon, {});
    return found;
  };
  for (QWidget* window : {&main, static_cast<QWidget*>(&dialog)}) {
    window->show();
    window->activateWindow();
    QApplication::processEvents();
    EXPECT_EQ(owner(), window);
  }
  QWidget progress(&dialog, Qt::Tool);
  progress.show();
  progress.activateWindow();
  QApplication::processEvents();
  EXPECT_EQ(owner(), &dialog);
  // The second question of a chain: the first one's dialog has just gone.
  dialog.hide();
  QWidget editor;
  editor.show();
  editor.activateWindow();
  QApplication::processEvents();
  Next<QFileDialog>([](QFileDialog& file) {
    QApplication::processEvents();
    EXPECT_TRUE(file.isActiveWindow());
  });
  EXPECT_EQ(person.OpenFile("", "Text (txt) |*.txt"), std::nullopt);
  EXPECT_EQ(owner(), &editor);
  EXPECT_EQ(owner(), &editor);
  // When it goes, the system may give the front to another.
  Next<QFileDialog>([&main](QFileDialog& file) {
    QObject::connect(&file, &QDialog::finished, &main, [&main] {
      main.activateWindow();
      QApplication::processEvents();
    });
  });
  EXPECT_EQ(person.OpenFile("", "Text (txt) |*.txt"), std::nullopt);
  EXPECT_EQ(owner(), &editor);
  editor.activateWindow();
  QApplication::processEvents();
  editor.hide();
  EXPECT_EQ(owner(), &main);
}

TEST_F(QtOperatorTest, FileDialogsOpenWhereTheLastOneWas) {
  testing_world::TemporaryFolder folder;
  std::ofstream(folder.Path("a.txt")) << "a";
  Next<QFileDialog>([&](QFileDialog& dialog) {
    dialog.selectFile(QString::fromStdString(folder.Path("a.txt")));
    dialog.findChild<QLineEdit*>()->completer()->popup()->show();
    static_cast<QDialog&>(dialog).accept();
  });
  EXPECT_EQ(person.OpenFile("", "Text (txt) |*.txt"), folder.Path("a.txt"));
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << "the names that were proposed";
  const QString last = QFileInfo(QString::fromStdString(folder.Path())).canonicalFilePath();
  EXPECT_EQ(QFileInfo(person.Folder()).canonicalFilePath(), last);
  Next<QFileDialog>([&](QFileDialog& dialog) {
    EXPECT_EQ(QFileInfo(dialog.directory().path()).canonicalFilePath(), last);
  });
  EXPECT_EQ(person.SaveFile("", "Text (txt) |*.txt"), std::nullopt);
  Next<QFileDialog>([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.selectedFiles(), QStringList(dialog.directory().path()))
        << "nothing is left of the choice before";
    EXPECT_EQ(dialog.nameFilters().join(u'|'), QStringLiteral("Bestand (*.dat)"));
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Zwei"));
  });
  EXPECT_EQ(person.OpenFile("Zwei", "Bestand |*.dat"), std::nullopt);
}

TEST_F(QtOperatorTest, NothingIsSavedOverTheProgramsOwnFilesNorBeginsAmongThem) {
  const testing_world::TemporaryFolder folder;
  const testing_world::TemporaryFolder other;
  const std::string log = folder.Path("bestand.txt");
  std::ofstream(log) << "log";
  std::filesystem::create_symlink(log, other.Path("link.txt"));
  person.SetOwnFolders({folder.Path()});
  person.SetFolder(QString::fromStdString(folder.Path()));
  std::vector<QString> told;
  const auto choose = [&](const std::string& path) {
    Next<QFileDialog>([&](QFileDialog& dialog) {
      EXPECT_NE(dialog.directory(), QDir(QString::fromStdString(folder.Path())));
      dialog.selectFile(QString::fromStdString(path));
      Next<QMessageBox>([&told](QMessageBox& box) { told.push_back(box.text()); });
      static_cast<QDialog&>(dialog).accept();
    });
    return person.SaveFile("", "Bestand |*.txt");
  };
  for (const std::string& path :
       {log, folder.Path("bestand"), folder.Path("gelesen.txt"), other.Path("link.txt")}) {
    const std::size_t before = told.size();
    EXPECT_EQ(choose(path), std::nullopt) << path;
    ASSERT_EQ(told.size(), before + 1) << path;
    EXPECT_TRUE(told.back().contains("gehört kelvo selbst")) << told.back().toStdString();
  }
}

}  // namespace
}  // namespace kelvo
