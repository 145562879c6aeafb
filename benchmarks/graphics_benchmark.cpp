// How fast drawings are translated, read and shown. The other programs' times stand beside ours in
// the same run: `wmf2svg` (package libwmf-bin) and `pgmtopbm` (netpbm) as whole processes.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

#include "graphics/create_pic.h"
#include "graphics/editing.h"
#include "graphics/painter.h"
#include "graphics/wmf.h"
#include "tests/drawing_samples.h"
#include "tests/grafik_desk.h"
#include "tests/test_fonts.h"

namespace kelvo {
namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 480;

TerminalTraits Traits() {
  TerminalTraits traits;
  traits.displayHeight = kHeight;
  traits.blackThreshold = 0x800000;
  traits.pixelWidthVersion = 2;
  traits.terminalVersion = 2.1;
  return traits;
}

// Objects of all kinds but pictures, as an operator draws them: some ten pixels large.
Drawing ObjectsOfAllKinds(int count) {
  RandomDrawings random(7);
  Drawing drawing;
  for (int i = 0; i < count; ++i) {
    const Point at{random.Number(0, kWidth - 30), random.Number(0, kHeight - 20)};
    const Point end{at.x + random.Number(1, 25), at.y + random.Number(1, 18)};
    if (i % 4 == 0) drawing.push_back(WithVertices(Kind::Line, {at, end}));
    if (i % 4 == 1) drawing.push_back(Boxed(Kind::Rectangle, end, at, i % 8 == 1));
    if (i % 4 == 2) drawing.push_back(Boxed(Kind::Ellipse, end, at));
    if (i % 4 == 3) drawing.push_back(TextAt(end, {}, "abc"));
  }
  return drawing;
}

void CreateBitmapOfAWholeDisplay(benchmark::State& state) {
  RandomDrawings random(3);
  std::vector<Colour> pixels;
  for (int i = 0; i < kWidth * kHeight; ++i) {
    pixels.push_back(static_cast<Colour>(random.Number(0, static_cast<int>(kWhite))));
  }
  const DrawingObject object = PictureAt({0, kHeight - 1}, Picture(kWidth, kHeight, pixels));
  TerminalTraits traits = Traits();
  for (auto _ : state) {
    benchmark::DoNotOptimize(CreateBitmap(object, kWidth, kHeight, kCreateForCommand, traits));
  }
}
BENCHMARK(CreateBitmapOfAWholeDisplay)->Unit(benchmark::kMillisecond);

void PgmtopbmOfAWholeDisplay(benchmark::State& state) {
  std::ofstream("/tmp/kelvo-benchmark.pgm", std::ios::binary)
      << "P5\n640 480\n255\n"
      << std::string(kWidth * kHeight, '\x55');
  const char* command = "pgmtopbm -threshold /tmp/kelvo-benchmark.pgm | xxd -p >/dev/null";
  for (auto _ : state) {
    if (std::system(command) != 0) return state.SkipWithError("no netpbm");
  }
}
BENCHMARK(PgmtopbmOfAWholeDisplay)->Unit(benchmark::kMillisecond)->UseRealTime();

void CreatePicOfManyObjects(benchmark::State& state) {
  const Drawing drawing = ObjectsOfAllKinds(static_cast<int>(state.range(0)));
  TerminalTraits traits = Traits();
  std::size_t bytes = 0;
  for (auto _ : state) bytes = CreatePic(drawing, traits).text.size();
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
}
BENCHMARK(CreatePicOfManyObjects)
    ->Arg(1000)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond);

std::string LongMetafile() { return WriteWmf(ObjectsOfAllKinds(20'000), kWidth, kHeight).bytes; }

void ReadLongMetafile(benchmark::State& state) {
  const std::string bytes = LongMetafile();
  for (auto _ : state) benchmark::DoNotOptimize(ReadWmf(bytes, kWidth, kHeight, TestFonts()));
}
BENCHMARK(ReadLongMetafile)->Unit(benchmark::kMillisecond);

void Wmf2svgOfLongMetafile(benchmark::State& state) {
  std::ofstream("/tmp/kelvo-benchmark.wmf", std::ios::binary) << LongMetafile();
  const char* command = "wmf2svg -o /tmp/kelvo-benchmark.svg /tmp/kelvo-benchmark.wmf";
  for (auto _ : state) {
    if (std::system(command) != 0) return state.SkipWithError("no wmf2svg");
  }
}
BENCHMARK(Wmf2svgOfLongMetafile)->Unit(benchmark::kMillisecond)->UseRealTime();

// The real window over a large drawing. A frame is one step of what the operator does, painted; it
// takes so many parts of the 16 ms that a fluid one may take.
class Frames : public benchmark::Fixture {
 public:
  void SetUp(benchmark::State& state) override {
    desk_ = std::make_unique<GrafikDesk>(QSize(kWidth, kHeight));
    const std::string path = desk_->folder.filePath("large.wmf").toStdString();
    const Drawing drawing = ObjectsOfAllKinds(static_cast<int>(state.range(0)));
    std::ofstream(path, std::ios::binary) << WriteWmf(drawing, kWidth, kHeight).bytes;
    desk_->window->LoadFile(path);
    desk_->Canvas()->SetZoom(2);
  }
  void TearDown(benchmark::State&) override { desk_.reset(); }

 protected:
  template <typename Step>
  void Measure(benchmark::State& state, Step step) {
    for (auto _ : state) {
      step();
      desk_->Canvas()->repaint();
    }
    state.counters["frames of 16 ms"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * 0.016,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
  }
  void DragBy(benchmark::State& state, Point from) {
    desk_->Press(from);
    int step = 0;
    Measure(state, [&] { desk_->MoveTo({from.x + ++step % 50, from.y}); });
    desk_->Let(from);
  }

  std::unique_ptr<GrafikDesk> desk_;
};

BENCHMARK_DEFINE_F(Frames, DragOfOneObject)(benchmark::State& state) {
  desk_->Key(Qt::Key_Tab);
  const Box box = BoundsOf(desk_->Objects().front());
  DragBy(state, {(box.left + box.right) / 2, (box.bottom + box.top) / 2});
}
BENCHMARK_DEFINE_F(Frames, DragOfAll)(benchmark::State& state) {
  desk_->Do("mnuGrafikAlles");
  DragBy(state, {kWidth / 2, kHeight / 2});
}
BENCHMARK_DEFINE_F(Frames, RubberBand)(benchmark::State& state) { DragBy(state, {-3, -3}); }
BENCHMARK_DEFINE_F(Frames, UndoAndRedo)(benchmark::State& state) {
  desk_->Do("mnuGrafikAlles");
  desk_->Key(Qt::Key_Right);
  bool undo = false;
  Measure(state,
          [&] { desk_->Do((undo = !undo) ? "mnuGrafikRueckgaengig" : "mnuGrafikWiederholen"); });
}
BENCHMARK_REGISTER_F(Frames, DragOfOneObject)->Arg(20'000)->Unit(benchmark::kMillisecond);
BENCHMARK_REGISTER_F(Frames, DragOfAll)->Arg(20'000)->Unit(benchmark::kMillisecond);
BENCHMARK_REGISTER_F(Frames, RubberBand)->Arg(20'000)->Unit(benchmark::kMillisecond);
BENCHMARK_REGISTER_F(Frames, UndoAndRedo)->Arg(20'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kelvo
