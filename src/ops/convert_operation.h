#pragma once

// Convert: a new image in another raw format, through a colour transform
// when the colour family changes, optionally on a canvas of another size.
//
// Arithmetic: a change of family follows the display arithmetic at the
// source's depth (offsets of the transform scale with the depth, 128 at 8
// bits being 32768 at 16); a change of depth then keeps the most
// significant bits, as the display does. Depths are significant ones: a
// source or target with LSB=n/MSB=n counts as n bits (10 to 8 is >> 2). A grey source counts as YUV with
// neutral chroma; a grey target takes luma (Y of YUV, the first row of the
// RGB to YUV transform for RGB).

#include <cstdint>
#include <memory>
#include <string>

#include "image/color_transform.h"
#include "image/format_expression.h"
#include "image/image_concrete_base.h"
#include "ops/job_runner.h"
#include "ops/convert_parsers.h"

namespace korvanel {

struct ConvertRequest {
  FormatExpression target;
  // Canvas: the output size and where the source goes (see ParseBaseOffset).
  bool resize = false;
  NewSize size;
  BaseOffset offset;
  bool tiled = false;
  ColorTransform yuv_to_rgb;
  ColorTransform rgb_to_yuv;
};

struct ConvertRun {
  std::unique_ptr<CImageConcreteBase> image;  // null on failure or abort
  BandRun run;
};

ConvertRun RunConvert(const CImageConcreteBase& source, const ConvertRequest& request, JobRunner& runner,
                      IProgressSink* progress);

}  // namespace korvanel
