#include "bench/peers/peer_list.h"
#include "bench/peers/turns.h"
#include "bench/peers/xml_number.h"

#include <rapidxml/rapidxml.hpp>
#include <rapidxml/rapidxml_print.hpp>

#include <cstring>

namespace bench {

namespace {

using Kind = SceneValue::Kind;
using Attribute = rapidxml::xml_attribute<>;
using Node = rapidxml::xml_node<>;
using Tree = rapidxml::xml_document<>;

void walk_value(const Attribute& attribute, Kind kind, Checksum& sum) {
    const std::string_view text(attribute.value(), attribute.value_size());
    switch (kind) {
    case Kind::flag:
        sum.flag(text == "yes");
        break;
    case Kind::integer:
        sum.integer(number_of<int>(text));
        break;
    case Kind::decimal:
        sum.decimal(number_of<double>(text));
        break;
    case Kind::string:
        sum.string(text);
        break;
    }
}

void walk_node(const Node& node, const char*& kind, Checksum& sum) {
    for (const Attribute* attribute = node.first_attribute(); attribute != nullptr;
         attribute = attribute->next_attribute()) {
        walk_value(*attribute, static_cast<Kind>(*kind++ - '0'), sum);
    }
    for (const Node* child = node.first_node(); child != nullptr; child = child->next_sibling()) {
        walk_node(*child, kind, sum);
    }
}

class Editor {
public:
    explicit Editor(Tree& tree) : tree_(tree) {}

    void edit(Node& node) {
        Attribute* const last_attribute = node.last_attribute();
        Attribute* next_attribute = node.first_attribute();
        for (Attribute* attribute = nullptr; attribute != last_attribute;) {
            attribute = next_attribute;
            next_attribute = attribute->next_attribute();
            if (std::string_view(attribute->name(), attribute->name_size()) != "template") {
                change(node, *attribute);
            }
        }
        Node* const last = node.last_node();
        Node* next = node.first_node();
        for (Node* child = nullptr; child != last;) {
            child = next;
            next = child->next_sibling();
            is_list(*child) ? change(node, *child) : edit(*child);
        }
    }

    std::size_t changes() const { return turns_.changes(); }

private:
    static bool is_list(const Node& node) {
        const Attribute* const first = node.first_attribute();
        return first != nullptr && first->name_size() == 1 && first->name()[0] == 'a' &&
               node.first_node() == nullptr;
    }

    void change(Node& node, Attribute& attribute) {
        switch (turns_.next()) {
        case Turns::RENAME:
            attribute.name("renamed");
            break;
        case Turns::ADD:
            node.append_attribute(tree_.allocate_attribute("added", tree_.allocate_string("7")));
            break;
        case Turns::REMOVE:
            node.remove_attribute(&attribute);
            break;
        case Turns::MOVE:
            node.remove_attribute(&attribute);
            node.append_attribute(&attribute);
            break;
        case Turns::NOTHING:
            break;
        }
    }

    void change(Node& node, Node& list) {
        switch (turns_.next()) {
        case Turns::RENAME:
            list.name("renamed");
            break;
        case Turns::ADD: {
            Node* const added = tree_.allocate_node(rapidxml::node_element, "added");
            added->append_attribute(tree_.allocate_attribute("a", tree_.allocate_string("7")));
            node.append_node(added);
            break;
        }
        case Turns::REMOVE:
            node.remove_node(&list);
            break;
        case Turns::MOVE:
            node.remove_node(&list);
            node.append_node(&list);
            break;
        case Turns::NOTHING:
            break;
        }
    }

    Tree& tree_;
    Turns turns_;
};

class Rapidxml : public Peer {
public:
    explicit Rapidxml(const Source& source) : source_(source) {}

    void prepare() override { text_ = source_.text; }
    bool parse() override {
        tree_ = std::make_unique<Tree>();
        try {
            tree_->parse<rapidxml::parse_no_data_nodes>(text_.data());
        } catch (const rapidxml::parse_error&) {
            return false;
        }
        return true;
    }
    Checksum walk() const override {
        Checksum sum;
        const char* kind = source_.kinds.data();
        walk_node(*tree_->first_node(), kind, sum);
        return sum;
    }
    std::size_t edit() override {
        Editor editor(*tree_);
        editor.edit(*tree_->first_node());
        return editor.changes();
    }
    /// Prints into a block that is large enough, because this library is fastest then.
    std::size_t print(bool pretty) override {
        printed_.reset(new char[2 * source_.text.size()]);
        const char* const end =
            rapidxml::print(printed_.get(), *tree_, pretty ? 0 : rapidxml::print_no_indenting);
        return static_cast<std::size_t>(end - printed_.get());
    }
    void forget() override { printed_.reset(); }
    void destroy() override { tree_.reset(); }

private:
    const Source& source_;
    std::string text_;
    std::unique_ptr<Tree> tree_;
    std::unique_ptr<char[]> printed_;
};

} // namespace

void add_rapidxml(PeerList& peers) {
    peers.push_back({"rapidxml", Form::xml, PeerKind::IN_PLACE, reads | edits | prints, make_peer<Rapidxml>});
}

} // namespace bench
