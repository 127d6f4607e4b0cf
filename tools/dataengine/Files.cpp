#include "tools/dataengine/Files.h"

#include <fcntl.h>
#include <rapidjson/error/en.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "contracts/detail/rapidjson/ParseJson.h"

namespace dataengine::tool {
namespace {

constexpr std::size_t kTooLarge = std::size_t{1} << 31;

[[noreturn]] void FailSystem(const std::string& path, const char* error) {
    throw Failure(path, std::string(error) + " (" + std::strerror(errno) + ")");
}

/// Returns the path that `path` leads to by symbolic links. Its file need not exist.
std::string TargetOf(const std::string& path) {
    std::filesystem::path target = path;
    std::error_code error;
    for (int links = 0; links < 40; ++links) {
        const std::filesystem::path next = std::filesystem::read_symlink(target, error);
        if (error) break;
        target = target.parent_path() / next;  // `next` alone if it is absolute
    }
    return target;
}

/// The file of a path; "-" is the file `standard`.
struct Identity {
    Identity(const std::string& path, const char* standard) {
        exists = stat(path == kStandard ? standard : path.c_str(), &status) == 0;
    }
    struct stat status = {};
    bool exists;
};

}  // namespace

void PrintError(const std::string& error) {
    constexpr std::size_t kLongest = 1000;  // in columns; names may be long
    std::fprintf(stderr, "dataengine: %s\n", Cut(Printable(error), kLongest).c_str());
}

void CheckPaths(std::vector<std::string> inputs, const std::vector<std::string>& outputs) {
    for (const auto& paths : {inputs, outputs})
        if (std::count(paths.begin(), paths.end(), kStandard) > 1)
            throw UsageError("\"-\" can name only one file");
    const std::size_t count = inputs.size();
    for (const std::string& output : outputs) {
        const Identity b(output, "/dev/stdout");
        const bool isNew = !b.exists && !output.empty();
        if (!isNew && !S_ISREG(b.status.st_mode)) continue;  // saves a call for each of many inputs
        for (std::size_t i = isNew ? count : 0; i < inputs.size(); ++i) {
            const std::string& path = inputs[i];
            const Identity a(path, i < count ? "/dev/stdin" : "/dev/stdout");
            if (isNew ? !a.exists && TargetOf(path) == TargetOf(output)
                      : a.exists && a.status.st_dev == b.status.st_dev &&
                            a.status.st_ino == b.status.st_ino)
                throw UsageError(std::string(output).append(": is the same file as ").append(path));
        }
        inputs.push_back(output);
    }
}

void ReadFile(const std::string& path, std::string& bytes) {
    const int file =
        path == kStandard ? dup(STDIN_FILENO) : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status = {};
    std::size_t known = 0;
    if (file >= 0 && fstat(file, &status) == 0 && S_ISREG(status.st_mode))
        known = std::min(static_cast<std::size_t>(status.st_size), kTooLarge);
    bytes.resize(known > 0 ? known : 65536);
    std::size_t size = 0;
    ssize_t count = file;
    while (count >= 0 && (count = read(file, &bytes[size], bytes.size() - size)) > 0) {
        size += static_cast<std::size_t>(count);
        if (size == known || size >= kTooLarge) break;
        if (size == bytes.size()) bytes.resize(2 * size);
    }
    const int error = errno;
    if (file >= 0) close(file);
    errno = error;
    if (count < 0) FailSystem(path, "cannot be read");
    if (size >= kTooLarge) throw Failure(path, "is 2 GiB or larger");
    bytes.resize(size);
}

std::string ReadFile(const std::string& path) {
    std::string bytes;
    ReadFile(path, bytes);
    return bytes;
}

rapidjson::Document ParseJson(const std::string& path, const std::string& text) {
    rapidjson::Document document;
    const rapidjson::ParseResult result = detail::ParseJson<rapidjson::kParseFullPrecisionFlag>(
        text.c_str(), document, document.GetAllocator());
    const std::size_t zero = text.find('\0');
    const auto fail = [&](std::size_t byte, const char* error) {
        throw Failure(path, "byte " + std::to_string(byte) + ": is not JSON (" + error + ")");
    };
    if (result.IsError()) fail(result.Offset(), rapidjson::GetParseError_En(result.Code()));
    if (zero != text.npos) fail(zero, "a zero byte");
    return document;
}

vxJson::Value ReadJson(const std::string& path) {
    try {
        return vxJson::Parse(ReadFile(path), false);
    } catch (const vxJson::Error& error) {
        throw Failure(path, error.what());
    }
}

Output::Output(const std::string& path) : name_(path == kStandard ? "standard output" : path) {
    struct stat old = {};
    const bool exists = stat(path.c_str(), &old) == 0;
    if (path == kStandard) {
        file_ = STDOUT_FILENO;
    } else if (exists && !S_ISREG(old.st_mode)) {
        file_ = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    } else {
        target_ = TargetOf(path);
        temporary_ = target_ + "." + std::to_string(getpid()) + ".tmp";
        file_ = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (file_ >= 0 && exists) fchmod(file_, old.st_mode & 07777);
    }
    if (file_ < 0) FailSystem(name_, "cannot be written");
    isTerminal_ = isatty(file_) == 1;
}

Output::~Output() {
    if (file_ > STDERR_FILENO) close(file_);
    if (!temporary_.empty()) unlink(temporary_.c_str());
}

void Output::Write(std::string_view bytes) {
    std::string safe;
    if (isTerminal_ && content == Content::kBinary)
        throw UsageError(name_ + ": is a terminal, and the output is binary; use -o FILE");
    if (isTerminal_ && content != Content::kSafe) bytes = safe = Printable(bytes, content, '\n');
    while (!bytes.empty()) {
        const ssize_t count = write(file_, bytes.data(), bytes.size());
        if (count < 0 && errno == EPIPE) {
            std::signal(SIGPIPE, SIG_DFL);
            std::raise(SIGPIPE);
        }
        if (count < 0) FailSystem(name_, "cannot be written");
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void Output::Complete() {
    Flush();
    if (file_ <= STDERR_FILENO) return;
    const bool isStored = temporary_.empty() || fsync(file_) == 0;
    if (close(std::exchange(file_, -1)) != 0 || !isStored) FailSystem(name_, "cannot be written");
    if (temporary_.empty()) return;
    if (rename(temporary_.c_str(), target_.c_str()) != 0) FailSystem(name_, "cannot be written");
    temporary_.clear();
}

void Output::Report(const std::string& error) {
    Flush();
    PrintError(error);
    status = 1;
}

}  // namespace dataengine::tool
