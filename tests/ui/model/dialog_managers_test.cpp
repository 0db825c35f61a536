#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "ui/model/convert_raw_manager.h"
#include "ui/model/filter_colors_manager.h"
#include "ui/model/open_raw_image_manager.h"
#include "ui/model/ruler_settings_manager.h"
#include "support/image_builders.h"
#include "support/recording_feedback.h"

namespace korvanel {
namespace {

using test::MakeImage;
using test::RecordingFeedback;

struct FilterRefusal {
  const char* name;
  uint32_t bits;
  bool rgb;
  const char* expression;
  const char* negation;
  bool new_image;
  DialogMessage expected;
};

TEST(FilterColorsManager, RefusalsKeepTheDialogOpenAndCreateNothing) {
  const FilterRefusal cases[] = {
      {"four components on grey", 8, false, "1;2;3;4", "", false,
       {"Please make sure you supply 1 or 3 comma separated components", "Colors parse error"}},
      {"above 8 bits", 8, true, "*;*;1,300", "", true, {"Please fix comp 3 token 2", "Colors parse error"}},
      {"negation above 16 bits", 16, true, "*", "0;65536;0", false,
       {"Please fix comp 2", "Negate color parse error"}},
      {"32-bit image", 32, false, "*", "", true,
       {"Filter colors error: Can't filter 32bpp images", "Filter colors error"}},
  };
  for (const FilterRefusal& c : cases) {
    RecordingFeedback feedback;
    AppState app(feedback);
    if (c.rgb) {
      app.RegisterImage(MakeImage<CImageRgb>(c.bits, 4, 2), "a.rgb", "I,RGB,8", false);
    } else {
      app.RegisterImage(MakeImage<CImageGray>(c.bits, 4, 2), "a.raw", "P,Y,8", false);
    }
    CFilterColorsManager manager({});
    manager.expression = c.expression;
    manager.negation = c.negation;
    manager.apply_to_new = c.new_image;
    const DialogResult result = manager.Apply(app);
    ASSERT_TRUE(result.has_value()) << c.name;
    EXPECT_EQ(*result, c.expected) << c.name;
    EXPECT_EQ(app.Images().Count(), 1u) << c.name;
    EXPECT_FALSE(manager.HasLastRequest()) << c.name;
    EXPECT_TRUE(app.EditHistory().Entries(kFilterExpressionTag).empty()) << c.name;
  }
}

TEST(FilterColorsManager, AcceptedFilterIsRememberedAndReappliedOnTheFocusImage) {
  RecordingFeedback feedback;
  AppState app(feedback);
  app.RegisterImage(MakeImage<CImageGray>(8, 4, 1), "a.raw", "P,Y,8", false);
  CFilterColorsManager manager({});
  manager.expression = "0-1";
  manager.negation = "9";
  manager.apply_to_new = true;
  EXPECT_FALSE(manager.Apply(app).has_value());
  ASSERT_EQ(app.Images().Count(), 2u);
  EXPECT_TRUE(app.IsCreatedUnsaved(app.Images().At(1).image.get()));
  EXPECT_EQ(app.EditHistory().Entries(kFilterExpressionTag), (std::vector<std::string>{"0-1"}));
  EXPECT_EQ(app.EditHistory().Entries(kNegationColorTag), (std::vector<std::string>{"9"}));
  EXPECT_EQ(feedback.statuses.back().rfind("Filter: Applied in ", 0), 0u) << feedback.statuses.back();

  // Fields edited later do not change what Ctrl+F repeats.
  manager.expression = "bad-";
  ASSERT_TRUE(manager.HasLastRequest());
  EXPECT_FALSE(manager.Reapply(app).has_value());
  EXPECT_EQ(app.Images().Count(), 3u);
  EXPECT_TRUE(feedback.messages.empty());
}

TEST(OpenRawImageManager, BuildsTheExpressionFromButtonsOrTakesTheDirectOne) {
  struct Case {
    const char* name;
    ConfigDialogOpen defaults;
    const char* direct;
    const char* expected;
  };
  ConfigDialogOpen ascii_offset;
  ascii_offset.ascii = true;
  ascii_offset.def_offset = " -1024 ";
  const Case cases[] = {
      {"defaults", ConfigDialogOpen{}, "", "P,Y,8"},
      {"ascii and offset lead", ascii_offset, "", "A,-1024,P,Y,8"},
      {"direct wins", ascii_offset, "  i,yuyv,8 ", "i,yuyv,8"},
  };
  for (const Case& c : cases) {
    COpenRawImageManager manager(c.defaults);
    manager.direct_expression = c.direct;
    EXPECT_EQ(manager.Expression(), c.expected) << c.name;
  }
}

TEST(OpenRawImageManager, WidthHeightAndOffsetMustBeNumbers) {
  struct Case {
    const char* width;
    const char* height;
    const char* offset;
    const char* refusal;  // null: accepted
  };
  const char* kSize = "Please enter the image width and height as positive whole numbers";
  const char* kOffset = "The offset must be a whole number of bytes (negative counts from the file's end)";
  const Case cases[] = {
      {"640", "480", "", nullptr},     {" 640 ", "+480", "-20", nullptr}, {"", "480", "", kSize},
      {"0", "480", "", kSize},         {"640", "-1", "", kSize},          {"64O", "480", "", kSize},
      {"4294967296", "1", "", kSize},  {"640", "480", "12b", kOffset},   {"640", "480", "1.5", kOffset},
  };
  for (const Case& c : cases) {
    COpenRawImageManager manager({});
    manager.width_text = c.width;
    manager.height_text = c.height;
    manager.offset_text = c.offset;
    OpenRawAnswer answer;
    const DialogResult result = manager.Accept(answer);
    if (c.refusal == nullptr) {
      EXPECT_FALSE(result.has_value()) << c.width << "x" << c.height;
      EXPECT_EQ(answer.width, 640u);
      EXPECT_EQ(answer.height, 480u);
    } else {
      ASSERT_TRUE(result.has_value()) << c.width << "x" << c.height << " " << c.offset;
      EXPECT_EQ(*result, (DialogMessage{c.refusal, kOpenRawErrorTitle}));
      EXPECT_TRUE(answer.expression.empty());
    }
  }
}

}  // namespace
}  // namespace korvanel

