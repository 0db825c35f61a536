#include "ui/model/jump_entry.h"

#include <gtest/gtest.h>

#include <string>

namespace korvanel {
namespace {

using Kind = JumpOutcome::Kind;

// Types `keys` into a fresh entry and returns the last outcome.
JumpOutcome Type(CJumpEntry& entry, std::u32string_view keys, const JumpContext& context,
                 CCoordinateHistory& history) {
  JumpOutcome last;
  for (char32_t ch : keys) last = entry.OnChar(ch, context, history);
  return last;
}

TEST(JumpEntryTest, TypedCoordinates) {
  const JumpContext vga{{640, 480}, std::nullopt};
  const struct {
    std::u32string_view keys;
    Kind kind;
    PixelPoint target;
    const char* message;
    const char* input;
  } cases[] = {
      {U"-1 -1 ", Kind::Jump, {639, 479}, "", "-1 -1"},
      {U"-0 5 ", Kind::Jump, {0, 5}, "", "-0 5"},
      {U"12 34 ", Kind::Jump, {12, 34}, "", "12 34"},
      {U"640 ", Kind::Fail, {}, "640 is not a valid X coordinate, aborting...", "640"},
      {U"-641 ", Kind::Fail, {}, "-641 is not a valid X coordinate, aborting...", "-641"},
      {U"639 480 ", Kind::Fail, {}, "<639,480> is not a valid image coordinate, aborting...", "639 480"},
      {U"1 -481 ", Kind::Fail, {}, "<1,-481> is not a valid image coordinate, aborting...", "1 -481"},
      {U"99999999999999999999 ", Kind::Fail, {},
       "99999999999999999999 is not a valid X coordinate, aborting...", "99999999999999999999"},
      {U"5 99999999999999999999 ", Kind::Fail, {},
       "<5,99999999999999999999> is not a valid image coordinate, aborting...", "5 99999999999999999999"},
      // Repeated and leading spaces are ignored; "-" only starts a number.
      {U"  3   4", Kind::Continue, {}, "", "3 4"},
      {U"3-4 5-6", Kind::Continue, {}, "", "34 56"},
      {U"--7", Kind::Continue, {}, "", "-7"},
      {U"- ", Kind::Continue, {}, "", "-"},
      // Letters other than the commands are not taken.
      {U"1a2", Kind::Continue, {}, "", "12"},
      // Backspace over the separating space returns to X.
      {U"12 3\b\b\b5 ", Kind::Continue, {}, "", "15 "},
  };
  for (const auto& c : cases) {
    CJumpEntry entry;
    CCoordinateHistory history;
    const JumpOutcome outcome = Type(entry, c.keys, vga, history);
    EXPECT_EQ(outcome.kind, c.kind) << entry.Input();
    EXPECT_EQ(outcome.message, c.message);
    if (c.kind == Kind::Jump) {
      EXPECT_EQ(outcome.target, c.target);
    }
    EXPECT_EQ(entry.Input(), c.input);
    EXPECT_EQ(entry.Prompt(), std::string("Jump to X Y: ") + c.input);
  }
}

TEST(JumpEntryTest, HistoryIterationAndClearing) {
  const JumpContext vga{{640, 480}, std::nullopt};
  CCoordinateHistory history;
  CJumpEntry entry;
  // An empty history: Tab and "~" do nothing, "c" says nothing.
  for (char32_t ch : {U'\t', U'~', U'`', U'c'}) {
    const JumpOutcome outcome = entry.OnChar(ch, vga, history);
    EXPECT_EQ(outcome.kind, Kind::Continue);
    EXPECT_EQ(outcome.message, "");
  }
  EXPECT_EQ(entry.Input(), "");

  history.Add({1, 2});
  history.Add({3, 4});
  history.Add({1, 2});  // already there: one entry
  ASSERT_EQ(history.Entries().size(), 2u);

  EXPECT_EQ(entry.OnChar(U'\t', vga, history).kind, Kind::Continue);
  EXPECT_EQ(entry.Input(), "1 2");
  JumpOutcome visit = entry.OnChar(U'~', vga, history);
  EXPECT_EQ(visit.kind, Kind::Visit);
  EXPECT_EQ(visit.target, (PixelPoint{3, 4}));
  visit = entry.OnChar(U'`', vga, history);
  EXPECT_EQ(visit.target, (PixelPoint{1, 2}));  // cyclic

  // A remembered point outside a smaller image fails like a typed one.
  const JumpContext tiny{{2, 2}, std::nullopt};
  const JumpOutcome outside = entry.OnChar(U'~', tiny, history);
  EXPECT_EQ(outside.kind, Kind::Fail);
  EXPECT_EQ(outside.message, "<3,4> is not a valid image coordinate, aborting...");

  const JumpOutcome cleared = entry.OnChar(U'c', vga, history);
  EXPECT_EQ(cleared.kind, Kind::Notice);
  EXPECT_EQ(cleared.message, "Cleared 2 entries from coordinates history");
  EXPECT_TRUE(history.Entries().empty());
}

TEST(JumpEntryTest, RoiCornersClockwiseFromTopLeft) {
  CCoordinateHistory history;
  CJumpEntry entry;
  EXPECT_EQ(entry.OnChar(U'r', {{640, 480}, std::nullopt}, history).kind, Kind::Continue);
  const JumpContext with_roi{{640, 480}, Rect{20, 30, 22, 40}};
  const PixelPoint corners[] = {{20, 30}, {22, 30}, {22, 40}, {20, 40}, {20, 30}};
  for (const PixelPoint& corner : corners) {
    const JumpOutcome outcome = entry.OnChar(U'r', with_roi, history);
    EXPECT_EQ(outcome.kind, Kind::Visit);
    EXPECT_EQ(outcome.target, corner);
  }
}

TEST(JumpEntryTest, PasteTakesTheCoordinateOfAPCopy) {
  const JumpContext vga{{640, 480}, std::nullopt};
  CCoordinateHistory history;
  CJumpEntry entry;
  EXPECT_EQ(entry.Paste("[1290]<10,20> =<255>").kind, Kind::Continue);
  EXPECT_EQ(entry.Input(), "10 20");
  const JumpOutcome jump = entry.OnChar(U' ', vga, history);
  EXPECT_EQ(jump.kind, Kind::Jump);
  EXPECT_EQ(jump.target, (PixelPoint{10, 20}));

  CJumpEntry other;
  const JumpOutcome refused = other.Paste("not a copy");
  EXPECT_EQ(refused.kind, Kind::Notice);
  EXPECT_EQ(refused.message, "The clipboard holds no pixel copied with P");
  EXPECT_EQ(other.Input(), "");
}

}  // namespace
}  // namespace korvanel
