// The viewer's frame path without a window: the model's controller plans a
// frame and the renderer composes it into a device-pixel QImage, then blits
// it and draws the overlay as the canvas's paint event does. Runs under the
// offscreen platform. BM_MemcpyFrame copies one frame's bytes in the same run,
// so figures from a noisy shared machine can be compared by ratio.
//
// BM_WidgetRepaint times the real window's paint event instead.
//
// One core is meant: run under `taskset -c 0`; the application state gets
// max_process_threads = -1 (VIEWER_BENCH_THREADS overrides it) so loading
// and jobs stay on the calling thread. bench/viewer_budget.sh does both.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QRegion>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/app_state.h"
#include "app/configuration.h"
#include "frame_bytes.h"
#include "image/block_recycler.h"
#include "image/image_concrete_base.h"
#include "ui/model/viewer_controller.h"
#include "ui/qt/canvas.h"
#include "ui/qt/frame_renderer.h"
#include "ui/qt/main_window.h"

namespace korvanel {
namespace {

constexpr uint32_t kWidth = 3840;
constexpr uint32_t kHeight = 2160;
constexpr ScreenSize kClient{1900, 1000};

// --- frames on disk, written once per process --------------------------------

const char* const kRules =
    "<format_group>\nfile_pattern = [.*_(\\d+)x(\\d+)\\.nv12]\n"
    "width = [.*_(\\d+)x(\\d+)\\.nv12],$1\nheight = [.*_(\\d+)x(\\d+)\\.nv12],$2\n"
    "format = [.*],PI,YYYYUV,8\n</format_group>\n"
    "<format_group>\nfile_pattern = [.*_(\\d+)x(\\d+)\\.y8]\n"
    "width = [.*_(\\d+)x(\\d+)\\.y8],$1\nheight = [.*_(\\d+)x(\\d+)\\.y8],$2\n"
    "format = [],P,Y,8\n</format_group>\n";

class FrameFiles {
 public:
  FrameFiles() {
    std::string pattern = (std::filesystem::temp_directory_path() / "korvanel_viewer_bench_XXXXXX").string();
    if (mkdtemp(pattern.data()) != nullptr) dir_ = pattern;
  }
  ~FrameFiles() {
    std::error_code ignored;
    if (!dir_.empty()) std::filesystem::remove_all(dir_, ignored);
  }
  bool Ready() const { return !dir_.empty(); }
  std::string Rules() { return Write("viewer_bench.fmt", kRules); }
  // The `index`-th distinct NV12 or grey frame (the registry opens a path once).
  std::string Nv12(uint32_t index) { return Frame("nv12", index, uint64_t{kWidth} * kHeight * 3 / 2); }
  std::string Gray(uint32_t index) { return Frame("y8", index, uint64_t{kWidth} * kHeight); }

 private:
  std::string Frame(const char* extension, uint32_t index, uint64_t bytes) {
    const std::string name =
        "frame" + std::to_string(index) + "_" + std::to_string(kWidth) + "x" + std::to_string(kHeight) + "." + extension;
    const std::filesystem::path path = dir_ / name;
    if (!std::filesystem::exists(path)) {
      const auto content = bench::FrameBytes(bytes, 7 + index, nullptr);
      std::ofstream out(path, std::ios::binary);
      out.write(reinterpret_cast<const char*>(content->data()), static_cast<std::streamsize>(content->size()));
    }
    return path.string();
  }
  std::string Write(const char* name, const std::string& content) {
    const std::filesystem::path path = dir_ / name;
    std::ofstream(path, std::ios::binary) << content;
    return path.string();
  }

