#pragma once

#include "document/path.h"
#include "input/opened_document.h"
#include "output/json_writer.h"
#include "verbs/find/match.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace bkdoc {

/// Writes matches in the form that the options ask for.
class MatchWriter {
public:
    enum class Form { lines, values, counts, files, json };

    /// With `has_many_files`, a count follows the name of its file.
    MatchWriter(Form form, bool has_many_files, Output& out)
        : form_(form), has_many_files_(has_many_files), out_(out), json_(out) {}

    /// The forms of --values, --count, -l and --json. `lines` is the form without an option.
    static Form form_of(const Arguments& arguments);
    /// Whether the form needs only one match of each document.
    bool wants_first_only() const noexcept { return form_ == Form::files; }

    void begin();
    void document(const OpenedDocument& document, const std::vector<Match>& matches);
    void end();

private:
    void line(const OpenedDocument& document, const std::string& path, const Match& match);
    void object(const OpenedDocument& document, const std::string& path, const Match& match);

    Form form_;
    bool has_many_files_;
    Output& out_;
    JsonWriter json_;
};

} // namespace bkdoc
