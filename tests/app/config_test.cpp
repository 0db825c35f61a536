#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>

#include "app/config_keys.h"
#include "app/config_reader.h"
#include "app/configuration.h"
#include "support/log_texts.h"
#include "support/temp_dir.h"
#include "support/time_limit.h"

namespace korvanel {
namespace {

using test::FixedStamp;
using test::kEntryRule;
using test::kSessionRule;
using test::ReadWholeFile;
using test::StampedSessionStart;
using test::TempDir;
using Lines = std::vector<std::string>;

constexpr Rgb kRed{255, 0, 0};
constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kBlue{0, 0, 255};

ConfigValues Defaults(const std::filesystem::path& program_dir = "/prog") {
  ConfigValues values;
  EXPECT_EQ(ResetConfigValues(values, program_dir), Lines{});
  return values;
}

// Applies `ini` over the defaults and returns the rejection lines.
Lines Apply(const std::string& ini, ConfigValues& values) {
  values = Defaults();
  Lines report;
  std::vector<std::string> lines;
  size_t start = 0;
  for (size_t end; (end = ini.find('\n', start)) != std::string::npos; start = end + 1) {
    lines.push_back(ini.substr(start, end - start));
  }
  lines.push_back(ini.substr(start));
  ApplyConfigLines(lines, values, report);
  return report;
}

// The built-in defaults are texts run through the same parsers as the file.
TEST(ConfigDefaults, DefaultTextsGiveTheBuiltInValues) {
  const ConfigValues v = Defaults("/prog");
  EXPECT_EQ(v.gui.ruler_color, (std::vector<Rgb>{kRed, kWhite}));
  EXPECT_EQ(v.gui.ruler_font, (FontSpec{"Arial", 16, 12}));
  EXPECT_EQ(v.image.trans_yuv_to_rgb, kDefaultYuvToRgb);
  EXPECT_EQ(v.dialog_ruler.crd_image, (std::vector<int32_t>{10, 10, 0, 0}));
  EXPECT_EQ(v.system.work_path, "/prog");
  // No address, so nothing touches the network unless configured.
  EXPECT_EQ(v.system.update_check_url, "");
  EXPECT_EQ(v.developer.log_app_msg, (LogSetting{true, StampMode::kSession, "qel.log_app.txt"}));
}

TEST(ConfigDefaults, KeysAreUniqueWithinTheirSection) {
  const std::span<const KeyEntry> keys = ConfigKeys();
  for (size_t i = 0; i < keys.size(); ++i) {
    for (size_t j = i + 1; j < keys.size(); ++j) {
      EXPECT_FALSE(keys[i].section == keys[j].section && std::string(keys[i].key) == keys[j].key)
          << keys[i].key;
    }
  }
}

struct Rejected {
  const char* ini;
  Lines report;
};

void PrintTo(const Rejected& c, std::ostream* os) {
  *os << c.ini;
}

class ConfigRejects : public ::testing::TestWithParam<Rejected> {};

TEST_P(ConfigRejects, ReportsAndKeepsTheDefault) {
  ConfigValues values;
  EXPECT_EQ(Apply(GetParam().ini, values), GetParam().report);
  EXPECT_TRUE(values == Defaults());
}

const Rejected kRejected[] = {
    {"[gui]\nhistogram_max_height=20", {"[gui]::histogram_max_height: Out-of-range 20 (30..120)"}},
    {"[gui]\nhistogram_max_height=8o", {"[gui]::histogram_max_height: Parse error, undefined 8o"}},
    {"[gui]\nhistogram_max_height=  ", {"[gui]::histogram_max_height: Parse error, empty field"}},
    {"[system]\nmax_process_threads=33",
     {"[system]::max_process_threads: Out-of-range 33 (-1..32)"}},
    {"[system]\nmax_comparison_party=99999999999999999999",
     {"[system]::max_comparison_party: Out-of-range 2147483647 (2..8)"}},
    {"[gui]\ngrid_mode=maybe", {"[gui]::grid_mode: Out-of-range maybe (0/1)"}},
    {"[gui]\ndef_zoom=100.5", {"[gui]::def_zoom: Out-of-range 100.50 (  0.00..100.00)"}},
    {"[gui]\ndef_zoom=-1", {"[gui]::def_zoom: Out-of-range  -1.00 (  0.00..100.00)"}},
    {"[gui]\ndef_zoom=1,5", {"[gui]::def_zoom: Parse error, undefined 1,5"}},
    {"[gui]\npixel_display_base=oct", {"[gui]::pixel_display_base: Parse error, undefined oct"}},
    {"[dialog_convert]\ntype=cmyk", {"[dialog_convert]::type: Parse error, undefined cmyk"}},
    {"[system]\nwork_path=/no/such/folder",
     {"[system]::work_path: Directory '/no/such/folder' isn't valid, ignoring."}},
    {"[image]\ntrans_yuv_to_rgb=1, 2, 3",
     {"[image]::trans_yuv_to_rgb: Parse error, 12 values expected"}},
    {"[image]\ntrans_rgb_to_yuv=1 0 0 0, 0 1 0 0, 0 0 one 0",
     {"[image]::trans_rgb_to_yuv: Parse error for element 11 (one)"}},
    {"[image]\ntrans_rgb_to_yuv=1 0 0 12.5, 0 1 0 0, 0 0 1 0",
     {"[image]::trans_rgb_to_yuv: Parse error for element 4 (12.5)"}},
    {"[image]\ntrans_rgb_to_yuv=1 0 0 0, 0 1 0 0, 0 0 1 256",
     {"[image]::trans_rgb_to_yuv: Element 12 (256) not in range"}},
    {"[gui]\nruler_color=pink", {"[gui]::ruler_color: Ignoring invalid color 'pink' (1)"}},
    {"[gui]\nruler_color=<1;2>, <a;b;c>, <1;2;3",
     {"[gui]::ruler_color: Ignoring non-rgb value <1;2> (1)",
      "[gui]::ruler_color: Ignoring non-rgb value <a;b;c> (2)",
      "[gui]::ruler_color: Ignoring non-rgb value <1;2;3 (3)"}},
    {"[gui]\nruler_color=<-1;0;0>",
     {"[gui]::ruler_color: Ignoring invalid rgb range <-1;0;0> (1)"}},
    {"[gui]\nruler_font=Arial, 2", {"[gui]::ruler_font: Out-of-range 2 (4..200)"}},
    {"[gui]\ntab_font=a, 1, 2, 3", {"[gui]::tab_font: Parse error, undefined a, 1, 2, 3"}},
    {"[developer]\nlog_app_msg=3, x.txt", {"[developer]::log_app_msg: Out-of-range 3 (0..2)"}},
    // Sections go in their fixed order, whatever the file's order.
    {"[system]\nmax_process_threads=33\n[gui]\nhistogram_max_height=20",
     {"[gui]::histogram_max_height: Out-of-range 20 (30..120)",
      "[system]::max_process_threads: Out-of-range 33 (-1..32)"}},
    // Not keys: comments, lines before any section, keys of another section.
    {"histogram_max_height=50\n[gui]\n;histogram_max_height=50\n  ; grid_mode=1", {}},
    {"[gui\nhistogram_max_height=50", {}},
    {"[unknown]\nx=1\n[gui]\nno_such_key=5\n[system]\nwork_path", {}},
};

INSTANTIATE_TEST_SUITE_P(Kinds, ConfigRejects, ::testing::ValuesIn(kRejected));

// Each case gives the values the file leaves: the defaults with `set` applied.
struct Applied {
  const char* ini;
  Lines report;
  std::function<void(ConfigValues&)> set;
};

void PrintTo(const Applied& c, std::ostream* os) {
  *os << c.ini;
}

class ConfigApplies : public ::testing::TestWithParam<Applied> {};

TEST_P(ConfigApplies, SetsTheGoodValuesAndReportsTheBadOnes) {
  ConfigValues values;
  EXPECT_EQ(Apply(GetParam().ini, values), GetParam().report);
  ConfigValues expected = Defaults();
  GetParam().set(expected);
  EXPECT_TRUE(values == expected);
}

// clang-format off
const Applied kApplied[] = {
    {"[gui]\ndef_zoom=0", {}, [](auto& v) { v.gui.def_zoom = 0.0; }},
    {" [ GUI ] \n  Histogram_Max_Height  =  120  ", {},
     [](auto& v) { v.gui.histogram_max_height = 120; }},
    {"[gui]\nhistogram_max_height=50\nhistogram_max_height=60", {},
     [](auto& v) { v.gui.histogram_max_height = 60; }},
    {"[gui]\ngrid_mode=1\nruler_mode=on\ncoord_ofs_mode=TRUE\npixel_value_mode=yes", {},
     [](auto& v) {
       v.gui.grid_mode = v.gui.ruler_mode = true;
       v.gui.coord_ofs_mode = v.gui.pixel_value_mode = true; }},
    {"[system]\nauto_file_naming=0\nauto_check_updates=off", {},
     [](auto& v) { v.system.auto_file_naming = v.system.auto_check_updates = false; }},
    {"[system]\nupdate_check_url = http://127.0.0.1:8080/v.txt\n"
     "update_download_url=https://example.org/get?a=1;b=2", {}, [](auto& v) {
       v.system.update_check_url = "http://127.0.0.1:8080/v.txt";
       v.system.update_download_url = "https://example.org/get?a=1;b=2"; }},
    {"[gui]\npixel_display_base=HEX", {},
     [](auto& v) { v.gui.pixel_display_base = PixelBase::kHex; }},
    {"[system]\nmax_process_threads=32\nmax_comparison_party=8\napp_close_prompt=never", {},
     [](auto& v) {
       v.system.max_process_threads = 32;
       v.system.max_comparison_party = 8;
       v.system.app_close_prompt = ClosePrompt::kNever; }},
    {"[image]\ndiff_type=mask_abs_delta", {},
     [](auto& v) { v.image.diff_type = DiffType::kMaskAbsDelta; }},
    {"[gui]\ntab_font=Courier_New, 10", {},
     [](auto& v) { v.gui.tab_font = {"Courier New", 10, 8}; }},
    {"[gui]\nruler_font=Tahoma, 20, 9", {}, [](auto& v) { v.gui.ruler_font = {"Tahoma", 20, 9}; }},
    {"[gui]\nruler_color=<0x10;0x20;0xff>, <1,2,3>, Orange", {},
     [](auto& v) { v.gui.ruler_color = {{16, 32, 255}, {1, 2, 3}, {255, 165, 0}}; }},
    {"[gui]\nhistogram_transparent_fg_color=red,red,red,red,red,red,red,red", {},
     [](auto& v) { v.gui.histogram_transparent_fg_color.assign(6, kRed); }},
    {"[image]\ntrans_rgb_to_yuv=[0.3,0.2,0.5,0],[1.3,-0.2,0.7,-128],[0.1,-0.7,-0.2,-255]", {},
     [](auto& v) {
       v.image.trans_rgb_to_yuv = {
           {{0.3, 0.2, 0.5, 0}, {1.3, -0.2, 0.7, -128}, {0.1, -0.7, -0.2, -255}}}; }},
    {"[developer]\nlog_app_msg=2, my.log", {},
     [](auto& v) { v.developer.log_app_msg = {true, StampMode::kEveryEntry, "my.log"}; }},
    {"[dialog_ruler]\ncrd_image=5, 6\ncfg_type=image", {}, [](auto& v) {
       v.dialog_ruler.crd_image = {5, 6, 0, 0};
       v.dialog_ruler.cfg_type = RulerSpacing::kImage; }},
    {"[dialog_open]\ntype=rgb\n[dialog_convert]\ntype=yuv420", {}, [](auto& v) {
       v.dialog_open.type = ImageTypeChoice::kRgb;
       v.dialog_convert.type = ImageTypeChoice::kYuv420; }},
    {"[dialog_ieval]\ndef_ieval_expr=a=b?1:0", {},
     [](auto& v) { v.dialog_ieval.def_ieval_expr = "a=b?1:0"; }},
    {"[system]\nwork_path=/", {}, [](auto& v) { v.system.work_path = "/"; }},
    // Lists keep their good parts.
    {"[gui]\nruler_color=red, <300;0;0>, blue",
     {"[gui]::ruler_color: Ignoring invalid rgb range <300;0;0> (2)"},
     [](auto& v) { v.gui.ruler_color = {kRed, kBlue}; }},
    {"[gui]\ntab_color_fg_bg_hl=black, nonsense",
     {"[gui]::tab_color_fg_bg_hl: Ignoring invalid color 'nonsense' (2)"},
     [](auto& v) { v.gui.tab_color_fg_bg_hl = {{0, 0, 0}, {150, 30, 20}, {200, 70, 0}}; }},
    {"[dialog_ruler]\ncrd_image=5, 0, -3, 7, 9",
     {"[dialog_ruler]::crd_image: Ignoring out-of-range 0 (1..100000)",
      "[dialog_ruler]::crd_image: Ignoring out-of-range -3 (0..100000)"},
     [](auto& v) { v.dialog_ruler.crd_image = {5, 10, 0, 7}; }},
    {"[dialog_ruler]\ncrd_image=5,,7", {},
     [](auto& v) { v.dialog_ruler.crd_image = {5, 10, 7, 0}; }},
    // A later bad value leaves the earlier good one.
    {"[gui]\nhistogram_max_height=50\nhistogram_max_height=20",
     {"[gui]::histogram_max_height: Out-of-range 20 (30..120)"},
     [](auto& v) { v.gui.histogram_max_height = 50; }},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Kinds, ConfigApplies, ::testing::ValuesIn(kApplied));

// --- Loading files ------------------------------------------------------------

class ConfigurationLoad : public ::testing::Test {
 protected:
  TempDir dir;
  CConfiguration config{dir.path()};
};

TEST_F(ConfigurationLoad, MissingFileLeavesEveryDefault) {
  EXPECT_FALSE(config.Load(dir / "Korvanel.ini"));
  EXPECT_FALSE(config.Loaded());
  EXPECT_TRUE(config.Values() == Defaults(dir.path()));
  EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
}

TEST_F(ConfigurationLoad, EachLoadStartsFromTheDefaults) {
  ASSERT_TRUE(config.Load(dir.Write("a.ini", "[gui]\ngrid_mode=1\n")));
  ASSERT_TRUE(config.Load(dir.Write("b.ini", "[gui]\nruler_mode=1\n")));
  EXPECT_FALSE(config.Values().gui.grid_mode);
  EXPECT_TRUE(config.Values().gui.ruler_mode);
  EXPECT_EQ(config.Lines(), (Lines{"[gui]", "ruler_mode=1"}));
  EXPECT_FALSE(config.Load(dir / "missing.ini"));
  EXPECT_TRUE(config.Values().gui.ruler_mode) << "a missing file keeps what the last one set";
}

TEST_F(ConfigurationLoad, CleanFileWritesNoWarningLog) {
  ASSERT_TRUE(config.Load(dir.Write("Korvanel.ini", "[gui]\r\ndef_zoom=0\r\n")));
  EXPECT_EQ(config.Values().gui.def_zoom, 0.0);
  EXPECT_FALSE(std::filesystem::exists(dir / kConfigErrorLogName));
}

TEST_F(ConfigurationLoad, WritesRejectionsAsOneEntryAndAppends) {
  config.Logs().config_errors.SetStampSource(FixedStamp);
  const std::filesystem::path ini = dir.Write(
      "Korvanel.ini", "[gui]\nhistogram_max_height=20\nruler_color=red, <300;0;0>, blue\n");
  ASSERT_TRUE(config.Load(ini));
  ASSERT_TRUE(config.Load(ini));
  const auto entry = [&](int n) {
    return kEntryRule + "\nEntry " + std::to_string(n) + ": " + ini.string() +
           "\n[gui]::ruler_color: Ignoring invalid rgb range <300;0;0> (2)\n"
           "[gui]::histogram_max_height: Out-of-range 20 (30..120)\n\n";
  };
  EXPECT_EQ(ReadWholeFile(dir / kConfigErrorLogName), StampedSessionStart() + entry(1) + entry(2));
  EXPECT_EQ(config.Values().gui.histogram_max_height, 80);
}

TEST_F(ConfigurationLoad, WorkPathMovesEveryLog) {
  std::filesystem::create_directory(dir / "work");
  ASSERT_TRUE(config.Load(dir.Write(
      "Korvanel.ini", "[gui]\ngrid_mode=5\n[system]\nwork_path=" + (dir / "work").string() +
                          "\n[developer]\nlog_app_msg=2, app.txt\n")));
  EXPECT_EQ(config.Logs().app.Path(), dir / "work" / "app.txt");
  EXPECT_EQ(config.Logs().app.GetStampMode(), StampMode::kEveryEntry);
  EXPECT_EQ(config.Logs().batch.Path(), dir / "work" / "qel.log_batch.txt");
  EXPECT_TRUE(std::filesystem::exists(dir / "work" / kConfigErrorLogName));
  EXPECT_FALSE(std::filesystem::exists(dir / kConfigErrorLogName));
}

TEST_F(ConfigurationLoad, InvalidWorkPathKeepsTheProgramFolder) {
  config.Logs().config_errors.SetStampSource(FixedStamp);
  const std::filesystem::path ini = dir.Write("Korvanel.ini", "[system]\nwork_path=/no/such\n");
  ASSERT_TRUE(config.Load(ini));
  EXPECT_EQ(config.Values().system.work_path, dir.path().string());
  EXPECT_EQ(config.Logs().app.Path(), dir / "qel.log_app.txt");
  EXPECT_EQ(ReadWholeFile(dir / kConfigErrorLogName),
            StampedSessionStart() + kEntryRule + "\nEntry 1: " + ini.string() +
                "\n[system]::work_path: Directory '/no/such' isn't valid, ignoring.\n\n");
}

TEST_F(ConfigurationLoad, LoggingOffCreatesNothingInTheWorkPath) {
  std::filesystem::create_directory(dir / "work");
  ASSERT_TRUE(config.Load(
      dir.Write("Korvanel.ini", "[system]\nwork_path=" + (dir / "work").string() +
                                    "\n[developer]\nlog_app_msg=0\ndebug_batch_error_log=0\n"
                                    "debug_load_format_log=0\n")));
  for (CLogger* log : {&config.Logs().app, &config.Logs().batch, &config.Logs().format_load}) {
    log->BeginEntry("Open image error");
    log->AddLine("Can't locate x");
    log->Flush();
  }
  EXPECT_TRUE(std::filesystem::is_empty(dir / "work"));
}

TEST_F(ConfigurationLoad, OverlongLineIsReportedAndIgnored) {
  const std::string huge = "histogram_max_height=50" + std::string(100000, ' ');
  ASSERT_TRUE(config.Load(dir.Write("Korvanel.ini", "[gui]\n" + huge + "\ngrid_mode=1\n")));
  EXPECT_EQ(config.Rejections(), (Lines{"Line 2 is longer than 65536 characters, ignored"}));
  EXPECT_EQ(config.Values().gui.histogram_max_height, 80);
  EXPECT_TRUE(config.Values().gui.grid_mode);
}

TEST_F(ConfigurationLoad, BinaryGarbageNeverStopsTheLoad) {
  std::string garbage;
  for (int i = 0; i < 5000; ++i) garbage.push_back(static_cast<char>((i * 7919) % 256));
  EXPECT_TRUE(config.Load(dir.Write("Korvanel.ini", "[gui]\n" + garbage)));
}

// A pipe or a link to /dev/zero named Korvanel.ini is reported like any other
// problem of the file and leaves the defaults; it never blocks the start.
TEST_F(ConfigurationLoad, NoRegularFileIsReportedWithoutBlocking) {
  mkfifo((dir / "fifo.ini").c_str(), 0600);
  std::filesystem::create_symlink("/dev/zero", dir / "zero.ini");
  for (const char* name : {"fifo.ini", "zero.ini"}) {
    std::filesystem::remove(dir / kConfigErrorLogName);
    const int code = test::ExitCodeWithin(std::chrono::seconds(10), [&] {
      CConfiguration config(dir.path());
      config.Logs().config_errors.SetStampSource(FixedStamp);
      return config.Load(dir / name) ? 1 : 0;
    });
    EXPECT_EQ(code, 0) << name;
    EXPECT_EQ(ReadWholeFile(dir / kConfigErrorLogName),
              StampedSessionStart() + kEntryRule + "\nEntry 1: " + (dir / name).string() +
                  "\nThe file is not a regular file, ignored\n\n")
        << name;
  }
}

TEST(ExecutableDirectory, IsTheFolderOfTheRunningProgram) {
  EXPECT_TRUE(std::filesystem::exists(ExecutableDirectory() / "korvanel_tests"));
}

}  // namespace
}  // namespace korvanel
