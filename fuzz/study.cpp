#include "fuzz/study.h"

#include "app/make_picture.h"
#include "app/parse_args.h"
#include "fuzz/harness.h"
#include "prefs/settings.h"
#include "prefs/text.h"

#include <algorithm>
#include <array>

namespace fuzz
{

std::string take_options(std::string_view &input)
{
    if (!input.starts_with('-')) {
        return "";
    }
    const std::string_view line = input.substr(0, input.find('\n'));
    input.remove_prefix(std::min(line.size() + 1, input.size()));
    return std::string(line);
}

void make_picture_of(const char *image, const char *keyword, const std::string &options)
{
    using namespace velmorant;
    static const InputFile palette("palette");
    static const bool written = (palette.write(std::string(768, 'p')), true);
    require(written, "a palette");
    copy_text_or_abort(FnPalette, "palette");
    copy_text_or_abort(FnImage, image);
    copy_text_or_abort(FnImageHdr, image);
    copy_text_or_abort(FnTiff, "/dev/null");
    copy_text_or_abort(FileFormat, keyword);
    RunRequest request{};
    create_standard_image_matrix(request.selector);
    std::array<char *, MostParsedArguments + 1> words{};
    const auto end = static_cast<std::size_t>(parse_args(options.c_str(), words));
    read_options(Arguments(words).first(end).subspan(1), request);
    make_picture(request);
}

} // namespace fuzz
