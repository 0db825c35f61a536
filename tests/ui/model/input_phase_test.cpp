// How the window hands input to an active phase, and how Esc, clicks and a
// second phase end or are refused. The phase here is a scripted fake; the
// real phases have their own tests.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ui/model/readout.h"
#include "ui/model/viewer_fixture.h"

namespace korvanel {
namespace {

// Types into a buffer; "!" finishes with a message, "#" finishes silently.
class TypingPhase : public IInputPhase {
 public:
  explicit TypingPhase(std::vector<std::string>& log) : log_(log) {}
  InputPhaseKind Kind() const override { return InputPhaseKind::Jump; }
  std::string Prompt() const override { return "Type: " + typed_; }
  PhaseStep OnChar(char32_t ch) override {
    if (ch == U'!') return {true, "typed " + typed_};
    if (ch == U'#') return {true, {}};
    typed_ += static_cast<char>(ch);
    return {};
  }
  std::optional<PhaseStep> OnKey(const KeyInput& key) override {
    if (key.key != Key::Tab) return std::nullopt;
    typed_ += "<tab>";
    return PhaseStep{};
  }
  PhaseStep OnPaste(std::string_view text) override {
    typed_ += text;
    return {};
  }
  void Cancel() override { log_.push_back("cancelled " + typed_); }

 private:
  std::vector<std::string>& log_;
  std::string typed_;
};

// Lets characters through: the collecting kind.
class WatchingPhase : public TypingPhase {
 public:
  using TypingPhase::TypingPhase;
  InputPhaseKind Kind() const override { return InputPhaseKind::Collect; }
  bool TakesCharacters() const override { return false; }
};

class InputPhaseTest : public test::ViewerFixture {
 protected:
  InputPhaseTest() {
    AddGray(16, 8, "a.raw");
    AddGray(16, 8, "b.raw");
    host.status_width = 400;
    ViewerFixture::Start({400, 280});
  }
  bool Start() { return controller.StartPhase(std::make_unique<TypingPhase>(log), "busy"); }

  std::vector<std::string> log;
};

TEST_F(InputPhaseTest, CharactersGoToThePhaseAndItsPromptShowsUntilItEnds) {
  ASSERT_TRUE(Start());
  EXPECT_EQ(controller.ActivePhase(), InputPhaseKind::Jump);
  EXPECT_EQ(Part0(), "Type: ");
  Type(U"1x");  // neither selects slot 1 nor any command
  EXPECT_EQ(Part0(), "Type: 1x");
  EXPECT_EQ(app.FocusIndex(), 1u);
  Type(U"!");
  EXPECT_EQ(controller.ActivePhase(), InputPhaseKind::None);
  EXPECT_EQ(Part0(), "typed 1x");
  EXPECT_TRUE(log.empty());
}

TEST_F(InputPhaseTest, ASecondPhaseIsRefusedWithItsOwnText) {
  ASSERT_TRUE(Start());
  Type(U"7");
  EXPECT_FALSE(Start());
  EXPECT_EQ(Part0(), "busy");
  Type(U"8");  // the first phase still takes input, and shows its prompt again
  EXPECT_EQ(Part0(), "Type: 78");
}

TEST_F(InputPhaseTest, EscAndClicksCancelWithTheAbortText) {
  struct Case {
    const char* name;
    void (*end)(CViewerController&);
  };
  const Case cases[] = {
      {"Esc", [](CViewerController& c) { c.OnKey({Key::Escape, {}}); }},
      {"left down", [](CViewerController& c) { c.OnLeftDown({10, 10}, {}); }},
      {"right up", [](CViewerController& c) { c.OnRightUp({10, 10}); }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    log.clear();
    controller.PrepareFrame();  // clicks wait for a clean view
    ASSERT_TRUE(Start());
    Type(U"42");
    c.end(controller);
    EXPECT_EQ(controller.ActivePhase(), InputPhaseKind::None);
    EXPECT_EQ(log, std::vector<std::string>{"cancelled 42"});
    EXPECT_EQ(Part0(), kPhaseCanceledText);
  }
}

TEST_F(InputPhaseTest, EscWithoutAPhaseChangesNothingElse) {
  controller.OnKey({Key::Escape, {}});
  EXPECT_TRUE(log.empty());
  for (const StatusFields& fields : host.statuses) {
    EXPECT_NE(fields.parts[kStatusReadoutPart], kPhaseCanceledText);
  }
}

TEST_F(InputPhaseTest, KeysAndPasteReachThePhaseFirst) {
  ASSERT_TRUE(Start());
  host.clipboard = "12 34";
  controller.OnKey({Key::V, {.ctrl = true}});
  controller.OnKey({Key::Tab, {}});  // taken by the phase: no image cycling
  EXPECT_EQ(Part0(), "Type: 12 34<tab>");
  EXPECT_EQ(app.FocusIndex(), 1u);
  Type(U"#");
  EXPECT_EQ(Part0(), kOutOfRangeShortText);  // over: the readout again, short in 400 pixels
  controller.OnKey({Key::Tab, {}});  // no phase: Tab cycles again
  EXPECT_EQ(app.FocusIndex(), 0u);
}

TEST_F(InputPhaseTest, APhaseThatWatchesLetsCharactersKeepTheirMeaning) {
  ASSERT_TRUE(controller.StartPhase(std::make_unique<WatchingPhase>(log), "busy"));
  Type(U"1");  // selects slot 1
  EXPECT_EQ(app.FocusIndex(), 0u);
  EXPECT_EQ(controller.ActivePhase(), InputPhaseKind::Collect);
}

}  // namespace
}  // namespace korvanel
