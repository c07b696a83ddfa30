#include "document/json.h"

#include "core/reports/core_diagnostic_impl.h"
#include "document/json/read/json_tree_reader_impl.h"
#include "document/load/document_state_impl.h"
#include "document/load/failure_text_impl.h"
#include "document/load/meter_impl.h"
#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/problem_list_impl.h"
#include "document/sources/path_text_impl.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace bk_parser {

namespace {

// Locates problems after the whole text was read.
constexpr Meter::Range all{};
constexpr Meter::Range reading = all.part(0, 0.97);
constexpr Meter::Range locating = all.part(0.97, 1);

/// An empty document is an empty text in the shape `lines`.
JsonReader::Count count_of(const std::optional<JsonShape>& shape, std::string_view text) noexcept {
    const bool is_empty = text.find_first_not_of(" \t\r\n") == std::string_view::npos;
    return !shape                       ? (is_empty ? JsonReader::Count::lines : JsonReader::Count::any)
           : *shape == JsonShape::lines ? JsonReader::Count::lines
                                        : JsonReader::Count::one;
}

/// One read, from the text to its list of problems.
class JsonLoad {
public:
    explicit JsonLoad(const JsonReadOptions& options)
        : options_(options), meter_(options.progress), state_(std::make_unique<DocumentState>()),
          problems_(sources_, options.allow,
                    std::min<std::size_t>(ProblemList::most_told, options.limits.message_count)) {}

    LoadResult run(std::string_view text) {
        meter_.begin();
        const core_uint64 most = std::min<core_uint64>(CoreString::max_length, options_.limits.source_size);
        if (text.size() > most) {
            const std::string name = options_.file.empty() ? "the text" : path_text(options_.file);
            problems_.add(Severity::error, codes::too_large, too_large_text(name, text.size(), most),
                          options_.file);
        } else {
            meter_.start(reading, text.size());
            JsonTreeReader(text, count_of(options_.shape, text), *state_->root, options_.limits, problems_,
                           meter_)
                .run();
            meter_.stop(text.size());
        }
        return finish(text);
    }

private:
    /// Keeps the text only when there are problems, to find their lines.
    LoadResult finish(std::string_view text) {
        if (!problems_.is_empty()) {
            sources_.enter({path_text(options_.file), {}}, {}, {});
            sources_.copy(0, text.size(), 0);
            sources_.leave(CoreString(text));
        }
        state_->lost = problems_.unread_parts();
        LoadResult result;
        result.problems = problems_.take(locating, meter_);
        meter_.finish();
        result.document = DocumentState::document(std::move(state_));
        return result;
    }

    const JsonReadOptions& options_;
    Meter meter_;
    std::unique_ptr<DocumentState> state_;
    SourceMap sources_;
    ProblemList problems_;
};

} // namespace

LoadResult from_json(std::string_view text, const JsonReadOptions& options) {
    const bk::KeptErrno kept;
    try {
        return JsonLoad(options).run(text);
    } catch (const LoadCancelled&) {
        LoadResult result;
        result.cancelled = true;
        return result;
    }
}

} // namespace bk_parser
