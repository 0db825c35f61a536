#include "ui/model/command_table.h"

#include <algorithm>

#include "app/app_state.h"
#include "app/filter_command.h"
#include "ui/model/diff_commands.h"
#include "ui/model/help_pages.h"
#include "ui/model/image_commands.h"
#include "ui/model/viewer_controller.h"

namespace korvanel {

// The commands' work on the controller's parts.
struct CommandActions {
  using C = CViewerController;

  static void Zoom(C& c, double zf) {
    c.views_.ApplyZoom(zf);
    c.MarkDirty();
  }

  static void ToggleFlag(C& c, bool ViewFlags::*flag) {
    c.state_.flags.*flag = !(c.state_.flags.*flag);
    c.views_.ApplyFlags(c.state_.flags);
    c.state_.base_dirty = true;
  }

  // Ctrl+R and M act on the image under the mouse; in compare mode with the
  // mouse over none, on the whole party, led by the left-most image.
  static std::vector<ImageView*> RulerTargets(C& c) {
    std::vector<ImageView*> targets;
    const size_t under = c.pointer_.ImageUnderCursor();
    if (!c.app_.CompareMode() || under != kNoView) {
      if (ImageView* view = c.views_.ViewAt(c.app_.CompareMode() ? under : c.app_.FocusIndex())) {
        targets.push_back(view);
      }
      return targets;
    }
    for (size_t index : c.views_.PartyIndices()) {
      if (ImageView* view = c.views_.ViewAt(index)) targets.push_back(view);
    }
    return targets;
  }

  static void NextRulerColor(C& c) {
    const std::vector<ImageView*> targets = RulerTargets(c);
    if (targets.empty()) return;
    const auto next = static_cast<uint32_t>((targets.front()->ruler_color_index + 1) %
                                            c.settings_.ruler_colors.size());
    for (ImageView* view : targets) view->ruler_color_index = next;
    c.state_.base_dirty = true;
  }

  static void ToggleRulerType(C& c) {
    const std::vector<ImageView*> targets = RulerTargets(c);
    if (targets.empty()) return;
    const RulerType next =
        targets.front()->ruler_type == RulerType::Indent ? RulerType::Matrix : RulerType::Indent;
    for (ImageView* view : targets) view->ruler_type = next;
    c.state_.base_dirty = true;
  }

  // The menu item asks the state, which refuses outside compare mode.
  static void ToggleLayerMode(C& c) {
    if (c.app_.SetLayerMode(!c.app_.LayerMode())) c.MarkDirty();
  }

  // The L key says why nothing happens outside compare mode.
  static void LayerModeKey(C& c) {
    if (!c.app_.CompareMode()) {
      c.app_.StatusMessage("Layer mode can only be activated when in Compare mode");
      return;
    }
    ToggleLayerMode(c);
  }

  static void CycleImage(C& c, bool forward) {
    const LayoutMode mode = c.views_.Mode();
    if (mode == LayoutMode::SideBySide) return;
    if (mode == LayoutMode::Layer) {
      const size_t n = c.views_.PartyIndices().size();
      if (n > 0) c.app_.SetVisibleLayer((c.app_.VisibleLayer() + (forward ? 1 : n - 1)) % n);
      return;
    }
    const size_t n = c.app_.Images().Count();
    if (n == 0) return;
    const size_t focus = c.app_.FocusIndex() < n ? c.app_.FocusIndex() : 0;
    c.app_.SetFocus((focus + (forward ? 1 : n - 1)) % n);
  }

  static void BackKey(C& c) {
    if (c.views_.Mode() == LayoutMode::Layer) {
      c.app_.SetVisibleLayer(c.app_.PreviousLayer());
      return;
    }
    for (size_t index : c.app_.FocusHistory()) {
      if (index != c.app_.FocusIndex()) {
        c.app_.SetFocus(index);
        return;
      }
    }
  }

  static void Scroll(C& c, Axis axis, bool forward) {
    c.ScrollTo(axis, forward ? ScrollAction::PageUp : ScrollAction::PageDown, 0);
  }

  static void HelpPage(C& c, int32_t delta) {
    c.state_.help_page = StepHelpPage(c.state_.help_page, delta);
    c.state_.base_dirty = true;
  }

  static void ToggleHelp(C& c) {
    c.state_.help_visible = !c.state_.help_visible;
    c.state_.base_dirty = true;
  }

