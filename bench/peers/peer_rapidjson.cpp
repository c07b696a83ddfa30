#include "bench/peers/peer_list.h"
#include "bench/peers/turns.h"

#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace bench {

namespace {

using rapidjson::Value;
using Allocator = rapidjson::Document::AllocatorType;

void walk_value(const Value& value, Checksum& sum) {
    switch (value.GetType()) {
    case rapidjson::kFalseType:
    case rapidjson::kTrueType:
        sum.flag(value.GetBool());
        break;
    case rapidjson::kNumberType:
        value.IsInt() ? sum.integer(value.GetInt()) : sum.decimal(value.GetDouble());
        break;
    case rapidjson::kStringType:
        sum.string({value.GetString(), value.GetStringLength()});
        break;
    case rapidjson::kArrayType:
        for (const Value& item : value.GetArray()) {
            walk_value(item, sum);
        }
        break;
    case rapidjson::kObjectType:
        for (const auto& member : value.GetObject()) {
            walk_value(member.value, sum);
        }
        break;
    case rapidjson::kNullType:
        break;
    }
}

/// A member that holds values, or lists of them, and no object.
bool is_entry(const Value& value) {
    return !value.IsObject() && !(value.IsArray() && !value.Empty() && value[0].IsObject());
}

void edit_value(Value& value, Turns& turns, Allocator& allocator);

/// Goes backwards, because removing a member that keeps the order of the others shifts those after it.
void edit_object(Value& object, Turns& turns, Allocator& allocator) {
    for (rapidjson::SizeType i = object.MemberCount(); i-- != 0;) {
        const auto member = object.MemberBegin() + i;
        if (!is_entry(member->value)) {
            edit_value(member->value, turns, allocator);
            continue;
        }
        switch (turns.next()) {
        case Turns::RENAME:
            member->name.SetString("renamed");
            break;
        case Turns::ADD:
            object.AddMember("added", 7, allocator);
            break;
        case Turns::REMOVE:
            object.EraseMember(member);
            break;
        case Turns::MOVE: {
            Value name(std::move(member->name));
            Value moved(std::move(member->value));
            object.EraseMember(member);
            object.AddMember(name, moved, allocator);
            break;
        }
        case Turns::NOTHING:
            break;
        }
    }
}

void edit_value(Value& value, Turns& turns, Allocator& allocator) {
    if (value.IsObject()) {
        edit_object(value, turns, allocator);
    } else if (value.IsArray()) {
        for (Value& item : value.GetArray()) {
            edit_value(item, turns, allocator);
        }
    }
}

template <bool in_place, unsigned int flags = rapidjson::kParseDefaultFlags>
class Rapidjson : public Peer {
public:
    explicit Rapidjson(const Source& source) : source_(source) {}

    void prepare() override {
        if (in_place) {
            text_ = source_.text;
        }
    }
    bool parse() override {
        document_ = std::make_unique<rapidjson::Document>();
        if constexpr (in_place) {
            document_->ParseInsitu<flags>(text_.data());
        } else {
            document_->Parse<flags>(source_.text.data(), source_.text.size());
        }
        return !document_->HasParseError();
    }
    Checksum walk() const override {
        Checksum sum;
        walk_value(*document_, sum);
        return sum;
    }
    /// The tree is the same whether it was read or built.
    bool build() override { return true; }
    std::size_t edit() override {
        Turns turns;
        edit_value(*document_, turns, document_->GetAllocator());
        return turns.changes();
    }
    std::size_t print(bool pretty) override {
        printed_ = std::make_unique<rapidjson::StringBuffer>();
        bool is_written = false;
        if (pretty) {
            rapidjson::PrettyWriter writer(*printed_);
            is_written = document_->Accept(writer);
        } else {
            rapidjson::Writer writer(*printed_);
            is_written = document_->Accept(writer);
        }
        return is_written ? printed_->GetSize() : 0;
    }
    void forget() override { printed_.reset(); }
    void destroy() override { document_.reset(); }

private:
    const Source& source_;
    std::string text_;
    std::unique_ptr<rapidjson::Document> document_;
    std::unique_ptr<rapidjson::StringBuffer> printed_;
};

} // namespace

void add_rapidjson(PeerList& peers) {
    constexpr unsigned int all = reads | edits | prints | built_prints;
    peers.push_back({"rapidjson", Form::json, PeerKind::LOOSE_DECIMALS, all, make_peer<Rapidjson<false>>});
    peers.push_back({"rapidjson_insitu", Form::json, PeerKind::LOOSE_DECIMALS | PeerKind::IN_PLACE, all,
                     make_peer<Rapidjson<true>>});
    peers.push_back({"rapidjson_exact", Form::json, PeerKind::NONE, reads,
                     make_peer<Rapidjson<false, rapidjson::kParseFullPrecisionFlag>>});
}

} // namespace bench
