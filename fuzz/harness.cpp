#include "fuzz/harness.h"

#include "prefs/end_run.h"
#include "prefs/process_guard.h"
#include "prefs/settings.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

// The linker leads what the package calls as malloc and calloc here: it runs in a process without
// room for blocks of more than 2 MiB. The fuzzer has all the memory that it needs.
static constexpr std::size_t LargestBlock = 2U << 20U;

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
extern "C" {
void *__real_malloc(std::size_t size);
void *__real_calloc(std::size_t count, std::size_t size);
void *__wrap_malloc(std::size_t size);
void *__wrap_calloc(std::size_t count, std::size_t size);

void *__wrap_malloc(std::size_t size)
{
    return size > LargestBlock ? nullptr : __real_malloc(size);
}

void *__wrap_calloc(std::size_t count, std::size_t size)
{
    return size != 0 && count > LargestBlock / size ? nullptr : __real_calloc(count, size);
}
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)

namespace velmorant
{

void end_run(int /*status*/)
{
    throw fuzz::EndOfRun();
}

void abort_run()
{
    throw fuzz::EndOfRun();
}

} // namespace velmorant

namespace fuzz
{

namespace
{

// The working directory for as long as the process lives: in memory, where there is such a place.
// What the package prints goes nowhere.
struct OwnFolder {
    OwnFolder()
    {
        const char *parent = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
        path = std::string(parent) + "/fuzz-XXXXXX";
        require(mkdtemp(path.data()) != nullptr && chdir(path.c_str()) == 0, "a folder");
        require(std::freopen("/dev/null", "w", stdout) != nullptr, "no output");
        // Some formats hold planes without a pixel, millions of them.
        const rlimit limit{.rlim_cur = 256U << 10U, .rlim_max = RLIM_INFINITY};
        require(setrlimit(RLIMIT_FSIZE, &limit) == 0, "a limit of files");
        velmorant::guard_process();
    }
    ~OwnFolder()
    {
        std::error_code not_removed;
        std::filesystem::remove_all(path, not_removed);
    }
    OwnFolder(const OwnFolder &) = delete;
    OwnFolder &operator=(const OwnFolder &) = delete;

    std::string path;
};

} // namespace

static void enter_own_folder()
{
    static const OwnFolder folder;
}

InputFile::InputFile(const char *name)
{
    enter_own_folder();
    descriptor = open(name, O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    require(descriptor >= 0, name);
}

void InputFile::write(std::string_view bytes) const
{
    const auto size = static_cast<ssize_t>(bytes.size());
    require(ftruncate(descriptor, 0) == 0 &&
                pwrite(descriptor, bytes.data(), bytes.size(), 0) == size,
            "an input file");
}

void begin_run()
{
    enter_own_folder();
    using namespace velmorant;
    INT_Global = 1000.0F;
    INT_NormSet = {.peak_threshold = 0.999F, .lower_threshold = 0.4F, .bin_count = 1024};
    INT_MaxPixelValue = 32700;
    INT_OutOfFieldValue = -1e10F;
    INT_OutOfFieldCheck = -10000.0F;
    NumColumn = 3;
    ScaleLength = 0.5F;
    ScaleWidth = 2;
    MinPixel = 0.0F;
    FlagScaleBar = 1;
    FlagGray = 0;
    for (Text *text : {&FileFormat, &FnPalette, &FnImage, &FnImageHdr, &FnTiff}) {
        *text = {};
    }
}

std::size_t header_length(std::string_view input)
{
    const std::size_t end = input.find("END OF HEADER");
    const std::size_t line_end = end == std::string_view::npos ? end : input.find('\n', end);
    return line_end == std::string_view::npos ? input.size() : line_end + 1;
}

void require(bool holds, const char *what)
{
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

} // namespace fuzz
