#pragma once

#include "bench/peers/report.h"

#include <optional>

namespace bench {

/// A temporary folder. The destructor removes it with its content.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return path_; }

private:
    std::string path_;
};

/// The generated corpora, and each JSON file of `folder` unless that is empty. Writes every form of each into
/// `target`.
std::vector<Corpus> make_corpora(const std::string& folder, const std::string& only,
                                 const std::string& target);

} // namespace bench
