#pragma once

// A classic TIFF file, as it lies on the disk.
//
//   BYTE  HOLDS
//   0     "II" where numbers are little-endian, "MM" where they are big-endian
//   2     uint16, 42
//   4     uint32, where the directory is
//
// The directory is a uint16 that counts its fields, the fields of 12 bytes each, and a uint32 that says
// where the next directory is, 0 if there is none. A field:
//
//   BYTE  HOLDS
//   0     uint16, its tag
//   2     uint16, its type: 2 text, 3 uint16, 4 uint32, 5 a fraction of two uint32
//   4     uint32, how many values it has, the zero that ends a text included
//   8     the values, from the first byte on, if 4 bytes hold them; else a uint32, where they are
//
// All places are counted in bytes from the beginning of the file.

#include "prefs/file_handle.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velmorant
{

// Why a file isn't what it should be. What is thrown where it is found.
struct FileFault {
    std::string reason;
};

// A stretch of the file, end not included.
struct Extent {
    std::uint64_t begin;
    std::uint64_t end;
};

enum class TiffType : std::uint32_t { Text = 2, Short = 3, Long = 4, Fraction = 5 };

struct TiffField {
    std::uint16_t tag;
    TiffType type;
    std::vector<std::uint32_t> numbers; // of fractions both, one after the other
    std::string text;                   // without its zero
};

struct TiffFile {
    std::uint64_t size; // bytes
    std::vector<TiffField> fields;
    std::vector<Extent> extents; // of header, directory and values
};

// Reads the file's one directory. Throws a `FileFault`: where the file can't be read or isn't a TIFF
// file of its own on a disk; where the directory is not in the file, has more than `most_fields` fields, or isn't the only
// one; where a field is of another type, has more than `most_values` values, or has them outside the
// file.
TiffFile read_tiff_file(const char *path, std::size_t most_fields, std::size_t most_values);

} // namespace velmorant
