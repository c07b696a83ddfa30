"""Makes changes one at a time, builds and tests; see tests/mutants/run."""

import argparse
import fnmatch
import os
import random
import shutil
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(__file__))
from changes import changes_of  # noqa: E402

TREE = "build/mutants/tree"
BUILD = "build/mutants/build"

# Sources, and the tests that should notice a change of them, those that notice soonest first.
WORDS = ["text_scan_*", "word_*", "text_parser_*", "text_writer_*", "text_carry_*", "read_observer_*",
         "preprocess_scan_*", "value_text_*", "value_read_*", "entry_add_*", "entry_read_*", "group_add_*", "hostile_text_*"]
BINARY = ["value_binary_*", "entry_binary_*", "group_binary_*", "file_binary_*", "binary_*", "golden_forms_*",
          "formats_page_*", "hostile_forms_*", "memory_out_*"]
CIPHER = ["cipher_*", "keystream_*", "file_encrypted_*", "golden_forms_*", "formats_page_*"]
ARCHIVE = ["word_hash_*", "archive_*", "golden_forms_*", "formats_page_*"]
NUMBERS = ["core_number_*", "environment_*", "core_string_test", "value_*", "word_value_*", "text_parser_values_*",
           "text_writer_values_*", "text_parser_words_*"]
MEMORY = ["core_memory_*", "threads_*", "slab_*", "chunk_out_*", "entry_copy_*", "resident_*", "fork_*"]
MODEL = ["value_*", "entry_*", "group_*", "edit_script_*", "text_parser_*", "text_writer_*", "binary_memory_*", "memory_out_*",
         "threads_*", "read_observer_*", "limits_*"]
TESTS = {
    "core/memory/core_memory.cpp": MEMORY,
    "core/memory/core_slab.cpp": MEMORY,
    "core/memory/core_slab_impl.h": MEMORY,
    "core/memory/core_slab_page_impl.h": MEMORY,
    "core/memory/core_slab_pool.cpp": MEMORY,
    "core/memory/core_slab_sizes_impl.h": MEMORY,
    "parser/model/parser_entry_make.cpp": MODEL,
    "parser/model/parser_value_stored.cpp": MODEL,
    "parser/model/lists/parser_value_list.cpp": MODEL,
    "parser/model/lists/parser_value_list_impl.h": MODEL,
    "parser/text/parser_tree_sink.cpp": MODEL,
    "parser/text/parser_tree_sink_impl.h": MODEL,
    "parser/words/parser_word.cpp": WORDS,
    "parser/words/parser_word_rules.cpp": WORDS,
    "parser/words/parser_word_rules_impl.h": WORDS,
    "parser/text/parser_word_stream.cpp": WORDS,
    "parser/text/parser_word_stream_impl.h": WORDS,
    "parser/model/parser_value_spelling.cpp": NUMBERS + ["entry_read_*"],
    "parser/archive/parser_word_lookup.cpp": ARCHIVE,
    "parser/archive/parser_word_lookup_impl.h": ARCHIVE,
    "parser/archive/parser_word_hash_impl.h": ARCHIVE,
    "parser/text/parser_grammar_impl.h": WORDS,
    "parser/text/parser_text_block.cpp": WORDS,
    "parser/text/parser_text_block_impl.h": WORDS,
    "parser/text/parser_text_scan_impl.h": WORDS,
    "parser/words/parser_characters_impl.h": ["characters_*"] + WORDS + ["preprocess_*"],
    "parser/words/parser_binary_data.cpp": BINARY,
    "parser/binary/parser_binary_decode.cpp": BINARY,
    "parser/binary/parser_binary_encode.cpp": BINARY,
    "parser/binary/parser_binary_impl.h": BINARY,
    "parser/binary/parser_binary_scalar_impl.h": BINARY,
    "parser/cipher/parser_cipher.cpp": CIPHER,
    "parser/cipher/parser_keystream.cpp": CIPHER,
    "parser/cipher/parser_keystream_impl.h": CIPHER,
    "core/text/core_eight_impl.h": ["text_scan_*"] + NUMBERS,
    "core/numbers/core_number.cpp": NUMBERS,
    "core/numbers/core_number_division.cpp": NUMBERS,
    "core/numbers/core_number_double.cpp": NUMBERS,
    "core/numbers/core_number_decimal_impl.h": NUMBERS,
    "core/numbers/core_number_digits_impl.h": NUMBERS,
    "core/numbers/core_number_impl.h": NUMBERS,
    "core/numbers/core_number_margined.cpp": NUMBERS,
    "core/numbers/core_number_short_impl.h": NUMBERS,
    "core/numbers/core_number_text_impl.h": NUMBERS,
}


