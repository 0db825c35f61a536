#pragma once

// The colour filter applied to an image: a mask (pixel i at bit i mod 32 of
// word i / 32, 1 = masked in) and a filtered copy of the planes that the
// display and the readout show instead of the planes.

#include <string>

#include "image/row_observer.h"
#include "image/filter_tables.h"
#include "image/image_concrete_base.h"

namespace korvanel {

// Starts a filter: every pixel masked in and shown as it is, so that pixels
// outside the filtered region stay visible. False for depths other than 8
// and 16 bits, or when the memory cannot be had.
bool BeginFilter(CImageConcreteBase& image, std::string label);

// Filters the pixels of `band` (inclusive, inside the image). Bands of
// different rows may run at the same time.
bool ApplyFilterBand(CImageConcreteBase& image, const FilterTables& tables, bool all_components,
                     const Rect& band, IRowObserver* observer);

}  // namespace korvanel
