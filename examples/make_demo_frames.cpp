// Writes the two full-HD NV12 frames the demo compares: a synthetic outdoor
// test scene (sky, clouds, sun, hills, a colour chart, a grey ramp and a
// Siemens star, with a little sensor noise), and the same frame after a
// small luma change, a 3x3 smoothing followed by a 1.12 digital gain. The
// gain leaves every eighth or ninth luma value unused, which the histogram
// shows as a comb while the two pictures look alike.
//
//   make_demo_frames OUTPUT_FOLDER
//
// Built with the project; the frames are build products, never committed.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr double kGain = 1.12;
constexpr double kPi = 3.14159265358979323846;

struct Rgb {
  double r = 0, g = 0, b = 0;
};

Rgb Mix(const Rgb& a, const Rgb& b, double t) {
  return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}
Rgb Scale(const Rgb& c, double k) { return {c.r * k, c.g * k, c.b * k}; }
Rgb From8(int r, int g, int b) { return {r / 255.0, g / 255.0, b / 255.0}; }

double SmoothStep(double e0, double e1, double x) {
  const double t = std::clamp((x - e0) / (e1 - e0), 0.0, 1.0);
  return t * t * (3 - 2 * t);
}

// Lattice value noise: a hash per integer point, smoothly interpolated.
double Lattice(int x, int y) {
  uint32_t h = static_cast<uint32_t>(x) * 374761393u + static_cast<uint32_t>(y) * 668265263u;
  h = (h ^ (h >> 13)) * 1274126177u;
  return ((h ^ (h >> 16)) & 0xFFFF) / 65535.0;
}

double ValueNoise(double x, double y) {
  const double fx = std::floor(x), fy = std::floor(y);
  const int ix = static_cast<int>(fx), iy = static_cast<int>(fy);
  const double tx = SmoothStep(0, 1, x - fx), ty = SmoothStep(0, 1, y - fy);
  const double top = Lattice(ix, iy) + (Lattice(ix + 1, iy) - Lattice(ix, iy)) * tx;
  const double bottom = Lattice(ix, iy + 1) + (Lattice(ix + 1, iy + 1) - Lattice(ix, iy + 1)) * tx;
  return top + (bottom - top) * ty;
}

// Fractal noise in 0..1: octaves of halving weight.
double Fractal(double x, double y, int octaves) {
  double sum = 0, weight = 0.5, total = 0;
  for (int i = 0; i < octaves; ++i) {
    sum += ValueNoise(x, y) * weight;
    total += weight;
    x *= 2.03;
    y *= 2.03;
    weight *= 0.5;
  }
  return sum / total;
}

// The 24 patches of the common colour checker chart, in 8-bit sRGB.
constexpr std::array<std::array<int, 3>, 24> kChart = {{
    {115, 82, 68},  {194, 150, 130}, {98, 122, 157}, {87, 108, 67},  {133, 128, 177}, {103, 189, 170},
    {214, 126, 44}, {80, 91, 166},   {193, 90, 99},  {94, 60, 108},  {157, 188, 64},  {224, 163, 46},
    {56, 61, 150},  {70, 148, 73},   {175, 54, 60},  {231, 199, 31}, {187, 86, 149},  {8, 133, 161},
    {243, 243, 242}, {200, 200, 200}, {160, 160, 160}, {122, 122, 121}, {85, 85, 85},  {52, 52, 52},
}};

// Heights of the two hill ridges, per column, as fractions of the frame height.
struct Ridges {
  std::vector<double> far, near;
};

Ridges MakeRidges() {
  Ridges ridges{std::vector<double>(kWidth), std::vector<double>(kWidth)};
  for (int x = 0; x < kWidth; ++x) {
    const double u = static_cast<double>(x) / kWidth;
    ridges.far[x] = 0.50 - 0.07 * Fractal(u * 4, 1.5, 5) - 0.03 * std::sin(u * 5.0 + 1.0);
    ridges.near[x] = 0.66 - 0.09 * Fractal(u * 2.5, 7.5, 6) + 0.02 * std::sin(u * 9.0);
  }
  return ridges;
}