  static void Escape(C& c) {
    if (c.state_.help_visible) {
      ToggleHelp(c);
    } else if (!c.phases_.Cancel() && c.app_.LayerMode()) {
      c.app_.SetLayerMode(false);
      c.MarkDirty();
    }
  }

  // Ctrl+C: over a tab the image's path, else the image in context.
  static void CopyContext(C& c) {
    if (const size_t tab = c.pointer_.TabUnderCursor(c.hits_); tab != kNoView) {
      CopyPathToClipboard(c.app_, c.host_, tab);
      return;
    }
    CopyImageToClipboard(c.app_, c.host_, ContextImage(c.app_, c.pointer_.ImageUnderCursor()));
  }

  static void ChangeHistogramLook(C& c, Command command) {
    if (c.histograms_.ChangeStyle(command)) c.state_.base_dirty = true;
  }

  static void ReapplyFilter(C& c) {
    if (!c.dialogs_.filter.HasLastRequest()) {
      c.host_.OpenDialog(DialogId::Filter);
      return;
    }
    if (const DialogResult failure = c.dialogs_.filter.Reapply(c.app_); failure && !failure->title.empty()) {
      c.app_.ShowMessage(failure->text, failure->title);
    }
    c.OnDialogApplied();
  }

  // E: the saved list is read again first unless it is read at start only.
  static void OpenImageEval(C& c) {
    if (!c.settings_.dialog_defaults.system.ieval_load_saved_startup_only) c.app_.ReloadSavedIEvals();
    c.host_.OpenDialog(DialogId::ImageEval);
  }

  // Ctrl+E: the last I-Eval request again; without one the dialog opens.
  static void ReapplyIEval(C& c) {
    if (!c.dialogs_.ieval.HasLastRequest()) {
      OpenImageEval(c);
      return;
    }
    c.dialogs_.ieval.Reapply(c.app_);  // the evaluator shows its own errors
    c.OnDialogApplied();
  }

  static void Save(C& c, Command command) { SaveForCommand(c.app_, command); }
  static void SelectDiff(C& c, Command command) { SelectDiffType(c.app_, command); }

  static size_t Under(const C& c) { return c.pointer_.ImageUnderCursor(); }
  static bool Flag(const C& c, bool ViewFlags::*flag) { return c.state_.flags.*flag; }
  static bool DiffIs(const C& c, DiffType type) { return c.app_.GetDiffType() == type; }
  static bool HasImages(const C& c) { return c.views_.HasImages(); }

