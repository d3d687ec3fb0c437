#pragma once

// An opened volume, read box by box where it lies in its file. A raw volume and the planes of an ECAT 6
// matrix file differ only in where their pixels begin, how many are stored, and their factor.

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

// Elements that lie in a file without a break.
struct StoredPart {
    std::int64_t offset;   // byte of the first one
    std::int64_t elements; // how many are stored
    float factor;          // real value of one stored unit, for integers
    float rest;            // value of the part's further pixels
};

// The volume's pixels in the order in which they are stored (x fastest, then y, then slice, each axis
// reversed whose flag in the header is 0) are those of the parts, one after the other.
struct StoredVolume {
    FileHandle file;
    std::string name;   // the file's, for reports
    ImageHeader header; // dimensions and orientation of what is opened
    StoredType type;
    std::endian byte_order;
    std::int64_t part_pixels; // of each part
    std::vector<StoredPart> parts;
    // The start of the line that ends the run, with status -1, where elements can't be read; or null:
    // the elements after the file's new end are the part's rest, and an error is reported as "can't read " and the name.
    const char *short_read;
    Block<unsigned char> buffer; // see `allocate_read_buffer`
};

// Room for what is read from the file at a time, zeroed: `bytes`, or less where that is more than is
// read at once. The label is that of image/allocate.h.
Block<unsigned char> allocate_read_buffer(std::uint64_t bytes, const char *label);

// Whether the file holds no pixel of the box, and all are 0 (not -0).
bool is_blank(const StoredVolume &volume, const VolumeBox &box);

// Reads a box of the volume into `pixels` (box_size(box) floats, laid out as a volume of that size) in the
// standard orientation and in real units. Reads over short gaps between rows instead of seeking.
// A file that is cut after it was opened ends where it ends now.
// Fatal, see `StoredVolume::short_read`:
//   "can't read " NAME                                    a read error
//   SHORT_READ " (512 expected, 0 read)...", status -1    a read error, or a file that was cut
void read_box(StoredVolume &volume, const VolumeBox &box, float *pixels);

} // namespace velmorant