  std::filesystem::path dir_;
};

FrameFiles& Files() {
  static FrameFiles files;
  return files;
}

// --- a window-less viewer ----------------------------------------------------

class QuietFeedback : public IUserFeedback {
 public:
  void ShowMessage(std::string_view, std::string_view, MessageStyle) override {}
  void StatusMessage(std::string_view) override {}
  void BatchError(std::string_view) override {}
  bool AskYesNo(std::string_view, std::string_view) override { return false; }
};

// Keeps what the controller asked to repaint, as the window would.
class NullHost : public IViewerHost {
 public:
  void Invalidate(bool base_dirty, std::span<const ScreenRect> damage) override {
    whole |= base_dirty || damage.empty();
    for (const ScreenRect& rect : damage) {
      region += QRect(rect.left, rect.top, rect.Width(), rect.Height());
    }
  }
  // Takes the damage since the last call: nothing when nothing was asked.
  std::optional<QRegion> TakeDamage(const QRect& area) {
    std::optional<QRegion> damage;
    if (whole) damage = QRegion(area);
    else if (!region.isEmpty()) damage = region;
    whole = false;
    region = QRegion();
    return damage;
  }
  void SetScrollBars(const ScrollBarState&, const ScrollBarState&) override {}
  void ShowStatus(const StatusFields&) override {}
  int32_t StatusBarWidth() const override { return kClient.width; }
  int32_t StatusTextWidth(std::string_view text) const override { return static_cast<int32_t>(text.size()); }
  void StartTimer(TimerId, uint32_t) override {}
  void StopTimer(TimerId) override {}
  void SetCursorShape(CursorShape) override {}
  void SetClipboardText(std::string_view) override {}
  std::string ClipboardText() override { return {}; }
  void SetClipboardImage(const Rgb888Image&) override {}
  std::optional<std::string> AskOpenPath() override { return std::nullopt; }
  ModifiedAnswer AskFileModified(std::string_view, bool&) override { return ModifiedAnswer::Ignore; }
  void OpenDialog(DialogId) override {}
  void SetMenuState(Command, bool, bool) override {}
  void DestroyWindow() override {}
  void StartUpdateCheck(const std::string&) override {}

 private:
  bool whole = false;
  QRegion region;
};

struct ViewSetup {
  double zoom = 0;  // the start ZF images open with
  bool grid = false;
  bool values = false;
};

ConfigValues BenchConfig(const ViewSetup& setup) {
  ConfigValues values = CConfiguration(std::filesystem::temp_directory_path()).Values();
  const char* threads = std::getenv("VIEWER_BENCH_THREADS");
  values.system.max_process_threads = threads != nullptr ? std::atoi(threads) : -1;
  values.gui.def_zoom = setup.zoom;
  values.gui.grid_mode = setup.grid;
  values.gui.pixel_value_mode = setup.values;
  return values;
}

// The configuration is applied before the controller reads the start ZF.
struct ConfiguredApp {
  ConfiguredApp(IUserFeedback& feedback, const ConfigValues& values) : app(feedback) {
    app.ApplyConfiguration(values);
  }
  AppState app;
};

// AppState, controller and renderer as the window wires them, with a
// screen-sized QImage standing in for the canvas's backing store.
class Viewer {
 public:
  explicit Viewer(const ViewSetup& setup)
      : config_(BenchConfig(setup)),
        configured_(feedback_, config_),
        app_(configured_.app),
        controller_(app_, host_, ViewerSettings::FromConfig(config_)),
        renderer_(config_),
        screen_(kClient.width, kClient.height, QImage::Format_RGB32) {
    app_.LoadFormats(Files().Rules());
    controller_.SetTextMetrics(&renderer_.TextMetrics());
    controller_.OnResize(kClient);
  }

  bool Open(const std::string& path) {
    const bool opened = app_.OpenImage(path);
    controller_.OnImagesChanged();
    return opened;
  }
  void CompareAll() {
    std::vector<size_t> all;
    for (size_t i = 0; i < app_.Images().Count(); ++i) all.push_back(i);
    if (all.size() > 1) app_.CompareImages(all);
    controller_.OnImagesChanged();
  }
  void CloseAll() {
    app_.CloseAllImages();
    controller_.OnImagesChanged();
  }
  void Resize() { controller_.OnResize(kClient); }

  // What the canvas's paint event does on a dirty frame: plan, compose the
  // base, blit it, draw the overlay.
  void Paint() {
    const FramePlan& plan = controller_.PrepareFrame();
    renderer_.ComposeBase(plan, base_);
    QPainter painter(&screen_);
    painter.drawImage(0, 0, base_);
    renderer_.DrawOverlay(plan, painter);
  }
  // What the paint event does after a cursor move: the base is composed
  // only when the plan says it changed.
  void PaintOverlay() {
    const FramePlan& plan = controller_.PrepareFrame();
    if (plan.base_dirty || base_.isNull()) renderer_.ComposeBase(plan, base_);
    QPainter painter(&screen_);
    painter.drawImage(0, 0, base_);
    renderer_.DrawOverlay(plan, painter);
  }
  // What the canvas's paint event does for a damaged part of a clean frame:
  // blit the kept base and draw the overlay, clipped to the damage. False
  // when the frame needed a new base.
  bool PaintDamage() {
    const FramePlan& plan = controller_.PrepareFrame();
    if (plan.base_dirty) return false;
    const std::optional<QRegion> damage = host_.TakeDamage(screen_.rect());
    if (!damage) return true;  // the window would not paint at all
    QPainter painter(&screen_);
    painter.setClipRegion(*damage);
    painter.drawImage(0, 0, base_);
    renderer_.DrawOverlay(plan, painter);
    return true;
  }
  CViewerController& Controller() { return controller_; }
  size_t ImageCount() const { return app_.Images().Count(); }
  const FramePlan& Plan() { return controller_.PrepareFrame(); }

