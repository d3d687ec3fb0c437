#pragma once

// The data of a NIfTI image, value by value in the order in which they are stored.

#include "nifti/nifti_image.h"
#include "prefs/file_handle.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

struct gzFile_s; // zlib's open file

namespace velmorant
{

class NiftiData
{
public:
    // Ends the run with "can't open " and the data file.
    explicit NiftiData(const NiftiImage &whole);

    // Reads the next values, in the byte order of the host. Ends the run with "too short for its
    // header, or damaged: " and the data file; with the last values it is known of all of a compressed
    // file, whose sum stands at its end.
    void read(std::span<std::uint8_t> bytes);

private:
    struct Close {
        void operator()(gzFile_s *open_file) const;
    };

    void fill();

    const NiftiImage &image;
    FileHandle plain; // of the two, the one for this image
    std::unique_ptr<gzFile_s, Close> compressed;
    std::int64_t unread; // bytes of values that are still in the file
    std::vector<std::uint8_t> buffer;
    std::span<const std::uint8_t> held; // what of the buffer is not used yet
};

} // namespace velmorant
