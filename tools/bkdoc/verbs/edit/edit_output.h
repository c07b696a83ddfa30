#pragma once

#include "verbs/edit/edit_run.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace bkdoc {

/// Collects the changes of all documents of a run, and writes them when the last one is done.
class EditOutput {
public:
    EditOutput(const Arguments& arguments, Streams& streams, const EditRequest& request);

    /// Takes the changes of one document. Returns a reason when they contradict those of an earlier document: a file that
    /// several documents include must change in the same way for all of them.
    std::string take(const OpenedDocument& document, const EditOutcome& outcome,
                     std::vector<bk_parser::FileChange>&& changes);
    ExitCode finish();

private:
    struct Changed {
        bk_parser::FileChange change;
        std::string name;     // the file's name in messages
        std::string document; // the document that changes it
        std::size_t count = 0;
    };

    void take_result(const OpenedDocument& document, const std::vector<bk_parser::FileChange>& changes);
    /// Whether the change is written: to standard output, to a diff or to the disk.
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
    std::vector<Changed> changed_; // in the order of writing
    std::map<std::string, std::size_t> by_path_;
    std::vector<std::string> results_; // for standard output, one for each document
    std::set<std::string> given_;      // the files of results_
    bool has_bytes_ = false;           // a result is not text
    std::string notes_;
};

} // namespace bkdoc
