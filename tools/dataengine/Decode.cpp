// Decodes the selected values of any number of frames, renames them if asked to, and prints them.
#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "structure/CDEStructureDataHelper.h"
#include "tools/dataengine/Formats.h"
#include "tools/dataengine/Frames.h"
#include "variables/VariableMappingDAO.h"

namespace dataengine::tool {
namespace {

using Mapping = std::map<DDKey, DDKey>;

/// Returns the mapping in a file: an object of wanted names and variables of `parser`, or an array
/// of mapping documents as the store keeps them.
Mapping MappingOf(const vxJson::Value& file, const std::string& path, const std::string& parser) {
    if (!file.isObject() && !file.isArray())
        throw Failure(path, "is neither an object of names nor an array of mappings");
    Mapping mapping;
    for (const auto& [wanted, variable] : file.members()) {
        if (!variable.isString()) throw Failure(path, wanted + ": is not the name of a variable");
        mapping[DDKey("", wanted)] = DDKey(parser, variable.asString());
    }
    for (int i = 0; file.isArray() && i < static_cast<int>(file.size()); ++i) {
        VariableMappingDAO document;
        try {
            document.LoadFromJson(file[i]);
        } catch (const vxJson::Error& error) {
            throw Failure(path, "mapping document " + std::to_string(i) + ": " + error.what());
        }
        // The parser distinguishes the variables of several parsers for one path.
        for (const MappingInstance& instance : document.GetAllMappingVariable())
            mapping[DDKey(instance.parserPath, document.GetGvPath())] =
                DDKey(instance.parserPath, instance.varFullName);
    }
    return mapping;
}

/// Ends the work of a thread after another one has failed.
struct Stopped {};

/// The work that threads share. They take batches of frames and write their output in this order: a
/// thread keeps its text until its turn has come or the text is large, and then waits.
class Work {
  public:
    Work(const Options& given, Output& out) : options(given), screen(given), output_(out) {
        if (!options.offsets.empty()) offsets = ReadOffsets(options.offsets);
        if (!options.map.empty()) map = ReadJson(options.map);
    }

    bool Take(std::size_t& batch) { return (batch = next_++) * kBatch < options.inputs.size(); }
    std::size_t Begin(std::size_t batch) const {
        return std::min(batch * kBatch, options.inputs.size());
    }

    void Write(std::size_t batch, std::string_view text) {
        Await(batch);
        output_.Write(text);
    }

    /// Writes the header of CSV once. Throws Failure if it is not that of the frames before.
    void WriteHeader(std::size_t batch, const std::string& frame, const std::string& header) {
        std::unique_lock lock(mutex_);
        if (header_.empty()) {
            lock.unlock();
            Await(batch);
            lock.lock();
        }
        if (header_.empty()) {
            first_ = frame;
            header_ = header;
            output_.Write(header);
        }
        if (header != header_) throw Failure(frame, "has other columns than " + first_);
    }

    /// Reports errors, and lets the next batch be written.
    void Finish(std::size_t batch, const std::vector<std::string>& errors) {
        Await(batch);
        for (const std::string& error : errors) output_.Report(error);
        const std::lock_guard lock(mutex_);
        ++turn_;
        changed_.notify_all();
    }

    /// Ends the work with the current exception.
    void Stop() {
        const std::lock_guard lock(mutex_);
        if (failure_ == nullptr) failure_ = std::current_exception();
        changed_.notify_all();
    }
    void Check() const {
        if (failure_ != nullptr) std::rethrow_exception(failure_);
    }

    const Options& options;
    const Screen screen;
    vxJson::Value offsets;
    vxJson::Value map;

  private:
    static constexpr std::size_t kBatch = 8;

    /// Waits for the turn of a batch.
    void Await(std::size_t batch) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return turn_ == batch || failure_ != nullptr; });
        if (failure_ != nullptr) throw Stopped();
    }

    Output& output_;
    std::atomic<std::size_t> next_ = 0;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t turn_ = 0;  // the batch that may be written
    std::exception_ptr failure_;
    std::string header_;  // of CSV; empty until the first frame
    std::string first_;   // the frame that has it
};

/// Decodes frames, one after the other, on one thread.
class Worker : private Sink {
  public:
    explicit Worker(Work& work) : work_(work) {}

    void Run() {
        try {
            while (work_.Take(batch_)) {
                errors_.clear();
                for (std::size_t i = work_.Begin(batch_); i < work_.Begin(batch_ + 1); ++i)
                    Decode(work_.options.inputs[i]);
                Flush();
                work_.Finish(batch_, errors_);
            }
        } catch (const Stopped&) {
            // The failure is reported by the thread that failed.
        } catch (...) {
            work_.Stop();
        }
    }

