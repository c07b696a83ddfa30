#pragma once

#include "core/core_containers.h"
#include "core/reports/core_guard_impl.h"
#include "core/reports/core_pace_impl.h"
#include "core/text/core_bytes_impl.h"
#include "parser/model/drop/parser_document_pages_impl.h"
#include "parser/parser_group.h"
#include "parser/parser_limits.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

/// The binary form of trees, which docs/formats.md describes byte by byte. Encoder and decoder keep a stack of their own, so that
/// the depth of a tree costs none of the thread's stack.
namespace bk {

/// The first four bytes of a document in the binary form.
inline constexpr std::string_view binary_tag = "UDFS";

/// The largest buffer: counts are 32-bit.
inline constexpr core_uint64 max_binary_size = 0xFFFFFFFFu;

/// The byte between an entry's size and its values. It is 0, and the size counts it.
inline constexpr std::size_t reserved_size = 1;

/// Appends the binary form to a buffer. Writes each size as zeros first and fills it in when the part that it measures is
/// complete, so that no part is written twice. The buffer's count changes only in `finish`.
class BinaryEncoder {
public:
    explicit BinaryEncoder(CoreVector<char>& out) noexcept : out_(out), begin_(out.get_count()) {
        take_storage(begin_);
    }

    void write_bytes(const void* bytes, std::size_t size);
    void write_size(std::uint64_t size);
    /// The characters and a NUL.
    void write_string(const CoreString& text);
    void write_binary_data(const void* data, unsigned int size);
    void write_value(const StoredValue& value, bool with_type);
    void write_entry(const ParserEntry& entry);
    void write_group(const ParserGroup& group);

    /// Returns the number of bytes appended. When the buffer would have passed max_binary_size, returns 0, leaves the buffer as it
    /// was, and logs the warning "<operation>: data too large\n".
    core_uint64 finish(const char* operation);

private:
    /// A run of entries that is being written, and how far it has come.
    struct Level {
        const ParserEntry* const* entries;
        unsigned int entry_count;
        unsigned int next_entry;
        unsigned int next_value;
        unsigned int size_at;       // the place of the group's size
        unsigned int entry_size_at; // the place of the size of the entry that is being written
        bool has_size;
        bool is_in_entry;
    };

    void open_group(const ParserGroup& group);
    void run();
    bool write_values(Level& level);
    void put_entries(Level& level);
    bool put_entry(Level& level, const ParserEntry& entry);
    void begin_entry(Level& level, const ParserEntry& entry);
    unsigned int leave_size();
    void fill_size(unsigned int place) noexcept;

    std::size_t room() const noexcept { return static_cast<std::size_t>(limit_ - end_); }
    bool has_room(std::size_t size) { return room() >= size || grow(size); }
    /// Whether even the largest buffer has no room for so much. The caller may have asked for more than it will write, and then
    /// has to write by exact sizes.
    bool is_last_room(std::size_t size) const noexcept {
        return room() < size && core_uint64{used()} + size > max_binary_size;
    }
    bool grow(std::size_t size);
    void take_storage(unsigned int used) noexcept;
    unsigned int used() const noexcept { return static_cast<unsigned int>(end_ - out_.get_data()); }

    CoreVector<char>& out_;
    unsigned int begin_;
    bool fits_ = true;
    char* end_ = nullptr; // of what is written
    char* limit_ = nullptr;
    std::vector<Level> levels_;
};

/// Appends what `write` writes with an encoder, and returns the number of bytes. When not all of it fits, logs that, returns 0 and
/// leaves the buffer as it was.
template <class Write>
core_uint64 encode(CoreVector<char>& out, const char* operation, Write write) {
    const unsigned int begin = out.get_count();
    return guarded(operation, core_uint64{0}, [&] {
        try {
            BinaryEncoder encoder(out);
            write(encoder);
            return encoder.finish(operation);
        } catch (...) {
            out.truncate(begin);
            throw;
        }
    });
}

/// What is wrong with binary data, and where.
struct BinaryDamage {
    enum class Kind {
        group_too_large,  ///< the size of a group is more than what is left
        entry_too_large,  ///< the same of an entry
        size_mismatch,    ///< an entry or a group does not end where its size says
        no_entry_name,    ///< the name of an entry is empty, or does not end
        open_string,      ///< a string does not end
        open_binary_data, ///< binary data are more than what is left
        unknown_value,    ///< no value has this tag
        data_end,         ///< the data end inside a value
        nested_too_deeply ///< ParserLimits::nesting_depth
    };

    Kind kind;
    core_uint64 position;      // in the data
    core_uint64 announced = 0; // of what is too large
    core_uint64 present = 0;
};

/// Is told of damage by a strict decoder, which ends at the first damage and logs nothing.
class BinaryHost {
public:
    BinaryHost() = default;
    BinaryHost(const BinaryHost&) = delete;
    BinaryHost& operator=(const BinaryHost&) = delete;

    virtual ~BinaryHost() = default;

