#include "ui/model/geometry.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace korvanel {

namespace {

// One axis of a rectangle: its first screen pixel and its extent.
struct Span {
  int64_t start = 0;
  int64_t extent = 0;
};

ScreenRect MakeRect(Span x, Span y) {
  return {static_cast<int32_t>(x.start), static_cast<int32_t>(y.start),
          static_cast<int32_t>(x.start + x.extent - 1), static_cast<int32_t>(y.start + y.extent - 1)};
}

// Centres `extent` in the panel span (integer halving, rounding right), or
// spans the panel when it does not fit.
Span CentreOrSpan(int64_t panel_start, int64_t panel_extent, int64_t extent) {
  if (extent >= panel_extent) return {panel_start, panel_extent};
  return {panel_start + (panel_extent - extent + 1) / 2, extent};
}

int64_t RoundToPixels(double value) {
  return std::max<int64_t>(1, static_cast<int64_t>(std::llround(value)));
}

// Scroll origin along one axis that centres `centre`; 0 when all fits.
int64_t CentredOrigin(int64_t centre, int64_t shown, int64_t extent, int64_t k) {
  int64_t origin = std::max<int64_t>(0, (centre - shown / 2) * k);
  if (origin / k + shown >= extent) origin = std::max<int64_t>(0, (extent - shown - 1) * k);
  return origin;
}

int32_t ClampToInt32(int64_t value) {
  return static_cast<int32_t>(std::clamp<int64_t>(value, 0, std::numeric_limits<int32_t>::max()));
}

}  // namespace

double ZoomIn(double zf) {
  if (zf == kFitZoom) return 1;
  if (zf < 1) {
    const double next = std::min(zf * 1.12, 1.0);
    return next == 1 ? kFitZoom : next;
  }
  if (zf < 10) return zf + 1;
  if (zf < 50) return zf + 5;
  return std::min(zf + 10, kMaxZoom);
}

double ZoomOut(double zf) {
  if (zf == 1) return kFitZoom;
  if (zf < 1) return std::max((zf == kFitZoom ? 1 : zf) * 0.9, kMinZoom);
  if (zf <= 10) return zf - 1;
  if (zf <= 50) return zf - 5;
  return zf - 10;
}

uint32_t RoundedZoom(double zf) {
  return std::max<uint32_t>(1, static_cast<uint32_t>(std::min(zf, kMaxZoom) + 0.5));
}

bool Replicates(double zf) { return zf >= 1; }

std::string ZoomText(double zf) {
  char text[32];
  if (zf == kFitZoom) return "F2W";
  if (Replicates(zf)) {
    std::snprintf(text, sizeof text, "1:%u", RoundedZoom(zf));
  } else {
    std::snprintf(text, sizeof text, "%4.2lf", zf);
  }
  return text;
}

ScreenRect PictureRect(const ScreenRect& panel, ImageSize image, double zf) {
  if (panel.Empty() || image.width == 0 || image.height == 0) {
    return {panel.left, panel.top, panel.left - 1, panel.top - 1};
  }
  const int64_t pw = panel.Width();
  const int64_t ph = panel.Height();
  if (Replicates(zf)) {
    const int64_t k = RoundedZoom(zf);
    return MakeRect(CentreOrSpan(panel.left, pw, k * image.width),
                    CentreOrSpan(panel.top, ph, k * image.height));
  }
  const double factor = zf == kFitZoom ? 1 : zf;
  const double w = image.width;
  const double h = image.height;
  double fit_w = static_cast<double>(pw);
  double fit_h = static_cast<double>(pw) * h / w;
  if (fit_h > static_cast<double>(ph)) {
    fit_h = static_cast<double>(ph);
    fit_w = static_cast<double>(ph) * w / h;
  }
  const int64_t out_w = std::min(pw, RoundToPixels(fit_w * factor));
  const int64_t out_h = std::min(ph, RoundToPixels(fit_h * factor));
  return MakeRect(CentreOrSpan(panel.left, pw, out_w), CentreOrSpan(panel.top, ph, out_h));
}

PixelRect VisibleRect(const ScreenRect& picture, ImageSize image, double zf, ScreenPoint offset) {
  if (picture.Empty() || image.width == 0 || image.height == 0) return {};
  const int64_t w = image.width;
  const int64_t h = image.height;
  if (!Replicates(zf)) return {0, 0, w - 1, h - 1};
  const int64_t k = RoundedZoom(zf);
  const int64_t ox = offset.x;
  const int64_t oy = offset.y;
  return {-ox / k, -oy / k, std::min(w - 1, (picture.Width() - ox - 1) / k),
          std::min(h - 1, (picture.Height() - 1 - oy) / k)};
}

ScreenPoint ScrollToCentre(const ScreenRect& panel, ImageSize image, double zf,
                           ScreenPoint centre) {
  if (panel.Empty() || image.width == 0 || image.height == 0 || !Replicates(zf)) return {};
  const int64_t k = RoundedZoom(zf);
  const int64_t n = panel.Width() / k;
  const int64_t m = panel.Height() / k;
  const int64_t origin_x = CentredOrigin(centre.x, n, image.width, k);
  const int64_t origin_y = CentredOrigin(centre.y, m, image.height, k);
  const ScreenPoint offset{static_cast<int32_t>(-origin_x), static_cast<int32_t>(-origin_y)};
  // Unclamped, the visible rectangle says whether the origin left the image.
  const ScreenRect picture = PictureRect(panel, image, zf);
  const int64_t right = (picture.Width() - offset.x - 1) / k;
  const int64_t bottom = (picture.Height() - 1 - offset.y) / k;
  if (right >= image.width || bottom >= image.height) return {};
  return offset;
}

int64_t ContentExtent(uint32_t image_extent, int32_t picture_extent, double zf) {
  if (Replicates(zf)) return int64_t{RoundedZoom(zf)} * image_extent;
  return std::max(0, picture_extent);
}

ScrollBarState MakeScrollBar(int64_t content, int32_t visible, int32_t line, int32_t position) {
  ScrollBarState bar;
  bar.page = std::max(0, visible);
  bar.maximum = ClampToInt32(content - bar.page);
  bar.line = std::max(1, line);
  bar.position = std::clamp(position, 0, bar.maximum);
  bar.enabled = bar.maximum > 0;
  return bar;
}

int32_t ScrollPosition(const ScrollBarState& bar, ScrollAction action, int32_t thumb) {
  int64_t position = bar.position;
  switch (action) {
    case ScrollAction::LineUp: position -= bar.line; break;
    case ScrollAction::LineDown: position += bar.line; break;
    case ScrollAction::PageUp: position -= bar.page; break;
    case ScrollAction::PageDown: position += bar.page; break;
    case ScrollAction::Thumb: position = thumb; break;
    case ScrollAction::Top: position = 0; break;
    case ScrollAction::Bottom: position = bar.maximum; break;
  }
  return static_cast<int32_t>(std::clamp<int64_t>(position, 0, bar.maximum));
}

}  // namespace korvanel
