// A command line: split into arguments, which are taken as a run takes them, up to the size of its
// picture.

#include "app/command_line.h"
#include "app/parse_args.h"
#include "app/picture.h"
#include "app/scale_bar.h"
#include "fuzz/harness.h"
#include "prefs/run_environment.h"
#include "prefs/settings.h"

#include <array>

static void take(const char *line)
{
    using namespace velmorant;
    std::array<char *, MostParsedArguments + 1> words{};
    const std::int32_t count = parse_args(line, words);
    const Arguments arguments(words.data() + 1, static_cast<std::size_t>(count) - 1);
    RunRequest request{};
    find_preference_override(arguments, request.preference_file);
    if (arguments.size() < 3) {
        return;
    }
    read_positional_arguments(arguments, request);
    read_options(arguments, request);
    add_quotations(request.preference_file);
    validate_flags();
    const PictureStyle style{
        .grid = lay_out_montage(40, NumColumn, request.slice_width.value_or(128),
                                request.slice_height.value_or(128)),
        .mapping = {.rescaling = NoRescaling,
                    .range = {.bottom = MinPixel, .top = request.max_pixel_value}},
        .gray = FlagGray != 0,
        .scale_bar = FlagScaleBar == 1,
        .bar_width = ScaleWidth,
        .bar_length = request.max_pixel_value};
    const PictureSize size = measure_picture(style);
    const ScaleBar bar = place_scale_bar(size.height, style.bar_length);
    fuzz::require(scale_bar_index(bar, size.height / 2) <= TopIndex, "an index of the palette");
    fuzz::require(palette_index(1.0F, style.mapping.range) <= TopIndex, "an index of the palette");
    for (const Text *text : {&FnPalette, &FnImage, &FnImageHdr, &FnTiff}) {
        fuzz::require(text->back() == '\0', "texts that end");
    }
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string line(fuzz::as_text(data, size));
    return fuzz::make_run([&] { take(line.c_str()); });
}
