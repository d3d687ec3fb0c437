#pragma once

#include "image/image_header.h"

#include <array>
#include <cstdint>

namespace velmorant
{

// Packs the five coordinates of a matrix (see `ImageMatrix`) into the number that names it in a
// directory:
//
//   BITS    COORDINATE
//   0-11    frame
//   12-15   bed
//   16-23   plane
//   24-29   gate
//   30-31   data
//
// A coordinate that doesn't fit wraps around: frame 4097 is named like frame 1, bed 16 like bed 0.
// 0 names no matrix, because frames, planes and gates count from 1.
std::uint32_t mat_numcod(std::int32_t frame, std::int32_t plane, std::int32_t gate,
                         std::int32_t data, std::int32_t bed);

// Unpacks a matrix number into frame, plane, gate, data and bed, in this order.
void mat_numdoc(std::uint32_t matrix_number, std::array<std::int32_t, 5> &coordinates);

// Reduces how many there are of each coordinate to the fewest with the same last number and the same
// neighbours. Numbers wrap around, so whoever visits matrices one after another, and compares each
// with the one before, finds out no more from longer runs.
ImageMatrix shorten_runs(const ImageMatrix &counts);

// Whether each plane of an image has a number of its own: frames, and planes, from 1 to these, beds
// from 0 to this one.
bool are_distinct(std::int32_t frames, std::int32_t planes, std::int32_t last_bed);

} // namespace velmorant
