#include "app/command_line.h"

#include "prefs/error_report.h"
#include "prefs/numbers.h"
#include "prefs/settings.h"

#include <array>
#include <cstdio>
#include <string>
#include <string_view>
#include <variant>

namespace velmorant
{

namespace
{

struct OptionRow {
    char letter;
    std::variant<std::int32_t *, std::optional<std::int32_t> *, float *, Text *> value;
    const char *usage; // null where the row above speaks for this one
};

} // namespace

static auto option_rows(RunRequest &request)
{
    return std::to_array<OptionRow>({
        {'f', &request.selector.frame, "-f(frame); -b(bed position)"},
        {'b', &request.selector.bed, nullptr},
        {'x', &request.slice_width, "-x(slice width, pixel)"},
        {'y', &request.slice_height, "-y(slice height, pixel)"},
        {'X', &NumColumn, "-X(Number of columns)"},
        {'c', &FnPalette, "-c(\"color palette file\")"},
        {'m', &MinPixel, "-m(minimal pixel cutoff)"},
        {'s', &FlagScaleBar, "-s(color scale bar: 0=no, 1=yes)"},
        {'g', &FlagGray, "-g(gray scale: 0=color, 1=gray)"},
        {'h', &FnImageHdr, "-h(\"common header for image file\")"},
        {'p', &request.preference_file, "-p(\"local preference file name with directory\")"},
    });
}

static void set_value(std::int32_t &variable, const char *text)
{
    variable = text_to_int32(text);
}

static void set_value(std::optional<std::int32_t> &variable, const char *text)
{
    variable = text_to_int32(text);
}

static void set_value(float &variable, const char *text)
{
    variable = text_to_float(text);
}

static void set_value(Text &variable, const char *text)
{
    copy_text_or_abort(variable, text);
}

void read_command_line(int * /*argc*/, char *** /*argv*/)
{
}

void sioux_setting(bool /*batch*/, std::int32_t /*option*/)
{
}

void find_preference_override(Arguments arguments, Text &name)
{
    for (const std::string_view argument : arguments) {
        if (argument.starts_with("-p")) {
            copy_text_or_abort(name, argument.substr(2));
        }
    }
}

void read_positional_arguments(Arguments arguments, RunRequest &request)
{
    copy_text_or_abort(FnImage, arguments[0]);
    copy_text_or_abort(FnImageHdr, arguments[0]);
    copy_text_or_abort(FnTiff, std::string(arguments[1]) + ".tif");
    request.max_pixel_value = text_to_float(arguments[2]);
}

void read_options(Arguments arguments, RunRequest &request)
{
    const auto options = option_rows(request);
    for (const char *argument : arguments) {
        for (const OptionRow &option : options) {
            if (argument[0] == '-' && argument[1] == option.letter) {
                std::visit([&](auto *variable) { set_value(*variable, argument + 2); },
                           option.value);
            }
        }
    }
}

void validate_flags()
{
    if (static_cast<std::uint32_t>(FlagScaleBar) > 1) {
        print_error_message(1, "Illegal FlagScaleBar");
    }
    // Kept, though it can't fire: no value of FlagGray is illegal, so the scale bar is asked again.
    if (static_cast<std::uint32_t>(FlagScaleBar) > 1) {
        print_error_message(1, "Illegal FlagGray");
    }
}

void print_usage()
{
    std::puts("Command line: (image file) (output file w/o ext.) (max pixel value, 0.0 for peak "
              "normalization) (options)");
    std::puts("\nOptions:");
    RunRequest unused{};
    for (const OptionRow &option : option_rows(unused)) {
        if (option.usage != nullptr) {
            std::puts(option.usage);
        }
    }
    std::puts("\nOutput:");
    std::puts("(output file name).tif  - TIFF image file");
}

} // namespace velmorant
