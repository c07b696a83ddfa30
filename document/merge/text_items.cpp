#include "document/merge/text_items_impl.h"

#include "document/compare/value_equal_impl.h"
#include "document/sources/byte_hash_impl.h"

#include <algorithm>

namespace bk_parser {

namespace {

/// Cuts the tokens of a text into items.
class ItemCutter {
public:
    ItemCutter(TextItems& out, const std::vector<SourceToken>& tokens) : out_(out), tokens_(tokens) {}

    void run() {
        out_.items.emplace_back();
        for (next_ = 0; next_ < tokens_.size(); ++next_) {
            take(tokens_[next_]);
        }
        const auto size = static_cast<std::uint32_t>(out_.source.size());
        finish_item();
        finish_group(size);
        out_.items.front().end = size;
    }

private:
    TextItem& group() { return out_.items[group_]; }
    TextItem& item() { return out_.items[item_]; }
    std::uint64_t hash_of(const SourceToken& token) const {
        return ByteHash::of(text_of(out_.source, token));
    }

    void take(const SourceToken& token) {
        switch (token.kind) {
        case TokenKind::comment:
            take_comment(token);
            break;
        case TokenKind::include:
        case TokenKind::version:
            begin_item(hash_of(token));
            add(token);
            is_directive_ = true;
            break;
        case TokenKind::name:
            begin_item(hash_of(token));
            add(token);
            break;
        case TokenKind::open_brace:
            open_group(token);
            break;
        case TokenKind::close_brace:
            close_group(token);
            break;
        default:
            take_value(token);
            break;
        }
    }

    void take_value(const SourceToken& token) {
        if (item_ == 0 || is_directive_) { // the entry was interrupted by a directive
            begin_item(hash_of(token));
        }
        const bool is_value = token.kind == TokenKind::value;
        if (is_value && values_ == 0 && out_.source[token.begin] == '"') {
            item().label = mixed(item().label, hash_of(token));
        }
        values_ += is_value ? 1 : 0;
        add(token);
    }

    /// A comment on the line of an item, or between its words, belongs to that item. Any other comment belongs to the next item or to
    /// the tail.
    void take_comment(const SourceToken& token) {
        if (item_ != 0 && (is_in_its_line(token) || continues())) {
            add(token);
        } else {
            finish_item();
            lead_ = mixed(lead_, hash_of(token));
        }
    }

    bool is_in_its_line(const SourceToken& token) const {
        return out_.text(last_end_, token.begin).find('\n') == std::string_view::npos;
    }

    /// Whether a word of the same entry follows the comments here.
    bool continues() const noexcept {
        std::size_t i = next_;
        while (i < tokens_.size() && tokens_[i].kind == TokenKind::comment) {
            ++i;
        }
        return !is_closed_ && !is_directive_ && i < tokens_.size() && tokens_[i].kind != TokenKind::name &&
               tokens_[i].kind != TokenKind::close_brace && !is_directive(tokens_[i].kind);
    }

    void add(const SourceToken& token) {
        std::uint64_t& hash = is_closed_ ? item().rest_content : item().head;
        hash = mixed(hash, hash_of(token));
        last_end_ = token.end();
    }

    void begin_item(std::uint64_t label) {
        finish_item();
        item_ = static_cast<std::uint32_t>(out_.items.size());
        TextItem& made = out_.items.emplace_back();
        made.begin = begin_;
        made.label = label;
        made.head = lead_;
        made.parent = group_;
        lead_ = 0;
        values_ = 0;
        is_closed_ = false;
        is_directive_ = false;
        group().items.push_back(item_);
    }

    /// The item ends with its line when nothing but white space is left in it.
    void finish_item() {
        if (item_ == 0) {
            return;
        }
        const std::size_t line_end = out_.source.find_first_not_of(" \t\r", last_end_);
        const bool has_line = line_end != std::string_view::npos && out_.source[line_end] == '\n';
        TextItem& done = item();
        done.end = has_line ? static_cast<std::uint32_t>(line_end + 1) : last_end_;
        done.content = mixed(mixed(done.head, done.tail_content), done.rest_content);
        for (const std::uint32_t i : done.items) {
            done.content = mixed(done.content, out_.items[i].content);
        }
        begin_ = done.end;
        item_ = 0;
    }

    void open_group(const SourceToken& token) {
        add(token);
        item().open_end = token.end();
        group_ = item_;
        item_ = 0;
        begin_ = token.end();
    }

    void close_group(const SourceToken& token) {
        finish_item();
        finish_group(token.begin);
        item_ = group_;
        group_ = item().parent;
        is_closed_ = true;
        is_directive_ = false;
        add(token);
    }

    void finish_group(std::uint32_t close) {
        group().tail = begin_;
        group().close = close;
        group().tail_content = lead_;
        lead_ = 0;
    }

    TextItems& out_;
    const std::vector<SourceToken>& tokens_;
    std::size_t next_ = 0;
    std::uint32_t group_ = 0;
    std::uint32_t item_ = 0; // the one that is being cut; 0 when there is none
    std::uint32_t begin_ = 0;
    std::uint32_t last_end_ = 0;
    std::uint64_t lead_ = 0; // of the comments before the next item
    unsigned int values_ = 0;
    bool is_closed_ = false; // the "}" of the item has come
    bool is_directive_ = false;
};

} // namespace

TextItems::TextItems(std::string_view text) : source(text) {
    const SourceTokens found = find_tokens(text);
    has_faults = found.has_faults || found.has_cut_words;
    if (!has_faults) {
        ItemCutter(*this, found.tokens).run();
    }
}

} // namespace bk_parser
