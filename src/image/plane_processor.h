#pragma once

#include <cstdint>

#include "image/plane.h"

namespace korvanel {

// Receives each plane of an image in turn, by component index. Processors
// that are generic over the sample type dispatch with DispatchBits on
// plane.bits(); the image never looks at samples on their behalf.
class IPlaneProcessor {
 public:
  virtual ~IPlaneProcessor() = default;
  // Returning false stops the walk and fails the job.
  virtual bool ProcessPlane(uint32_t component, Plane& plane) = 0;
};

}  // namespace korvanel
