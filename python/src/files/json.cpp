#include "document/json.h"

#include "files/files.h"
#include "types/handles.h"
#include "values/arguments.h"
#include "values/convert.h"
#include "values/from_json.h"

namespace bk_python {

namespace {

bk_parser::JsonShape shape_of(const std::string& name) {
    if (name == "lossless") {
        return bk_parser::JsonShape::lossless;
    }
    if (name == "lines") {
        return bk_parser::JsonShape::lines;
    }
    if (name == "plain") {
        return bk_parser::JsonShape::plain;
    }
    fail(PyExc_ValueError, "a shape is 'lossless', 'lines' or 'plain', not '" + name + "'");
}

py::str to_json(const Container& self, const std::string& shape, unsigned int indent) {
    const bk_parser::JsonOptions options{shape_of(shape), indent};
    const ParserGroup* const group = self.group();
    const ParserGroup empty{CoreString()};
    return text_of(bk_parser::to_json(group == nullptr ? empty : *group, options));
}

/// Converts by way of the plain shape of JSON, so that only one place names and lists its parts.
py::object to_dict(const Container& self) {
    const ParserGroup* const group = self.group();
    return group == nullptr ? py::dict()
                            : objects_from_json(bk_parser::to_json(*group, {bk_parser::JsonShape::plain, 0}));
}

py::object from_json(const py::object& text) {
    const std::string content = content_from(text);
    bk_parser::LoadResult loaded;
    {
        const py::gil_scoped_release unlocked;
        loaded = bk_parser::from_json(content);
    }
    return loaded_document(std::move(loaded));
}

} // namespace

void define_json(py::module_& module) {
    const char* const docstring = "The entries as JSON. 'lossless' and, with an entry of the outermost group "
                                  "on each line, 'lines' are what\n"
                                  "from_json reads back; 'plain' has names as keys, for tools that ask. "
                                  "docs/json.md describes the shapes.";
    for (PyTypeObject* const type : {types.group, types.entry}) {
        define(reinterpret_cast<PyObject*>(type), "to_json", to_json, py::arg("shape") = "lossless",
               py::arg("indent") = 2, docstring);
        define(
            reinterpret_cast<PyObject*>(type), "to_dict", to_dict,
            "The entries as dicts and lists: names are keys, and what repeats is a list (docs/json.md, the "
            "plain shape).");
    }
    module.def("from_json", from_json, py::arg("text"),
               "A document from JSON, as to_json writes it. Raises LoadError when nothing could be read.");
}

} // namespace bk_python
