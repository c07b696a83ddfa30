#include "input/options/config.h"

#include "document/load.h"
#include "input/options/problem_code.h"
#include "platform/paths.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>

namespace bkdoc {

namespace {

/// Reads the entries of a configuration. An unknown entry is an error.
class ConfigReader {
public:
    explicit ConfigReader(Config& config) : config_(config) {}

    void read(const ParserGroup& root) {
        for (const ParserEntry* entry : root.get_entries()) {
            if (!take(*entry) && config_.fault.empty()) {
                config_.fault =
                    place_of(*entry) + ": '" + std::string(entry->get_name().get_view()) +
                    "' is not a setting, or has the wrong values; the settings are search, allow, ext, "
                    "strict and max_problems";
            }
            if (!config_.fault.empty()) {
                return;
            }
        }
    }

private:
    std::string place_of(const ParserEntry& entry) const {
        return text_of(config_.file) + ":" + std::to_string(entry.get_line()) + ":" +
               std::to_string(entry.get_column());
    }

    bool take(const ParserEntry& entry) {
        const std::string_view name = entry.get_name().get_view();
        if (name == "search") {
            return each_string(
                entry, [this](std::string_view folder) { config_.search.push_back(path_of(folder)); });
        }
        if (name == "allow") {
            return each_string(entry, [this, &entry](std::string_view code) { allow(entry, code); });
        }
        if (name == "ext") {
            return each_string(entry,
                               [this](std::string_view word) { config_.extensions.emplace_back(word); });
        }
        if (name == "strict" && is_one(entry, ParserValue::TYPE_BOOL)) {
            config_.strict = entry.get_bool(0);
            return true;
        }
        if (name == "max_problems" && is_one(entry, ParserValue::TYPE_INT) && entry.get_int(0) >= 0) {
            config_.max_problems = static_cast<std::size_t>(entry.get_int(0));
            return true;
        }
        return false;
    }

    void allow(const ParserEntry& entry, std::string_view code) {
        const std::string reason = unknown_code(code);
        if (!reason.empty() && config_.fault.empty()) {
            config_.fault = place_of(entry) + ": allow: " + reason;
        }
        config_.allow.emplace_back(code);
    }

    static bool is_one(const ParserEntry& entry, ParserValue::Type type) {
        return entry.get_value_count() == 1 && entry.get_value_type(0) == type;
    }

    template <class Take>
    static bool each_string(const ParserEntry& entry, Take take) {
        for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
            if (entry.get_value_type(i) != ParserValue::TYPE_STRING) {
                return false;
            }
            take(entry.get_string(i).get_view());
        }
        return entry.has_value();
    }

    Config& config_;
};

bool is_error(const bk_parser::Problem& problem) noexcept {
    return problem.severity == bk_parser::Severity::error;
}

std::string told(const bk_parser::Problem& problem) {
    const std::string place = problem.line == 0
                                  ? std::string()
                                  : ":" + std::to_string(problem.line) + ":" + std::to_string(problem.column);
    return text_of(problem.file) + place + ": cannot be used: " + problem.message;
}

std::unique_ptr<Config> read_config(const std::filesystem::path& file) {
    auto config = std::make_unique<Config>();
    config->file = file;
    const bk_parser::LoadResult result = bk_parser::load(file);
    if (!result.ok()) {
        config->fault = told(*std::find_if(result.problems.begin(), result.problems.end(), is_error));
    } else {
        ConfigReader(*config).read(result.document.root());
    }
    return config;
}

/// Caches the configuration of each folder.
class ConfigCache {
public:
    const Config& at(const std::filesystem::path& folder) {
        const std::lock_guard lock(mutex_);
        return find(folder);
    }

    void clear() {
        const std::lock_guard lock(mutex_);
        known_.clear();
        read_.clear();
    }

private:
    const Config& find(const std::filesystem::path& folder) {
        const std::string key = text_of(folder);
        if (const auto known = known_.find(key); known != known_.end()) {
            return *known->second;
        }
        const Config* config = &none_;
        std::error_code error;
        if (std::filesystem::path file = folder / config_name;
            std::filesystem::is_regular_file(file, error)) {
            config = read_.emplace_back(read_config(file)).get();
        } else if (folder.has_relative_path()) {
            config = &find(folder.parent_path());
        }
        known_.emplace(key, config);
        return *config;
    }

    std::mutex mutex_;
    Config none_;
    std::vector<std::unique_ptr<Config>> read_;
    std::map<std::string, const Config*> known_;
};

ConfigCache& cache() {
    static ConfigCache cache;
    return cache;
}

/// The folder that paths in the configuration are relative to. It is itself relative to the current folder when the operand is,
/// so that reports spell both alike.
std::filesystem::path base_of(const Config& config, const std::string& operand) {
    std::filesystem::path folder = config.file.parent_path();
    std::error_code error;
    const std::filesystem::path current = std::filesystem::current_path(error);
    if (error || path_of(operand).is_absolute()) {
        return folder;
    }
    const std::filesystem::path relative = folder.lexically_relative(current);
    return relative.empty() ? folder : relative == "." ? std::filesystem::path() : relative;
}

} // namespace

void forget_configs() {
    cache().clear();
}

const Config& config_for(const std::filesystem::path& folder) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(folder, error).lexically_normal();
    return cache().at(absolute.has_filename() ? absolute : absolute.parent_path());
}

std::filesystem::path folder_of_operand(const std::string& operand) {
    const std::filesystem::path folder =
        operand == "-" ? std::filesystem::path() : path_of(operand).parent_path();
    return folder.empty() ? std::filesystem::path(".") : folder;
}

void add_config_search(const std::string& operand, std::vector<std::filesystem::path>& search) {
    const Config& config = config_for(folder_of_operand(operand));
    const std::filesystem::path base = base_of(config, operand);
    for (const std::filesystem::path& folder : config.search) {
        // An empty path would be no folder.
        search.push_back(folder == "." && !base.empty() ? base : base / folder);
    }
}

} // namespace bkdoc
