#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace test
{

// An ECAT 6 file in memory: blocks of 512 bytes, counted from 1, zero where nothing was put.
class EcatFile
{
public:
    // Puts bytes, or little-endian 16-bit or 32-bit numbers, from a byte of a block on.
    void put(int block, int byte, const std::string &stored);
    void put16(int block, int byte, const std::vector<std::int64_t> &values);
    void put32(int block, int byte, const std::vector<std::int64_t> &values);

    std::string bytes;
};

// A study of 2 frames at 2 bed positions, 3 planes of 20 x 26 pixels each. A plane has two blocks of
// data, which are short of its last eight pixels. Pixels of 2 mm, planes 3.375 mm apart.
EcatFile small_ecat_study();

// Where the subheader of one of its planes is (frame and plane from 1, bed from 0): the file is
// filled from its end.
int small_ecat_block(int frame, int plane, int bed);

// The values of the planes, 520 each, from this one to the bed's last.
std::vector<float> small_ecat_planes(int frame, int plane, int bed);

} // namespace test
