#include "bench/peers/peer_list.h"
#include "bench/peers/turns.h"

#include <yyjson.hpp>

#include <utility>
#include <vector>

namespace bench {

namespace {

using namespace duckdb_yyjson; // the namespace of this copy of the library

using Document = std::unique_ptr<yyjson_mut_doc, decltype(&yyjson_mut_doc_free)>;

void walk_value(yyjson_mut_val* value, Checksum& sum) {
    switch (yyjson_mut_get_type(value)) {
    case YYJSON_TYPE_BOOL:
        sum.flag(yyjson_mut_get_bool(value));
        break;
    case YYJSON_TYPE_NUM:
        yyjson_mut_is_int(value) ? sum.integer(yyjson_mut_get_sint(value))
                                 : sum.decimal(yyjson_mut_get_real(value));
        break;
    case YYJSON_TYPE_STR:
        sum.string({yyjson_mut_get_str(value), yyjson_mut_get_len(value)});
        break;
    case YYJSON_TYPE_ARR: {
        yyjson_mut_arr_iter items = yyjson_mut_arr_iter_with(value);
        while (yyjson_mut_val* item = yyjson_mut_arr_iter_next(&items)) {
            walk_value(item, sum);
        }
        break;
    }
    case YYJSON_TYPE_OBJ: {
        yyjson_mut_obj_iter members = yyjson_mut_obj_iter_with(value);
        while (yyjson_mut_val* name = yyjson_mut_obj_iter_next(&members)) {
            walk_value(yyjson_mut_obj_iter_get_val(name), sum);
        }
        break;
    }
    default:
        break;
    }
}

/// A member that holds values, or lists of them, and no object.
bool is_entry(yyjson_mut_val* value) {
    return !yyjson_mut_is_obj(value) &&
           !(yyjson_mut_is_arr(value) && yyjson_mut_is_obj(yyjson_mut_arr_get_first(value)));
}

/// Moves members to the end of an object only after all its members were visited.
class Editor {
public:
    Editor(yyjson_mut_doc& document, Turns& turns) : document_(document), turns_(turns) {}

    void edit(yyjson_mut_val* value) {
        if (yyjson_mut_is_obj(value)) {
            edit_object(value);
        } else if (yyjson_mut_is_arr(value)) {
            yyjson_mut_arr_iter items = yyjson_mut_arr_iter_with(value);
            while (yyjson_mut_val* item = yyjson_mut_arr_iter_next(&items)) {
                edit(item);
            }
        }
    }

private:
    void edit_object(yyjson_mut_val* object) {
        const std::size_t first = waiting_.size();
        yyjson_mut_obj_iter members = yyjson_mut_obj_iter_with(object);
        while (yyjson_mut_val* name = yyjson_mut_obj_iter_next(&members)) {
            yyjson_mut_val* const value = yyjson_mut_obj_iter_get_val(name);
            if (is_entry(value)) {
                change(members, name, value);
            } else {
                edit(value);
            }
        }
        for (std::size_t i = first; i < waiting_.size(); ++i) {
            yyjson_mut_obj_add(object, waiting_[i].first, waiting_[i].second);
        }
        waiting_.resize(first);
    }

    void change(yyjson_mut_obj_iter& members, yyjson_mut_val* name, yyjson_mut_val* value) {
        switch (turns_.next()) {
        case Turns::RENAME:
            yyjson_mut_set_str(name, "renamed");
            break;
        case Turns::ADD:
            waiting_.emplace_back(yyjson_mut_str(&document_, "added"), yyjson_mut_int(&document_, 7));
            break;
        case Turns::REMOVE:
            yyjson_mut_obj_iter_remove(&members);
            break;
        case Turns::MOVE:
            yyjson_mut_obj_iter_remove(&members);
            waiting_.emplace_back(name, value);
            break;
        case Turns::NOTHING:
            break;
        }
    }

    yyjson_mut_doc& document_;
    Turns& turns_;
    std::vector<std::pair<yyjson_mut_val*, yyjson_mut_val*>> waiting_;
};

/// A parsed document cannot be changed, so the edit works on a copy that can.
class Yyjson : public Peer {
public:
    explicit Yyjson(const Source& source) : source_(source) {}

    bool parse() override {
        yyjson_doc* const read = yyjson_read(source_.text.data(), source_.text.size(), YYJSON_READ_NOFLAG);
        document_.reset(yyjson_doc_mut_copy(read, nullptr));
        yyjson_doc_free(read);
        return document_ != nullptr;
    }
    Checksum walk() const override {
        Checksum sum;
        walk_value(yyjson_mut_doc_get_root(document_.get()), sum);
        return sum;
    }
    /// The tree is the same whether it was read or built.
    bool build() override { return true; }
    std::size_t edit() override {
        Turns turns;
        Editor(*document_, turns).edit(yyjson_mut_doc_get_root(document_.get()));
        return turns.changes();
    }
    std::size_t print(bool pretty) override {
        std::size_t size = 0;
        printed_.reset(
            yyjson_mut_write(document_.get(), pretty ? YYJSON_WRITE_PRETTY : YYJSON_WRITE_NOFLAG, &size));
        return printed_ == nullptr ? 0 : size;
    }
    void forget() override { printed_.reset(); }
    void destroy() override { document_.reset(); }

private:
    const Source& source_;
    Document document_{nullptr, yyjson_mut_doc_free};
    std::unique_ptr<char, decltype(&std::free)> printed_{nullptr, std::free};
};

} // namespace

void add_yyjson(PeerList& peers) {
    peers.push_back(
        {"yyjson", Form::json, PeerKind::NONE, reads | edits | prints | built_prints, make_peer<Yyjson>});
}

} // namespace bench
