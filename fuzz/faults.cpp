// Test-only: a library to preload into a program of the package: one operation on files or memory
// fails.
//
//   FAULT="read short 17"   the 17th read transfers half of its bytes
//   FAULT_MARK=FILE         created when the fault happens, so that its absence tells a clean run
//
// Operations: open, read, write, seek, close, allocate. Ways: error; interrupted (EINTR); short,
// for reads and writes. Streams are opened here, standard output included, and transfer their bytes
// through the operations counted here, as libtiff does: what a stream makes of a failure is the C
// library's own doing.

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

enum class Way { None, Error, Interrupted, Short };

struct Fault {
    char operation[16];
    char way[16];
    long number;
};

Fault planned;
long counted;

// How this operation fails. error: what errno becomes in that way of failing.
Way next(const char *operation, int error)
{
    if (planned.number == 0 || std::strcmp(operation, planned.operation) != 0 ||
        ++counted != planned.number) {
        return Way::None;
    }
    if (const char *mark = std::getenv("FAULT_MARK")) {
        syscall(SYS_close, syscall(SYS_openat, AT_FDCWD, mark, O_CREAT | O_WRONLY, 0600));
    }
    const std::string_view way = planned.way;
    if (way == "short") {
        return Way::Short;
    }
    errno = way == "interrupted" ? EINTR : error;
    return way == "interrupted" ? Way::Interrupted : Way::Error;
}

bool fails(const char *operation, int error)
{
    const Way way = next(operation, error);
    return way == Way::Error || way == Way::Interrupted;
}

ssize_t transfer(const char *operation, int error, long call, int file, void *bytes, size_t count)
{
    switch (next(operation, error)) {
    case Way::None:
        return syscall(call, file, bytes, count);
    case Way::Short:
        return syscall(call, file, bytes, (count + 1) / 2);
    default:
        return -1;
    }
}

// The C library's own procedure behind the one of the same name here.
template <class Procedure>
Procedure *behind(Procedure * /*like*/, const char *name)
{
    return reinterpret_cast<Procedure *>(dlsym(RTLD_NEXT, name));
}

} // namespace

