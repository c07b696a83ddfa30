"""Shows strings, values, entries, groups and files of bk_parser in gdb as the text syntax writes them.

In gdb: source bk_parser_gdb.py
"""

import gdb
import gdb.printing

INLINE_CAPACITY = 11
VALUE_SIZE = 16
UNLISTED = 0xEFFFFFFF  # what is below is the length of a string
HELD, TYPE_SHIFT, LARGEST_TYPE, SPELLED = 1 << 27, 24, 7, 1 << 23
OFFSET_MASK, OFFSET_SHIFT, SIZE_MASK = 7 << 20, 12, (1 << 20) - 1
GROUP, BOOL, CHAR, INT, DOUBLE, STRING, BINARY_DATA, WORD = range(8)

LONGEST_TEXT = 200  # characters of one string
MOST_ITEMS = 16  # entries or values in one line
DEEPEST = 3  # levels in one line


def bytes_at(pointer, size):
    if size == 0 or int(pointer) == 0:
        return b""
    return bytes(gdb.selected_inferior().read_memory(int(pointer), size))


def shortened(data):
    text = data[:LONGEST_TEXT].decode("utf-8", "replace")
    return text + "..." if len(data) > LONGEST_TEXT else text


def string_bytes(string):
    """What a CoreBasicString or CoreString holds."""
    short = string["short_"]
    length = int(short["length"])
    start = short["text"].address if length <= INLINE_CAPACITY else string["long_"]["data"]
    return bytes_at(start, min(length, LONGEST_TEXT + 1))


def name_of(named):
    return shortened(string_bytes(named["name_"]))


def quoted(text):
    escapes = {"\t": "\\t", "\n": "\\n", "\r": "\\r", '"': '\\"', "\\": "\\\\"}
    return '"' + "".join(escapes.get(character, character) for character in text) + '"'


def value_text(value, depth=0):
    """Of the bk::ValueData that an entry stores, and that is inside a ParserValue."""
    plain = value["plain_"]
    mark = int(plain["mark"])
    content = plain["content"]
    if mark < UNLISTED:
        return quoted(shortened(string_bytes(value["string_"])))
    if mark == UNLISTED:
        return "<of no known type>"
    kind = mark >> TYPE_SHIFT & LARGEST_TYPE
    if kind == STRING:
        return quoted(shortened(string_bytes(content["string"].dereference())))
    if kind == GROUP:
        return group_body(content["group"], depth)
    if kind == BINARY_DATA:
        size = int(plain["offset"])
        shown = bytes_at(content["bytes"], min(size, 16)).hex().upper()
        return "0x%s%s (%d bytes)" % (shown, "..." if size > 16 else "", size)
    if mark & SPELLED:
        size = mark & SIZE_MASK
        start = int(value.address) + ((mark & OFFSET_MASK) << OFFSET_SHIFT) + int(plain["offset"])
        if size == SIZE_MASK:  # in a block of its own: a scalar, the size, the text
            block = int(content["apart"])
            size = int(gdb.Value(block + 8).cast(gdb.lookup_type("unsigned int").pointer()).dereference())
            start = block + 16
        return shortened(bytes_at(start, min(size, LONGEST_TEXT + 1)))
    if not mark & HELD:
        return "<cleared>"
    scalar = content["scalar"]
    if kind == BOOL:
        return "yes" if int(scalar["as_bool"]) else "no"
    if kind == CHAR:
        return str(int(scalar["as_char"]))
    if kind == INT:
        return str(int(scalar["as_int"]))
    return repr(float(scalar["as_double"]))


def values_of(entry):
    """The values of an entry, wherever its list keeps them."""
    values = entry["values_"]
    storage = int(values["block_"])
    value_type = gdb.lookup_type("bk::ValueData")
    pointer = gdb.lookup_type("void").pointer().pointer()
    for i in range(int(values["count_"])):
        if values["in_cells_"]:
            cell = int(gdb.Value(storage + 8 + 8 * i).cast(pointer).dereference())
            place = cell + 8
        else:
            place = storage + 8 + VALUE_SIZE * i
        yield gdb.Value(place).cast(value_type.pointer()).dereference()


def joined(texts, opening="", closing=""):
    shown = []
    for text in texts:
        if len(shown) == MOST_ITEMS:
            shown.append("...")
            break
        shown.append(text)
    return " ".join([opening] * bool(opening) + shown + [closing] * bool(closing))


def entry_text(entry, depth=0):
    return joined([name_of(entry)] + [value_text(value, depth) for value in values_of(entry)])


def entries_of(group):
    entries = group["entries_"]
    for i in range(int(entries["count_"])):
        yield entries["data_"][i]


def group_body(pointer, depth):
    if int(pointer) == 0:
        return "{ }"
    if depth >= DEEPEST:
        return "{ ... }"
    entries = (entry_text(e.dereference(), depth + 1) if int(e) else "<detached>" for e in entries_of(pointer))
    return joined(entries, "{", "}")


class StringPrinter:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return shortened(string_bytes(self.value))

    def display_hint(self):
        return "string"


class ValuePrinter:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return value_text(self.value["stored_"])


class EntryPrinter:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return entry_text(self.value)


class GroupPrinter:
    """A line for each entry, as many as `set print elements` allows."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        count = int(self.value["entries_"]["count_"])
        return "group %s of %d %s" % (name_of(self.value), count, "entry" if count == 1 else "entries")

    def children(self):
        for i, entry in enumerate(entries_of(self.value)):
            yield "[%d]" % i, entry.dereference() if int(entry) else "<detached>"


class FilePrinter:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return "file %s" % quoted(shortened(string_bytes(self.value["filename_"])))

    def children(self):
        yield "root", self.value["root_"].dereference()


class VectorPrinter:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return "vector of %d" % int(self.value["count_"])

    def children(self):
        for i in range(int(self.value["count_"])):
            yield "[%d]" % i, self.value["data_"][i]

    def display_hint(self):
        return "array"


def make_printers():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("bk_parser")
    printers.add_printer("string", "^Core(Basic)?String$", StringPrinter)
    printers.add_printer("vector", "^CoreVector<.*>$", VectorPrinter)
    printers.add_printer("value", "^ParserValue$", ValuePrinter)
    printers.add_printer("entry", "^ParserEntry$", EntryPrinter)
    printers.add_printer("group", "^ParserGroup$", GroupPrinter)
    printers.add_printer("file", "^ParserFile$", FilePrinter)
    return printers


gdb.printing.register_pretty_printer(None, make_printers(), replace=True)
