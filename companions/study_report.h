#pragma once

#include "image/image_header.h"

#include <cstdint>
#include <cstdio>
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

// "frame 2, bed 0"
std::string volume_name(std::int32_t frame, std::int32_t bed);

// Prints format, dimensions, pixel sizes, frames and beds.
void report_geometry(const StudyReport &report, const ImageHeader &header);

// Reads a volume that is known to be whole, and prints its smallest and its largest number.
void report_values(const StudyReport &report, const ImageHeader &header, std::int32_t frame,
                   std::int32_t bed);

} // namespace velmorant
