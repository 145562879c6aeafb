#include <unistd.h>

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QInputDialog>
#include <QMessageBox>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "adapters/interruption.h"
#include "shell/frmhaupt.h"
#include "shell/live_world.h"
#include "shell/tabs.h"
#include "tour/window_driver.h"

// Saves, renames and deletes records in the real window until it is killed, and says on its output
// what it is about to do and what the program has let it take for done:
//
//   ready                     the window is there
//   offered TEXT              drafts of the run before were offered, and taken up
//   will NAME=TEXT            the record is about to be saved so, or with an empty text deleted
//   done NAME=TEXT            that was not refused
//   draft TEXT                stands on the macro page, and the file for drafts holds it
//   said TEXT                 a box that nobody has expected
//
//   fire_saver PROGRAM_FOLDER DATA_FOLDER START [drafts]

namespace kelvo {
namespace {

QString Q(const std::string& text) { return QString::fromStdString(text); }

void Say(const std::string& line) {
  const std::string text = line + '\n';
  if (write(STDOUT_FILENO, text.data(), text.size()) < 0) std::_Exit(4);
}

class Saver {
 public:
  Saver(frmhaupt& window, std::string data, unsigned seed)
      : driver_(window), data_(std::move(data)), random_(seed), run_(seed) {
    AnswerAll();
  }
  [[noreturn]] void SaveForEver() {
    for (int turn = 0;; ++turn) {
      const int what = Number(0, 9);
      if (what < 5) SaveNew(turn);
      if (what >= 5 && what < 7) SaveAgain(turn);
      if (what == 7) Delete();
      if (what > 7) SaveTable(turn);
    }
  }
  [[noreturn]] void KeepDrafts() {
    driver_.ShowTab(static_cast<int>(Tab::Macros));
    for (int turn = 0;; ++turn) {
      const std::string text = "draft" + std::to_string(run_) + "-" + std::to_string(turn);
      if (turn % 2 == 1) driver_.Click(QStringLiteral("cmdToolbar_6"));
      driver_.Type(QStringLiteral("txtMakro"), Q(text));
      driver_.Until(QStringLiteral("draft"), [&] { return Holds(text); });
      Say("draft " + text);
    }
  }

 private:
  int Number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }
  std::string Content(int turn) const {
    return "text" + std::to_string(run_) + "-" + std::to_string(turn);
  }
  bool Holds(const std::string& text) const {
    QFile file(Q(data_ + "/kelvo.entwuerfe"));
    return file.open(QIODevice::ReadOnly) && file.readAll().contains(text.c_str());
  }

  // Whatever opens from now on.
  void AnswerAll() {
    driver_.OnDialog([this](QDialog& dialog) {
      AnswerAll();
      if (auto* const input = qobject_cast<QInputDialog*>(&dialog)) {
        input->setTextValue(Q(name_));
        return input->accept();
      }
      auto* const box = qobject_cast<QMessageBox*>(&dialog);
      const std::string text = box == nullptr ? "" : box->text().toStdString();
      if (text.find("Wiederherstellen") != std::string::npos) Say("offered " + text);
      if (text.ends_with("?")) return WindowDriver::Press(dialog, QStringLiteral("Ja"));
      // There is no line at all.
      if (text != "Schnittstelle nicht vorhanden") Say("said " + text);
      dialog.reject();
    });
  }
  void Save(const std::string& name, const std::string& text) {
    name_ = name;
    Say("will " + name + "=" + text);
    driver_.Click(QStringLiteral("cmdToolbar_8"));
    Say("done " + name + "=" + text);
  }
  void SaveNew(int turn) {
    driver_.ShowTab(static_cast<int>(Tab::Macros));
    driver_.Click(QStringLiteral("cmdToolbar_6"));
    driver_.Type(QStringLiteral("txtMakro"), Q(Content(turn)));
    names_.push_back("Satz " + std::to_string(run_) + "-" + std::to_string(turn));
    Save(names_.back(), Content(turn));
  }
  void SaveAgain(int turn) {
    if (names_.empty()) return;
    driver_.ShowTab(static_cast<int>(Tab::Macros));
    const std::string name = names_[static_cast<std::size_t>(Number(0, int(names_.size()) - 1))];
    driver_.Choose(QStringLiteral("cboMakro"), Q(name));
    driver_.Type(QStringLiteral("txtMakro"), Q(Content(turn)));
    Save(name, Content(turn));
  }
  void Delete() {
    if (names_.empty()) return;
    driver_.ShowTab(static_cast<int>(Tab::Macros));
    driver_.Choose(QStringLiteral("cboMakro"), Q(names_.back()));
    Say("will " + names_.back() + "=");
    driver_.Click(QStringLiteral("cmdToolbar_12"));
    Say("done " + names_.back() + "=");
    names_.pop_back();
  }
  // Its text is what the page makes of it.
  void SaveTable(int turn) {
    driver_.ShowTab(static_cast<int>(Tab::MatrixKeyboard));
    driver_.Click(QStringLiteral("cmdToolbar_6"));
    driver_.Type(QStringLiteral("txtTastTabNr"), QStringLiteral("3"));
    Save("Tabelle " + std::to_string(run_) + "-" + std::to_string(turn), "*");
  }

  WindowDriver driver_;
  const std::string data_;
  std::mt19937 random_;
  const unsigned run_;
  std::string name_;  // for the next input box
  std::vector<std::string> names_;
};

int Run(const std::vector<std::string>& arguments) {
  LiveWorld world;
  const auto window = world.MakeMainWindow({.program = arguments.at(1), .data = arguments.at(2)});
  Interruption interruption;
  interruption.SetHandler([&] { window->EndNow(); });
  bool ended = false;
  QObject::connect(window.get(), &frmhaupt::Unloaded, [&ended] { ended = true; });
  Saver saver(*window, arguments.at(2), static_cast<unsigned>(std::stoul(arguments.at(3))));
  bool loaded = false;
  QObject::connect(window.get(), &frmhaupt::Loaded, [&loaded] { loaded = true; });
  window->resize(1024, 768);
  window->show();
  while (!loaded) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  Say("ready");
  const std::string what = arguments.size() > 4 ? arguments[4] : "";
  if (what.empty()) saver.SaveForEver();
  if (what == "drafts") saver.KeepDrafts();
  while (!ended) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  return 0;
}

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  try {
    return kelvo::Run({argv, argv + argc});
  } catch (const std::exception& error) {
    kelvo::Say(std::string("failed ") + error.what());
    return 3;
  }
}
