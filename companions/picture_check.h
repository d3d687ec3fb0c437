#pragma once

#include <cstdint>

namespace velmorant
{

struct PictureFacts {
    std::uint32_t width;  // pixels
    std::uint32_t height; // rows
    bool gray;
};

// Proves that a file is a whole picture as the generator writes it: one directory, exactly the tags
// that app/picture.cpp sets, with their values; every strip of 30 rows in the file, with as many bytes
// as its rows have, in order; and no byte that is used twice, or not at all. What the pixels show is
// not looked at.
//
// Throws a `FileFault` (companions/tiff_file.h) that says what is wrong.
PictureFacts check_picture(const char *path);

} // namespace velmorant
