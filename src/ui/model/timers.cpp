#include "ui/model/timers.h"

namespace korvanel {

uint32_t TimerPeriod(TimerId id) {
  for (const TimerInfo& timer : kTimers) {
    if (timer.id == id) return timer.period_ms;
  }
  return 0;
}

}  // namespace korvanel
