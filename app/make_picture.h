#pragma once

#include "app/command_line.h"

namespace velmorant
{

// The way of the data, from the files that the settings name to the picture: palette, header,
// volume, normalisation, montage, TIFF file. Prints the lines about the volume. Every step reads
// the volume from its file, in pieces.
// Fatal: a picture that would replace a file that is read, as `check_output` says; and what the
// headers of the steps list, in the order of the steps.
void make_picture(const RunRequest &request);

} // namespace velmorant
