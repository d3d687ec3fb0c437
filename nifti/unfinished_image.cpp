#include "nifti/unfinished_image.h"

#include "image/raw_header.h"
#include "prefs/error_report.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmorant
{

// What to remove when the process ends: an empty name stands for none. A signal may come at any
// time, so that no string object will do.
static std::array<char, 4096> UnfinishedData;
static std::array<char, 4096> UnfinishedHeader;

static constexpr std::array EndingSignals{SIGHUP, SIGINT, SIGTERM};

// Keeps the signals waiting while what is in the folder and what is known of it differ.
class HeldSignals
{
public:
    HeldSignals()
    {
        sigset_t held;
        sigemptyset(&held);
        for (const int number : EndingSignals) {
            sigaddset(&held, number);
        }
        sigprocmask(SIG_BLOCK, &held, &before);
    }
    ~HeldSignals()
    {
        sigprocmask(SIG_SETMASK, &before, nullptr);
    }
    HeldSignals(const HeldSignals &) = delete;
    HeldSignals &operator=(const HeldSignals &) = delete;

private:
    sigset_t before{};
};

static void remove_unfinished()
{
    for (auto *name : {&UnfinishedData, &UnfinishedHeader}) {
        if (name->front() != '\0') {
            unlink(name->data());
            name->front() = '\0';
        }
    }
}

static void end_by_signal(int number)
{
    remove_unfinished();
    signal(number, SIG_DFL);
    raise(number);
}

static void watch_for_the_end()
{
    static const bool watched = std::atexit(remove_unfinished) == 0;
    if (!watched) {
        print_error_message(1, "can't allocate memory");
    }
    for (const int number : EndingSignals) {
        if (signal(number, end_by_signal) == SIG_IGN) {
            signal(number, SIG_IGN); // as whoever started the program wants it
        }
    }
}

// A new file, with the permissions that any program's has. pattern: the name, "XXXXXX" in it. It is
// kept in `name` with the end of the process in view.
static FileHandle create_file(const std::string &pattern, int suffix, const std::string &path,
                              std::array<char, 4096> &name)
{
    const HeldSignals held;
    std::array<char, 4096> made{};
    const bool fits = pattern.size() < made.size();
    pattern.copy(made.data(), made.size() - 1);
    const int descriptor = fits ? mkstemps(made.data(), suffix) : -1;
    FileHandle file(descriptor < 0 ? nullptr : fdopen(descriptor, "w+b"));
    if (file == nullptr) {
        print_error_message(2, "can't open ", path.c_str());
    }
    name = made;
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(descriptor, 0666 & ~mask);
    return file;
}

std::string header_path(const std::string &image)
{
    const std::size_t slash = image.rfind('/');
    const std::size_t begin = slash == std::string::npos ? 0 : slash + 1;
    const std::size_t dot = image.rfind('.');
    if (dot == std::string::npos || dot <= begin || image.substr(dot) == ".hdr") {
        return "";
    }
    return image.substr(0, dot) + ".hdr";
}

static std::string folder_of(const std::string &path)
{
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    return folder.empty() ? "./" : folder;
}

UnfinishedImage::UnfinishedImage(std::string image) : path(std::move(image))
{
    watch_for_the_end();
    const std::string begin = folder_of(path) + ".nifti-to-raw.XXXXXX";
    data_file = create_file(begin + ".img", 4, path, UnfinishedData);
    header_file = create_file(begin + ".hdr", 4, path, UnfinishedHeader);
}

UnfinishedImage::~UnfinishedImage()
{
    remove_unfinished();
}

static void put_in_place(std::array<char, 4096> &name, const std::string &path)
{
    if (std::rename(name.data(), path.c_str()) != 0) {
        print_error_message(2, "can't write ", path.c_str());
    }
    name.front() = '\0';
}

// Keeps other runs with the same folder waiting, where its file system has such locks.
class FolderLock
{
public:
    explicit FolderLock(const std::string &folder)
        : descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        flock(descriptor, LOCK_EX);
    }
    ~FolderLock()
    {
        close(descriptor);
    }
    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;

private:
    int descriptor;
};

void UnfinishedImage::finish(const ImageHeader &header, StoredType type)
{
    const std::string header_name = header_path(path);
    close_written(std::move(data_file), path.c_str());
    print_text_header(header_file.get(), header, type, HeaderEnd::BeforeData);
    close_written(std::move(header_file), header_name.c_str());

    const HeldSignals held;
    const FolderLock lock(folder_of(path));
    if (unlink(header_name.c_str()) != 0 && errno != ENOENT) {
        print_error_message(2, "can't write ", header_name.c_str());
    }
    put_in_place(UnfinishedData, path);
    put_in_place(UnfinishedHeader, header_name);
}

} // namespace velmorant
