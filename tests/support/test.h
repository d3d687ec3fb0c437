#pragma once

// What nearly every test uses.

// IWYU pragma: begin_exports
#include "tests/support/ecat_file.h"
#include "tests/support/files.h"
#include "tests/support/process.h"
#include "tests/support/raw_study.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <utility>
#include <vector>
// IWYU pragma: end_exports

namespace test
{

inline constexpr float Infinity = std::numeric_limits<float>::infinity();
inline constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();

} // namespace test
