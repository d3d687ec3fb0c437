#pragma once

// A NIfTI-1 or NIfTI-2 image, one file or a pair, gzipped or not, its header as the NIfTI library
// reads it, and its data, value by value in the order in which they are stored.

#include "prefs/text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct gzFile_s; // zlib's open file

namespace velmorant
{

// What the stored values are. Complex numbers, colours and floats of more than 64 bits are not read.
enum class NiftiType { Int8, Uint8, Int16, Uint16, Int32, Uint32, Int64, Uint64, Float32, Float64 };

// Millimetres towards right, anterior and superior (rows) for a step along each stored axis (columns):
// the affine of a NIfTI header without its offsets.
using Affine = std::array<std::array<double, 3>, 3>;

// The header of an image, and where its data are.
struct NiftiImage {
    std::string data_path;
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
// of 0 states no scaling, as the format has it.
//
// Ends the run with "can't open " and the path; with "no NIfTI-1 or NIfTI-2 image: " and the path; with
// "can't convert " and what the values are; with "more than four dimensions in ", "illegal image
// dimensions in " or "illegal scaling in " and the path; with "too short for its header: " and the data
// file where that can be seen from its size.
NiftiImage read_nifti_header(const char *path);

// The data of an image, from its first value on.
class NiftiData
{
public:
    // Ends the run with "can't open " and the data file.
    explicit NiftiData(const NiftiImage &whole);

    // Reads the next values, in the byte order of the host. Ends the run with "too short for its
    // header, or damaged: " and the data file; with the last values it is known of all of a compressed
    // file, whose sum stands behind them.
    void read(std::span<std::uint8_t> bytes);

private:
    struct Close {
        void operator()(gzFile_s *open_file) const;
    };

    void fill();

    const NiftiImage &image;
    std::unique_ptr<gzFile_s, Close> file;
    std::int64_t unread; // bytes that are still in the file
    std::vector<std::uint8_t> buffer;
    std::span<const std::uint8_t> held; // what of the buffer is not used yet
};

} // namespace velmorant
