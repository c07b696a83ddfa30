#include "command/pages/completions.h"

#include "command/pages/help.h"
#include "command/pages/manual.h"
#include "command/table/command_table.h"

#include <algorithm>

namespace bkdoc {

namespace {

std::string words_of(std::string_view choices) {
    std::string words(choices);
    std::replace(words.begin(), words.end(), '|', ' ');
    return words;
}

std::string verb_names() {
    std::string names;
    for (const VerbSpec& verb : all_verbs()) {
        names += (names.empty() ? "" : " ") + std::string(verb.name);
    }
    return names + " " + std::string(help_verb);
}

std::string option_names(const VerbSpec& verb) {
    std::string names;
    for_each_option(&verb, [&names](const OptionSpec& option) {
        names += (names.empty() ? "" : " ") + std::string(option.name);
        names += option.short_name.empty() ? "" : " " + std::string(option.short_name);
    });
    return names;
}

// Values depend on the option, and for --to also on the verb.
std::string bash_values() {
    std::string text;
    for (const VerbSpec& verb : all_verbs()) {
        for_each_option(&verb, [&](const OptionSpec& option) {
            const std::string start = "        " + std::string(verb.name) + ":" + std::string(option.name) +
                                      (option.short_name.empty() ? std::string()
                                                                 : " | " + std::string(verb.name) + ":" +
                                                                       std::string(option.short_name)) +
                                      ") ";
            switch (option.kind) {
            case ValueKind::choice:
                text += start + "offered=\"" + words_of(option.value_name) + "\" ;;\n";
                break;
            case ValueKind::folder:
                text += start + "kind=folder ;;\n";
                break;
            case ValueKind::file:
                text += start + "kind=file ;;\n";
                break;
            case ValueKind::word:
            case ValueKind::whole_number:
                text += start + "return ;;\n";
                break;
            case ValueKind::none:
                break;
            }
        });
    }
    return text;
}

std::string bash_completion() {
    std::string text = "# Completion of bkdoc's command line for bash, made by `bkdoc generate bash`.\n"
                       "_bkdoc() {\n"
                       "    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}\n"
                       "    local verb=\"\" offered=\"\" kind=\"\" i\n"
                       "    local verbs=\"" +
                       verb_names() +
                       "\"\n"
                       "    for ((i = 1; i < COMP_CWORD; ++i)); do\n"
                       "        if [[ -z $verb && \" $verbs \" == *\" ${COMP_WORDS[i]} \"* ]]; then "
                       "verb=${COMP_WORDS[i]}; fi\n"
                       "    done\n"
                       "    COMPREPLY=()\n"
                       "    case $verb:$previous in\n" +
                       bash_values() +
                       "        *)\n"
                       "            if [ -z \"$verb\" ]; then\n"
                       "                offered=$verbs\n"
                       "                [[ $word == -* ]] && offered=\"--help --version --color\"\n"
                       "            elif [ \"$verb\" = help ]; then\n"
                       "                offered=$verbs\n"
                       "            elif [[ $word == -* ]]; then\n"
                       "                case $verb in\n";
    for (const VerbSpec& verb : all_verbs()) {
        text +=
            "                    " + std::string(verb.name) + ") offered=\"" + option_names(verb) + "\" ;;\n";
    }
    return text + "                esac\n"
                  "            fi ;;\n"
                  "    esac\n"
                  "    if [ -n \"$offered\" ]; then\n"
                  "        mapfile -t COMPREPLY < <(compgen -W \"$offered\" -- \"$word\")\n"
                  "    elif [ \"$kind\" = folder ]; then\n"
                  "        mapfile -t COMPREPLY < <(compgen -d -- \"$word\")\n"
                  "    else\n"
                  "        mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n"
                  "    fi\n"
                  "}\n"
                  "complete -o filenames -F _bkdoc bkdoc\n";
}

/// Quotes a text for a shell, with single quotes.
std::string quoted(std::string_view text) {
    std::string result = "'";
    for (const char character : text) {
        result += character == '\'' ? std::string("'\\''") : std::string(1, character);
    }
    return result + "'";
}

/// Escapes a description for zsh, where brackets and colons have a meaning.
std::string zsh_escaped(std::string_view text) {
    std::string result;
    for (const char character : text) {
        if (character == '[' || character == ']' || character == ':' || character == '\\') {
            result += '\\';
        }
        result += character == '\n' ? ' ' : character;
    }
    return result;
}

std::string zsh_action(const OptionSpec& option) {
    switch (option.kind) {
    case ValueKind::none:
        return {};
    case ValueKind::choice:
        return ":word:(" + words_of(option.value_name) + ")";
    case ValueKind::folder:
        return ":folder:_files -/";
    case ValueKind::file:
        return ":file:_files";
    default:
        return ":" + zsh_escaped(option.value_name) + ": ";
    }
}

std::string zsh_option(const OptionSpec& option) {
    std::string text;
    for (const std::string_view name : {option.name, option.short_name}) {
        if (!name.empty()) {
            text +=
                " \\\n                " + quoted(std::string(option.repeats ? "*" : "") + std::string(name) +
                                                 "[" + zsh_escaped(option.help) + "]" + zsh_action(option));
        }
    }
    return text;
}

std::string zsh_completion() {
    std::string text =
        "#compdef bkdoc\n# Completion of bkdoc's command line for zsh, made by `bkdoc generate zsh`.\n"
        "_bkdoc() {\n    local -a verbs\n    verbs=(\n";
    for (const VerbSpec& verb : all_verbs()) {
        text += "        " + quoted(std::string(verb.name) + ":" + zsh_escaped(verb.summary)) + "\n";
    }
    text += "        " + quoted(std::string(help_verb) + ":" + zsh_escaped(help_summary)) + "\n";
    text += "    )\n    if ((CURRENT == 2)) || ((CURRENT == 3)) && [ \"$words[2]\" = help ]; then\n        "
            "_describe verb verbs\n        return\n    fi\n"
            "    local verb=$words[2]\n    shift words\n    ((--CURRENT))\n    case $verb in\n";
    for (const VerbSpec& verb : all_verbs()) {
        text += "        " + std::string(verb.name) + ")\n            _arguments -s";
        for_each_option(&verb, [&text](const OptionSpec& option) { text += zsh_option(option); });
        text += " \\\n                '*:file:_files' ;;\n";
    }
    return text + "        *) _files ;;\n    esac\n}\n"
                  "if [ \"$funcstack[1]\" = _bkdoc ]; then _bkdoc \"$@\"; else compdef _bkdoc bkdoc; fi\n";
}

std::string fish_option(const VerbSpec& verb, const OptionSpec& option) {
    std::string text =
        "complete -c bkdoc -n " + quoted("__fish_seen_subcommand_from " + std::string(verb.name));
    for (const std::string_view name : {option.name, option.short_name}) {
        if (name.starts_with("--")) {
            text += " -l " + std::string(name.substr(2));
        } else if (!name.empty()) {
            text += " -s " + std::string(name.substr(1));
        }
    }
    switch (option.kind) {
    case ValueKind::none:
        break;
    case ValueKind::choice:
        text += " -x -a " + quoted(words_of(option.value_name));
        break;
    case ValueKind::folder:
        text += " -x -a '(__fish_complete_directories)'";
        break;
    case ValueKind::file:
        text += " -r -F";
        break;
    default:
        text += " -x";
        break;
    }
    std::string help(option.help);
    std::replace(help.begin(), help.end(), '\n', ' ');
    return text + " -d " + quoted(help) + "\n";
}

std::string fish_completion() {
    std::string text = "# Completion of bkdoc's command line for fish, made by `bkdoc generate fish`.\n";
    const std::string no_verb = quoted("not __fish_seen_subcommand_from " + verb_names());
    for (const VerbSpec& verb : all_verbs()) {
        text += "complete -c bkdoc -f -n " + no_verb + " -a " + std::string(verb.name) + " -d " +
                quoted(verb.summary) + "\n";
    }
    text += "complete -c bkdoc -f -n " + no_verb + " -a " + std::string(help_verb) + " -d " +
            quoted(help_summary) + "\n";
    text += "complete -c bkdoc -f -n " + quoted("__fish_seen_subcommand_from " + std::string(help_verb)) +
            " -a " + quoted(verb_names()) + "\n";
    for (const VerbSpec& verb : all_verbs()) {
        for_each_option(&verb, [&](const OptionSpec& option) { text += fish_option(verb, option); });
    }
    return text;
}

} // namespace

std::string generated(std::string_view what) {
    return what == "man"    ? manual_page()
           : what == "bash" ? bash_completion()
           : what == "zsh"  ? zsh_completion()
           : what == "fish" ? fish_completion()
                            : std::string();
}

} // namespace bkdoc
