#pragma once

#include "app/command_line.h"

namespace velmorant
{

// The way of the data, from the files that the settings name to the picture: palette, header, volume,
// normalisation, montage, TIFF file. Prints the lines about the volume. The volume stays in its file: each
// step reads it as often as it needs, in pieces.
// Fatal: a picture that would take the place of a file that is read, as `check_output` says; and what the
// headers of the steps say, in this order.
void make_picture(const RunRequest &request);

} // namespace velmorant
