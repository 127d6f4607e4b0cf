#include "tools/dataengine/Files.h"

#include <fcntl.h>
#include <rapidjson/error/en.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <sstream>

#include "tools/dataengine/Failure.h"

namespace tool {
namespace {

constexpr char kUnreadable[] = "cannot be read";
constexpr char kUnwritable[] = "cannot be written";

[[noreturn]] void FailSystem(const std::string& path, const char* what) {
    throw Failure(path, std::string(what) + " (" + std::strerror(errno) + ")");
}

/// A file descriptor that is closed at the end of its scope, unless it is a standard one.
class Descriptor {
  public:
    /// Opens `path`, or uses the descriptor `standard` for "-".
    Descriptor(const std::string& path, int flags, int standard)
        : number_(path == kStandard ? standard : open(path.c_str(), flags | O_CLOEXEC, 0666)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { Close(); }

    int Number() const { return number_; }
    bool Close() {
        const int number = std::exchange(number_, -1);
        return number <= STDERR_FILENO || close(number) == 0;
    }

  private:
    int number_;
};

void WriteAll(const Descriptor& file, const std::string& path, std::string_view remaining) {
    while (!remaining.empty()) {
        const ssize_t count = write(file.Number(), remaining.data(), remaining.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EPIPE) {
            std::signal(SIGPIPE, SIG_DFL);
            std::raise(SIGPIPE);
        }
        if (count < 0) FailSystem(path, kUnwritable);
        remaining.remove_prefix(static_cast<std::size_t>(count));
    }
}

/// Returns the file that `path` refers to, so that a symbolic link is kept and its target replaced.
std::string TargetOf(const std::string& path) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(path, error);
    return error ? path : target.string();
}

/// A file under a temporary name in the folder of its target. The destructor removes it unless it
/// has been renamed.
class StagedFile {
  public:
    explicit StagedFile(const std::string& path)
        : path_(path),
          target_(TargetOf(path)),
          temporary_(target_ + "." + std::to_string(getpid()) + ".tmp"),
          file_(temporary_, O_WRONLY | O_CREAT | O_EXCL, -1) {
        if (file_.Number() < 0) FailSystem(path_, kUnwritable);
    }
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;
    ~StagedFile() {
        if (!temporary_.empty()) unlink(temporary_.c_str());
    }

    void Write(const std::string& bytes) {
        struct stat old = {};
        const bool replaces = stat(target_.c_str(), &old) == 0;
        if (replaces && fchmod(file_.Number(), old.st_mode & 07777) != 0)
            FailSystem(path_, kUnwritable);
        WriteAll(file_, path_, bytes);
        if (fsync(file_.Number()) != 0 || !file_.Close()) FailSystem(path_, kUnwritable);
    }

    void Rename() {
        if (rename(temporary_.c_str(), target_.c_str()) != 0) FailSystem(path_, kUnwritable);
        temporary_.clear();
    }

  private:
    std::string path_;
    std::string target_;
    std::string temporary_;
    Descriptor file_;
};

/// Returns the device and the number of a regular file; nothing for any other path.
std::optional<std::pair<dev_t, ino_t>> IdentityOf(const std::string& path, int standard) {
    struct stat status = {};
    const int failed = path == kStandard ? fstat(standard, &status) : stat(path.c_str(), &status);
    if (failed != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return std::make_pair(status.st_dev, status.st_ino);
}

bool IsReplaceable(const std::string& path) {
    struct stat status = {};
    return path != kStandard && (stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode));
}

}  // namespace

bool IsFile(const std::string& path) {
    return path == kStandard || std::filesystem::exists(path);
}

void CheckPaths(const std::vector<std::string>& inputs, const std::vector<std::string>& outputs) {
    for (const auto& paths : {inputs, outputs}) {
        if (std::count(paths.begin(), paths.end(), kStandard) > 1)
            throw UsageError("\"-\" can name only one file");
    }
    for (auto output = outputs.begin(); output != outputs.end(); ++output) {
        const auto identity = IdentityOf(*output, STDOUT_FILENO);
        const auto check = [&](const std::string& path, int standard) {
            const bool same = path == *output && path != kStandard && !path.empty();
            if (same || (identity && identity == IdentityOf(path, standard)))
                throw UsageError(*output + ": is the same file as " + path);
        };
        for (const std::string& input : inputs) check(input, STDIN_FILENO);
        std::for_each(outputs.begin(), output,
                      [&](const std::string& other) { check(other, STDOUT_FILENO); });
    }
}

std::string ReadFile(const std::string& path) {
    const Descriptor file(path, O_RDONLY, STDIN_FILENO);
    if (file.Number() < 0) FailSystem(path, kUnreadable);
    std::string bytes;
    const auto block = std::make_unique<char[]>(65536);
    for (;;) {
        const ssize_t count = read(file.Number(), block.get(), 65536);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) FailSystem(path, kUnreadable);
        if (count == 0) return bytes;
        bytes.append(block.get(), static_cast<std::size_t>(count));
        if (bytes.size() > INT_MAX) throw Failure(path, "is 2 GiB or larger");
    }
}

rapidjson::Document ParseJson(const std::string& path, const std::string& text) {
    rapidjson::Document document;
    document.Parse<rapidjson::kParseIterativeFlag>(text.data(), text.size());
    if (document.HasParseError())
        throw Failure(path, "byte " + std::to_string(document.GetErrorOffset()) +
                                ": is not JSON (" +
                                rapidjson::GetParseError_En(document.GetParseError()) + ")");
    return document;
}

vxJson::Value ReadJson(const std::string& path) {
    const std::string text = ReadFile(path);
    std::istringstream stream(text);
    vxJson::Value value;
    if (!vxJson::Reader().parse(stream, value, false)) {
        ParseJson(path, text);  // reports the byte
        throw Failure(path, "is not JSON");
    }
    return value;
}

void WriteFiles(const std::vector<FileContent>& files) {
    std::vector<std::unique_ptr<StagedFile>> staged;
    for (const FileContent& file : files) {
        if (!IsReplaceable(file.path)) continue;
        staged.push_back(std::make_unique<StagedFile>(file.path));
        staged.back()->Write(file.bytes);
    }
    for (const FileContent& file : files) {
        if (IsReplaceable(file.path)) continue;
        Descriptor output(file.path, O_WRONLY, STDOUT_FILENO);
        if (output.Number() < 0) FailSystem(file.path, kUnwritable);
        WriteAll(output, file.path == kStandard ? "standard output" : file.path, file.bytes);
        if (!output.Close()) FailSystem(file.path, kUnwritable);
    }
    for (const auto& file : staged) file->Rename();
}

}  // namespace tool
