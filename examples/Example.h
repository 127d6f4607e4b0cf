#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

// What the example programs share: they read files, write files, and say in one line what is wrong.
namespace example {

/// One line for the person at the keyboard: what is wrong with which file, and what to do.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

inline std::string readFile(const std::string& path) {
    const File file(std::fopen(path.c_str(), "rb"));
    std::string bytes;
    if (file) {
        char block[65536];
        while (const std::size_t count = std::fread(block, 1, sizeof block, file.get()))
            bytes.append(block, count);
    }
    if (!file || std::ferror(file.get()))
        throw Failure(path + ": can't be read (" + std::strerror(errno) +
                      "); name a file that exists and may be read");
    return bytes;
}

inline void writeFile(const std::string& path, const std::string& bytes) {
    File file(std::fopen(path.c_str(), "wb"));
    const bool written = file &&
                         std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size() &&
                         std::fflush(file.get()) == 0;
    if (!written)
        throw Failure(path + ": can't be written (" + std::strerror(errno) +
                      "); name a place that exists and may be written to");
}

/// A JSON document as rapidjson holds it. Parsed without recursion, however deep the text is.
inline rapidjson::Document parseJson(const std::string& path, const std::string& text) {
    rapidjson::Document document;
    document.Parse<rapidjson::kParseIterativeFlag>(text.data(), text.size());
    if (document.HasParseError())
        throw Failure(path + ": is not JSON at byte " + std::to_string(document.GetErrorOffset()) +
                      " (" + rapidjson::GetParseError_En(document.GetParseError()) +
                      "); correct it there");
    return document;
}

/// The JSON value that a file holds, binary and time values included.
inline vxJson::Value readJson(const std::string& path) {
    const std::string text = readFile(path);
    std::istringstream stream(text);
    vxJson::Value value;
    if (!vxJson::Reader().parse(stream, value, true)) {
        parseJson(path, text);  // says where
        throw Failure(path + ": is not JSON; correct it");
    }
    return value;
}

/// Runs `step`. What it throws comes out as a Failure that opens with `subject`, usually a file,
/// and ends with `advice`.
template <class Step>
auto explain(const std::string& subject, const std::string& advice, Step step) {
    try {
        return step();
    } catch (const Failure&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        throw Failure(subject + ": " + error.what() + "; " + advice);
    }
}

using Arguments = std::vector<std::string>;

/// The main function of an example: `program` takes the arguments and gives the whole output back,
/// so that nothing is printed unless everything went well. Returns the exit status.
template <class Program>
int run(int argc, char** argv, const std::string& usage, std::size_t fewest, std::size_t most,
        Program program) {
    const Arguments arguments(argv + 1, argv + argc);
    if (arguments == Arguments{"--help"}) {
        std::fputs(usage.c_str(), stdout);
        return 0;
    }
    const std::string name = std::string(argv[0]).substr(std::string(argv[0]).rfind('/') + 1);
    try {
        if (arguments.size() < fewest || arguments.size() > most)
            throw Failure("takes " + std::to_string(fewest) +
                          (fewest == most ? "" : " to " + std::to_string(most)) +
                          " arguments; see " + name + " --help");
        const std::string output = program(arguments);
        if (std::fwrite(output.data(), 1, output.size(), stdout) != output.size() ||
            std::fflush(stdout) != 0)
            throw Failure(std::string("can't print: ") + std::strerror(errno));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", name.c_str(), error.what());
        return 1;
    }
}

}  // namespace example
