#include "ui/model/pixel_markers.h"

namespace korvanel {

bool CMarkerList::Tick() {
  for (TimedMarker& marker : markers_) {
    if (marker.life > 0) --marker.life;
  }
  std::erase_if(markers_, [](const TimedMarker& marker) { return marker.life == 0; });
  return !markers_.empty();
}

}  // namespace korvanel
