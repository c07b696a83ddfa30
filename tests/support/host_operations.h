#pragma once

#include "tests/support/failing_memory.h"

#include "core/sys_file.h"
#include "parser/parser_archive.h"
#include "parser/parser_file.h"
#include "tests/support/plain_text.h"
#include "tests/support/throwing_host.h"

#include <optional>
#include <string>
#include <vector>

/// The objects that the operations use. They are made before anything throws.
struct Stage {
    Stage() {
        disk.files["main.bkd"] =
            "#Brellwick_Serial_Version 1.2\n#include \"part.bkd\"\na 1 // why\n1 b { c \"a text "
            "longer than eleven\" = d 2 }\n";
        disk.files["part.bkd"] = "part { in 1 } (2)\n";
        disk.files["open.bkd"] = "a 1 #include \"part.bkd\" #include \"never_ended\n";
        disk.files["missing.bkd"] = "#include \"part.bkd\" #include \"nowhere.bkd\"\n";
        disk.files["itself.bkd"] = "#include \"itself.bkd\"\n";
        disk.files["out"] = "the old document";
        disk.files["stuck"] = "the old document";
        disk.files["full"] = "the old document";
        disk.files["pipe"] = "a 1 b 2 ";
        tree.set_text(CoreString("a 1 \"a text longer than eleven\" b { c 2 { d 3 } } f(1, yes) g[2] 1 2 "),
                      default_parser_serial_version, nullptr);
        file.get_root().set(tree);
        file.write(ParserFile::MODE_TEXT, cipher_path, key);
        file.clear();
        ParserImpl::archive_group(tree, archive, false, nullptr);
        ParserImpl::save_archive(archive, "packed", nullptr);
        cut_data = cuts_of(tree.get_binary(false));
        for (const char* word : {"a", "1", "}", "=", "b"}) {
            faulty_archive += CoreString(word);
        }
        deep.set_text(CoreString("a { b { c 1 } }"), default_parser_serial_version, nullptr);
        deep_data = deep.get_binary(false);
        file.set_read_observer(&observer);
        raw.add_string("a 1 = ) 2 ");
    }

    /// The data, cut at every byte.
    static std::vector<CoreVector<char>> cuts_of(const CoreVector<char>& data) {
        std::vector<CoreVector<char>> cuts(data.get_count());
        for (unsigned int size = 0; size < data.get_count(); ++size) {
            cuts[size].add_range(data.get_data(), size);
        }
        return cuts;
    }
    bool read(const CoreString& name, const CoreString& with_key) { return file.read(name, with_key, &bar); }

    ThrowingDisk disk;
    ThrowingLog log;
    ThrowingProgress bar;
    ThrowingObserver observer;
    ParserGroup tree{"tree"};
    ParserGroup deep{"deep"};
    ParserGroup group{"group"};
    ParserEntry entry{"entry_of_a_long_name", ParserEntry::TYPE_ENTRY, 0, 0};
    ParserEntry raw{"raw", ParserEntry::TYPE_RAW_TEXT, 0, 0};
    ParserFile file{CoreString()};
    ParserArchive archive;
    ParserArchive loaded;
    ParserArchive faulty_archive;
    CoreString text;
    CoreArray<unsigned char> bytes;
    CoreVector<char> deep_data;
    std::vector<CoreVector<char>> cut_data;
    const CoreString none;
    const CoreString key{"key"};
    const CoreString main_path{"main.bkd"};
    const CoreString missing_path{"missing.bkd"};
    const CoreString nowhere_path{"nowhere.bkd"};
    const CoreString open_path{"open.bkd"};
    const CoreString itself_path{"itself.bkd"};
    const CoreString cipher_path{"cipher.bkd"};
    const CoreString out_path{"out"};
    const CoreString stuck_path{"stuck"};
    const CoreString full_path{"full"};
    const CoreString pipe_path{"pipe"};
    const CoreString packed_path{"packed"};
    const CoreString bad_name{"not a name, and longer than eleven"};
    const CoreString faulty_text{
        "1 a 1 { b } = c ( d 1 (2) e 3 \"unfinished\n # <x> y<z 1 yes[2] 1 g { h { i 1 "};
    const CoreString ended_text{"a 1 } b 2"};
};

struct HostOperation {
    const char* name;
    void (*run)(Stage& stage);
    bool is_edit = false; ///< throws when memory runs out
};

