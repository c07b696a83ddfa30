#include "bench/peers/peer_list.h"
#include "bench/peers/turns.h"
#include "bench/peers/xml_number.h"

#include <pugixml.hpp>

#include <cstring>

namespace bench {

namespace {

/// Fewer options than the default: the text has nothing that the others handle.
constexpr unsigned int parse_options = pugi::parse_escapes;

using Kind = SceneValue::Kind;

template <bool with_from_chars>
void walk_value(const pugi::xml_attribute& attribute, Kind kind, Checksum& sum) {
    switch (kind) {
    case Kind::flag:
        sum.flag(attribute.as_bool());
        break;
    case Kind::integer:
        sum.integer(with_from_chars ? number_of<int>(attribute.value()) : attribute.as_int());
        break;
    case Kind::decimal:
        sum.decimal(with_from_chars ? number_of<double>(attribute.value()) : attribute.as_double());
        break;
    case Kind::string:
        sum.string(attribute.value());
        break;
    }
}

template <bool with_from_chars>
void walk_node(const pugi::xml_node& node, const char*& kind, Checksum& sum) {
    for (pugi::xml_attribute attribute = node.first_attribute(); attribute;
         attribute = attribute.next_attribute()) {
        walk_value<with_from_chars>(attribute, static_cast<Kind>(*kind++ - '0'), sum);
    }
    for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
        walk_node<with_from_chars>(child, kind, sum);
    }
}

bool is_list(const pugi::xml_node& node) {
    const char* const name = node.first_attribute().name();
    return name[0] == 'a' && name[1] == '\0' && !node.first_child();
}

void change_attribute(pugi::xml_node& node, pugi::xml_attribute& attribute, Turns::Change change) {
    switch (change) {
    case Turns::RENAME:
        attribute.set_name("renamed");
        break;
    case Turns::ADD:
        node.append_attribute("added").set_value(7);
        break;
    case Turns::REMOVE:
        node.remove_attribute(attribute);
        break;
    case Turns::MOVE:
        node.append_copy(attribute);
        node.remove_attribute(attribute);
        break;
    case Turns::NOTHING:
        break;
    }
}

void change_list(pugi::xml_node& node, pugi::xml_node& list, Turns::Change change) {
    switch (change) {
    case Turns::RENAME:
        list.set_name("renamed");
        break;
    case Turns::ADD:
        node.append_child("added").append_attribute("a").set_value(7);
        break;
    case Turns::REMOVE:
        node.remove_child(list);
        break;
    case Turns::MOVE:
        node.append_move(list);
        break;
    case Turns::NOTHING:
        break;
    }
}

void edit_attributes(pugi::xml_node& node, Turns& turns) {
    const pugi::xml_attribute last = node.last_attribute();
    bool is_last = !last;
    for (pugi::xml_attribute attribute = node.first_attribute(); !is_last;) {
        pugi::xml_attribute next = attribute.next_attribute();
        is_last = attribute == last;
        if (std::strcmp(attribute.name(), "template") != 0) {
            change_attribute(node, attribute, turns.next());
        }
        attribute = next;
    }
}

void edit_node(pugi::xml_node node, Turns& turns) {
    edit_attributes(node, turns);
    const pugi::xml_node last = node.last_child();
    bool is_last = !last;
    for (pugi::xml_node child = node.first_child(); !is_last;) {
        pugi::xml_node next = child.next_sibling();
        is_last = child == last;
        if (is_list(child)) {
            change_list(node, child, turns.next());
        } else {
            edit_node(child, turns);
        }
        child = next;
    }
}

class Appender : public pugi::xml_writer {
public:
    explicit Appender(std::string& out) : out_(out) {}
    void write(const void* data, std::size_t size) override {
        out_.append(static_cast<const char*>(data), size);
    }

private:
    std::string& out_;
};

template <bool in_place, bool with_from_chars>
class Pugixml : public Peer {
public:
    explicit Pugixml(const Source& source) : source_(source) {}

    void prepare() override {
        if (in_place) {
            text_ = source_.text;
        }
    }
    bool parse() override {
        return in_place ? document_.load_buffer_inplace(text_.data(), text_.size(), parse_options,
                                                        pugi::encoding_utf8)
                        : document_.load_buffer(source_.text.data(), source_.text.size(), parse_options,
                                                pugi::encoding_utf8);
    }
    Checksum walk() const override {
        Checksum sum;
        const char* kind = source_.kinds.data();
        walk_node<with_from_chars>(document_.document_element(), kind, sum);
        return sum;
    }
    std::size_t edit() override {
        Turns turns;
        edit_node(document_.document_element(), turns);
        return turns.changes();
    }
    std::size_t print(bool pretty) override {
        Appender appender(printed_);
        document_.save(appender, "\t",
                       (pretty ? pugi::format_indent : pugi::format_raw) | pugi::format_no_declaration,
                       pugi::encoding_utf8);
        return printed_.size();
    }
    void forget() override { printed_ = std::string(); }
    void destroy() override { document_.reset(); }

private:
    const Source& source_;
    std::string text_;
    pugi::xml_document document_;
    std::string printed_;
};

} // namespace

void add_pugixml(PeerList& peers) {
    constexpr unsigned int all = reads | edits | prints;
    constexpr unsigned int walks =
        bit(Operation::parse_walk) | bit(Operation::walk) | bit(Operation::walk_again);
    peers.push_back({"pugixml", Form::xml, PeerKind::NONE, all, make_peer<Pugixml<false, false>>});
    peers.push_back({"pugixml+fc", Form::xml, PeerKind::NONE, walks, make_peer<Pugixml<false, true>>});
    peers.push_back({"pugixml_inplace", Form::xml, PeerKind::IN_PLACE, all, make_peer<Pugixml<true, false>>});
    peers.push_back(
        {"pugixml_inplace+fc", Form::xml, PeerKind::IN_PLACE, walks, make_peer<Pugixml<true, true>>});
}

} // namespace bench