// Parameters have names of their own, and some procedures reserved ones.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name,bugprone-reserved-identifier)
// NOLINTBEGIN(cert-dcl37-c,cert-dcl51-cpp)
extern "C" {

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return fails("open", EMFILE)
               ? -1
               : static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

ssize_t read(int file, void *bytes, size_t count)
{
    return transfer("read", EIO, SYS_read, file, bytes, count);
}

ssize_t write(int file, const void *bytes, size_t count)
{
    return transfer("write", ENOSPC, SYS_write, file, const_cast<void *>(bytes), count);
}

off_t lseek(int file, off_t offset, int whence) noexcept
{
    return fails("seek", EINVAL) ? -1 : syscall(SYS_lseek, file, offset, whence);
}

int close(int file)
{
    const bool failed = fails("close", EIO);
    const int failure = errno;
    const auto result = static_cast<int>(syscall(SYS_close, file));
    if (failed) {
        errno = failure;
    }
    return failed ? -1 : result;
}

// An open stream's cookie.
struct Stream {
    FILE *owner = nullptr;
    int file = -1;
    bool unbuffered = false; // read past the stream, as the C library reads its own files
    bool failed = false;     // such a read, which the stream is still to hear of
};

static Stream streams[8];

static Stream &stream_of(void *cookie)
{
    return *static_cast<Stream *>(cookie);
}

static ssize_t read_stream(void *cookie, char *bytes, size_t count)
{
    Stream &stream = stream_of(cookie);
    if (stream.unbuffered) {
        return stream.failed ? -1 : 0;
    }
    return read(stream.file, bytes, count);
}

// As the C library's own files do: a short write goes on, a failed one ends it.
static ssize_t write_stream(void *cookie, const char *bytes, size_t count)
{
    size_t done = 0;
    while (done < count) {
        const ssize_t written = write(stream_of(cookie).file, bytes + done, count - done);
        if (written < 0) {
            break;
        }
        done += static_cast<size_t>(written);
    }
    return static_cast<ssize_t>(done);
}

static int seek_stream(void *cookie, off64_t *offset, int whence)
{
    *offset = lseek(stream_of(cookie).file, *offset, whence);
    return *offset < 0 ? -1 : 0;
}

static int close_stream(void *cookie)
{
    const int file = stream_of(cookie).file;
    stream_of(cookie) = {};
    return file < 0 ? 0 : close(file);
}

static Stream &free_stream()
{
    for (Stream &stream : streams) {
        if (stream.file < 0) {
            return stream;
        }
    }
    std::abort();
}

static FILE *make_stream(Stream &stream, const char *mode)
{
    return fopencookie(&stream, mode, {read_stream, write_stream, seek_stream, close_stream});
}

FILE *fopen(const char *path, const char *mode)
{
    const bool both = std::strchr(mode, '+') != nullptr;
    int flags = both ? O_RDWR : *mode == 'r' ? O_RDONLY : O_WRONLY;
    flags |= *mode == 'r' ? 0 : *mode == 'a' ? O_CREAT | O_APPEND : O_CREAT;
    flags |= *mode != 'w' ? 0 : std::strchr(mode, 'x') != nullptr ? O_EXCL : O_TRUNC;
    // The file is opened when there is memory for its stream.
    Stream &stream = free_stream();
    FILE *made = make_stream(stream, both ? "r+" : *mode == 'r' ? "r" : "w");
    if (made == nullptr) {
        return nullptr;
    }
    stream.file = open(path, flags, 0666);
    if (stream.file < 0) {
        fclose(made);
        return nullptr;
    }
    stream.owner = made;
    return made;
}

static Stream &find_stream(const FILE *file)
{
    for (Stream &stream : streams) {
        if (stream.owner == file) {
            return stream;
        }
    }
    std::abort();
}

int setvbuf(FILE *file, char *buffer, int mode, size_t size) noexcept
{
    find_stream(file).unbuffered = mode == _IONBF;
    return behind(setvbuf, "setvbuf")(file, buffer, mode, size);
}

size_t fread(void *bytes, size_t size, size_t count, FILE *file)
{
    Stream &stream = find_stream(file);
    if (!stream.unbuffered) {
        return behind(fread, "fread")(bytes, size, count, file);
    }
    size_t done = 0;
    while (done < size * count) {
        const ssize_t got =
            read(stream.file, static_cast<char *>(bytes) + done, size * count - done);
        if (got <= 0) {
            stream.failed = got < 0;
            getc(file); // to set the stream's mark of an error or of the file's end
            break;
        }
        done += static_cast<size_t>(got);
    }
    return size == 0 ? 0 : done / size;
}

// What a checked build calls instead.
size_t __fread_chk(void *bytes, size_t /*room*/, size_t size, size_t count, FILE *file)
{
    return fread(bytes, size, count, file);
}

#ifndef SANITIZED
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *block, size_t size);

void *malloc(size_t size)
{
    return fails("allocate", ENOMEM) ? nullptr : __libc_malloc(size);
}

void *calloc(size_t count, size_t size)
{
    return fails("allocate", ENOMEM) ? nullptr : __libc_calloc(count, size);
}

void *realloc(void *block, size_t size)
{
    return fails("allocate", ENOMEM) ? nullptr : __libc_realloc(block, size);
}
#endif

} // extern "C"
// NOLINTEND(cert-dcl37-c,cert-dcl51-cpp)
// NOLINTEND(readability-inconsistent-declaration-parameter-name,bugprone-reserved-identifier)

[[gnu::constructor]] static void plan()
{
    Stream &output = free_stream();
    stdout = make_stream(output, "w");
    output.file = STDOUT_FILENO;
    const char *fault = std::getenv("FAULT");
    Fault asked{};
    int words = 0;
    if (fault != nullptr &&
        std::sscanf(fault, "%15s %15s%n", asked.operation, asked.way, &words) == 2) {
        asked.number = std::strtol(fault + words, nullptr, 10);
        planned = asked;
    }
}
