#include "app/banner.h"

#include <cstdio>

namespace velmorant
{

void print_banner()
{
    std::printf("\n%s (Version %3.1f)\n", "TIFF FILE GENERATOR", 3.1);
    std::printf("%s\n%s\n%s\n%s\n%s\n", "Velmorant tomographic brain image analysis",
                "by Orlavesk Tarn and the Velmorant developers", "Hollin Centre",
                "Free software under the MIT licence", "For research, not for diagnosis");
    std::putchar('\n');
}

} // namespace velmorant
