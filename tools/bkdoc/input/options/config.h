#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace bkdoc {

/// The file that holds how the documents of a folder, and of those below it, are read and checked.
inline constexpr const char* config_name = ".bkdoc.bkd";

/// What a .bkdoc.bkd says. `bkdoc check --help` shows its entries.
struct Config {
    std::filesystem::path file;                // empty when there is none
    std::vector<std::filesystem::path> search; // as it spells them: from the folder of the file
    std::vector<std::string> allow;
    std::vector<std::string> extensions;
    std::optional<std::size_t> max_problems;
    bool strict = false;
    std::string fault; // why it cannot be used, as one line; empty when it can
};

/// The nearest .bkdoc.bkd at or above a folder. Each is read once, until it is forgotten. Threads may ask.
const Config& config_for(const std::filesystem::path& folder);

/// Lets each be read again, as what is watched may have changed. No thread asks meanwhile, and what was given is gone.
void forget_configs();

/// The folder that the configuration of an operand is looked for in: of standard input the current one.
std::filesystem::path folder_of_operand(const std::string& operand);

/// Adds the search folders that the configuration of a document says behind those that are there.
void add_config_search(const std::string& operand, std::vector<std::filesystem::path>& search);

} // namespace bkdoc
