#pragma once

// The window's four timers: identities and periods.

#include <cstdint>

namespace korvanel {

enum class TimerId : uint8_t { Status = 1, FileWatch = 2, Jump = 3, Find = 4 };

struct TimerInfo {
  TimerId id;
  uint32_t period_ms;
};

inline constexpr TimerInfo kTimers[] = {
    {TimerId::Status, 100},
    {TimerId::FileWatch, 2000},
    {TimerId::Jump, 50},
    {TimerId::Find, 25},
};

uint32_t TimerPeriod(TimerId id);

}  // namespace korvanel
