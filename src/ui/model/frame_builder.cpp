#include "ui/model/frame_builder.h"

#include <algorithm>
#include <cstdio>

#include "app/app_state.h"
#include "ops/job_runner.h"
#include "ui/model/find_jump_controller.h"
#include "ui/model/help_pages.h"
#include "ui/model/histogram_controller.h"
#include "ui/model/pointer_controller.h"
#include "ui/model/text_metrics.h"
#include "ui/model/update_check.h"
#include "ui/model/view_set.h"
#include "ui/model/viewer_state.h"

namespace korvanel {

namespace {

// Rings around the focus image's picture when several panels are shown, so
// the image that zoom and scrolling follow stands out.
inline constexpr uint32_t kFocusRings = 3;
inline constexpr int32_t kCloseBoxSize = 20;
// Without text metrics values show from this ZF (the manual's figure).
inline constexpr uint32_t kValuesFromZoom = 15;

struct ValueFormat {
  bool one_component;
  bool hex;
  const char* format;
};

constexpr ValueFormat kValueFormats[] = {
    {true, false, "%u"},
    {true, true, "%X"},
    {false, false, "%u,%u,%u"},
    {false, true, "%X,%X,%X"},
};

const char* ValueFormatFor(bool one_component, bool hex) {
  for (const ValueFormat& row : kValueFormats) {
    if (row.one_component == one_component && row.hex == hex) return row.format;
  }
  return "%u";
}

// The width templates that decide whether values fit a block.
const char* ValueTemplate(bool one_component) { return one_component ? "255" : "255,10,10"; }

bool ValuesFit(const ITextMetrics* metrics, uint32_t k, bool one_component) {
  if (metrics == nullptr) return k >= kValuesFromZoom;
  const auto block = static_cast<int32_t>(k);
  return metrics->Width(FontRole::Values, ValueTemplate(one_component)) <= block &&
         metrics->Height(FontRole::Values) <= block;
}

PixelRect RoiRect(const IImageContainer& image, ImageSize size) {
  const Rect roi = image.GetRegionOfInterest();
  if (roi.IsNone() || size.width == 0 || size.height == 0) return {};
  return {roi.min_x, roi.min_y, std::min<int64_t>(roi.max_x, size.width - 1),
          std::min<int64_t>(roi.max_y, size.height - 1)};
}

// The controller gives the settings at least one ruler colour.
Rgb RulerColor(const ViewerSettings& settings, uint32_t index) {
  return settings.ruler_colors[index % settings.ruler_colors.size()];
}

}  // namespace

std::string CFrameBuilder::TabText(size_t index) const {
  const ImageRecord& record = s_.app.Images().At(index);
  std::string text;
  if (s_.views.Mode() == LayoutMode::Layer) {
    // The party's HK numbers, left to right, so the number keys pick layers.
    for (size_t member : s_.views.PartyIndices()) {
      text += std::to_string(s_.app.Images().At(member).hk_id);
      text += ' ';
    }
    text += "| ";
  }
  if (const std::optional<std::string> readout = s_.pointer.TabReadout(index)) return text + *readout;
  char head[16];
  std::snprintf(head, sizeof head, "[%u] ", record.hk_id);
  return text + head + record.display_name;
}

void CFrameBuilder::BuildPanel(size_t index, size_t panel, const ITextMetrics* metrics,
                               PanelPlan& plan) const {
  ImageRecord& record = s_.app.Images().At(index);
  const ImageView& view = *s_.views.ViewAt(index);
  IImageContainer& image = *record.image;
  plan.image_index = index;
  plan.hk_id = record.hk_id;
  plan.image = &image;
  plan.panel = view.panel;
  plan.picture = view.picture;
  plan.source = VisibleRect(view.picture, view.size, view.zf, view.offset);
  plan.rendition = plan.picture.Empty() ? nullptr : image.BuildDisplay(&s_.app.Jobs());
  plan.stretch = !Replicates(view.zf);
  plan.k = RoundedZoom(view.zf);
  plan.origin = {view.picture.left + view.offset.x, view.picture.top + view.offset.y};
  plan.grid = view.grid_visible && !plan.stretch;
  plan.roi = RoiRect(image, view.size);
  const bool one_component = image.ComponentCount() == 1;
  plan.values = {view.values && !plan.stretch && ValuesFit(metrics, plan.k, one_component), view.hex,
                 one_component, ValueFormatFor(one_component, view.hex)};
  const Layout& layout = s_.views.CurrentLayout();
  plan.rings = s_.views.Mode() == LayoutMode::SideBySide && index == s_.views.AnchorIndex() &&
                       layout.panels.size() > 1
                   ? kFocusRings
                   : 0;
  plan.ruler = {s_.state.flags.ruler, view.ruler_type, view.ruler,
                RulerColor(s_.settings, view.ruler_color_index)};
  const ScreenRect& tab = layout.panels[panel].tab;
  plan.tab.rect = tab;
  const int32_t box = std::min({kCloseBoxSize, tab.Width(), tab.Height()});
  plan.tab.close_box = {tab.left, tab.top, tab.left + box - 1, tab.top + box - 1};
  plan.tab.text = tab.Empty() ? std::string() : TabText(index);
  s_.pointer.DecorateTab(index, plan.tab);
  s_.pointer.BuildInspectionPlan(index, plan.inspect);
  s_.find_jump.BuildMarkerPlan(index, plan.inspect);
  // A changed view may come with a changed ROI or filter.
  if (s_.state.base_dirty && s_.histograms.ShownAt(index)) s_.histograms.Refresh(index);
  s_.histograms.BuildPlan(index, plan, metrics);
}

void CFrameBuilder::BuildHelp(const ITextMetrics* metrics, FramePlan& plan) const {
  plan.help_text = nullptr;
  plan.help = {};
  const ViewerState& state = s_.state;
  if (!state.help_visible || state.help_page >= state.help_pages.size()) return;
  plan.help_text = &state.help_pages[state.help_page];
  if (metrics != nullptr) {
    plan.help = LayoutHelpOverlay(state.area, *plan.help_text, state.help_page, *metrics);
  } else {
    plan.help.footer = HelpFooter(state.help_page);
  }
}

void CFrameBuilder::Build(const ITextMetrics* metrics, FramePlan& plan, HitMap& hits) const {
  plan.area = s_.state.area;
  plan.base_dirty = s_.state.base_dirty;
  plan.help_visible = s_.state.help_visible;
  plan.help_page = s_.state.help_page;
  const std::vector<size_t> drawn = s_.views.DrawnIndices();
  plan.panels.assign(std::min(drawn.size(), s_.views.CurrentLayout().panels.size()), PanelPlan{});
  hits.clear();
  for (size_t i = 0; i < plan.panels.size(); ++i) {
    PanelPlan& panel = plan.panels[i];
    BuildPanel(drawn[i], i, metrics, panel);
    hits.push_back({panel.image_index, {panel.tab.rect, panel.tab.close_box, panel.tab.text},
                    panel.histogram.show, panel.histogram.layout});
  }
  BuildHelp(metrics, plan);
  plan.no_image.show = !s_.views.HasImages();
  plan.no_image.invitation = plan.no_image.show ? kNoImageInvitation : "";
  plan.no_image.newer_version = s_.update_check.NewerVersionLine();
  plan.directive = s_.pointer.BuildDirectivePlan();
}

}  // namespace korvanel
