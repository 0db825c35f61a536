#include "ui/model/roi_editor.h"

#include <gtest/gtest.h>

namespace korvanel {
namespace {

TEST(RoiEditorTest, TwoClicksInAnyCornerOrderGiveANormalisedRoi) {
  const struct {
    PixelPoint first;
    PixelPoint second;
    Rect roi;
  } cases[] = {
      {{20, 30}, {22, 40}, {20, 30, 22, 40}},
      {{22, 40}, {20, 30}, {20, 30, 22, 40}},
      {{22, 30}, {20, 40}, {20, 30, 22, 40}},
      {{5, 5}, {5, 5}, {5, 5, 5, 5}},
  };
  for (const auto& c : cases) {
    CRoiEditor editor;
    EXPECT_FALSE(editor.Click(c.first).has_value());
    EXPECT_EQ(editor.Anchor(), c.first);
    EXPECT_EQ(editor.Click(c.second), c.roi);
    EXPECT_FALSE(editor.Anchor().has_value());
  }
}

TEST(RoiEditorTest, ResetForgetsThePendingAnchor) {
  CRoiEditor editor;
  editor.Click({1, 1});
  editor.Reset();
  EXPECT_FALSE(editor.Click({4, 4}).has_value());
  EXPECT_EQ(editor.Click({2, 3}), (Rect{2, 3, 4, 4}));
}

TEST(RoiEditorTest, EdgesAndCornersWithinReachOfTheFrame) {
  const ScreenRect frame{100, 100, 199, 149};
  const struct {
    ScreenPoint p;
    RoiEdges edges;
  } cases[] = {
      {{100, 120}, {true, false, false, false}},
      {{97, 120}, {true, false, false, false}},
      {{96, 120}, {}},
      {{150, 152}, {false, false, false, true}},
      {{150, 125}, {}},  // inside, away from the lines
      {{201, 98}, {false, true, true, false}},
      {{99, 151}, {true, false, false, true}},
      {{300, 300}, {}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(RoiEdgesAt(frame, c.p), c.edges) << c.p.x << "," << c.p.y;
  }
  // A frame narrower than the reach on both sides: the nearer side only.
  EXPECT_EQ(RoiEdgesAt({10, 10, 12, 40}, {12, 20}), (RoiEdges{false, false, true, false}));
  EXPECT_EQ(RoiEdgesAt({10, 10, 12, 40}, {10, 20}), (RoiEdges{true, false, false, false}));
}

TEST(RoiEditorTest, DraggingASidePastItsOppositeSwapsThem) {
  CRoiEditor editor;
  editor.BeginDrag({true, false, false, false});
  Rect roi{10, 10, 20, 20};
  roi = editor.Drag(roi, {15, 99});
  EXPECT_EQ(roi, (Rect{15, 10, 20, 20}));
  roi = editor.Drag(roi, {25, 99});
  EXPECT_EQ(roi, (Rect{20, 10, 25, 20}));
  // The dragged side is now the right one: moving on widens to the right.
  roi = editor.Drag(roi, {30, 99});
  EXPECT_EQ(roi, (Rect{20, 10, 30, 20}));
  editor.EndDrag();
  EXPECT_FALSE(editor.Dragging());

  RoiEdges corner{false, true, true, false};
  EXPECT_EQ(DragRoiEdges({10, 10, 20, 20}, corner, {12, 3}), (Rect{10, 3, 12, 20}));
}

}  // namespace
}  // namespace korvanel