namespace korvanel {
namespace {

struct ConvertCase {
  const char* name;
  const char* direct;
  std::array<const char*, 3> rows;  // null first row: no custom transform
  const char* size;                 // null: no resize
  const char* offset;
  DialogMessage expected;           // empty title: accepted
};

TEST(ConvertRawManager, RefusalsKeepTheDialogOpenAndCreateNothing) {
  constexpr std::array<const char*, 3> kNoTransform = {nullptr, nullptr, nullptr};
  const char* kSizeTitle = "Parse image size error";
  const char* kTransformTitle = "Color transform coefficients parse error";
  const ConvertCase cases[] = {
      {"illegal target", "Q,Y,8", kNoTransform, nullptr, "", {"Illegal format 'Q,Y,8'", "Image format string parse error"}},
      {"target before transform", "Q", {"1,0,0", "0,1,0,0", "0,0,1,0"}, nullptr, "",
       {"Illegal format 'Q'", "Image format string parse error"}},
      {"transform before size", "P,Y,8", {"1,0,0,256", "", ""}, "w-w;h", "",
       {"Please fix last coefficient of row 'Y' (must range between -255..255)", kTransformTitle}},
      {"no separator", "P,Y,8", kNoTransform, "w*2", "",
       {"No new size is entered or semi-colon(;) separator not found", kSizeTitle}},
      {"bad offset", "P,Y,8", kNoTransform, "w;h", "1;2",
       {"Base offset for resize isn't a valid integer coordinate", "Parse base offset error"}},
  };
  for (const ConvertCase& c : cases) {
    RecordingFeedback feedback;
    AppState app(feedback);
    app.RegisterImage(MakeImage<CImageRgb>(8, 50, 50), "a.rgb", "I,RGB,8", false);
    CConvertRawManager manager({});
    manager.direct_expression = c.direct;
    manager.custom_transform = c.rows[0] != nullptr;
    for (size_t i = 0; i < 3 && manager.custom_transform; ++i) manager.transform_rows[i] = c.rows[i];
    manager.resize = c.size != nullptr;
    manager.size_text = c.size != nullptr ? c.size : "";
    manager.offset_text = c.offset;
    const DialogResult result = manager.Apply(app);
    ASSERT_TRUE(result.has_value()) << c.name;
    EXPECT_EQ(*result, c.expected) << c.name;
    EXPECT_EQ(app.Images().Count(), 1u) << c.name;
    EXPECT_TRUE(app.EditHistory().Tags().empty()) << c.name;
  }
}

TEST(ConvertRawManager, AcceptedConversionCreatesTheImageAndRemembersTheFields) {
  RecordingFeedback feedback;
  AppState app(feedback);
  app.RegisterImage(MakeImage<CImageRgb>(8, 50, 50), "a.rgb", "I,RGB,8", false);
  CConvertRawManager manager({});
  manager.direct_expression = "I,RGB,8";
  manager.custom_transform = true;
  manager.transform_rows = {"1,0,0,-255", "0,1,0,0", "0,0,1,0"};
  manager.resize = true;
  manager.size_text = "100;100";
  manager.offset_text = "-1,-1";
  EXPECT_FALSE(manager.Apply(app).has_value()) << feedback.messages.size();
  ASSERT_EQ(app.Images().Count(), 2u);
  uint32_t width = 0, height = 0;
  app.Images().At(1).image->GetSize(width, height);
  EXPECT_EQ(width, 100u);
  EXPECT_EQ(height, 100u);
  EXPECT_EQ(app.Images().At(1).display_name, "Converted_Copy_a.rgb");
  EXPECT_EQ(app.EditHistory().Entries(kConvertSizeTag), (std::vector<std::string>{"100;100"}));
  EXPECT_EQ(app.EditHistory().Entries(kConvertTransformTags[0]), (std::vector<std::string>{"1,0,0,-255"}));
  EXPECT_EQ(app.EditHistory().Entries(kConvertOffsetTag), (std::vector<std::string>{"-1,-1"}));
}

TEST(ConvertRawManager, LiveTextsFollowTheFields) {
  ConfigDialogConvert defaults;
  defaults.type = ImageTypeChoice::kYuv422;
  defaults.packing = PackingChoice::kInterleave;
  CConvertRawManager manager(defaults);
  EXPECT_EQ(manager.GeneratedLabel(), "Generated format expression: I,YUYV,8");
  EXPECT_EQ(manager.RowLabels(), (std::array<std::string, 3>{"Y' =", "U' =", "V' ="}));
  manager.direct_expression = "p,r,g,b,8";
  EXPECT_EQ(manager.RowLabels(), (std::array<std::string, 3>{"R' =", "G' =", "B' ="}));
  EXPECT_EQ(CConvertRawManager::Title("b.raw"), "Convert raw image from b.raw");
  EXPECT_EQ(CConvertRawManager::SourceSizeText(640, 480), "640 ; 480");
  const std::pair<const char*, const char*> sizes[] = {
      {"w*2;h+100", "New image size: 1280x580"}, {"w*;h", "New image size: ???"},
      {"", "New image size: ???"},
  };
  for (const auto& [text, line] : sizes) {
    manager.size_text = text;
    EXPECT_EQ(manager.NewSizeLine(640, 480), line) << text;
  }
}

}  // namespace
}  // namespace korvanel

