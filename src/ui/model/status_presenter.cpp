#include "ui/model/status_presenter.h"

#include "app/app_state.h"
#include "ui/model/timers.h"
#include "ui/model/viewer_host.h"

namespace korvanel {

void CStatusPresenter::Say(std::string_view text) {
  app_.LogStatusMessage(text);
  Show(text);
}

void CStatusPresenter::Show(std::string_view text) {
  message_.Show(text);
  host_.StartTimer(TimerId::Status, TimerPeriod(TimerId::Status));
}

void CStatusPresenter::Tick() {
  if (message_.showing && !message_.Tick()) return;
  host_.StopTimer(TimerId::Status);
}

void CStatusPresenter::Present(const StatusFields& fields) {
  if (presented_ && fields == shown_) return;
  shown_ = fields;
  presented_ = true;
  host_.ShowStatus(fields);
}

StatusFields ComposeStatus(const StatusInputs& in) {
  StatusFields fields;
  if (!in.has_view) return fields;
  fields.parts[kStatusReadoutPart] = in.readout;
  fields.parts[kStatusFeaturePart] = FeatureLetters(in.modes);
  fields.parts[kStatusZoomPart] = in.zoom_text;
  fields.parts[kStatusModePart] = ModeLetters(in.modes);
  return fields;
}

}  // namespace korvanel
