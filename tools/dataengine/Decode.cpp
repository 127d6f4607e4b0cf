// Decodes the selected values of any number of frames, renames them if asked to, and prints them.
#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "structure/CDEStructureDataHelper.h"
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"
#include "tools/dataengine/Formats.h"
#include "tools/dataengine/Frames.h"
#include "tools/dataengine/Mapping.h"

namespace dataengine::tool {
namespace {

/// Ends the work of a thread after another one has failed.
struct Stopped {};

/// The work that threads share. They take batches of frames and write their output in this order: a
/// thread keeps its text until its turn has come or the text is large, and then waits.
class Work {
  public:
    Work(const Options& given, std::vector<std::string> paths)
        : options(given),
          frames(std::move(paths)),
          screen(Screen::Of(given)),
          output_(given.output, ContentOf(given.format)) {
        if (!options.offsets.empty()) offsets = ReadOffsets(options.offsets);
        if (!options.map.empty()) map = ReadJson(options.map);
    }

    bool Take(std::size_t& batch) { return (batch = next_++) * kBatch < frames.size(); }
    auto Begin(std::size_t batch) const { return frames.begin() + Position(batch); }
    auto End(std::size_t batch) const { return frames.begin() + Position(batch + 1); }

    void Write(std::size_t batch, std::string_view text) {
        Await(batch);
        output_.Write(text);
    }

    /// Writes the header of CSV once. Throws Failure if it is not that of the frames before.
    void WriteHeader(std::size_t batch, const std::string& frame, const std::string& header) {
        {
            const std::lock_guard lock(mutex_);
            if (!header_.empty()) return CheckHeader(frame, header);
        }
        Await(batch);
        if (!header_.empty()) return CheckHeader(frame, header);
        const std::lock_guard lock(mutex_);
        first_ = frame;
        header_ = header;
        output_.Write(header);
    }

    /// Reports errors, and lets the next batch be written.
    void Finish(std::size_t batch, const std::vector<std::string>& errors) {
        Await(batch);
        for (const std::string& error : errors) PrintError(error);
        const std::lock_guard lock(mutex_);
        if (!errors.empty()) status_ = 1;
        ++turn_;
        changed_.notify_all();
    }

    /// Ends the work with the current exception.
    void Stop() {
        const std::lock_guard lock(mutex_);
        if (failure_ == nullptr) failure_ = std::current_exception();
        changed_.notify_all();
    }

    /// Completes the output and returns the exit status.
    int Complete() {
        if (failure_ != nullptr) std::rethrow_exception(failure_);
        Output::Complete(output_);
        return status_;
    }

    const Options& options;
    const std::vector<std::string> frames;
    const Screen screen;
    vxJson::Value offsets;
    vxJson::Value map;

  private:
    static constexpr std::size_t kBatch = 8;

    static Content ContentOf(const std::string& format) {
        return format == "table" ? Content::kSafe
               : format == "csv" ? Content::kText
                                 : Content::kJson;
    }
    std::ptrdiff_t Position(std::size_t batch) const {
        return static_cast<std::ptrdiff_t>(std::min(batch * kBatch, frames.size()));
    }
    /// Waits for the turn of a batch.
    void Await(std::size_t batch) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return turn_ == batch || failure_ != nullptr; });
        if (failure_ != nullptr) throw Stopped();
    }
    void CheckHeader(const std::string& frame, const std::string& header) const {
        if (header != header_) throw Failure(frame, "has other columns than " + first_);
    }

    Output output_;
    std::atomic<std::size_t> next_ = 0;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t turn_ = 0;  // the batch that may be written
    std::exception_ptr failure_;
    std::string header_;  // of CSV; empty until the first frame
    std::string first_;   // the frame that has it
    int status_ = 0;
};

/// Decodes frames, one after the other, on one thread.
class Worker {
  public:
    explicit Worker(Work& work)
        : work_(work), sink_([this](std::string_view text) { work_.Write(batch_, text); }) {}

    void Run() {
        try {
            while (work_.Take(batch_)) {
                errors_.clear();
                std::for_each(work_.Begin(batch_), work_.End(batch_),
                              [this](const std::string& path) { Decode(path); });
                sink_.Flush();
                work_.Finish(batch_, errors_);
            }
        } catch (const Stopped&) {
            // The failure is reported by the thread that failed.
        } catch (...) {
            work_.Stop();
        }
    }

