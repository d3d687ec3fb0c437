#pragma once

// The header of a NIfTI-1 or NIfTI-2 image, one file or a pair, gzipped or not, as the NIfTI library reads it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace velmorant
{

// What the stored values are. Complex numbers, colours and floats of more than 64 bits are not read.
enum class NiftiType { Int8, Uint8, Int16, Uint16, Int32, Uint32, Int64, Uint64, Float32, Float64 };

// Millimetres towards right, anterior and superior (rows) for a step along each stored axis (columns):
// the affine of a NIfTI header without its offsets.
using Affine = std::array<std::array<double, 3>, 3>;

// The header of an image, and where its data are.
struct NiftiImage {
    std::string header_path;
    std::string data_path;    // the same, where it isn't a pair
    std::int64_t data_offset; // bytes before the first value
    bool compressed;
    int swapped_bytes; // bytes of a value that is stored in the other byte order, or 0
    std::array<std::int32_t, 3> size; // values along each stored axis, the first one fastest
    std::int32_t frames;              // volumes, one after another
    NiftiType type;
    std::size_t value_bytes;
    // A stored n stands for n * slope + intercept.
    double slope;
    double intercept;
    std::array<double, 3> spacing; // mm a step along each stored axis, where no affine says it
    std::optional<Affine> sform;   // where the header states one
    std::optional<Affine> qform;
};

// Reads the header. `path` names a file in full: .nii or .nii.gz, or one of a pair of .hdr and .img.
// Lengths in metres and micrometres become millimetres; without a unit they are taken for such. A slope
// of 0, as the format has it, states no scaling, and so does one that is no number.
//
// Ends the run with "can't open " and the file's name; with "no NIfTI-1 or NIfTI-2 image: " and the path;
// with "can't convert " and what the values are; with "more than four dimensions in ", "illegal image
// dimensions in " or, where it isn't finite, "illegal scaling in " and the path; with "too short for its
// header: " and the data file where that can be seen from its size.
NiftiImage read_nifti_header(const char *path);

// The bytes of one volume in the data file.
std::int64_t volume_bytes(const NiftiImage &image);

} // namespace velmorant
