#pragma once

#include <array>
#include <string_view>

namespace velmorant
{

// The output format as the caller of a writer sets it.
struct FormatSetting {
    std::array<char, 256> keyword; // one of those in image/format_dispatch.h, and a zero after it
    // How many units of signed 16-bit raw data stand for 1.0; 0: the buffer's own extreme becomes
    // 32700.
    float quantisation;
};

// The setting for a keyword. A keyword of more than 255 characters, which names no format, is cut.
FormatSetting create_format_setting(std::string_view keyword, float quantisation = 0.0F);

// The keyword up to its zero.
std::string_view format_keyword(const FormatSetting &settings);

} // namespace velmorant