  private:
    void Decode(const std::string& path) {
        try {
            ReadFile(path, bytes_);
            PackedFrameReader& reader = Open(path);
            if (!work_.options.offsets.empty()) CheckOffsets(reader);
            rapidjson::MemoryPoolAllocator<> pool(block_.get(), kBlock);
            rapidjson::Document document(&pool);
            try {
                work_.options.offsets.empty() ? reader.Decode(document)
                                              : reader.Decode(work_.offsets, document);
            } catch (const std::exception& error) {
                Report(path, error.what());
                if (work_.options.format == "csv") return;  // the table is not complete
            }
            if (!document.IsArray()) document.SetArray();
            if (!work_.options.map.empty()) Rename(reader.Name(), document);
            Print({path, reader.Name(), bytes_.size(), document});
        } catch (const UsageError&) {
            throw;
        } catch (const Failure& failure) {
            errors_.emplace_back(failure.what());
        } catch (const std::exception& error) {
            Report(path, error.what());
        }
    }

    void Report(const std::string& path, const std::string& error) {
        errors_.push_back(DisplayName(path) + ": " + error);
    }

    /// Returns a reader with the frame and the selection.
    PackedFrameReader& Open(const std::string& path) {
        if (work_.options.select.empty()) {
            OpenFrame(all_, path, bytes_);
            return all_;
        }
        // The words of a selection depend on the schema.
        if (header_.empty() || bytes_.compare(0, header_.size(), header_) != 0) {
            OpenFrame(all_, path, bytes_);
            missing_.clear();
            selected_ = std::make_unique<PackedFrameReader>(
                SelectionOf(work_.options.select, all_.Schema(), missing_));
            header_ = bytes_.substr(0, static_cast<std::size_t>(all_.HeaderLength()));
        }
        for (const std::string& error : missing_) Report(path, error);
        OpenFrame(*selected_, path, bytes_);
        return *selected_;
    }

    /// Throws Failure unless all values have an offset: readers take a missing one as 0.
    void CheckOffsets(const PackedFrameReader& reader) const {
        std::vector<Item> items = ItemsOf(reader);
        SetOffsets(items, work_.offsets);
        for (const Item& item : items)
            if (item.HasValue() && !item.offset)
                throw Failure(work_.options.offsets, "has no offset of " + item.Path());
    }

    void Rename(const std::string& unit, rapidjson::Document& document) {
        const std::string& parser = work_.options.parser.empty() ? unit : work_.options.parser;
        if (parser != parser_ || mapping_.empty())
            mapping_ = ReadMapping(work_.map, work_.options.map, parser);
        parser_ = parser;
        std::vector<std::string> items;
        CDEStructureDataHelper::PostDataProcessing(mapping_, parser, document, items);
    }

    void Print(const Decoded& frame) {
        const Options& options = work_.options;
        const bool areMany = work_.frames.size() > 1 || !options.filesFrom.empty();
        if (options.format == "json") return PrintJson(frame, sink_);
        if (options.format == "lines") return PrintLines(frame, sink_);
        if (options.format == "rows") return PrintRows(frame, sink_);
        if (options.format == "csv") {
            if (areMany && CountTables(frame) != 1) throw Failure(frame.path, kOneTable);
            work_.WriteHeader(batch_, frame.path, CsvHeader(frame, areMany, options.safeCsv));
            return PrintCsv(frame, areMany, options.safeCsv, sink_);
        }
        const bool isFirst = &frame.path == &work_.frames.front();
        if (areMany) sink_.text += (isFirst ? "==> " : "\n==> ") + Printable(frame.path) + " <==\n";
        PrintTables(frame, work_.screen, sink_);
    }

    static constexpr std::size_t kBlock = 65536;

    Work& work_;
    Sink sink_;
    std::size_t batch_ = 0;
    std::vector<std::string> errors_;
    std::string bytes_;
    std::unique_ptr<char[]> block_ = std::make_unique<char[]>(kBlock);  // of small documents
    PackedFrameReader all_;
    std::unique_ptr<PackedFrameReader> selected_;
    std::string header_;                // for which the selection was made
    std::vector<std::string> missing_;  // names of the selection that it does not have
    std::string parser_;
    std::map<DDKey, DDKey> mapping_;
};

}  // namespace

int Decode(const Options& options) {
    std::vector<std::string> frames = options.inputs;
    if (!options.filesFrom.empty())
        for (std::string& path : ReadLines(options.filesFrom)) frames.push_back(std::move(path));
    if (frames.empty()) throw UsageError("FRAME or --files-from is required");
    if (frames.size() > 1 && !options.offsets.empty())
        throw UsageError("--offsets belong to one frame");
    std::vector<std::string> inputs = frames;
    inputs.insert(inputs.end(), {options.offsets, options.map, options.filesFrom});
    if (options.select.size() == 1 && IsFile(options.select[0]))
        inputs.push_back(options.select[0]);
    CheckPaths(inputs, {options.output});

    Work work(options, std::move(frames));
    std::vector<std::thread> threads;
    for (unsigned job = 1; job < options.jobs; ++job)
        threads.emplace_back([&work] { Worker(work).Run(); });
    Worker(work).Run();
    for (std::thread& thread : threads) thread.join();
    return work.Complete();
}

}  // namespace dataengine::tool
