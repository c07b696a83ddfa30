#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace bkdoc {

/// The name of the configuration file for a folder and the folders below it.
inline constexpr const char* config_name = ".bkdoc.bkd";

/// The content of a .bkdoc.bkd. `bkdoc check --help` shows its entries.
struct Config {
    std::filesystem::path file;                // empty when there is none
    std::vector<std::filesystem::path> search; // as the file spells them: relative to its folder
    std::vector<std::string> allow;
    std::vector<std::string> extensions;
    std::optional<std::size_t> max_problems;
    bool strict = false;
    std::string fault; // why it cannot be used, in one line; empty when it can
};

/// The nearest .bkdoc.bkd at or above a folder. Each file is read once, until forget_configs. Any thread may call it.
const Config& config_for(const std::filesystem::path& folder);

/// Forgets all configurations, so that changed ones are read again. Invalidates every Config. No other thread may ask for one
/// meanwhile.
void forget_configs();

/// The folder in which the search for an operand's configuration starts; the current one for standard input.
std::filesystem::path folder_of_operand(const std::string& operand);

/// Appends the search folders of a document's configuration to the given ones.
void add_config_search(const std::string& operand, std::vector<std::filesystem::path>& search);

} // namespace bkdoc
