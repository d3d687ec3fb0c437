#pragma once

#include "app/command_line.h"

namespace velmorant
{

// The way of the data, from the files that the settings name to the picture: palette, header,
// volume, normalisation, montage, TIFF file. Prints the lines about the volume. The picture's size
// is looked at before the volume is allocated and read, so that a wrong header costs neither memory
// nor time. A picture that would take the place of a file that is read ends the run as
// `check_output` says; what else ends it is told by the headers of the steps.
void make_picture(const RunRequest &request);

} // namespace velmorant