def explained():
    """The changes of which it is known why no test can notice them."""
    with open(os.path.dirname(__file__) + "/explained.txt", encoding="utf-8") as file:
        return {line.rstrip("\n") for line in file if not line.startswith((" ", "#", "\n"))}


def run(command, timeout=None):
    """Exit status, None when it took too long. What a child says is dropped."""
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
    try:
        return process.wait(timeout)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, 9)
        process.wait()
        return None


def copy_tree():
    os.makedirs(TREE, exist_ok=True)
    listed = subprocess.run(["git", "ls-files", "-z"], stdout=subprocess.PIPE, check=True).stdout
    for name in listed.decode().split("\0"):
        if os.path.isfile(name):
            target = os.path.join(TREE, name)
            os.makedirs(os.path.dirname(target), exist_ok=True)
            with open(name, "rb") as file:
                bytes_ = file.read()
            if not os.path.isfile(target) or open(target, "rb").read() != bytes_:
                shutil.copy(name, target)


def tests_of(source):
    names = sorted(name[:-4] for name in os.listdir(TREE + "/tests") if name.endswith("_test.cpp"))
    found = []
    for pattern in TESTS[source]:
        found += [name for name in names if fnmatch.fnmatch(name, pattern) and name not in found]
    return found


class Mutants:
    def __init__(self):
        self.seconds = {}

    def prepare(self, sources):
        """Everything is built and passes before anything is changed."""
        copy_tree()
        settings = ["-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_CXX_FLAGS_RELEASE=-O1 -DBK_PARSER_ASSERTIONS", "-DBK_PARSER_TOOLS=OFF",
                    "-DBK_PARSER_EXAMPLES=OFF", "-DBK_PARSER_PRECOMPILE=OFF",
                    "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON"]  # a test need not be linked again for a changed library
        tests = sorted({test for source in sources for test in tests_of(source)})
        if run(["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", *settings]) or run(["ninja", "-C", BUILD, "bk_parser", *tests]):
            sys.exit("the tree does not build")
        for test in tests:
            start = time.monotonic()
            if run([f"{BUILD}/{test}"], 600) != 0:
                sys.exit(f"{test} fails before anything is changed")
            self.seconds[test] = time.monotonic() - start

    def judge(self, source, number, line):
        """What becomes of a change: the test that noticed it, "survived", or why it does not count."""
        path = os.path.join(TREE, source)
        with open(path, encoding="utf-8") as file:
            text = file.read()
        lines = text.split("\n")
        lines[number - 1] = line
        library = self.library()
        try:
            with open(path, "w", encoding="utf-8") as file:
                file.write("\n".join(lines))
            tests = tests_of(source)
            if run(["ninja", "-C", BUILD, "bk_parser", *tests], 600) != 0:
                return "does not compile"
            if self.library() == library:
                return "same code"
            for test in sorted(tests, key=lambda name: self.seconds[name] > 1):  # the long ones last
                if run([f"{BUILD}/{test}"], 10 + 10 * self.seconds[test]) != 0:
                    return test
            return "survived"
        finally:
            with open(path, "w", encoding="utf-8") as file:
                file.write(text)

    @staticmethod
    def library():
        with open(f"{BUILD}/libbk_parser.so", "rb") as file:
            return file.read()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--file", default="")
    parser.add_argument("--only", type=int, action="append", help="the number of a change in the list of all")
    arguments = parser.parse_args()

    sources = [source for source in TESTS if arguments.file in source and os.path.isfile(source)]
    changes = []
    for source in sources:
        with open(source, encoding="utf-8") as file:
            changes += [(source, *change) for change in changes_of(file.read())]
    order = list(range(len(changes)))
    random.Random(arguments.seed).shuffle(order)
    if arguments.only:
        order = arguments.only

    mutants = Mutants()
    mutants.prepare(sources)
    print(f"{len(changes)} changes can be made", flush=True)
    noticed, survived, known = 0, [], explained()
    for index in order:
        if noticed + len(survived) >= arguments.count:
            break
        source, number, kind, line = changes[index]
        if f"{source} {kind}: {line.strip()}" in known:
            print(f"{index:5} {'explained':28} {source}:{number} {kind}: {line.strip()}", flush=True)
            continue
        verdict = mutants.judge(source, number, line)
        print(f"{index:5} {verdict:28} {source}:{number} {kind}: {line.strip()}", flush=True)
        if verdict == "survived":
            survived.append(f"{index:5} {source}:{number} {kind}: {line.strip()}")
        elif verdict not in ("does not compile", "same code"):
            noticed += 1
    for one in survived:
        print("survived", one)
    made = noticed + len(survived)
    print(f"{made} changes, {noticed} noticed, {len(survived)} survived, {100 * noticed / max(made, 1):.1f} %")


if __name__ == "__main__":
    main()
