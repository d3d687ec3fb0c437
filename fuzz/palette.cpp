// A palette file.

#include "app/palette.h"
#include "fuzz/harness.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const fuzz::InputFile palette("p.plt");
    palette.write(fuzz::as_text(data, size));
    return fuzz::make_run([] { velmorant::load_palette("p.plt"); });
}