  static std::span<const CommandRow> Rows();
};

std::span<const CommandRow> CommandActions::Rows() {
  using A = CommandActions;
  using Cmd = Command;
  // Rows that share a run function tell their command apart by the argument.
  static constexpr CommandRow kRows[] = {
      {Cmd::ZoomIn, true, [](C& c, Cmd) { Zoom(c, ZoomIn(c.views_.Zoom())); }, nullptr, A::HasImages},
      {Cmd::ZoomOut, true, [](C& c, Cmd) { Zoom(c, ZoomOut(c.views_.Zoom())); }, nullptr, A::HasImages},
      {Cmd::FitToWindow, true, [](C& c, Cmd) { Zoom(c, kFitZoom); }, nullptr, A::HasImages},
      {Cmd::ToggleGrid, false, [](C& c, Cmd) { ToggleFlag(c, &ViewFlags::grid); },
       [](const C& c) { return Flag(c, &ViewFlags::grid); }, nullptr},
      {Cmd::TogglePixelValues, false, [](C& c, Cmd) { ToggleFlag(c, &ViewFlags::values); },
       [](const C& c) { return Flag(c, &ViewFlags::values); }, nullptr},
      {Cmd::ToggleHex, false, [](C& c, Cmd) { ToggleFlag(c, &ViewFlags::hex); },
       [](const C& c) { return Flag(c, &ViewFlags::hex); }, nullptr},
      {Cmd::ToggleTracking, false, [](C& c, Cmd) { ToggleFlag(c, &ViewFlags::tracking); },
       [](const C& c) { return Flag(c, &ViewFlags::tracking); }, nullptr},
      {Cmd::ToggleOffset, false, [](C& c, Cmd) { ToggleFlag(c, &ViewFlags::offset); },
       [](const C& c) { return Flag(c, &ViewFlags::offset); }, nullptr},
      {Cmd::ToggleRuler, false, [](C& c, Cmd) { ToggleFlag(c, &ViewFlags::ruler); },
       [](const C& c) { return Flag(c, &ViewFlags::ruler); }, nullptr},
      {Cmd::ToggleRulerMatrix, false, [](C& c, Cmd) { ToggleRulerType(c); },
       [](const C& c) { return c.views_.Anchor() != nullptr && c.views_.Anchor()->ruler_type == RulerType::Matrix; },
       nullptr},
      {Cmd::NextRulerColor, false, [](C& c, Cmd) { NextRulerColor(c); }, nullptr, nullptr},
      {Cmd::CompareLabel, false, nullptr, [](const C& c) { return c.app_.CompareMode(); }, nullptr},
      {Cmd::ToggleLayerMode, false, [](C& c, Cmd) { ToggleLayerMode(c); },
       [](const C& c) { return c.app_.LayerMode(); }, nullptr},
      {Cmd::LayerModeKey, false, [](C& c, Cmd) { LayerModeKey(c); }, nullptr, nullptr},
      {Cmd::NextImage, false, [](C& c, Cmd) { CycleImage(c, true); }, nullptr, nullptr},
      {Cmd::PreviousImage, false, [](C& c, Cmd) { CycleImage(c, false); }, nullptr, nullptr},
      {Cmd::BackKey, false, [](C& c, Cmd) { BackKey(c); }, nullptr, nullptr},
      {Cmd::ScrollPageLeft, false, [](C& c, Cmd) { Scroll(c, Axis::Horizontal, true); }, nullptr, nullptr},
      {Cmd::ScrollPageRight, false, [](C& c, Cmd) { Scroll(c, Axis::Horizontal, false); }, nullptr, nullptr},
      {Cmd::ScrollPageUp, false, [](C& c, Cmd) { Scroll(c, Axis::Vertical, true); }, nullptr, nullptr},
      {Cmd::ScrollPageDown, false, [](C& c, Cmd) { Scroll(c, Axis::Vertical, false); }, nullptr, nullptr},
      {Cmd::ToggleHelpOverlay, false, [](C& c, Cmd) { ToggleHelp(c); }, nullptr, nullptr},
      {Cmd::HelpFirstPage, false, [](C& c, Cmd) { HelpPage(c, -static_cast<int32_t>(kLastHelpPage)); }, nullptr, nullptr},
      {Cmd::HelpLastPage, false, [](C& c, Cmd) { HelpPage(c, static_cast<int32_t>(kLastHelpPage)); }, nullptr, nullptr},
      {Cmd::HelpPreviousPage, false, [](C& c, Cmd) { HelpPage(c, -1); }, nullptr, nullptr},
      {Cmd::HelpNextPage, false, [](C& c, Cmd) { HelpPage(c, 1); }, nullptr, nullptr},
      {Cmd::Escape, false, [](C& c, Cmd) { Escape(c); }, nullptr, nullptr},
      {Cmd::PasteIntoPhase, false, [](C& c, Cmd) { c.phases_.Paste(); }, nullptr, nullptr},
      {Cmd::ToggleHistogram, true, [](C& c, Cmd) { c.histograms_.ToggleInContext(Under(c)); c.state_.base_dirty = true; },
       [](const C& c) { return c.histograms_.ShownAt(c.views_.AnchorIndex()); }, nullptr},
      {Cmd::ToggleHistogramTransparent, false, ChangeHistogramLook,
       [](const C& c) { return c.histograms_.Style().transparent; }, nullptr},
      {Cmd::ToggleHistogramShadow, false, ChangeHistogramLook, [](const C& c) { return c.histograms_.Style().shadow; },
       nullptr},
      {Cmd::NextHistogramColor, false, ChangeHistogramLook, nullptr, nullptr},
      {Cmd::ToggleBeautify, false, [](C& c, Cmd) { c.histograms_.ToggleBeautify(); c.state_.base_dirty = true; },
       [](const C& c) { return c.histograms_.Beautify(); }, nullptr},
      {Cmd::OpenFile, false,
       [](C& c, Cmd) {
         if (const std::optional<std::string> path = c.host_.AskOpenPath()) c.app_.OpenImage(*path);
       },
       nullptr, nullptr},
      {Cmd::HelpWindow, false, [](C& c, Cmd) { c.host_.OpenDialog(DialogId::HelpWindow); }, nullptr, nullptr},
      {Cmd::About, false, [](C& c, Cmd) { c.host_.OpenDialog(DialogId::About); }, nullptr, nullptr},
      {Cmd::ToggleHexTextCLayout, false, [](C& c, Cmd) { c.app_.SetSaveTextHexCArray(!c.app_.SaveTextHexCArray()); },
       [](const C& c) { return c.app_.SaveTextHexCArray(); }, nullptr},
      {Cmd::ToggleFavorLowMemory, false, [](C& c, Cmd) { c.app_.SetFavorLowMemory(!c.app_.FavorLowMemory()); },
       [](const C& c) { return c.app_.FavorLowMemory(); }, nullptr},
      {Cmd::ToggleAppLog, false, [](C& c, Cmd) { c.app_.SetAppLogEnabled(!c.app_.AppLogEnabled()); },
       [](const C& c) { return c.app_.AppLogEnabled(); }, nullptr},
      {Cmd::ToggleFormatLog, false, [](C& c, Cmd) { c.app_.SetFormatLogEnabled(!c.app_.FormatLogEnabled()); },
       [](const C& c) { return c.app_.FormatLogEnabled(); }, nullptr},
      {Cmd::CheckUpdates, false, [](C& c, Cmd) { c.update_check_.OnMenu(); }, nullptr, nullptr},
      // The operation dialogs work on the focus image, so they need one.
      {Cmd::FilterDialog, true, [](C& c, Cmd) { c.host_.OpenDialog(DialogId::Filter); }, nullptr, nullptr},
      {Cmd::ReapplyFilter, true, [](C& c, Cmd) { ReapplyFilter(c); }, nullptr, nullptr},
      {Cmd::Convert, true, [](C& c, Cmd) { c.host_.OpenDialog(DialogId::Convert); }, nullptr, nullptr},
      {Cmd::RulerSettings, true, [](C& c, Cmd) { c.host_.OpenDialog(DialogId::RulerSettings); }, nullptr, nullptr},
      {Cmd::ImageEvaluator, true, [](C& c, Cmd) { OpenImageEval(c); }, nullptr, nullptr},
      {Cmd::ReapplyIEval, true, [](C& c, Cmd) { ReapplyIEval(c); }, nullptr, nullptr},
      {Cmd::CompareStart, true, [](C& c, Cmd) { c.phases_.CompareStart(); }, nullptr, nullptr},
      {Cmd::CompareAll, true, [](C& c, Cmd) { c.phases_.CompareAll(); }, nullptr, nullptr},
      {Cmd::SaveViaCommand, true, [](C& c, Cmd) { c.phases_.StartSave(); }, nullptr, nullptr},
      {Cmd::NewDuplicate, false, [](C& c, Cmd) { c.app_.NewDuplicateFromView(); }, nullptr, nullptr},
      {Cmd::DuplicateOrCrop, false, [](C& c, Cmd) { c.app_.NewImageFromView(); }, nullptr, nullptr},
      {Cmd::SaveOriginalRaw, false, Save, nullptr, nullptr},
      {Cmd::SaveBinaryPlanner, false, Save, nullptr, nullptr},
      {Cmd::SaveBinaryInterleave, false, Save, nullptr, nullptr},
      {Cmd::SaveBinaryPlannerBe, false, Save, nullptr, nullptr},
      {Cmd::SaveBinaryInterleaveBe, false, Save, nullptr, nullptr},
      {Cmd::SaveTextOriginal, false, Save, nullptr, nullptr},
      {Cmd::SaveTextPlanner, false, Save, nullptr, nullptr},
      {Cmd::SaveTextInterleave, false, Save, nullptr, nullptr},
      {Cmd::SaveHexOriginal, false, Save, nullptr, nullptr},
      {Cmd::SaveHexPlanner, false, Save, nullptr, nullptr},
      {Cmd::SaveHexInterleave, false, Save, nullptr, nullptr},
      {Cmd::SaveHexPlannerBe, false, Save, nullptr, nullptr},
      {Cmd::SaveHexInterleaveBe, false, Save, nullptr, nullptr},
      {Cmd::SaveStatistics, false, [](C& c, Cmd) { SaveStatisticsContext(c.app_, Under(c)); }, nullptr, nullptr},
      {Cmd::ExportPng, false, [](C& c, Cmd) { ExportPngContext(c.app_, Under(c)); }, nullptr, nullptr},
      {Cmd::ToggleAutoNaming, false, [](C& c, Cmd) { c.app_.SetAutoFileNaming(!c.app_.AutoFileNaming()); },
       [](const C& c) { return c.app_.AutoFileNaming(); }, nullptr},
      {Cmd::CloseImage, false, [](C& c, Cmd) { CloseContextImage(c.app_, Under(c)); }, nullptr, nullptr},
      {Cmd::CloseAll, false, [](C& c, Cmd) { CloseAllContext(c.app_); }, nullptr, nullptr},
      {Cmd::Diff, true, [](C& c, Cmd) { DiffParty(c.app_); }, nullptr, nullptr},
      {Cmd::CycleDiffType, false, [](C& c, Cmd) { CycleDiffType(c.app_); }, nullptr, nullptr},
      {Cmd::DiffTypeAllBin, false, SelectDiff,
       [](const C& c) { return DiffIs(c, DiffType::kAllBin); }, nullptr},
      {Cmd::DiffTypeMaskBin, false, SelectDiff,
       [](const C& c) { return DiffIs(c, DiffType::kMaskBin); }, nullptr},
      {Cmd::DiffTypeAllAbsDelta, false, SelectDiff,
       [](const C& c) { return DiffIs(c, DiffType::kAllAbsDelta); }, nullptr},
      {Cmd::DiffTypeMaskAbsDelta, false, SelectDiff,
       [](const C& c) { return DiffIs(c, DiffType::kMaskAbsDelta); }, nullptr},
      {Cmd::CopyImage, false, [](C& c, Cmd) { CopyImageToClipboard(c.app_, c.host_, ImageOrFocus(c.app_, Under(c))); },
       nullptr, nullptr},
      {Cmd::CopyImagePath, false, [](C& c, Cmd) { CopyPathToClipboard(c.app_, c.host_, ImageOrFocus(c.app_, Under(c))); },
       nullptr, nullptr},
      {Cmd::CopyContext, false, [](C& c, Cmd) { CopyContext(c); }, nullptr, nullptr},
      {Cmd::ClearFilter, false, [](C& c, Cmd) { ClearFilterCommand(c.app_, c.app_.FocusIndex()); }, nullptr, nullptr},
      {Cmd::CopyPixelText, false, [](C& c, Cmd) { c.pointer_.CopyPixel(); }, nullptr, nullptr},
      {Cmd::JumpToCoordinate, false, [](C& c, Cmd) { c.phases_.ToggleJump(); }, nullptr, nullptr},
      {Cmd::JumpIteratePrevious, false, [](C& c, Cmd) { c.phases_.FeedJump(U'~'); }, nullptr, nullptr},
      {Cmd::JumpIterateRoiCorners, false, [](C& c, Cmd) { c.phases_.FeedJump(U'r'); }, nullptr, nullptr},
      {Cmd::JumpPasteCoordinate, false, [](C& c, Cmd) { c.phases_.PasteInto(InputPhaseKind::Jump); }, nullptr, nullptr},
      {Cmd::FindPixel, false, [](C& c, Cmd) { c.phases_.StartFind(); }, nullptr, nullptr},
      {Cmd::FindPasteValue, false, [](C& c, Cmd) { c.phases_.PasteInto(InputPhaseKind::Find); }, nullptr, nullptr},
      {Cmd::FindNext, false, [](C& c, Cmd) { c.find_jump_.FindAgain(SearchDirection::Forward); }, nullptr, nullptr},
      {Cmd::FindPrevious, false, [](C& c, Cmd) { c.find_jump_.FindAgain(SearchDirection::Backward); }, nullptr, nullptr},
      {Cmd::ClearMarkedPixels, false, [](C& c, Cmd) { c.find_jump_.ClearMarks(false); }, nullptr,
       [](const C& c) { return c.find_jump_.AnyMarks(); }},
      {Cmd::ClearMarksContext, false, [](C& c, Cmd) { c.find_jump_.ClearMarks(true); }, nullptr, nullptr},
  };
  return kRows;
}

std::span<const CommandRow> CommandRows() { return CommandActions::Rows(); }

const CommandRow* FindCommandRow(Command command) {
  const std::span<const CommandRow> rows = CommandRows();
  const auto found = std::ranges::find(rows, command, &CommandRow::command);
  return found == rows.end() ? nullptr : &*found;
}

}  // namespace korvanel
