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
#include <optional>
#include <sstream>

#include "contracts/detail/rapidjson/ParseJson.h"
#include "tools/dataengine/Failure.h"

namespace dataengine::tool {
namespace {

constexpr char kUnreadable[] = "cannot be read";
constexpr char kUnwritable[] = "cannot be written";

[[noreturn]] void FailSystem(const std::string& path, const char* what) {
    throw Failure(path, std::string(what) + " (" + std::strerror(errno) + ")");
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

/// Returns the device and the number of a regular file; nothing for any other path.
std::optional<std::pair<dev_t, ino_t>> IdentityOf(const std::string& path, int standard) {
    struct stat status = {};
    const int failed = path == kStandard ? fstat(standard, &status) : stat(path.c_str(), &status);
    if (failed != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return std::make_pair(status.st_dev, status.st_ino);
}

/// An input, opened for reading.
class Input {
  public:
    explicit Input(const std::string& path)
        : path_(path),
          file_(path == kStandard ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
        if (file_ < 0) FailSystem(path, kUnreadable);
    }
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;
    ~Input() {
        if (file_ != STDIN_FILENO) close(file_);
    }

    /// Returns the size of a regular file, otherwise 0.
    std::size_t Size() const {
        struct stat status = {};
        const bool isRegular = fstat(file_, &status) == 0 && S_ISREG(status.st_mode);
        return isRegular ? static_cast<std::size_t>(status.st_size) : 0;
    }

    std::size_t Read(char* to, std::size_t size) {
        for (;;) {
            const ssize_t count = read(file_, to, size);
            if (count >= 0) return static_cast<std::size_t>(count);
            if (errno != EINTR) FailSystem(path_, kUnreadable);
        }
    }

  private:
    const std::string& path_;
    int file_;
};

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
        const auto check = [&](const std::string& path, int standard, bool same) {
            if (same || (identity && identity == IdentityOf(path, standard)))
                throw UsageError(*output + ": is the same file as " + path);
        };
        for (const std::string& input : inputs)
            check(input, STDIN_FILENO, input == *output && input != kStandard && !input.empty());
        std::for_each(outputs.begin(), output, [&](const std::string& other) {
            check(other, STDOUT_FILENO, !other.empty() && TargetOf(other) == TargetOf(*output));
        });
    }
}

void ReadFile(const std::string& path, std::string& bytes) {
    Input input(path);
    std::size_t size = 0;
    const std::size_t known = input.Size();
    bytes.resize(known > 0 ? known : 65536);
    while (const std::size_t count = input.Read(&bytes[size], bytes.size() - size)) {
        size += count;
        if (size > INT_MAX) throw Failure(path, "is 2 GiB or larger");
        if (size == known) break;
        if (size == bytes.size()) bytes.resize(2 * size);
    }
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
    const bool cut = !result.IsError() && text.find('\0') != text.npos;
    if (result.IsError() || cut)
        throw Failure(path, "byte " + std::to_string(cut ? text.find('\0') : result.Offset()) +
                                ": is not JSON (" +
                                (cut ? "a zero byte" : rapidjson::GetParseError_En(result.Code())) +
                                ")");
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

std::vector<std::string> ReadLines(const std::string& path) {
    std::vector<std::string> lines;
    std::istringstream stream(ReadFile(path));
    for (std::string line; std::getline(stream, line);)
        if (!line.empty()) lines.push_back(line);
    return lines;
}

Output::Output(const std::string& path, Content content) : path_(path), content_(content) {
    struct stat status = {};
    if (path == kStandard) {
        path_ = "standard output";
        file_ = STDOUT_FILENO;
    } else if (stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode)) {
        Stage();
    } else {
        file_ = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    }
    if (file_ < 0) FailSystem(path_, kUnwritable);
    const bool isTerminal = isatty(file_) == 1;
    isEscaped_ = isTerminal && content != Content::kSafe;
    if (isTerminal && content == Content::kBinary)
        throw UsageError(path_ + ": is a terminal, and the output is binary; use -o FILE");
}

void Output::Stage() {
    target_ = TargetOf(path_);
    temporary_ = target_ + "." + std::to_string(getpid()) + ".tmp";
    file_ = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    struct stat old = {};
    if (file_ >= 0 && stat(target_.c_str(), &old) == 0 && fchmod(file_, old.st_mode & 07777) != 0) {
        unlink(temporary_.c_str());
        FailSystem(path_, kUnwritable);
    }
}

Output::~Output() {
    if (file_ > STDERR_FILENO) close(file_);
    if (!temporary_.empty()) unlink(temporary_.c_str());
}

void Output::Write(std::string_view bytes) {
    const std::string safe = isEscaped_ ? ForTerminal(bytes, content_) : "";
    if (isEscaped_) bytes = safe;
    while (!bytes.empty()) {
        const ssize_t count = write(file_, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EPIPE) {
            std::signal(SIGPIPE, SIG_DFL);
            std::raise(SIGPIPE);
        }
        if (count < 0) FailSystem(path_, kUnwritable);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void Output::Close() {
    if (file_ <= STDERR_FILENO) return;
    const bool synced = temporary_.empty() || fsync(file_) == 0;
    const int file = std::exchange(file_, -1);
    if (close(file) != 0 || !synced) FailSystem(path_, kUnwritable);
}

void Output::Replace() {
    if (temporary_.empty()) return;
    if (rename(temporary_.c_str(), target_.c_str()) != 0) FailSystem(path_, kUnwritable);
    temporary_.clear();
}

void WriteFile(const std::string& path, std::string_view bytes, Content content) {
    Output output(path, content);
    output.Write(bytes);
    Output::Complete(output);
}

}  // namespace dataengine::tool
