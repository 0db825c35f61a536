#pragma once

// Every command of the viewer window: what keys, characters and menu items
// lead to. The key, character and menu tables point only at these values and
// CViewerController::Execute is the one place where they meet, so a new
// binding is a new table row, never a new code path.

#include <cstdint>

namespace korvanel {

enum class Command : uint16_t {
  None = 0,

  // File
  NewDuplicate,        // as "n" without the ROI crop
  OpenFile,
  SaveOriginalRaw,
  SaveBinaryPlanner,
  SaveBinaryInterleave,
  SaveBinaryPlannerBe,
  SaveBinaryInterleaveBe,
  SaveTextOriginal,
  SaveTextPlanner,
  SaveTextInterleave,
  SaveHexOriginal,
  SaveHexPlanner,
  SaveHexInterleave,
  SaveHexPlannerBe,
  SaveHexInterleaveBe,
  SaveStatistics,
  SaveViaCommand,      // enters the save-choice phase ("s")
  ExportPng,
  ToggleAutoNaming,
  CloseImage,
  CloseAll,
  Exit,

  // View
  ZoomIn,
  ZoomOut,
  FitToWindow,
  ToggleGrid,
  TogglePixelValues,
  ToggleHex,
  ToggleTracking,
  ToggleOffset,
  ToggleRuler,
  ToggleRulerMatrix,
  NextRulerColor,
  ToggleHistogram,
  ToggleHistogramTransparent,
  ToggleHistogramShadow,
  NextHistogramColor,
  ToggleBeautify,
  CompareLabel,        // the View menu's "Compare": shown, does nothing
  ToggleLayerMode,     // menu: no compare-mode test before asking the state
  LayerModeKey,        // "L"/"l": refused with a message outside compare mode

  // Actions
  CompareStart,
  CompareAll,
  Diff,
  DiffTypeAllBin,
  DiffTypeMaskBin,
  DiffTypeAllAbsDelta,
  DiffTypeMaskAbsDelta,
  CycleDiffType,
  CopyImage,
  CopyImagePath,
  CopyContext,         // Ctrl+C: path when over a tab, else the image
  Convert,
  DuplicateOrCrop,     // "n"
  JumpToCoordinate,
  JumpIteratePrevious,
  JumpIterateRoiCorners,
  JumpPasteCoordinate,
  FindPixel,
  FindNext,
  FindPrevious,
  FindPasteValue,
  PasteIntoPhase,      // Ctrl+V: coordinate or value, by the active phase
  ClearMarkedPixels,   // menu: every marked pixel of the party
  ClearMarksContext,   // "-" key: the image under the mouse, else all
  FilterDialog,
  ClearFilter,
  ReapplyFilter,
  ImageEvaluator,
  ReapplyIEval,
  RulerSettings,
  CopyPixelText,       // "P"

  // Developer
  ToggleHexTextCLayout,
  ToggleFavorLowMemory,
  ToggleAppLog,
  ToggleFormatLog,

  // Window
  BackKey,
  NextImage,
  PreviousImage,

  // Help
  HelpWindow,
  CheckUpdates,
  About,

  // Keys without a menu item
  ToggleHelpOverlay,   // F1
  Escape,
  ScrollPageLeft,
  ScrollPageRight,
  ScrollPageUp,
  ScrollPageDown,
  HelpFirstPage,
  HelpLastPage,
  HelpPreviousPage,
  HelpNextPage,
};

}  // namespace korvanel
