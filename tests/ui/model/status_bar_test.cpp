#include "ui/model/status_bar.h"

#include <gtest/gtest.h>

#include <string>

namespace korvanel {
namespace {

TEST(StatusBar, PartEdgesAndWidthsFollowTheClientWidth) {
  EXPECT_EQ(StatusPartEdges(1000), (std::array<int32_t, 5>{490, 740, 890, 940, 1000}));
  EXPECT_EQ(StatusPartWidths(1000), (std::array<int32_t, 5>{490, 250, 150, 50, 60}));
  // Narrower than the fixed parts: the first part is squeezed away, no width below 0.
  EXPECT_EQ(StatusPartWidths(300), (std::array<int32_t, 5>{0, 40, 150, 50, 60}));
  EXPECT_EQ(StatusPartWidths(0), (std::array<int32_t, 5>{0, 0, 0, 0, 0}));
}

TEST(StatusBar, ModeLettersGoToTheirParts) {
  struct Case {
    ModeFlags flags;
    const char* features;
    const char* modes;
  };
  const Case cases[] = {
      {{}, "", ""},
      {{.view = {.grid = true, .values = true, .ruler = true}}, "G V R", ""},
      {{.view = {.ruler = true}, .ruler_matrix = true}, "M", ""},
      {{.view = {}, .ruler_matrix = true}, "", ""},
      {{.view = {.hex = true, .tracking = true, .offset = true}, .compare = true}, "", "C X T O"},
      {{.view = {.values = true, .hex = true, .offset = true}}, "V", "X O"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(FeatureLetters(c.flags), c.features);
    EXPECT_EQ(ModeLetters(c.flags), c.modes);
  }
}

TEST(StatusMessage, IsCutAt511CharactersAndClearedAfterSixteenTicks) {
  StatusMessage message;
  message.Show(std::string(600, 'a'));
  EXPECT_EQ(message.text.size(), 511u);
  EXPECT_TRUE(message.showing);
  for (int tick = 1; tick <= 15; ++tick) {
    EXPECT_FALSE(message.Tick()) << tick;
    EXPECT_TRUE(message.showing) << tick;
  }
  EXPECT_TRUE(message.Tick());
  EXPECT_FALSE(message.showing);
  EXPECT_EQ(message.text, "");
  EXPECT_FALSE(message.Tick());
}

TEST(StatusMessage, ANewMessageRestartsTheCount) {
  StatusMessage message;
  message.Show("first");
  for (int tick = 0; tick < 10; ++tick) message.Tick();
  message.Show("second");
  for (int tick = 0; tick < 15; ++tick) EXPECT_FALSE(message.Tick());
  EXPECT_EQ(message.text, "second");
  EXPECT_TRUE(message.Tick());
}

}  // namespace
}  // namespace korvanel
