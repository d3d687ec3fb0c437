#pragma once

#include <string>

namespace fuzz
{

// Makes the picture of a study's first frame and bed, in colour and with its bar, where nothing
// keeps it.
void make_picture_of(const char *image, const char *keyword);

} // namespace fuzz
