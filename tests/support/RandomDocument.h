#pragma once

#include <rapidjson/document.h>

#include <cstdint>
#include <random>
#include <string>

/// Random documents as the decoder makes them; the same seed yields the same documents.
///
/// Names repeat, are empty and start with '$'; values are of all kinds and sizes around those at
/// which their packed form changes; tables have columns without a value.
class RandomDocument {
  public:
    explicit RandomDocument(std::uint64_t seed) : engine_(seed) {}

    /// Returns a new document, which stays valid until the next call.
    rapidjson::Document& Next();

  private:
    std::uint64_t Below(std::uint64_t bound) { return engine_() % bound; }
    auto& Pool() { return document_.GetAllocator(); }
    rapidjson::Value Str(const std::string& bytes);
    rapidjson::Value Name();
    rapidjson::Value Any(int depth);
    rapidjson::Value Item(int type);
    rapidjson::Value Children();
    rapidjson::Value Table();

    std::mt19937_64 engine_;
    rapidjson::Document document_;
};
