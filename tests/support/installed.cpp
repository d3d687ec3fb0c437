#include "tests/support/installed.h"

#include <cstdlib>

namespace test
{

std::string installed(const std::string &command)
{
    setenv("INSTALLED", INSTALLED, 1);
    setenv("TIFFGEN", TIFFGEN, 1);
    return shell("PATH=$INSTALLED/bin:$PATH TMPDIR=$PWD XDG_CONFIG_HOME=$PWD/config; "
                 "export PATH TMPDIR XDG_CONFIG_HOME; " +
                 command);
}

void make_study()
{
    std::vector<float> values(18);
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = static_cast<float>(i);
    }
    write_file("a.hdr", text_header());
    write_file("a.img", stored_floats(values, true));
}

} // namespace test