Rgb Sky(double u, double v) {
  Rgb sky = Mix(From8(58, 104, 180), From8(180, 198, 220), SmoothStep(0.0, 0.55, v));
  const double clouds = SmoothStep(0.52, 0.78, Fractal(u * 6 + 3, v * 14, 6));
  sky = Mix(sky, Scale(From8(222, 224, 228), 1.0 - 0.25 * v), clouds * (1.0 - SmoothStep(0.25, 0.45, v)));
  // The sun: a bright disc with a glow, in frame-height units.
  const double d = std::hypot((u - 0.80) * kWidth / kHeight, v - 0.16);
  const double glow = 0.3 * std::exp(-d * 9.0);
  sky = {sky.r + glow, sky.g + glow * 0.93, sky.b + glow * 0.75};
  return d < 0.035 ? From8(255, 250, 230) : sky;
}

Rgb Landscape(int x, double u, double v, const Ridges& ridges) {
  if (v < ridges.far[x]) return Sky(u, v);
  const double texture = Fractal(u * 180, v * 120, 4);
  if (v < ridges.near[x]) {
    const double haze = 1.0 - SmoothStep(ridges.far[x], ridges.far[x] + 0.12, v);
    return Mix(Scale(From8(60, 96, 70), 0.8 + 0.4 * texture), From8(150, 170, 180), 0.55 * haze);
  }
  const double depth = SmoothStep(ridges.near[x], 1.0, v);
  const double patches = Fractal(u * 9, v * 6 + 20, 4);
  Rgb grass = Mix(From8(96, 140, 52), From8(58, 92, 30), patches);
  return Scale(grass, (0.75 + 0.5 * texture) * (1.0 - 0.35 * depth));
}

// The board with the colour chart and a grey ramp below it; false outside.
bool Chart(double px, double py, Rgb& out) {
  constexpr double kLeft = 90, kTop = 620, kPatch = 80, kGap = 12;
  constexpr double kRight = kLeft + 6 * kPatch + 7 * kGap, kBottom = kTop + 4 * kPatch + 5 * kGap + 48;
  if (px < kLeft || px >= kRight || py < kTop || py >= kBottom) return false;
  out = From8(30, 30, 32);
  const double cx = (px - kLeft - kGap) / (kPatch + kGap), cy = (py - kTop - kGap) / (kPatch + kGap);
  const int col = static_cast<int>(cx), row = static_cast<int>(cy);
  if (cx >= 0 && cy >= 0 && col < 6 && row < 4 && cx - col < kPatch / (kPatch + kGap) &&
      cy - row < kPatch / (kPatch + kGap)) {
    const auto& p = kChart[static_cast<size_t>(row * 6 + col)];
    out = From8(p[0], p[1], p[2]);
  }
  const double ramp_top = kTop + 4 * kPatch + 5 * kGap;
  if (py >= ramp_top && py < ramp_top + 36 && px >= kLeft + kGap && px < kRight - kGap) {
    const double t = (px - kLeft - kGap) / (kRight - kLeft - 2 * kGap);
    out = {t, t, t};
  }
  return true;
}

// A Siemens star of 36 spokes on a white disc; false outside the disc.
bool Star(double px, double py, Rgb& out) {
  constexpr double kCx = 1520, kCy = 800, kRadius = 210;
  const double dx = px - kCx, dy = py - kCy;
  const double r = std::hypot(dx, dy);
  if (r > kRadius + 14) return false;
  if (r > kRadius) {
    out = From8(208, 208, 204);
    return true;
  }
  const double spoke = std::fmod(std::atan2(dy, dx) + kPi, 2 * kPi / 18) < kPi / 18;
  out = spoke ? From8(28, 28, 30) : From8(208, 208, 204);
  return true;
}

Rgb Sample(double px, double py, int x, const Ridges& ridges) {
  Rgb c;
  if (Chart(px, py, c) || Star(px, py, c)) return c;
  return Landscape(x, px / kWidth, py / kHeight, ridges);
}

// Deterministic sensor noise: a small xorshift generator, roughly Gaussian.
class Noise {
 public:
  double Next() {
    double sum = 0;
    for (int i = 0; i < 4; ++i) {
      state_ ^= state_ << 13;
      state_ ^= state_ >> 7;
      state_ ^= state_ << 17;
      sum += static_cast<double>(state_ >> 40) / static_cast<double>(1ull << 24);
    }
    return (sum - 2.0) * 1.7;  // about 1 code value of spread
  }

