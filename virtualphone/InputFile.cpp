#include "virtualphone/InputFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace virtualphone {

namespace {

FileContent Failure(const std::string& error) {
    return {.bytes = {}, .error = error, .unreadable = false};
}

FileContent SystemFailure() {
    return {.bytes = {}, .error = std::generic_category().message(errno), .unreadable = true};
}

/// An open file, closed at the end.
class Descriptor {
  public:
    explicit Descriptor(int number) : mNumber(number) {}
    ~Descriptor() {
        if (mNumber > STDIN_FILENO) {
            close(mNumber);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int number() const { return mNumber; }

  private:
    int mNumber;
};

/// Waits until more can be read or the writers are gone.
void WaitForMore(int number) {
    pollfd waiting{.fd = number, .events = POLLIN, .revents = 0};
    poll(&waiting, 1, -1);
}

FileContent ReadAll(int number, const struct stat& status) {
    FileContent content;
    // One byte more than the file has, so that its end shows without growing.
    std::size_t room = S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) + 1 : 65536;
    for (std::size_t size = 0;;) {
        content.bytes.resize(std::min(room, kLargestFile + 1));
        const ssize_t count = read(number, content.bytes.data() + size, content.bytes.size() - size);
        if (count > 0) {
            size += static_cast<std::size_t>(count);
            room = size == content.bytes.size() ? 2 * size : room;
            if (size > kLargestFile) {
                return Failure("more than " + std::to_string(kLargestFile) + " bytes");
            }
        } else if (count == 0) {
            content.bytes.resize(size);
            return content;
        } else if (errno == EAGAIN) {
            WaitForMore(number);
        } else if (errno != EINTR) {
            return SystemFailure();
        }
    }
}

FileContent ReadOpened(const Descriptor& file, bool regularOnly) {
    struct stat status = {};
    if (file.number() < 0 || fstat(file.number(), &status) != 0) {
        return SystemFailure();
    }
    if (S_ISDIR(status.st_mode)) {
        return Failure("a folder");
    }
    if (regularOnly && !S_ISREG(status.st_mode)) {
        return Failure("neither a file nor a folder");
    }
    if (S_ISREG(status.st_mode) && static_cast<std::size_t>(status.st_size) > kLargestFile) {
        return Failure("more than " + std::to_string(kLargestFile) + " bytes");
    }
    FileContent content = ReadAll(file.number(), status);
    if (content.error.empty() && content.bytes.empty() && S_ISFIFO(status.st_mode) &&
        file.number() != STDIN_FILENO) {
        return Failure("a pipe that nobody writes to");
    }
    return content;
}

/// Opens without waiting for a writer.
int Open(const std::filesystem::path& path) {
    return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
}

}  // namespace

FileContent ReadWholeFile(const std::filesystem::path& path, bool regularOnly) {
    return ReadOpened(Descriptor(Open(path)), regularOnly);
}

FileContent ReadInput(const std::filesystem::path& path) {
    return ReadOpened(Descriptor(path == "-" ? STDIN_FILENO : Open(path)), /*regularOnly=*/false);
}

std::string InputName(const std::filesystem::path& path) {
    return path == "-" ? "standard input" : path.string();
}

}  // namespace virtualphone