namespace korvanel {
namespace {

TEST(RulerSettingsManager, StartsFromTheConfigurationAndRefusesWhatTheMessageCannotCarry) {
  ConfigDialogRuler defaults;
  defaults.crd_screen = {120};  // a missing value keeps its default
  defaults.crd_image = {8, 6, 2, 3};
  defaults.cfg_type = RulerSpacing::kImage;
  const CRulerSettingsManager configured(defaults);
  EXPECT_EQ(configured.screen_spacing, "120,100");
  EXPECT_EQ(configured.image_spacing, "8,6");
  EXPECT_EQ(configured.image_offset, "2,3");
  EXPECT_FALSE(configured.screen_pixels);

  const DialogMessage kSpacing{"The ruler spacing must be two whole numbers \"x,y\" from 1 to 65535",
                               "Ruler settings error"};
  const DialogMessage kOffset{"The ruler offset must be two whole numbers \"x,y\": x from 0 to 65535, y from 0 to 32767",
                              "Ruler settings error"};
  struct Case {
    bool screen;
    const char* spacing;
    const char* offset;
    std::optional<RulerSettings> expected;
    const DialogMessage* refusal;  // when nothing is expected
  };
  const Case cases[] = {
      {true, "65535, 1", "junk", RulerSettings{true, 65535, 1, 0, 0}, nullptr},
      {false, "20;30", "65535,32767", RulerSettings{false, 20, 30, 65535, 32767}, nullptr},
      {true, "65536,1", "", std::nullopt, &kSpacing},
      {true, "0,10", "", std::nullopt, &kSpacing},
      {true, "10", "", std::nullopt, &kSpacing},
      {true, "10,x", "", std::nullopt, &kSpacing},
      {false, "10,10", "0,32768", std::nullopt, &kOffset},
      {false, "10,10", "-1,0", std::nullopt, &kOffset},
      {false, "10,10", "1,2,3", std::nullopt, &kOffset},
  };
  for (const Case& c : cases) {
    CRulerSettingsManager manager({});
    manager.screen_pixels = c.screen;
    (c.screen ? manager.screen_spacing : manager.image_spacing) = c.spacing;
    manager.image_offset = c.offset;
    DialogMessage message;
    EXPECT_EQ(manager.Settings(message), c.expected) << c.spacing << " / " << c.offset;
    EXPECT_EQ(message, c.refusal != nullptr ? *c.refusal : DialogMessage{}) << c.spacing << " / " << c.offset;
  }
}

}  // namespace
}  // namespace korvanel