 private:
  uint64_t state_ = 0x9E3779B97F4A7C15ull;
};

uint8_t To8(double v) { return static_cast<uint8_t>(std::clamp(std::lround(v), 0L, 255L)); }

struct Frame {
  std::vector<uint8_t> y, uv;  // NV12: the luma plane, then U/V pairs
};

// Full-range BT.601, the program's default YUV<->RGB transform.
Frame Render() {
  const Ridges ridges = MakeRidges();
  Frame frame{std::vector<uint8_t>(size_t{kWidth} * kHeight), std::vector<uint8_t>(size_t{kWidth} * kHeight / 2)};
  std::vector<double> u_row(kWidth), v_row(kWidth);
  Noise noise;
  for (int y = 0; y < kHeight; ++y) {
    uint8_t* luma = &frame.y[static_cast<size_t>(y) * kWidth];
    for (int x = 0; x < kWidth; ++x) {
      // 2x2 samples per pixel keep the edges and the star's spokes smooth.
      Rgb sum;
      for (const double oy : {0.25, 0.75}) {
        for (const double ox : {0.25, 0.75}) {
          const Rgb s = Sample(x + ox, y + oy, x, ridges);
          sum = {sum.r + s.r, sum.g + s.g, sum.b + s.b};
        }
      }
      const double r = std::clamp(sum.r / 4, 0.0, 1.0) * 255 + noise.Next();
      const double g = std::clamp(sum.g / 4, 0.0, 1.0) * 255 + noise.Next();
      const double b = std::clamp(sum.b / 4, 0.0, 1.0) * 255 + noise.Next();
      luma[x] = To8(0.299 * r + 0.587 * g + 0.114 * b);
      const double u = -0.168736 * r - 0.331264 * g + 0.5 * b + 128;
      const double v = 0.5 * r - 0.418688 * g - 0.081312 * b + 128;
      u_row[x] = (y % 2 == 0) ? u : u_row[x] + u;
      v_row[x] = (y % 2 == 0) ? v : v_row[x] + v;
    }
    if (y % 2 == 0) continue;
    uint8_t* pairs = &frame.uv[static_cast<size_t>(y / 2) * kWidth];
    for (int x = 0; x < kWidth; x += 2) {
      pairs[x] = To8((u_row[x] + u_row[x + 1]) / 4);
      pairs[x + 1] = To8((v_row[x] + v_row[x + 1]) / 4);
    }
  }
  return frame;
}

// The processed frame: luma smoothed with [1 2 1]x[1 2 1]/16 (edges
// repeated), then multiplied by the gain; chroma untouched.
Frame Process(const Frame& source) {
  Frame out = source;
  const auto at = [&](int x, int y) {
    return int{source.y[static_cast<size_t>(std::clamp(y, 0, kHeight - 1)) * kWidth +
                        static_cast<size_t>(std::clamp(x, 0, kWidth - 1))]};
  };
  for (int y = 0; y < kHeight; ++y) {
    uint8_t* row = &out.y[static_cast<size_t>(y) * kWidth];
    for (int x = 0; x < kWidth; ++x) {
      int sum = 0;
      for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) sum += at(x + dx, y + dy) * (2 - std::abs(dx)) * (2 - std::abs(dy));
      }
      row[x] = To8(std::lround(sum / 16.0) * kGain);
    }
  }
  return out;
}

bool Write(const std::string& path, const Frame& frame) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(frame.y.data()), static_cast<std::streamsize>(frame.y.size()));
  file.write(reinterpret_cast<const char*>(frame.uv.data()), static_cast<std::streamsize>(frame.uv.size()));
  file.close();
  if (!file) std::fprintf(stderr, "make_demo_frames: cannot write %s\n", path.c_str());
  return static_cast<bool>(file);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_demo_frames OUTPUT_FOLDER\n");
    return 2;
  }
  const std::string folder = argv[1];
  const std::string size = "_" + std::to_string(kWidth) + "x" + std::to_string(kHeight) + ".nv12";
  const Frame scene = Render();
  const bool ok = Write(folder + "/scene" + size, scene) && Write(folder + "/scene_gain" + size, Process(scene));
  return ok ? 0 : 1;
}
