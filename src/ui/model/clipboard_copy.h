#pragma once

// What Ctrl+C and the Actions menu put on the clipboard: an image's full
// path as text, or what the viewer shows of it (its region of interest, or
// the whole image) as 24-bit RGB.

#include <optional>
#include <string>

#include "image/display_rendition.h"
#include "image/region.h"
#include "ui/model/frame_kernels.h"

namespace korvanel {

class IImageContainer;
class IParallelRunner;
struct ImageRecord;

// The largest copy handed to the clipboard; the toolkit's images take
// rows of at most 2^31 - 1 bytes.
inline constexpr uint64_t kMaxClipboardRowBytes = 0x7FFFFFFF;

// `area` of `shown` as rows of R,G,B bytes without padding. Nothing when the
// area lies outside the rendition or is too large to hand over.
std::optional<Rgb888Image> CopyRenditionArea(const DisplayRendition& shown, const Rect& area);

// The image as shown, limited to its region of interest.
std::optional<Rgb888Image> ClipboardImageOf(IImageContainer& image, IParallelRunner* runner);

// The path the image was opened from, or the name of a created image.
const std::string& FullPathOf(const ImageRecord& record);

}  // namespace korvanel