 private:
  ConfigValues config_;
  QuietFeedback feedback_;
  NullHost host_;
  ConfiguredApp configured_;
  AppState& app_;
  CViewerController controller_;
  CFrameRenderer renderer_;
  QImage base_;
  QImage screen_;
};

// --- benchmarks --------------------------------------------------------------

// Open a 4K NV12 file and show it: load, layout, rendition, compose, paint.
void BM_OpenToFirstPaint(benchmark::State& state, double zoom) {
  if (!Files().Ready()) return state.SkipWithError("no temporary folder");
  const std::string path = Files().Nv12(0);
  Viewer viewer({zoom, false, false});
  for (auto _ : state) {
    if (!viewer.Open(path)) return state.SkipWithError("open failed");
    viewer.Resize();
    viewer.Paint();
    state.PauseTiming();
    viewer.CloseAll();
    state.ResumeTiming();
  }
}
BENCHMARK_CAPTURE(BM_OpenToFirstPaint, nv12_4k/fit, 0.0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_OpenToFirstPaint, nv12_4k/1to1, 1.0)->Unit(benchmark::kMillisecond);

struct PanCase {
  ViewSetup setup;
  bool gray = false;  // one-component values
};

// One page scroll and the repaint it causes, over 1, 2 or 6 images side by
// side. Scrolls alternate so the view stays inside the image. At fit nothing
// scrolls, but the frame is composed all the same.
void BM_PanRepaint(benchmark::State& state, PanCase pan) {
  if (!Files().Ready()) return state.SkipWithError("no temporary folder");
  Viewer viewer(pan.setup);
  const auto images = static_cast<uint32_t>(state.range(0));
  for (uint32_t i = 0; i < images; ++i) {
    if (!viewer.Open(pan.gray ? Files().Gray(i) : Files().Nv12(i))) return state.SkipWithError("open failed");
  }
  viewer.CompareAll();
  // A case that does not draw what its name says would time the wrong thing.
  const FramePlan& plan = viewer.Plan();
  if (plan.panels.size() != images) return state.SkipWithError("not every image got a panel");
  const PanelPlan& first = plan.panels.front();
  const uint32_t k = pan.setup.zoom >= 1 ? static_cast<uint32_t>(pan.setup.zoom) : 1;
  if (first.k != k || first.stretch != (pan.setup.zoom < 1)) return state.SkipWithError("wrong zoom");
  if (first.grid != pan.setup.grid) return state.SkipWithError("grid not as asked");
  if (first.values.show != pan.setup.values) return state.SkipWithError("values not as asked");
  viewer.Paint();  // renditions built before timing
  bool forward = true;
  for (auto _ : state) {
    viewer.Controller().OnScroll(Axis::Horizontal, forward ? ScrollAction::PageDown : ScrollAction::PageUp, 0);
    forward = !forward;
    viewer.Paint();
  }
}
BENCHMARK_CAPTURE(BM_PanRepaint, fit, PanCase{{0.0, false, false}, false})
    ->Arg(1)->Arg(2)->Arg(6)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_PanRepaint, k1, PanCase{{1.0, false, false}, false})
    ->Arg(1)->Arg(2)->Arg(6)->Unit(benchmark::kMillisecond);
// The grid is drawn from ZF 5 (its threshold).
BENCHMARK_CAPTURE(BM_PanRepaint, k5_grid, PanCase{{5.0, true, false}, false})
    ->Arg(1)->Arg(2)->Arg(6)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_PanRepaint, k24_values1, PanCase{{24.0, false, true}, true})
    ->Arg(1)->Arg(2)->Arg(6)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_PanRepaint, k64_values3, PanCase{{64.0, false, true}, false})
    ->Arg(1)->Arg(2)->Arg(6)->Unit(benchmark::kMillisecond);

