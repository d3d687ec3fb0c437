// An ECAT 6 file. From the file to the picture.

#include "fuzz/harness.h"
#include "fuzz/study.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const fuzz::InputFile image("a.v");
    std::string_view input = fuzz::as_text(data, size);
    const std::string options = fuzz::take_options(input);
    image.write(input);
    return fuzz::make_run([&] { fuzz::make_picture_of("a.v", "CTI6", options); });
}