inline const std::vector<HostOperation>& host_operations() {
    static const std::vector<HostOperation> operations = {
        {"read_with_an_include", [](Stage& s) { s.read(s.main_path, s.none); }},
        {"read_enciphered", [](Stage& s) { s.read(s.cipher_path, s.key); }},
        {"read_enciphered_under_a_wrong_key", [](Stage& s) { s.read(s.cipher_path, s.main_path); }},
        {"read_what_is_missing", [](Stage& s) { s.read(s.nowhere_path, s.none); }},
        {"read_with_a_missing_include", [](Stage& s) { s.read(s.missing_path, s.none); }},
        {"read_with_an_open_include", [](Stage& s) { s.read(s.open_path, s.none); }},
        {"read_what_includes_itself", [](Stage& s) { s.read(s.itself_path, s.none); }},
        {"read_a_pipe", [](Stage& s) { s.read(s.pipe_path, s.none); }},
        {"parse",
         [](Stage& s) {
             s.group.set_text(s.faulty_text, default_parser_serial_version, &s.bar, &s.observer);
             s.group.set_text(s.ended_text, default_parser_serial_version, &s.bar, &s.observer);
         }},
        {"parse_within_limits",
         [](Stage& s) {
             ParserLimits limits;
             limits.message_count = 2;
             s.group.set_text(s.faulty_text, default_parser_serial_version, &s.bar, &s.observer, limits);
             limits.nesting_depth = 1;
             s.group.set_text(s.faulty_text, default_parser_serial_version, &s.bar, &s.observer, limits);
         }},
        {"decode",
         [](Stage& s) {
             for (const CoreVector<char>& data : s.cut_data) {
                 core_uint64 position = 0;
                 s.group.set_binary(data, position);
             }
             ParserLimits limits;
             limits.nesting_depth = 1;
             core_uint64 position = 0;
             s.group.set_binary(s.deep_data, position, limits);
         }},
        {"decode_an_entry",
         [](Stage& s) {
             for (const CoreVector<char>& data : s.cut_data) {
                 core_uint64 position = 0;
                 s.entry.set_binary(data, position);
                 position = 9; // in the middle of the data, where no size begins
                 s.entry.set_binary(data, position);
             }
         }},
        {"decode_a_value",
         [](Stage& s) {
             for (const CoreVector<char>& data : s.cut_data) {
                 for (unsigned long long start = 0; start < 6; ++start) {
                     unsigned long long position = start;
                     delete ParserValue::bin_to_value(data, position);
                     position = start;
                     ParserValue::bin_to_string(data, position);
                     unsigned int size = 0;
                     position = start;
                     CoreMemory::release(ParserValue::bin_to_binary_data(data, position, size), size);
                 }
             }
         }},
        {"decode_a_file",
         [](Stage& s) {
             s.file.set_binary(s.cut_data[3]);
             s.file.set_binary(s.cut_data.back());
         }},
        {"archive",
         [](Stage& s) {
             ParserImpl::archive_group(s.tree, s.loaded, true, &s.bar);
             ParserImpl::archive_entry(*s.tree.get_entry(1), s.loaded, &s.bar);
             ParserValue value(new ParserGroup(s.deep));
             ParserImpl::archive_value(value, s.loaded, &s.bar);
         },
         true},
        {"parse_an_archive",
         [](Stage& s) {
             ParserImpl::group_set_archive(s.group, s.faulty_archive, &s.bar);
             ParserLimits limits;
             limits.archive_size = 1;
             ParserImpl::group_set_archive(s.group, s.archive, &s.bar, limits);
         }},
        {"save_an_archive", [](Stage& s) { ParserImpl::save_archive(s.archive, s.out_path, &s.bar); }},
        {"save_an_archive_to_a_full_disk",
         [](Stage& s) { ParserImpl::save_archive(s.archive, s.full_path, &s.bar); }},
        {"load_an_archive", [](Stage& s) { ParserImpl::load_archive(s.loaded, s.packed_path, &s.bar); }},
        {"write_text", [](Stage& s) { s.file.write(ParserFile::MODE_TEXT, s.out_path, s.none); }},
        {"write_binary", [](Stage& s) { s.file.write(ParserFile::MODE_BINARY, s.out_path, s.none); }},
        {"write_enciphered", [](Stage& s) { s.file.write(ParserFile::MODE_TEXT, s.out_path, s.key); }},
        {"write_in_an_unknown_mode",
         [](Stage& s) { s.file.write(static_cast<ParserFile::Mode>(7), s.out_path, s.none); }},
        {"write_to_a_full_disk", [](Stage& s) { s.file.write(ParserFile::MODE_TEXT, s.full_path, s.none); }},
        {"write_what_cannot_be_replaced",
         [](Stage& s) { s.file.write(ParserFile::MODE_BINARY, s.stuck_path, s.none); }},
        {"write_in_place", [](Stage& s) { s.file.write(ParserFile::MODE_TEXT, s.pipe_path, s.none); }},
        {"read_values_of_other_types",
         [](Stage& s) {
             const ParserEntry& group = *s.tree.get_entry("b");
             group.get_bool(0);
             group.get_char(0);
             group.get_int(0);
             group.get_double(0);
             group.get_string(0);
             group.get_binary_data(0);
             group.get_binary_data_size(0);
             group.get_vec4d(0);
         },
         true},
        {"add_under_a_bad_name",
         [](Stage& s) {
             s.group.add_entry(s.bad_name, 0, 0);
             s.group.add_group(s.bad_name);
             ParserGroup refused(s.bad_name);
             s.group.add_group(&refused);
         },
         true},
        {"read_enciphered_text",
         [](Stage& s) {
             s.raw.get_encrypted_text(s.bytes, s.key, true, 1);
             s.group.set_encrypted_text(s.bytes, s.key);
             s.raw.get_encrypted_text(s.text, s.key, true, 1);
             s.group.set_encrypted_text(s.text, s.key);
         }},
        {"ask_the_disk",
         [](Stage& s) {
             SysFilesystem::file_exists(s.main_path);
             SysFilesystem::get_full_file_path(s.main_path);
         }},
        {"use_a_file",
         [](Stage& s) {
             SysFile sys_file;
             sys_file.open(s.main_path, SysFile::MODE_READ, SysFile::TYPE_TEXT);
             sys_file.read(s.text, 5);
             char byte = 0;
             sys_file.read(&byte, 1, 1);
             sys_file.open(s.out_path, SysFile::MODE_WRITE, SysFile::TYPE_BINARY);
             sys_file.write("the old document", 16);
             sys_file.close();
         }},
    };
    return operations;
}
