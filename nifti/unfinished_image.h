#pragma once

#include "image/image_header.h"
#include "image/stored_pixels.h"
#include "prefs/file_handle.h"

#include <string>

namespace velmorant
{

// The path of a raw image's text header, of any length (compare `header_file_name`). None, an empty
// one, where the last part of the image's path has no extension, or is ".hdr" itself.
std::string header_path(const std::string &image);

// The two files of a raw image while they are being written: under other names in the folder of the
// image, and gone with the process unless they were finished, whether it ends, fails or is ended by
// SIGHUP, SIGINT or SIGTERM. There can be one at a time.
class UnfinishedImage
{
public:
    // image: where it will be; `header_path` names its header. Ends the run with "can't open " and
    // the path where there can be no file.
    explicit UnfinishedImage(std::string image);
    ~UnfinishedImage();
    UnfinishedImage(const UnfinishedImage &) = delete;
    UnfinishedImage &operator=(const UnfinishedImage &) = delete;

    // Where the pixels are to be written; what is written can be read.
    [[nodiscard]] std::FILE *data() const
    {
        return data_file.get();
    }

    // Writes the text header and puts both files in place. An older header goes first and the new
    // one comes last, so that no header ever stands beside data that aren't its own. Ends the run
    // with "can't write " and the path.
    void finish(const ImageHeader &header, StoredType type);

private:
    std::string path;
    FileHandle data_file;
    FileHandle header_file;
};

} // namespace velmorant
