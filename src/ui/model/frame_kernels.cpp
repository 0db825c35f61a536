#include "ui/model/frame_kernels.h"

namespace korvanel {

void FillRect(PixelBuffer&, const ScreenRect&, uint32_t) {}
void BlitReplicated(const DisplayRendition&, const ScreenRect&, ScreenPoint, uint32_t,
                    const GridStyle&, PixelBuffer&) {}
void BlitStretched(const DisplayRendition&, const ScreenRect&, const ScreenRect&, PixelBuffer&) {}
Rgb RingColor(uint32_t) { return {}; }
void DrawRings(PixelBuffer&, const ScreenRect&, uint32_t) {}

}  // namespace korvanel
