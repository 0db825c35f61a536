#pragma once

// The help overlay: its eleven pages cut from the manual, paging that stops
// at the first and last page, and where the box, its shadow, the text and
// the footer go over the image area, with the font that lets the page fit.

#include <cstdint>
#include <string>
#include <vector>

#include "ui/model/geometry.h"
#include "ui/model/text_metrics.h"

namespace korvanel {

class CManualPages;

inline constexpr uint32_t kHelpPageCount = 11;
inline constexpr uint32_t kLastHelpPage = kHelpPageCount - 1;
inline constexpr const char* kHelpReferLine = "Refer to Help sub-menu for detailed info...";

// Pages 0..10 in overlay order. The two brief pages end with the line that
// points to the help window; a tag missing from the manual gives an empty
// page.
std::vector<std::string> AssembleHelpPages(const CManualPages& manual);

// The page after stepping `delta` pages from `page`, within 0..10.
uint32_t StepHelpPage(uint32_t page, int64_t delta);

// "Displaying page %u/%u (0 for pages index)".
std::string HelpFooter(uint32_t page);

size_t LineCount(const std::string& text);

struct HelpOverlayLayout {
  ScreenRect box;
  ScreenRect shadow;
  ScreenRect text;  // the page text's area (word-wrapped inside)
  FontRole font = FontRole::HelpLarge;
  std::string footer;
  int32_t footer_top = 0;  // the footer is centred on the box
};

// The box holds 91 characters of its font and is centred in `area`; it
// starts 30 pixels below the area's top and leaves room for the footer
// under it. The smaller font is used when the page's lines, at the height
// of "ABC", are taller than the box.
HelpOverlayLayout LayoutHelpOverlay(const ScreenRect& area, const std::string& page_text, uint32_t page,
                                    const ITextMetrics& metrics);

}  // namespace korvanel