// One zoom step and its repaint, cycling fit -> 1:1 -> 2 -> 1:1 -> fit.
void BM_ZoomStep(benchmark::State& state) {
  if (!Files().Ready()) return state.SkipWithError("no temporary folder");
  Viewer viewer({0.0, false, false});
  if (!viewer.Open(Files().Nv12(0))) return state.SkipWithError("open failed");
  viewer.Paint();
  const Command cycle[] = {Command::ZoomIn, Command::ZoomIn, Command::ZoomOut, Command::ZoomOut};
  size_t step = 0;
  for (auto _ : state) {
    viewer.Controller().Execute(cycle[step]);
    step = (step + 1) % std::size(cycle);
    viewer.Paint();
  }
}
BENCHMARK(BM_ZoomStep)->Unit(benchmark::kMillisecond);

// A cursor move over a 4K NV12 picture at 1:1 with tracking lines and an
// ROI: the readout of the tab and the status bar, then the overlay repaint.
void BM_CursorMoveReadout(benchmark::State& state) {
  if (!Files().Ready()) return state.SkipWithError("no temporary folder");
  Viewer viewer({1.0, false, false});
  if (!viewer.Open(Files().Nv12(0))) return state.SkipWithError("open failed");
  viewer.Controller().Execute(Command::ToggleTracking);
  viewer.Paint();
  const ScreenRect picture = viewer.Plan().panels.front().picture;
  const ScreenPoint a{picture.left + 100, picture.top + 100};
  const ScreenPoint b{picture.left + 300, picture.top + 200};
  viewer.Controller().OnLeftDown(a, {});
  viewer.Paint();
  viewer.Controller().OnLeftDown(b, {});
  viewer.Paint();
  if (viewer.Plan().panels.front().inspect.roi_frame.Empty()) return state.SkipWithError("no ROI");
  int32_t step = 0;
  for (auto _ : state) {
    viewer.Controller().OnMouseMove({picture.left + 50 + step % 400, picture.top + 60 + step % 300}, {});
    ++step;
    viewer.PaintOverlay();
  }
  if (!viewer.Plan().panels.front().inspect.tracked) state.SkipWithError("the cursor left the picture");
}
BENCHMARK(BM_CursorMoveReadout)->Unit(benchmark::kMillisecond);

// A cursor move with the histogram shown and Ctrl held, alternating between
// a histogram bin and a picture pixel, so the hovered and the lit bins (and
// with them the box's cached image) change on every move.
void BM_CursorMoveHistogram(benchmark::State& state) {
  if (!Files().Ready()) return state.SkipWithError("no temporary folder");
  Viewer viewer({0.0, false, false});
  if (!viewer.Open(Files().Nv12(0))) return state.SkipWithError("open failed");
  viewer.Controller().Execute(Command::ToggleHistogram);
  viewer.PaintOverlay();
  const PanelPlan& panel = viewer.Plan().panels.front();
  if (!panel.histogram.show || panel.histogram.layout.rows.size() < 2) return state.SkipWithError("no histogram");
  const ScreenRect bars = panel.histogram.layout.rows[1].rect;
  const ScreenPoint points[] = {{bars.left + 20, bars.bottom}, {panel.picture.right - 5, panel.picture.bottom - 5}};
  size_t step = 0;
  for (auto _ : state) {
    viewer.Controller().OnMouseMove(points[step], Modifiers{.ctrl = true});
    step ^= 1;
    viewer.PaintOverlay();
  }
}
BENCHMARK(BM_CursorMoveHistogram)->Unit(benchmark::kMillisecond);

// A point inside `rect`, a quarter of the way in from its top left corner.
ScreenPoint Inside(const ScreenRect& rect) {
  return {rect.left + rect.Width() / 4, rect.top + rect.Height() / 4};
}

