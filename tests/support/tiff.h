#pragma once

#include <string>
#include <vector>

namespace test
{

struct Picture {
    int width;
    int height;
    std::vector<int> bytes; // samples of all pixels, row by row
};

// Reads a picture back; fails the test where it is not whole.
Picture read_picture(const std::string &name);

} // namespace test
