#include "ui/model/layout.h"

#include <gtest/gtest.h>

#include <vector>

#include "ui/model/geometry_printers.h"

namespace korvanel {
namespace {

constexpr ScreenRect kArea{0, 0, 799, 579};

std::vector<ScreenRect> Panels(const Layout& layout) {
  std::vector<ScreenRect> panels;
  for (const PanelLayout& p : layout.panels) panels.push_back(p.panel);
  return panels;
}

TEST(Layout, SingleViewAndLayerModeUseOnePanelBelowTheTabs) {
  for (LayoutMode mode : {LayoutMode::Single, LayoutMode::Layer}) {
    const Layout layout = ComputeLayout(kArea, mode, 3, true);
    ASSERT_EQ(layout.panels.size(), 1u);
    EXPECT_EQ(layout.panels[0].panel, (ScreenRect{10, 49, 789, 568}));
    EXPECT_EQ(layout.panels[0].tab, (ScreenRect{10, 4, 789, 48}));
  }
}

TEST(Layout, SideBySidePanelsShareTheWidthTwentyPixelsApart) {
  struct Case {
    size_t n;
    int32_t width;  // (800 - 20 n + 1) / n
  };
  const Case cases[] = {{1, 781}, {2, 380}, {3, 247}, {4, 180}, {5, 140},
                        {6, 113}, {7, 94},  {8, 80}};
  for (const Case& c : cases) {
    const Layout layout = ComputeLayout(kArea, LayoutMode::SideBySide, c.n, true);
    ASSERT_EQ(layout.panels.size(), c.n);
    for (size_t i = 0; i < c.n; ++i) {
      const auto left = static_cast<int32_t>(10 + i * (c.width + 20));
      EXPECT_EQ(layout.panels[i].panel, (ScreenRect{left, 49, left + c.width - 1, 559}))
          << c.n << " panels, panel " << i;
      EXPECT_EQ(layout.panels[i].tab, (ScreenRect{left, 4, left + c.width - 1, 48}));
    }
  }
}

TEST(Layout, TabStripNeedsTwelveRowsAndIsAtMostFortyFiveHigh) {
  struct Case {
    int32_t height;
    bool tabs;
    ScreenRect tab;
    int32_t panel_top;
  };
  const Case cases[] = {
      {580, true, {10, 4, 789, 48}, 49},
      {40, true, {10, 4, 789, 32}, 33},  // 40 - 11 rows
      {12, true, {10, 4, 789, 4}, 5},
      {11, true, {10, 0, 9, -1}, 0},
      {580, false, {10, 0, 9, -1}, 0},
  };
  for (const Case& c : cases) {
    const Layout layout = ComputeLayout({0, 0, 799, c.height - 1}, LayoutMode::Single, 1, c.tabs);
    EXPECT_EQ(layout.panels[0].tab, c.tab) << c.height;
    EXPECT_EQ(layout.panels[0].panel.top, c.panel_top) << c.height;
    EXPECT_EQ(layout.panels[0].panel.bottom, c.height - 12) << c.height;
  }
}

TEST(Layout, NarrowAndEmptyWindowsGiveEmptyPanelsWithoutFailing) {
  const Layout eight = ComputeLayout({0, 0, 99, 299}, LayoutMode::SideBySide, 8, true);
  ASSERT_EQ(eight.panels.size(), 8u);
  for (const PanelLayout& p : eight.panels) {
    EXPECT_TRUE(p.panel.Empty());
    EXPECT_EQ(p.panel.Width(), -7);  // (100 - 160 + 1) / 8
  }
  EXPECT_EQ(eight.panels[1].panel.left, 23);

  const ScreenRect none{0, 0, -1, -1};
  for (LayoutMode mode : {LayoutMode::Single, LayoutMode::SideBySide, LayoutMode::Layer}) {
    for (const PanelLayout& p : ComputeLayout(none, mode, 4, true).panels) {
      EXPECT_TRUE(p.panel.Empty());
      EXPECT_TRUE(p.tab.Empty());
    }
  }
  EXPECT_TRUE(ComputeLayout(kArea, LayoutMode::SideBySide, 0, true).panels.empty());
}

TEST(Layout, FollowsTheAreaOrigin) {
  const Layout layout = ComputeLayout({100, 50, 899, 629}, LayoutMode::SideBySide, 2, true);
  EXPECT_EQ(Panels(layout), (std::vector<ScreenRect>{{110, 99, 489, 609}, {510, 99, 889, 609}}));
}

}  // namespace
}  // namespace korvanel
