#include "image/format_setting.h"

#include <algorithm>

namespace velmorant
{

FormatSetting create_format_setting(std::string_view keyword, float quantisation)
{
    FormatSetting settings{.keyword = {}, .quantisation = quantisation};
    std::ranges::copy(keyword.substr(0, settings.keyword.size() - 1), settings.keyword.begin());
    return settings;
}

std::string_view format_keyword(const FormatSetting &settings)
{
    const std::string_view whole(settings.keyword.data(), settings.keyword.size());
    return whole.substr(0, whole.find('\0'));
}

} // namespace velmorant
