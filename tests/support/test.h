#pragma once

// What nearly every test uses. Each test has an empty working directory of its own.

#include "image/image_header.h"

// IWYU pragma: begin_exports
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>
// IWYU pragma: end_exports

namespace test
{

inline constexpr float Infinity = std::numeric_limits<float>::infinity();
inline constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();

void write_file(const std::string &name, const std::string &bytes);
// Fails the test where the file can't be read.
std::string read_file(const std::string &name);

// How a process ended and what it printed.
struct Outcome {
    int status; // exit status, or 128 + the signal that ended it
    std::string out;
    std::string err;
    long peak_kib; // its largest resident memory
};

// Runs a program by its path with the given first word (argv[0]) and arguments.
Outcome run_program(const std::string &path, const std::vector<std::string> &words);

// "status S: OUT", with what appears on standard error in front.
std::string summary(const Outcome &outcome);

// The summary of a shell that runs a command.
std::string shell(const std::string &command);

// Ends a test that needs a program which isn't there.
#define SKIP_WITHOUT(program)                                                                      \
    if (test::shell("command -v " program " >/dev/null") != "status 0: ") {                        \
        GTEST_SKIP() << "there is no " program;                                                    \
    }

// Shell prefix: file permissions apply to the command even for root.
inline const std::string BoundByRights =
    "$(test $(id -u) != 0 || echo setpriv --bounding-set -dac_override) ";

// The summary of a procedure run in a process of its own; where it returns, the status is 77.
std::string ending(const std::function<void()> &procedure);

// The text header of a raw image of 3 x 2 x 3 big-endian floats in the standard orientation, with
// pixels of 2 x 2 x 4 mm. `changes` are more lines; a later line replaces an earlier one's value.
std::string text_header(const std::string &changes = "");

// The low `bytes` bytes of each value, most significant first where `big`.
std::string stored_integers(const std::vector<std::int64_t> &values, int bytes, bool big);
// Single-precision floats.
std::string stored_floats(const std::vector<float> &values, bool big);

// The seventeen fields of a header, to compare it whole.
inline auto fields(const velmorant::ImageHeader &header)
{
    return std::bit_cast<std::array<std::int32_t, 17>>(header);
}

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
