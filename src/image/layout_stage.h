#pragma once

// Where a format's layout attributes act on a load: the census of the
// file's words against the significant bits, the loaders every format
// uses, then MSB-aligned values shifted down to their code values, so that
// everything downstream sees 0..2^n-1. A format without attributes goes
// straight to the loader.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "image/format_expression.h"
#include "image/image_concrete_base.h"
#include "image/line_sink.h"
#include "image/parallel_runner.h"
#include "image/plane.h"

namespace korvanel {

// Samples outside the significant bits: above 2^n-1 under LSB, with any of
// the low container-n bits set under MSB.
struct BitCensus {
  uint64_t stray = 0;
  uint64_t samples = 0;
};

// Counts the file's words of |bpp| bits in the byte order the sign says.
BitCensus CountStraySamples(const uint8_t* data, uint64_t byte_count, int32_t bpp, const RawLayout& raw);

// The warning for a census with stray samples, "" without.
std::string CensusWarning(const BitCensus& census, const RawLayout& raw, uint32_t container);

// Shift every sample right (MSB-aligned words to code values) or left (code
// values back to the file's words) by `shift` in place, in bands on `runner`.
void ShiftSamplesDown(std::vector<Plane*> planes, uint32_t shift, IParallelRunner* runner);
void ShiftSamplesUp(std::vector<Plane*> planes, uint32_t shift, IParallelRunner* runner);

// LoadWithFormat for formats with attributes too. The census warning, if
// any, goes to `log` and to `warning`.
std::unique_ptr<CImageConcreteBase> LoadWithLayout(const FormatExpression& format, uint8_t* data,
                                                   uint64_t byte_count, uint32_t width, uint32_t height,
                                                   ILineSink& log, IParallelRunner* runner,
                                                   std::string* warning = nullptr);

}  // namespace korvanel
