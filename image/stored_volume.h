#pragma once

// An opened volume, which is read box by box where it lies in its file. Once opened, a raw volume
// and the planes of an ECAT 6 matrix file differ only in where their pixels begin, how many are
// stored, and their factor.
//
// The file is read, not mapped: a mapped study that is cut while a program reads it would end the
// program with a signal.

#include "image/allocate.h"
#include "image/image_header.h"
#include "image/stored_pixels.h"
#include "image/volume_box.h"
#include "prefs/file_handle.h"

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

namespace velmorant
{

// Elements that follow one another in a file without a break.
struct StoredPart {
    std::int64_t offset;   // byte of the first element
    std::int64_t elements; // how many are stored
    float factor;          // real value of one stored unit (16-bit integers)
    float rest;            // value of the part's pixels beyond the stored elements
};

// The parts, one after the other, hold the volume's pixels in stored order: x fastest, then y, then
// slice; an axis whose flag in the header is 0 runs backwards.
struct StoredVolume {
    FileHandle file;          // unbuffered
    std::string name;         // of the file, for reports
    ImageHeader header;       // dimensions and orientation
    StoredType type;          // of the elements
    std::endian byte_order;   // of the elements
    std::int64_t part_pixels; // pixels of each part
    std::vector<StoredPart> parts;
    const char *short_read; // null, or how the report of missing elements begins, see `read_box`
    Block<unsigned char> buffer; // from `allocate_read_buffer`
};

// Allocates the buffer for reading: zeroed, `bytes` bytes or as many as are read at a time,
// whichever are fewer. label: see image/allocate.h.
Block<unsigned char> allocate_read_buffer(std::uint64_t bytes, const char *label);

// Both procedures below take a box that lies within the volume.

// Whether every pixel of the box is 0 (not -0) because the file holds none of them.
bool is_blank(const StoredVolume &volume, const VolumeBox &box);

// Reads a box of the volume into `pixels` (box_size(box) floats, laid out as a volume of the box's
// size), in the standard orientation and in real units. Short gaps between rows are read, not
// skipped.
//
// Elements may have gone since the volume was opened. Where `short_read` is null, the part ends
// where its file ends now.
// Fatal:
//   "can't read " NAME                                    read error, `short_read` is null
//   SHORT_READ " (512 expected, 0 read)...", status -1    read error or missing elements, otherwise
void read_box(StoredVolume &volume, const VolumeBox &box, float *pixels);

} // namespace velmorant
