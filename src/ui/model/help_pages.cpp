#include "ui/model/help_pages.h"

#include <algorithm>
#include <cstdio>

#include "app/manual_pages.h"

namespace korvanel {

namespace {

// Offsets from the area's top.
constexpr int32_t kBoxTop = 30;
constexpr int32_t kShadowOffset = 6;
constexpr int32_t kTextTop = 40;
constexpr int32_t kFooterGap = 28;  // from the box's bottom to the footer's top
constexpr int32_t kTextIndent = 12;
constexpr int32_t kRowChars = 91;   // the manual's row limit
constexpr int32_t kAreaMargin = 4;  // kept free left and right of the box

// Pages whose brief text points to the help window for the rest.
bool EndsWithReferLine(uint32_t page) { return page == 9 || page == 10; }

}  // namespace

std::vector<std::string> AssembleHelpPages(const CManualPages& manual) {
  std::vector<std::string> pages;
  const std::vector<std::string>& tags = CManualPages::OverlayTags();
  for (uint32_t page = 0; page < kHelpPageCount && page < tags.size(); ++page) {
    std::string text = manual.Page(tags[page]);
    if (!text.empty() && EndsWithReferLine(page)) text += std::string(kHelpReferLine) + "\n";
    pages.push_back(std::move(text));
  }
  pages.resize(kHelpPageCount);
  return pages;
}

uint32_t StepHelpPage(uint32_t page, int64_t delta) {
  return static_cast<uint32_t>(std::clamp<int64_t>(int64_t{page} + delta, 0, kLastHelpPage));
}

std::string HelpFooter(uint32_t page) {
  char text[64];
  std::snprintf(text, sizeof text, "Displaying page %u/%u (0 for pages index)", page, kLastHelpPage);
  return text;
}

size_t LineCount(const std::string& text) {
  if (text.empty()) return 0;
  const auto breaks = static_cast<size_t>(std::ranges::count(text, '\n'));
  return text.back() == '\n' ? breaks : breaks + 1;
}

HelpOverlayLayout LayoutHelpOverlay(const ScreenRect& area, const std::string& page_text, uint32_t page,
                                    const ITextMetrics& metrics) {
  HelpOverlayLayout layout;
  layout.footer = HelpFooter(page);
  const int32_t footer_height = metrics.Height(FontRole::Text);
  const int32_t top = area.top + kBoxTop;
  const int32_t bottom = std::max(top, area.bottom - kFooterGap - footer_height - kShadowOffset);
  const int32_t box_height = bottom - top + 1;
  const auto lines = static_cast<int64_t>(LineCount(page_text));
  layout.font = int64_t{metrics.Height(FontRole::HelpLarge)} * lines > box_height ? FontRole::HelpSmall
                                                                                  : FontRole::HelpLarge;
  const std::string row(kRowChars, 'M');
  const int32_t wanted = metrics.Width(layout.font, row) + 2 * kTextIndent;
  const int32_t width = std::max(1, std::min(wanted, area.Width() - 2 * kAreaMargin - kShadowOffset));
  const int32_t left = area.left + std::max(kAreaMargin, (area.Width() - width) / 2);
  layout.box = {left, top, left + width - 1, bottom};
  layout.shadow = {left + kShadowOffset, top + kShadowOffset, left + width - 1 + kShadowOffset,
                   bottom + kShadowOffset};
  layout.text = {left + kTextIndent, area.top + kTextTop, left + width - 1 - kTextIndent, bottom};
  layout.footer_top = bottom + kFooterGap;
  return layout;
}

}  // namespace korvanel
