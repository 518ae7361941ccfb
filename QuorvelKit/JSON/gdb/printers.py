# SPDX-License-Identifier: Apache-2.0
"""Lets gdb print JSON values as text: {"a": 1, "b": [1, 2]}.

Reads documents and cells from memory by their layout, because an installed library rarely has debug
information. The layouts are those of ValueAccess_p.h and Document_p.h on 64-bit systems with
libstdc++. Keep this file in step with them.
"""

import itertools
import json
import struct

import gdb
import gdb.printing
import gdb.types

MAXIMUM_LENGTH = 1000

# The tags of values. These have a fixed text:
FIXED_TEXTS = {0: "null", 1: "false", 2: "true", 6: "unknown", 7: "null", 8: "null",
               11: "unsupported"}
INT64, UINT64, FLOAT64, DECIMAL, TEXT = 3, 4, 5, 9, 10
ARRAY, MAP, FROZEN_TEXT, FROZEN_ARRAY, FROZEN_MAP = 12, 13, 14, 15, 16

# Offsets in documents and cells.
STRING_IN_CELL = DECIMAL_IN_CELL = 8
VECTOR_IN_CELL = 24
NODES_IN_DOCUMENT, STRING_TABLE_IN_DOCUMENT, KEYS_IN_DOCUMENT = 520, 544, 568
# Sizes of array elements.
VALUE, NODE, KEY, STRING = 16, 16, 16, 32


def read(address, layout):
    size = struct.calcsize("=" + layout)
    return struct.unpack("=" + layout, gdb.selected_inferior().read_memory(address, size).tobytes())


def quoted(address, size):
    size = min(size, 4 * MAXIMUM_LENGTH)
    data = gdb.selected_inferior().read_memory(address, size).tobytes() if size else b""
    charset = gdb.host_charset() if hasattr(gdb, "host_charset") else "ASCII"
    return json.dumps(data.decode("utf-8", "replace"), ensure_ascii="utf" not in charset.lower())


class Document:
    """Reads the node array, the string table and the keys of a document."""

    def __init__(self, address):
        self.address = address
        (self.nodes,) = read(address + NODES_IN_DOCUMENT, "Q")
        (self.string_table,) = read(address + STRING_TABLE_IN_DOCUMENT, "Q")
        (self.keys,) = read(address + KEYS_IN_DOCUMENT, "Q")

    def range(self, node):
        """Returns the first and count of the bytes of a text or of the children of a container."""
        return read(self.nodes + node * NODE, "II")

    def key(self, node):
        (number,) = read(self.nodes + node * NODE + 8, "I")
        offset, length = read(self.keys + number * KEY + 8, "II")
        return quoted(self.string_table + offset, length)

    def value(self, node):
        payload, tag = read(self.nodes + node * NODE, "Q4xB")
        return (payload, tag) if tag < FROZEN_TEXT else (self.address, tag | node << 32)


def scalar(payload, word):
    tag = word & 0xFF
    if tag in FIXED_TEXTS:
        return FIXED_TEXTS[tag]
    if tag == INT64:
        return str(payload - (payload >> 63 << 64))
    if tag == UINT64:
        return str(payload)
    if tag == FLOAT64:
        text = repr(struct.unpack("=d", struct.pack("=Q", payload))[0])
        return text[:-2] if text.endswith(".0") else text
    if tag == DECIMAL:
        high, low, exponent, negative, nan = read(payload + DECIMAL_IN_CELL, "QQh??")
        text = "%s%d" % ("-" if negative else "", high << 64 | low)
        return "nan" if nan else text + ("e%d" % exponent if exponent else "")
    if tag == TEXT:
        return quoted(*read(payload + STRING_IN_CELL, "QQ"))
    if tag == FROZEN_TEXT:
        document = Document(payload)
        first, size = document.range(word >> 32)
        return quoted(document.string_table + first, size)
    return "<not a JSON value>"


def children(payload, word):
    """Yields for each child the text of its key (empty in arrays), and its payload and word."""
    tag = word & 0xFF
    if tag in (FROZEN_ARRAY, FROZEN_MAP):
        document = Document(payload)
        first, count = document.range(word >> 32)
        for node in range(first, first + count):
            key = document.key(node) + ": " if tag == FROZEN_MAP else ""
            yield key, document.value(node)
        return
    begin, end = read(payload + VECTOR_IN_CELL, "QQ")
    key_size = STRING if tag == MAP else 0
    for address in range(begin, end, key_size + VALUE):
        key = quoted(*read(address, "QQ")) + ": " if tag == MAP else ""
        yield key, read(address + key_size, "QQ")


def pieces(payload, word):
    """Yields the text of a value in pieces. Not recursive, since values may be deep."""
    containers = []
    value = (payload, word)
    while True:
        tag = value[1] & 0xFF
        if tag in (ARRAY, MAP, FROZEN_ARRAY, FROZEN_MAP):
            is_map = tag in (MAP, FROZEN_MAP)
            yield "{" if is_map else "["
            separators = itertools.chain([""], itertools.repeat(", "))
            containers.append((zip(children(*value), separators), "}" if is_map else "]"))
        else:
            yield scalar(*value)
        child = None
        while containers and child is None:
            child = next(containers[-1][0], None)
            if child is None:
                yield containers.pop()[1]
        if child is None:
            return
        (key, value), separator = child
        yield separator + key


def formatted(payload, word):
    text = ""
    try:
        for piece in pieces(payload, word):
            text += piece
            if len(text) > MAXIMUM_LENGTH:
                return text[:MAXIMUM_LENGTH] + "..."
    except gdb.MemoryError:
        text += "<unreadable memory>"
    return text


class ValuePrinter:
    """Prints a Value or a ValueView, and a JSON by its Value."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        is_json = gdb.types.get_basic_type(self.value.type).tag == "quorvelkit::JSON"
        bits = (self.value["value_"] if is_json else self.value)["bits_"]
        return formatted(int(bits["payload"]), int(bits["word"]))


def register():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("quorvelkit")
    printers.add_printer("JSON", "^quorvelkit::(JSON|Value|ValueView)$", ValuePrinter)
    gdb.printing.register_pretty_printer(gdb.current_objfile(), printers, replace=True)


register()
