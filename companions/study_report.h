#pragma once

#include "image/image_header.h"
#include "image/stored_volume.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>

namespace velmorant
{

// Where the check of a study says what it sees.
struct StudyReport {
    const char *keyword;
    const char *image;
    std::FILE *facts;  // what the study holds
    std::FILE *faults; // what is wrong with it
    bool whole = true; // nothing has been found wrong so far
};

// Says one thing that is wrong with the study.
void report_fault(StudyReport &report, const std::string &fault);

struct Volume {
    std::int32_t frame; // from 1
    std::int32_t bed;   // from 0
};

// "frame 2, bed 0"
std::string volume_name(const Volume &volume);

// Prints format, dimensions, pixel sizes, frames and beds.
void report_geometry(const StudyReport &report, const ImageHeader &header);

// The smallest and the largest of some values, and how many of them are no numbers, which are
// neither.
struct ValueRange {
    float smallest = std::numeric_limits<float>::infinity();
    float largest = -std::numeric_limits<float>::infinity();
    std::size_t not_numbers = 0;
};

// The range of an opened volume's values, read in pieces.
ValueRange measure_volume(StoredVolume &volume);

// Prints the range of a volume's values.
void report_range(const StudyReport &report, const Volume &volume, const ValueRange &range);

} // namespace velmorant
