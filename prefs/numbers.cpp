#include "prefs/numbers.h"

#include <cstdlib>

namespace velmorant
{

std::int32_t text_to_int32(const char *text)
{
    return static_cast<std::int32_t>(std::strtoll(text, nullptr, 10));
}

float text_to_float(const char *text)
{
    return static_cast<float>(std::strtod(text, nullptr));
}

std::string decimal_text(float value)
{
    return std::to_string(static_cast<double>(value));
}

} // namespace velmorant
