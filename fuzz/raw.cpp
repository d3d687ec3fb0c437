// A raw study: its text header and, after the line that ends it, its pixel data. From the files to
// the picture.

#include "fuzz/harness.h"
#include "fuzz/study.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const fuzz::InputFile header("a.hdr");
    static const fuzz::InputFile image("a.img");
    std::string_view input = fuzz::as_text(data, size);
    const std::string options = fuzz::take_options(input);
    const std::size_t length = fuzz::header_length(input);
    header.write(input.substr(0, length));
    image.write(input.substr(length));
    return fuzz::make_run([&] { fuzz::make_picture_of("a.img", "FLOATB", options); });
}
