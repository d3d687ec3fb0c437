// What tiffgen-check looks at: a picture; an ECAT 6 file; a raw study, as in raw.cpp.

#include "companions/picture_check.h"
#include "companions/study_check.h"
#include "companions/tiff_file.h"
#include "fuzz/harness.h"

using namespace velmorant;

static void check_as_picture(const char *path)
{
    try {
        check_picture(path);
    } catch (const FileFault &) {
        // A finding like any other.
    }
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const fuzz::InputFile whole("a.v");
    static const fuzz::InputFile header("a.hdr");
    static const fuzz::InputFile image("a.img");
    static const FileHandle nowhere(std::fopen("/dev/null", "w"));
    const std::string_view input = fuzz::as_text(data, size);
    const std::size_t length = fuzz::header_length(input);
    whole.write(input);
    header.write(input.substr(0, length));
    image.write(input.substr(length));
    fuzz::make_run([] { check_as_picture("a.v"); });
    fuzz::make_run([] { check_study("CTI6", "a.v", nowhere.get(), nowhere.get()); });
    return fuzz::make_run([] { check_study("FLOATB", "a.img", nowhere.get(), nowhere.get()); });
}