// Cursor moves over two images side by side: into a tab, onto the picture
// below it, then the other panel. Each move is followed by the repaint of
// what it damaged (tab hover, tracking lines, readout); the base layer is
// never composed again.
void BM_CursorMove(benchmark::State& state) {
  if (!Files().Ready()) return state.SkipWithError("no temporary folder");
  Viewer viewer({0.0, false, false});
  for (uint32_t i = 0; i < 2; ++i) {
    if (!viewer.Open(Files().Nv12(i))) return state.SkipWithError("open failed");
  }
  viewer.CompareAll();
  viewer.Paint();
  std::vector<ScreenPoint> path;
  for (const PanelPlan& panel : viewer.Plan().panels) {
    path.push_back(Inside(panel.tab.rect));
    path.push_back(Inside(panel.picture));
    path.push_back({path.back().x + 1, path.back().y + 1});
  }
  if (path.size() != 6) return state.SkipWithError("not two panels");
  size_t step = 0;
  for (auto _ : state) {
    viewer.Controller().OnMouseMove(path[step], {});
    step = (step + 1) % path.size();
    if (!viewer.PaintDamage()) return state.SkipWithError("a cursor move asked for a new base");
  }
}
BENCHMARK(BM_CursorMove)->Unit(benchmark::kMillisecond);

// The real window on the offscreen platform, shown at the frame's size,
// with the benchmark's format rules.
struct ShownWindow {
  explicit ShownWindow(const ViewSetup& setup)
      : config(BenchConfig(setup)),
        configured(feedback, config),
        formats_loaded(configured.app.LoadFormats(Files().Rules())),
        window(configured.app, config) {
    window.resize(kClient.width, kClient.height);
    window.show();
    QApplication::processEvents();
  }
  ConfigValues config;
  QuietFeedback feedback;
  ConfiguredApp configured;
  bool formats_loaded;
  CMainWindow window;
};

// The real window on the offscreen platform: CMainWindow's canvas repainted
// through its paint event and backing store, the image area sized as the
// other benchmarks' frame. "still" repaints an unchanged frame (an expose);
// "pan" scrolls one page first, so the paint event composes a new base.
void BM_WidgetRepaint(benchmark::State& state, bool pan) {
  if (!Files().Ready()) return state.SkipWithError("no temporary folder");
  ShownWindow shown({1.0, false, false});
  if (!shown.formats_loaded) return state.SkipWithError("formats not loaded");
  AppState& app = shown.configured.app;
  CMainWindow& window = shown.window;
  // Grow the window by what menus, bars and status take, so the canvas gets
  // the frame's size (in device pixels, as the plan works).
  const ScreenSize canvas = window.Canvas().DeviceSize();
  window.resize(window.width() + kClient.width - canvas.width, window.height() + kClient.height - canvas.height);
  QApplication::processEvents();
  const ScreenSize sized = window.Canvas().DeviceSize();
  if (sized.width != kClient.width || sized.height != kClient.height) {
    return state.SkipWithError("the canvas did not get the frame's size");
  }
  if (!app.OpenImage(Files().Nv12(0))) return state.SkipWithError("open failed");
  window.Controller().OnImagesChanged();
  window.Canvas().repaint();
  bool forward = true;
  for (auto _ : state) {
    if (pan) {
      window.Controller().OnScroll(Axis::Horizontal, forward ? ScrollAction::PageDown : ScrollAction::PageUp, 0);
      forward = !forward;
    }
    window.Canvas().repaint();
  }
  window.hide();
  app.CloseAllImages();
}
BENCHMARK_CAPTURE(BM_WidgetRepaint, still, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_WidgetRepaint, pan, true)->Unit(benchmark::kMillisecond);

// --- resident memory ----------------------------------------------------------

// A /proc/self/status field (VmRSS, VmHWM) in bytes; nothing when missing.
std::optional<uint64_t> StatusBytes(std::string_view field) {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.starts_with(field) && line.size() > field.size() && line[field.size()] == ':') {
      return std::strtoull(line.c_str() + field.size() + 1, nullptr, 10) * 1024;
    }
  }
  return std::nullopt;
}

uint64_t PlaneBytes(const AppState& app) {
  uint64_t bytes = 0;
  for (size_t i = 0; i < app.Images().Count(); ++i) {
    const auto* image = dynamic_cast<const CImageConcreteBase*>(app.Images().At(i).image.get());
    for (uint32_t p = 0; image != nullptr && p < image->PlaneCount(); ++p) {
      bytes += image->GetPlane(p).byte_size();
    }
  }
  return bytes;
}

uint64_t ShownRenditionBytes(CViewerController& controller) {
  uint64_t bytes = 0;
  for (const PanelPlan& panel : controller.PrepareFrame().panels) {
    if (panel.rendition != nullptr) bytes += panel.rendition->pixels.size() * sizeof(uint32_t);
  }
  return bytes;
}

enum class OpenWay { Together, OneByOne, Reload, CloseOthers };

