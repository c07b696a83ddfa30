#include "bench/peers/forms.h"

#include "bench/scene_text.h"

namespace bench {

namespace {

void replay(const Entry& group, SceneSink& sink) {
    for (const Entry& entry : group.children) {
        if (entry.is_group) {
            sink.begin_group(entry.name, entry.template_name);
            replay(entry, sink);
            sink.end_group();
            continue;
        }
        std::vector<SceneValue> values;
        for (const Value& value : entry.values) {
            values.push_back({value.kind, value.text});
        }
        sink.entry(entry.shape, entry.name, values);
    }
}

} // namespace

const char* form_name(Form form) {
    constexpr const char* names[] = {"bkd", "xml", "json", "toml", "cfg", "msgpack"};
    return names[static_cast<unsigned int>(form)];
}

std::string write_text(const Document& document) {
    SceneText sink;
    replay(document.root(), sink);
    return sink.get_text();
}

std::string write_form(const Document& document, Form form) {
    switch (form) {
    case Form::text:
        return write_text(document);
    case Form::xml:
        return write_xml(document);
    case Form::json:
        return write_json(document);
    case Form::toml:
        return write_toml(document);
    case Form::config:
        return write_config(document);
    case Form::msgpack:
        return write_msgpack(document);
    }
    return {};
}

} // namespace bench
