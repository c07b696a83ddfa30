"""Lists of numbers as NumPy arrays, and back."""

import array
import ctypes

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


def test_masked_numbers_are_refused() -> None:
    entry = Entry("n", 1)
    masked = numpy.ma.array([1.0, 2.0, 3.0], mask=[False, True, False])
    table = numpy.ma.array([[1, 2], [3, 4]], mask=[[False, False], [False, True]])
    for given in (masked, list(masked), (one for one in masked), numpy.ma.masked, [numpy.ma.masked], table, masked[1]):
        with pytest.raises(TypeError, match="a masked number is no value"):
            entry.values = given
    with pytest.raises(TypeError, match="a masked number is no value"):
        entry.values.append(numpy.ma.masked)
    for strange in (numpy.ma.array(["a", "b"], mask=[True, False]), numpy.ma.array([0.5], mask=[True], dtype="f2")):
        with pytest.raises(TypeError, match="a masked number is no value"):
            entry.values = strange
    assert entry.values == [1]
    entry.values = masked.filled(0)
    assert entry.values == [1, 0, 3]
    entry.values = numpy.ma.array([5, 6])
    assert entry.values == [5, 6]
    entry.values = masked[[0, 2]]
    assert entry.values == [1, 3]


def test_a_buffer_without_strides_is_read_in_the_order_of_c() -> None:
    entry = Entry("n")
    numbers: object
    for numbers, expected in (
        ((ctypes.c_double * 3)(1.5, 2.5, 3.5), [1.5, 2.5, 3.5]),
        (((ctypes.c_int * 2) * 2)((1, 2), (3, 4)), [1, 2, 3, 4]),
        (ctypes.c_double(4.5), [4.5]),
    ):
        entry.values.clear()
        entry.values = numbers  # type: ignore[assignment]
        assert entry.values == expected


def test_dates_are_refused() -> None:
    entry = Entry("n", 1)
    dates = [numpy.datetime64("2020-01-01"), numpy.timedelta64(5, "D")]
    for refused in (*dates, dates, numpy.array(dates[:1]), numpy.array(dates[1:])):
        with pytest.raises(TypeError, match="a value is a bool, int, float, str or bytes, not"):
            entry.values = refused
        with pytest.raises(TypeError):
            entry.values.append(refused)
    assert entry.values == [1]
