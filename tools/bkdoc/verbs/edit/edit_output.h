#pragma once

#include "verbs/edit/edit_run.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace bkdoc {

/// Gathers what the documents of one run would change, and writes it when all of them are through.
class EditOutput {
public:
    EditOutput(const Arguments& arguments, Streams& streams, const EditRequest& request);

    /// Takes the changes of one document. A reason when they do not go together with those of the documents before: a file
    /// that several documents include changes for all of them in the same way.
    std::string take(const OpenedDocument& document, const EditOutcome& outcome,
                     std::vector<bk_parser::FileChange>&& changes);
    ExitCode finish();

private:
    struct Changed {
        bk_parser::FileChange change;
        std::string name;     // as reports call the file
        std::string document; // whose change it is
        std::size_t count = 0;
    };

    void take_result(const OpenedDocument& document, const std::vector<bk_parser::FileChange>& changes);
    /// Whether standard output, a diff or the disk gets the change.
    bool is_given(const Changed& changed) const;
    ExitCode write();
    std::vector<bk_parser::FileChange> backups() const;
    std::string told_by_name(std::string reason) const;
    void write_diffs();
    ExitCode write_results();
    void close(Output& out, std::string_view how);

    Streams& streams_;
    const EditRequest& request_;
    bool is_dry_;
    bool writes_;
    bool keeps_old_;
    std::vector<Changed> changed_; // in the order in which they are to be written
    std::map<std::string, std::size_t> by_path_;
    std::vector<std::string> results_; // for standard output, a document each
    std::set<std::string> given_;      // the files that these are
    bool has_bytes_ = false;           // a result is no text
    std::string notes_;
};

} // namespace bkdoc
