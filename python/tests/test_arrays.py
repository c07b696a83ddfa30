"""Lists of numbers as NumPy arrays, and back."""

import array

import pytest

import bk_parser
from bk_parser import Entry

numpy = pytest.importorskip("numpy")


def test_numbers_of_one_type_are_shown_where_they_stand() -> None:
    document = bk_parser.parse("w 0.5 0.25 0.125\nl 1 2 3\nm 1 2.5\n")
    shown = numpy.asarray(document["w"].values)
    assert shown.tolist() == [0.5, 0.25, 0.125]
    assert shown.dtype == numpy.float64
    assert not shown.flags.owndata and not shown.flags.writeable
    assert numpy.asarray(document["l"].values).dtype == numpy.int32
    mixed = numpy.asarray(document["m"].values)
    assert mixed.tolist() == [1.0, 2.5]


def test_arrays_are_stored() -> None:
    entry = Entry("w")
    entry.values = numpy.arange(6).reshape(2, 3)
    assert entry.values == [0, 1, 2, 3, 4, 5]
    entry.values = numpy.arange(6)[::-2]
    assert entry.values == [5, 3, 1]
    entry.values = numpy.array([[1, 2], [3, 4]]).T
    assert entry.values == [1, 3, 2, 4]
    entry.values.clear()
    entry.values = numpy.array([0.1, 0.5], dtype="f4")
    assert entry.values == [0.1, 0.5]
    entry.values.clear()
    entry.values = numpy.array([True, False])
    assert entry.values == [True, False]
    entry.values.clear()
    entry.values = array.array("d", [1.5, 2.5])
    assert entry.values == [1.5, 2.5]
    for letter in "bhlqBHLQ":
        entry.values.clear()
        entry.values = array.array(letter, [1, 2])
        assert entry.values == [1, 2]
        assert all(type(value) is int for value in entry.values)


def test_numbers_of_arrays_are_stored_as_single_values() -> None:
    entry = Entry("n", 1.0)
    for number in (numpy.float32(0.1), numpy.float64(0.1)):
        entry.value = number
        assert entry.values == [0.1]
    entry.values = [numpy.int64(5), numpy.bool_(True), numpy.uint8(3)]
    assert entry.values == [5, True, 3]


def test_arrays_that_no_value_holds_are_refused() -> None:
    entry = Entry("n", 1)
    for refused in (numpy.array([numpy.inf]), numpy.array([1 + 2j]), numpy.array([object()])):
        with pytest.raises((TypeError, ValueError)):
            entry.values = refused
    assert entry.values == [1]
    with pytest.raises(ValueError):
        entry.values = numpy.array([2**63 - 1])


def test_arrays_without_a_buffer_of_numbers_are_stored_as_lists() -> None:
    entry = Entry("n")
    for stored, expected in (
        (numpy.array(["a", "b"]), ["a", "b"]),
        (numpy.array([0.5, 2], dtype="f2"), [0.5, 2.0]),
        (numpy.array([[1, 2], [3, 4]], dtype=">i4"), [1, 2, 3, 4]),
        (numpy.array([1, "x", 2.5], dtype=object), [1, "x", 2.5]),
        (numpy.float16(0.5), [0.5]),
        ([numpy.float16(0.5), numpy.str_("s")], [0.5, "s"]),
    ):
        entry.values.clear()
        entry.values = stored  # type: ignore[assignment]
        assert entry.values == expected
        assert [type(value) for value in entry.values] == [type(value) for value in expected]
    for refused in (numpy.array([1 + 2j]), numpy.array(["2020-01-01"], dtype="M8[D]"), [numpy.array([1])]):
        with pytest.raises(TypeError, match="a value is a bool, int, float, str or bytes, not"):
            entry.values = refused


def test_bytes_are_one_value() -> None:
    for data in (b"\x01\x02", bytearray(b"\x01\x02"), memoryview(b"\x01\x02")):
        assert Entry("d", data).values == [b"\x01\x02"]
