"""Data frames of what the extension gives. pandas is imported when the first one is made."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any, Dict, Mapping, Tuple, Union

if TYPE_CHECKING:
    import numpy
    import pandas

    Column = Union["numpy.ndarray[Any, Any]", Tuple["numpy.ndarray[Any, Any]", "numpy.ndarray[Any, Any]"]]
    Section = Mapping[str, Any]


def _column(column: Column) -> Any:
    """A pair is the values of a column and where they are missing."""
    import pandas

    if not isinstance(column, tuple):
        return column
    values, missing = column
    arrays = {"f": pandas.arrays.FloatingArray, "i": pandas.arrays.IntegerArray, "b": pandas.arrays.BooleanArray}
    return arrays[values.dtype.kind](values, missing)


def frame(columns: Mapping[str, Column], attrs: Mapping[str, Any]) -> pandas.DataFrame:
    """A data frame with these columns and attributes."""
    import pandas

    made = pandas.DataFrame({name: _column(column) for name, column in columns.items()}, copy=False)
    made.attrs.update(attrs)
    return made


def section_frame(section: Section) -> pandas.DataFrame:
    """A section of a table, with its elements as index."""
    import pandas

    made = frame(section["columns"], section["attrs"])
    item = section["item"]
    if section["subGroup"] is None:
        made.index = pandas.Index(item, name="item", dtype=object)
    else:
        made.index = pandas.MultiIndex.from_arrays([section["subGroup"], item], names=["subGroup", "item"])
    made.columns.name = "key"
    return made


def series_frame(series: Tuple[Any, ...]) -> pandas.DataFrame:
    """A series by its steps."""
    import pandas

    attrs, steps, *numbers = series
    columns: Dict[str, Any] = {}
    for name, values in zip(("value", "time", "minimum", "maximum"), numbers):
        if values is not None:
            columns[name] = values
    made = pandas.DataFrame(columns, index=pandas.Index(steps, name="step"), copy=False)
    made.attrs.update(attrs)
    return made
