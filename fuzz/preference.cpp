// A preference file: what it has is looked up, and what it lacks is appended.

#include "fuzz/harness.h"
#include "prefs/preference_file.h"
#include "prefs/preference_sets.h"
#include "prefs/settings.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const fuzz::InputFile preferences("p.prf");
    preferences.write(fuzz::as_text(data, size));
    return fuzz::make_run([] {
        using namespace velmorant;
        read_local_preference("p.prf");
        preference_short_int_strings("p.prf", "Maximum Pixel Value in Short Integer", 32700);
        fuzz::require(FnPalette.back() == '\0', "texts that end");
    });
}