// The real window with `frames` 4K NV12 frames open and one shown: opened
// together (as from the command line, one paint at the end), one by one
// (each shown as it opens, as a user opens them in turn), or one by one and
// then the shown frame reloaded three times (as after outside changes), or
// one by one and then all but the shown frame closed.
// Reports resident memory against the planes plus the shown renditions and
// the empty window's own footprint, all in MB. Run one case per process
// (bench/viewer_memory.sh): the peak is the process's.
void BM_ResidentMemory(benchmark::State& state, OpenWay way) {
  if (!Files().Ready()) return state.SkipWithError("no temporary folder");
  const auto frames = static_cast<uint32_t>(state.range(0));
  for (uint32_t i = 0; i < frames; ++i) Files().Nv12(i);  // written before the empty figure
  ShownWindow viewer({0.0, false, false});
  if (!viewer.formats_loaded) return state.SkipWithError("formats not loaded");
  AppState& app = viewer.configured.app;
  CMainWindow& window = viewer.window;
  window.Canvas().repaint();
  QApplication::processEvents();
  const std::optional<uint64_t> empty = StatusBytes("VmRSS");
  for (auto _ : state) {
    for (uint32_t i = 0; i < frames; ++i) {
      if (!app.OpenImage(Files().Nv12(i))) return state.SkipWithError("open failed");
      if (way == OpenWay::Together) continue;
      window.Controller().OnImagesChanged();
      window.Canvas().repaint();
    }
    window.Controller().OnImagesChanged();
    window.Canvas().repaint();
    for (int reload = 0; way == OpenWay::Reload && reload < 3; ++reload) {
      const PanelPlan& shown = window.Controller().PrepareFrame().panels.front();
      if (!app.ReloadImage(shown.image_index, true)) return state.SkipWithError("reload failed");
      window.Controller().OnImagesChanged();
      window.Canvas().repaint();
    }
    while (way == OpenWay::CloseOthers && app.Images().Count() > 1) {
      const size_t shown = window.Controller().PrepareFrame().panels.front().image_index;
      app.CloseImage(shown == 0 ? 1 : 0);
      window.Controller().OnImagesChanged();
      window.Canvas().repaint();
    }
    QApplication::processEvents();
  }
  const std::optional<uint64_t> resident = StatusBytes("VmRSS");
  const std::optional<uint64_t> peak = StatusBytes("VmHWM");
  if (!empty || !resident || !peak) return state.SkipWithError("no VmRSS/VmHWM in /proc/self/status");
  const size_t open = way == OpenWay::CloseOthers ? 1 : frames;
  if (app.Images().Count() != open) return state.SkipWithError("the frames open are not the case's");
  const uint64_t shown = ShownRenditionBytes(window.Controller());
  if (shown == 0) return state.SkipWithError("no frame shown");
  state.counters["empty_MB"] = static_cast<double>(*empty) / 1e6;
  state.counters["planes_MB"] = static_cast<double>(PlaneBytes(app)) / 1e6;
  state.counters["shown_MB"] = static_cast<double>(shown) / 1e6;
  state.counters["resident_MB"] = static_cast<double>(*resident) / 1e6;
  state.counters["peak_MB"] = static_cast<double>(*peak) / 1e6;
  state.counters["parked_MB"] = static_cast<double>(CBlockRecycler::Shared().ParkedBytes()) / 1e6;
  window.hide();
  app.CloseAllImages();
}
BENCHMARK_CAPTURE(BM_ResidentMemory, together, OpenWay::Together)
    ->Arg(1)->Arg(5)->Arg(20)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ResidentMemory, one_by_one, OpenWay::OneByOne)
    ->Arg(1)->Arg(5)->Arg(20)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ResidentMemory, reload, OpenWay::Reload)
    ->Arg(20)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ResidentMemory, close_others, OpenWay::CloseOthers)
    ->Arg(20)->Iterations(1)->Unit(benchmark::kMillisecond);

// The baseline: one frame's bytes copied, as a backing-store blit would.
void BM_MemcpyFrame(benchmark::State& state) {
  const size_t bytes = size_t{4} * kClient.width * kClient.height;
  std::vector<uint8_t> source(bytes, 1);
  std::vector<uint8_t> target(bytes);
  for (auto _ : state) {
    std::memcpy(target.data(), source.data(), bytes);
    benchmark::DoNotOptimize(target.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}
BENCHMARK(BM_MemcpyFrame)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace korvanel

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  // Widgets for BM_WidgetRepaint.
  QApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
