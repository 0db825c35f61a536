#pragma once

// The 3x4 colour matrix used between YUV and RGB. Each row holds three real
// coefficients and an integer offset in -255..255 (kept as a double, converted
// to an integer where it is used). The arithmetic lives with the display
// conversion; this header only holds the data and the two matrices in force.

namespace korvanel {

// Coefficients beyond this magnitude (or not finite) are refused wherever a
// transform is read: the products must stay far inside the integer ranges
// the arithmetic truncates to.
inline constexpr double kMaxTransformCoefficient = 1000.0;
inline bool IsUsableCoefficient(double c) { return c >= -kMaxTransformCoefficient && c <= kMaxTransformCoefficient; }

struct ColorTransform {
  static constexpr int kRows = 3;
  static constexpr int kColumns = 4;
  static constexpr int kOffsetColumn = 3;
  static constexpr int kMinOffset = -255;
  static constexpr int kMaxOffset = 255;

  double m[kRows][kColumns] = {};

  friend bool operator==(const ColorTransform&, const ColorTransform&) = default;
};

// Inputs Y, U, V; outputs R, G, B. The offsets shift the inputs.
inline constexpr ColorTransform kDefaultYuvToRgb{{
    {1.0, 0.0, 1.402, 0},
    {1.0, -0.34414, -0.71414, -128},
    {1.0, 1.772, 0.0, -128},
}};

// Inputs R, G, B; outputs Y, U, V. The offsets shift the outputs.
inline constexpr ColorTransform kDefaultRgbToYuv{{
    {0.299, 0.587, 0.114, 0},
    {-0.168736, -0.331264, 0.5, 128},
    {0.5, -0.418688, -0.081312, 128},
}};

// The two matrices in force for the whole process. They are set at start-up
// from the configuration; the convert operation copies them (or a user
// matrix) into its request and never changes them. Conversions read them
// without locking.
inline ColorTransform g_yuv_to_rgb = kDefaultYuvToRgb;
inline ColorTransform g_rgb_to_yuv = kDefaultRgbToYuv;

}  // namespace korvanel
