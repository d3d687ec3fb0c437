// copy_study IMAGE OFFSET BYTES PICTURE PICTURE_BYTES: the least that any program has to do which
// turns a volume into a picture with the same library. Starts with it, reads the volume's bytes and
// writes as many as the picture has, in pieces that stay in the cache.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <tiffio.h>
#include <unistd.h>

// Moves so many bytes by `move`, which takes a piece and how much of it there is to move, and returns
// how much it has moved.
template <class Move>
static void move_bytes(long long bytes, const char *what, Move move)
{
    static std::array<char, 65536> piece;
    while (bytes > 0) {
        const auto wanted = std::min(bytes, static_cast<long long>(piece.size()));
        const ssize_t moved = move(piece.data(), static_cast<std::size_t>(wanted));
        if (moved <= 0) {
            std::perror(what);
            std::exit(2);
        }
        bytes -= moved;
    }
}

int main(int argc, char **argv)
{
    if (argc != 6 || TIFFGetVersion() == nullptr) {
        std::fputs("Usage: copy_study IMAGE OFFSET BYTES PICTURE PICTURE_BYTES\n", stderr);
        return 2;
    }
    const int image = open(argv[1], O_RDONLY | O_CLOEXEC);
    const int picture = open(argv[4], O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    lseek(image, std::stoll(argv[2]), SEEK_SET);
    move_bytes(std::stoll(argv[3]), "copy_study: read",
               [&](char *piece, std::size_t bytes) { return read(image, piece, bytes); });
    move_bytes(std::stoll(argv[5]), "copy_study: write",
               [&](const char *piece, std::size_t bytes) { return write(picture, piece, bytes); });
    return close(picture) == 0 ? 0 : 2;
}
