#include "twin/preview.h"

#include <algorithm>
#include <memory>
#include <string_view>

namespace kelvo {
namespace {

constexpr std::int64_t kBitsOfCharacter = 10;
constexpr std::string_view kListen = "\x1B!A255;";

void Note(std::vector<int>& numbers, int number) {
  if (std::find(numbers.begin(), numbers.end(), number) == numbers.end()) numbers.push_back(number);
}

// Lays out each recorded macro when it is called, and notes what is to be told of the run.
class Run : public sim::TerminalFollower {
 public:
  Run(sim::Terminal& terminal, const PreviewStart& start, PreviewResult& result)
      : terminal_(terminal), start_(start), result_(result) {}

  void Does(const sim::CommandRow& row, const sim::Parameters&) override {
    result_.restarts = result_.restarts || row.command == sim::Command::Restart;
    result_.speaks = result_.speaks || row.reply != sim::Reply::None;
  }
  void Prints(unsigned char) override {}
  void PrintsGraphic(unsigned char) override {}
  void HasRestarted() override {}
  void Calls(int number) override {
    if (!start_.makro) return;
    const auto text = start_.makro(number);
    const auto place = static_cast<unsigned char>(number);
    if (text) terminal_.Memory().Write(sim::Eeprom::Kind::Macro, place, *text);
  }
  void Called(int number, sim::MacroRun run) override {
    Note(result_.called, number);
    if (run == sim::MacroRun::Missing) Note(result_.unknown, number);
    if (run == sim::MacroRun::TooDeep) result_.neverEnds = true;
  }
  void GivesUp() override { result_.neverEnds = true; }

 private:
  sim::Terminal& terminal_;
  const PreviewStart& start_;
  PreviewResult& result_;
};

std::unique_ptr<sim::Terminal> Begin(const PreviewStart& start, const DeviceFonts& fonts) {
  if (start.state == nullptr) {
    const sim::TerminalSetup setup{
        .eepromBytes = sim::Eeprom::kMaxCapacity, .width = start.width, .height = start.height};
    auto terminal = std::make_unique<sim::Terminal>(setup, fonts);
    terminal->PowerOn({});
    return terminal;
  }
  auto terminal = sim::Terminal::CopyOf(*start.state);
  terminal->Finish();
  for (const char character : kListen) {
    terminal->Receive(static_cast<unsigned char>(character), {});
  }
  return terminal;
}

}  // namespace

PreviewResult Preview::Run(const std::string& text, const PreviewStart& start) const {
  PreviewResult result;
  result.characters = text.size();
  const auto bits = static_cast<std::int64_t>(text.size()) * kBitsOfCharacter;
  result.lineTime = std::chrono::nanoseconds(bits * std::nano::den / std::max(1, start.baud));
  const std::unique_ptr<sim::Terminal> terminal = Begin(start, fonts_);
  kelvo::Run run(*terminal, start, result);
  terminal->SetFollower(&run);
  terminal->Run(text);
  result.picture = terminal->Display().Pixels();
  result.withCursor = terminal->Display().Picture(true);
  result.handsOver = !terminal->Selected();
  return result;
}

}  // namespace kelvo
