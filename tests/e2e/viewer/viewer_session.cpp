#include "e2e/viewer/viewer_session.h"

#include "image/image_container.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace korvanel::test {

ShellResult Shell(const std::string& command) {
  ShellResult result;
  std::FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return result;
  char buffer[4096];
  size_t n = 0;
  while ((n = std::fread(buffer, 1, sizeof(buffer), pipe)) > 0) result.output.append(buffer, n);
  const int raw = pclose(pipe);
  result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  while (!result.output.empty() && result.output.back() == '\n') result.output.pop_back();
  return result;
}

bool WaitFor(const std::function<bool()>& ready, milliseconds limit) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  while (!ready()) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(milliseconds(50));
  }
  return true;
}

uint32_t PixelAt(const QImage& image, int x, int y) {
  if (!image.valid(x, y)) return 0;
  return image.pixel(x, y) & 0xFFFFFFu;
}

uint32_t RenditionColour(const DisplayRendition& rendition, uint32_t x, uint32_t y) {
  const uint32_t p = rendition.pixels[size_t{y} * rendition.width + x];
  return uint32_t{DisplayRed(p)} << 16 | uint32_t{DisplayGreen(p)} << 8 | DisplayBlue(p);
}

std::optional<QPoint> FindPicture(const QImage& shot, const DisplayRendition& rendition, uint32_t k) {
  const int width = static_cast<int>(rendition.width * k);
  const int height = static_cast<int>(rendition.height * k);
  const uint32_t first = RenditionColour(rendition, 0, 0);
  for (int top = 0; top + height <= shot.height(); ++top) {
    for (int left = 0; left + width <= shot.width(); ++left) {
      if (PixelAt(shot, left, top) != first) continue;
      bool all = true;
      for (int y = 0; y < height && all; ++y) {
        for (int x = 0; x < width && all; ++x) {
          all = PixelAt(shot, left + x, top + y) ==
                RenditionColour(rendition, static_cast<uint32_t>(x) / k, static_cast<uint32_t>(y) / k);
        }
      }
      if (all) return QPoint(left, top);
    }
  }
  return std::nullopt;
}

ViewerSession::ViewerSession(const std::string& ini) : runner_(dir_, ini) {}

ViewerSession::~ViewerSession() {
  if (pid_ <= 0) return;
  if (!WaitExit(milliseconds(0))) {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
}

void ViewerSession::CopyIn(const std::vector<std::string>& paths) const {
  for (const std::string& path : paths) {
    const std::filesystem::path source(path);
    std::filesystem::copy_file(source, dir_ / source.filename().string(),
                               std::filesystem::copy_options::overwrite_existing);
  }
}

void ViewerSession::AppendIni(const std::string& lines) const {
  dir_.Write("Korvanel.ini", ReadWholeFile(dir_ / "Korvanel.ini") + lines);
}

bool ViewerSession::Start(const std::vector<std::string>& arguments) {
  const std::string folder = dir_.path().string();
  const std::string output = dir_.File("program_output.txt");
  // Qt wants a private runtime folder and warns on standard error without one.
  const std::string runtime = dir_.File("runtime");
  mkdir(runtime.c_str(), 0700);
  std::vector<std::string> words = {"./korvanel"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  pid_ = fork();
  if (pid_ < 0) return false;
  if (pid_ == 0) {
    // The real X server, whatever the test runner's environment says.
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    unsetenv("QT_SCALE_FACTOR");
    setenv("XDG_RUNTIME_DIR", runtime.c_str(), 1);
    const int fd = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (chdir(folder.c_str()) != 0 || fd < 0) _exit(127);
    dup2(fd, STDOUT_FILENO);
    dup2(fd, STDERR_FILENO);
    execv(argv[0], argv.data());
    _exit(127);
  }
  return true;
}

std::string ViewerSession::FindWindow(const std::string& title) const {
  const ShellResult found =
      Shell("timeout 10 xdotool search --sync --onlyvisible --name " + ShellQuote(title) + " 2>/dev/null");
  if (found.status != 0) return "";
  // The newest match is the last line.
  const size_t last = found.output.rfind('\n');
  return last == std::string::npos ? found.output : found.output.substr(last + 1);
}

bool ViewerSession::Keys(const std::string& window, const std::vector<std::string>& keys) const {
  std::string command = "timeout 10 xdotool windowfocus --sync " + window + " key --delay 50";
  for (const std::string& key : keys) command += " " + ShellQuote(key);
  return Shell(command + " 2>/dev/null").status == 0;
}

QImage ViewerSession::Screenshot(const std::string& window) const {
  const std::string file = dir_.File("screenshot.png");
  std::remove(file.c_str());
  if (Shell("timeout 10 import -window " + window + " " + ShellQuote(file) + " 2>/dev/null").status != 0) {
    return {};
  }
  return QImage(QString::fromStdString(file)).convertToFormat(QImage::Format_RGB32);
}

std::optional<int> ViewerSession::WaitExit(milliseconds limit) {
  if (pid_ <= 0) return std::nullopt;
  int raw = 0;
  std::optional<int> status;
  WaitFor(
      [&] {
        if (waitpid(pid_, &raw, WNOHANG) != pid_) return false;
        status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
        return true;
      },
      limit);
  if (status) pid_ = -1;
  return status;
}

std::string ViewerSession::Output() const { return ReadWholeFile(dir_ / "program_output.txt"); }

std::string ViewerSession::ReadFile(const std::string& name) const { return ReadWholeFile(dir_ / name); }

void ViewerGradient::SetUp() {
  const std::string examples = KORVANEL_EXAMPLES_DIR;
  ASSERT_TRUE(reference.LoadFormats(examples + "/Korvanel.fmt"));
  ASSERT_TRUE(reference.OpenImage(examples + "/gradient_64x48.nv12"));
  rendition = reference.Images().At(0).image->BuildDisplay();
  ASSERT_NE(rendition, nullptr);
  session.CopyIn({examples + "/Korvanel.fmt", examples + "/gradient_64x48.nv12"});
  session.AppendIni("[gui]\ndef_zoom = 1\n");
  ASSERT_TRUE(session.Start({"gradient_64x48.nv12"}));
  window = session.FindWindow();
  ASSERT_FALSE(window.empty()) << session.Output();
  std::optional<QPoint> found;
  ASSERT_TRUE(WaitFor([&] { return (found = FindPicture(session.Screenshot(window), *rendition, 1)).has_value(); },
                      kExitLimit))
      << "the 64x48 picture at ZF 1";
  origin = *found;
}

void ViewerGradient::Exit() {
  ASSERT_TRUE(session.Keys(window, {"alt+f", "x"}));
  EXPECT_EQ(session.WaitExit(), std::optional<int>(0)) << session.Output();
}

}  // namespace korvanel::test
