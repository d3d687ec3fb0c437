#pragma once

#include <string>
#include <string_view>

namespace fuzz
{

// Takes the options of a run from an input: the rest of the first line where that begins with "-".
std::string take_options(std::string_view &input);

// Makes the picture of a study, where nothing keeps it: of the first frame and bed, in colour and
// with its bar, where the options don't say otherwise.
void make_picture_of(const char *image, const char *keyword, const std::string &options);

} // namespace fuzz
