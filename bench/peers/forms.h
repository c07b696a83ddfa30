#pragma once

#include "bench/peers/document.h"

#include <array>
#include <string>
#include <vector>

namespace bench {

enum class Form { text, xml, json, toml, config, msgpack };

constexpr std::array<Form, 6> all_forms = {Form::text, Form::xml,    Form::json,
                                           Form::toml, Form::config, Form::msgpack};

/// The name of the form, which is also the extension of its file.
const char* form_name(Form form);

std::string write_text(const Document& document);
/// A scalar becomes an attribute of its group's element unless its name repeats there. Any other list of values becomes an element with one
/// attribute for each value, which XML parsers read fastest.
std::string write_xml(const Document& document);
/// Entries that share a name become one list.
std::string write_json(const Document& document);
std::string write_toml(const Document& document);
std::string write_config(const Document& document);
std::string write_msgpack(const Document& document);

std::string write_form(const Document& document, Form form);

/// The kind of each attribute of the XML form, in document order, as digits. XML has no types, but a program that reads its own files knows
/// which type each attribute has. These kinds replace that knowledge.
std::string xml_kinds(const Document& document);

} // namespace bench
