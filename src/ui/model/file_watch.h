#pragma once

// The external-modification poll (timer 2): one round asks about every
// watched image whose file another program changed, and reloads or stops
// watching it by the answer.

namespace korvanel {

class AppState;
class IViewerHost;

// `keep_format` is the check box's first state in each question. The timer
// is stopped while the questions are open and started again after the round.
// True when an image was reloaded.
bool RunFileWatchRound(AppState& app, IViewerHost& host, bool keep_format);

}  // namespace korvanel
