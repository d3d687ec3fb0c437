#include "tests/support/raw_study.h"

namespace test
{

std::string text_header(const std::string &changes)
{
    return "!data offset in bytes :=0\n!imagedata byte order :=BIGENDIAN\n!matrix size [1] :=3\n"
           "!matrix size [2] :=2\n!data format :=3\nscaling factor (mm/pixel) [1] :=2.0\n"
           "scaling factor (mm/pixel) [2] :=2.0\n!pixel scaling value :=32700.0\n"
           "!number of slices :=3\n!slice thickness (mm/pixel) :=4.0\n"
           "!the right brain on the left   :=1\n!the anterior to the posterior :=1\n"
           "!the superior to the inferior  :=1\n" +
           changes;
}

std::string stored_integers(const std::vector<std::int64_t> &values, int bytes, bool big)
{
    std::string stored;
    for (const std::int64_t value : values) {
        for (int i = 0; i < bytes; ++i) {
            const int shift = 8 * (big ? bytes - 1 - i : i);
            stored += static_cast<char>(value >> shift & 0xFF);
        }
    }
    return stored;
}

std::string stored_floats(const std::vector<float> &values, bool big)
{
    std::vector<std::int64_t> bits;
    bits.reserve(values.size());
    for (const float value : values) {
        bits.push_back(std::bit_cast<std::int32_t>(value));
    }
    return stored_integers(bits, 4, big);
}

} // namespace test