    virtual void damaged(const BinaryDamage& damage) = 0;
};

/// Builds a tree from a buffer. Trusts no size in the buffer: allocates nothing for bytes that are not there.
///
/// A failure does not fail everything above it. An entry that fails is discarded and ends its group. The entry that holds
/// that group keeps what was read of the group, and goes on at the byte where the reading stopped.
class BinaryDecoder {
public:
    BinaryDecoder(const CoreVector<char>& data, core_uint64 position,
                  unsigned int nesting_depth = ParserLimits::no_limit) noexcept
        : BinaryDecoder(std::string_view(data.get_data(), data.get_count()), position, nesting_depth) {}
    BinaryDecoder(std::string_view data, core_uint64 position, unsigned int nesting_depth) noexcept
        : data_(data), cursor_(data.data(), data.size(), position), nesting_depth_(nesting_depth) {}
    ~BinaryDecoder();
    BinaryDecoder(const BinaryDecoder&) = delete;
    BinaryDecoder& operator=(const BinaryDecoder&) = delete;

    bool read_group(ParserGroup& group);
    bool read_entry(ParserEntry& entry);
    /// Null when there is no value.
    ParserValue* read_value();

    core_uint64 position() const noexcept { return cursor_.position(); }

    /// Decodes strictly: every group has the entries that are whole, up to the first damage.
    void be_strict(BinaryHost& host) noexcept { host_ = &host; }
    /// `pace` is told how many bytes are decoded.
    void set_pace(Pace& pace) noexcept { pace_ = &pace; }

private:
    /// A value that waits for the end of its entry. It is constructed in place: copying it right after it was stored field by
    /// field would cause a store-forwarding stall.
    struct PendingValue {
        PendingValue(ParserValue::Type scalar_type, std::uint64_t scalar_bits) noexcept
            : type(scalar_type), bits(scalar_bits) {}
        PendingValue(ParserValue::Type text_type, std::string_view shown) noexcept
            : type(text_type), size(static_cast<unsigned int>(shown.size())), text(shown.data()) {}
        explicit PendingValue(ParserGroup* nested) noexcept : type(ParserValue::TYPE_GROUP), group(nested) {}

        ParserValue::Type type;
        unsigned int size = 0; // of a string or of binary data, which `text` shows in the buffer
        union {
            std::uint64_t bits; // of a scalar
            const char* text;
            ParserGroup* group;
        };
    };

    /// A group that is being read, and the entry of it that is.
    struct Level {
        ParserGroup* group; // null when an entry is read by itself
        core_uint64 group_end;
        core_uint64 entry_end;
        unsigned int name_at; // of the entry, in the buffer
        unsigned int name_size;
        unsigned int first_entry;
        unsigned int first_value;
        std::size_t text_size; // what the strings of the entry's values need
        bool is_in_entry;
        bool is_made; // the entry is in `entries_` already, with the group that is all it should hold
        bool is_cut;  // the data end in the entry
    };

    enum class Step { more, done, failed };

    Step stop_at_depth();
    bool damage(BinaryDamage::Kind kind, core_uint64 position, core_uint64 announced = 0,
                core_uint64 present = 0);
    bool take_rest_of_cut_group(core_uint64 size);
    bool may_hold_entry(Level& level, core_uint64 size);
    bool ends_well(const Level& level);
    Step fail_at_name(core_uint64 start);
    std::string_view take_name();
    std::string_view take_text();
    std::string_view take_bytes();
    bool is_past_end();
    bool ends_at(core_uint64 end);
    bool is_paced_as_one(const Level& level) const noexcept;
    void keep_whole_entries() noexcept;

    bool open_group(ParserGroup& group);
    bool open_entry(Level& level, std::string_view name);
    bool run();
    Step advance(Level& level);
    Step begin_entry(Level& level);
    bool read_flat_entry(Level& level);
    core_uint64 sure_end(const Level& level) const noexcept;
    std::string_view entry_name(const Level& level) const noexcept;
    Step finish_entry(Level& level);
    void keep_entry(Level& level, std::unique_ptr<ParserEntry> entry);
    ParserGroup& make_group();
    bool holds_only_group(const Level& level) const noexcept;
    ParserGroup& make_with_group(Level& level);
    void take_apart(Level& level);
    void close_level();

    bool take_tag(ParserValue::Type& type) noexcept;
    void take_value(ParserValue::Type type);
    void fill_values(ParserValueList& values, std::size_t first);
    void append_values(ParserValueList& values);
    static StoredValue* make_value(void* place, PendingValue& pending, char*& text);
    static StoredValue* make_other(void* place, PendingValue& pending, char*& text);
    static std::size_t text_need(const PendingValue& pending) noexcept;
    void discard_values(std::size_t first) noexcept;

    std::string_view data_;
    ByteCursor cursor_;
    unsigned int nesting_depth_;
    BinaryHost* host_ = nullptr;
    Pace* pace_ = nullptr;
    bool is_stopped_ = false;
    bool is_told_ = false;           // what was damaged first
    bool is_cut_ = false;            // the data are a part of a document
    bool has_discarded_ = false;     // groups with what was in them
    DocumentPages* pages_ = nullptr; // of the group that is read
    std::vector<Level> levels_;
    std::vector<ParserEntry*> entries_;      // of all open groups, the outermost first
    std::vector<PendingValue> pending_;      // of all open entries, the outermost first
    std::vector<unsigned int> string_sizes_; // of the entry that is read at once
};

} // namespace bk