  private:
    void Write(std::string_view bytes) override { work_.Write(batch_, bytes); }

    void Decode(const std::string& path) {
        try {
            ReadFile(path, bytes_);
            PackedFrameReader& reader = Open(path);
            if (!work_.options.offsets.empty()) CheckOffsets(reader);
            rapidjson::MemoryPoolAllocator<> pool(block_.get(), kBlock);
            rapidjson::Document document(&pool);
            try {
                const bool areFound = work_.options.offsets.empty();
                const vxJson::Value found = areFound ? reader.FindOffsets() : vxJson::Value();
                reader.Decode(areFound ? found : work_.offsets, document);
                if (areFound) CheckEnd(path, reader, found);
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
        errors_.emplace_back(Failure(path, error).what());
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
            selected_ = PackedFrameReader(SelectionOf(work_.options.select, all_, missing_));
            header_ = bytes_.substr(0, static_cast<std::size_t>(all_.HeaderLength()));
        }
        for (const std::string& error : missing_) Report(path, error);
        OpenFrame(selected_, path, bytes_);
        return selected_;
    }

    /// Throws Failure unless all values have an offset: readers take a missing one as 0.
    void CheckOffsets(const PackedFrameReader& reader) const {
        std::vector<Item> items = ItemsOf(reader);
        SetOffsets(items, work_.offsets);
        for (const Item& item : items)
            if (item.HasValue() && !item.offset)
                throw Failure(work_.options.offsets, "has no offset of " + item.Path());
    }

    /// Reports bytes after the last of the values: these may not be consecutive.
    void CheckEnd(const std::string& path, const PackedFrameReader& reader,
                  const vxJson::Value& offsets) {
        const std::string_view payload = reader.Payload();
        long long last = -1;
        for (const vxJson::Value& entry : offsets) {
            if (entry.isInteger()) last = entry.asInt64();
            for (const vxJson::Value& child : entry)
                if (child.isInteger()) last = child.asInt64();
        }
        detail::PackedBytes bytes(payload.data(), payload.size());
        if (last >= 0) bytes.TakeBytes(static_cast<std::uint64_t>(last));
        if (last >= 0) bytes.Skip();
        if (bytes.Remaining() > 0) Report(path, DescribeRest(bytes_.size(), bytes));
    }

    void Rename(const std::string& unit, rapidjson::Document& document) {
        const std::string& parser = work_.options.parser.empty() ? unit : work_.options.parser;
        if (parser != parser_ || mapping_.empty())
            mapping_ = MappingOf(work_.map, work_.options.map, parser);
        parser_ = parser;
        std::vector<std::string> items;
        CDEStructureDataHelper::PostDataProcessing(mapping_, parser, document, items);
    }

    void Print(const Decoded& frame) {
        const Options& options = work_.options;
        const bool areMany = options.inputs.size() > 1 || !options.filesFrom.empty();
        if (options.format == "csv") {
            const CsvStyle style{areMany, options.safeCsv};
            const rapidjson::Value* const table = OnlyTable(frame);
            if (table == nullptr)
                throw Failure(frame.path, "--format csv prints one table; name it with --select");
            work_.WriteHeader(batch_, frame.path, CsvHeader(*table, style));
            return PrintCsv(frame, *table, style, *this);
        }
        const bool isFirst = &frame.path == &options.inputs.front();
        if (areMany && options.format == "table")
            text += (isFirst ? "==> " : "\n==> ") + Printable(frame.path) + " <==\n";
        PrintFrame(frame, options.format, work_.screen, *this);
    }

    static constexpr std::size_t kBlock = 65536;

    Work& work_;
    std::size_t batch_ = 0;
    std::vector<std::string> errors_;
    std::string bytes_;
    std::unique_ptr<char[]> block_ = std::make_unique<char[]>(kBlock);  // of small documents
    PackedFrameReader all_;
    PackedFrameReader selected_;
    std::string header_;                // for which the selection was made
    std::vector<std::string> missing_;  // names of the selection that it does not have
    std::string parser_;
    Mapping mapping_;
};

}  // namespace

void Decode(const Options& options, Output& output) {
    if (options.inputs.empty()) throw UsageError("FRAME or --files-from is required");
    if (options.inputs.size() > 1 && !options.offsets.empty())
        throw UsageError("--offsets belong to one frame");
    output.content = options.format == "table" ? Content::kSafe
                     : options.format == "csv" ? Content::kText
                                               : Content::kJson;
    Work work(options, output);
    std::vector<std::thread> threads;
    for (unsigned job = 1; job < options.jobs; ++job)
        threads.emplace_back([&work] { Worker(work).Run(); });
    Worker(work).Run();
    for (std::thread& thread : threads) thread.join();
    work.Check();
}

}  // namespace dataengine::tool
