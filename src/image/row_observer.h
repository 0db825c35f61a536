#pragma once

#include <cstdint>

namespace korvanel {

// Told after each row of a band of work, with the row's pixel count; false
// stops the band (a cancel request). Jobs count their progress here.
class IRowObserver {
 public:
  virtual ~IRowObserver() = default;
  virtual bool RowDone(uint32_t pixels) = 0;
};

// After a row: whether to go on. No observer means no cancel and no count.
inline bool ContinueAfterRow(IRowObserver* observer, uint32_t pixels) {
  return observer == nullptr || observer->RowDone(pixels);
}

}  // namespace korvanel
