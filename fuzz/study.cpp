#include "fuzz/study.h"

#include "app/make_picture.h"
#include "fuzz/harness.h"
#include "prefs/settings.h"
#include "prefs/text.h"

namespace fuzz
{

void make_picture_of(const char *image, const char *keyword)
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
    make_picture(request);
}

} // namespace fuzz
