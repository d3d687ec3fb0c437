#include <image/format_dispatch.h>

int main(int argc, char **argv)
{
    velmorant::ImageHeader header{};
    velmorant::create_standard_image_header(header);
    if (argc == 3) {
        velmorant::read_header(argv[2], header, argv[1]);
    }
    velmorant::print_image_matrix_size(header);
}
