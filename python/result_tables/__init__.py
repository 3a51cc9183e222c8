"""Result tables of a sheet-metal forming and body-assembly simulation.

    import result_tables

    results = result_tables.read_results("panel.results.json")
    results.findings()

`read_results` and `read_print` give `Results`: tables, values, findings, differences and series as data frames of pandas, series
also as arrays, and limits as dictionaries. `Study` is a database of many runs. `Draft` makes results of a solver's arrays. What
cannot be done is an `Error`.
"""

from ._draft import Draft, DraftUnit, Join, JoiningTong, LineJoin, SuctionZone
from ._error import Error
from ._result_tables import __version__
from ._results import Results, Tool, Unit, read_print, read_results, sample
from ._study import Study

__all__ = [
    "Draft",
    "DraftUnit",
    "Error",
    "Join",
    "JoiningTong",
    "LineJoin",
    "Results",
    "Study",
    "SuctionZone",
    "Tool",
    "Unit",
    "__version__",
    "read_print",
    "read_results",
    "sample",
]
