#pragma once

// The command line: image file, output file without extension, max pixel value, then options, each
// one argument with its value glued to its letter (-f2). The options may stand anywhere after the
// program's name; the positional arguments are looked at as options, too. Numbers are read as by
// `text_to_int32` and `text_to_float`; a file name of 255 characters or more (the output's ".tif"
// counts) aborts the process.

#include "image/image_header.h"
#include "prefs/text.h"

#include <cstdint>
#include <optional>
#include <span>

namespace velmorant
{

using Arguments = std::span<char *const>;

// What one run is asked for besides the settings of prefs/settings.h, which the options override.
struct RunRequest {
    float max_pixel_value;                    // 0.0 asks for peak normalisation
    std::optional<std::int32_t> slice_width;  // tile width in pixels; not given, the image's own
    std::optional<std::int32_t> slice_height; // tile height, likewise
    ImageMatrix selector;                     // the frame and bed to show
    Text preference_file;                     // the program's own preference file
    Text program_directory;                   // where the package-wide one is
};

// A hook before anything reads the arguments, for platforms that gather them otherwise. Here it
// leaves them as they are.
void read_command_line(int *argc, char ***argv);

// A hook for platforms whose console needs setting up; it is told whether a batch job runs. Here it
// does nothing.
void sioux_setting(bool batch, std::int32_t option);

// Copies what follows "-p" over `name`, the last one winning. This is looked for before anything is
// printed, because the preferences come before the banner.
void find_preference_override(Arguments arguments, Text &name);

// Fills FnImage, FnImageHdr (the image's own), FnTiff and the maximum from the three positional
// arguments.
void read_positional_arguments(Arguments arguments, RunRequest &request);

// Applies every option, in order, the last one of a kind winning. An argument that begins with "-"
// and no option's letter is passed over.
void read_options(Arguments arguments, RunRequest &request);

// Ends the run with "Illegal FlagScaleBar" where that is neither 0 nor 1.
void validate_flags();

// Prints the usage text on standard output.
void print_usage();

} // namespace velmorant
