#pragma once

#include <span>
#include <string>

namespace velmorant
{

// Ends the run with "the output would replace " and a file's name, where one of the files to be written
// is, under whatever name, one that is read; and with "the output would replace its own header " and
// the name, where an image and its header would be the same file.
void check_output(std::span<const std::string> written, std::span<const std::string> read);

} // namespace velmorant
