"""Inputs and command lines that the program must refuse, each in its own way: as many of its messages as can be had cheaply."""

import pathlib

ID = "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01"
RESULTS = '{"format": "simulation-results", "version": 1, "units": [%s]}'
UNIT = RESULTS % ('{"id": "%s", "name": "Q1", %%s}' % ID)
TOOL = UNIT % '"tools": [{"id": "Q2", "kind": "bolt", %s}]'
SERIES = TOOL % '"series": [{"quantity": "BoltX", %s}]'
VALUE = SERIES % '"values": [%s]'
STEP = UNIT % '"steps": [{%s}]'

RESULTS_FILES = [
    "", "{", "[", "{} {}", "{]", '{"format" 1}', '{"format": tru}', '{"format": "x"', '{"format": "simulation-results" 1}', '{"a": 1}',
    '{"format": 1}', '{"format": "q"}', '{"format": "limits", "version": 1}', "\ufeff{}", b'{"format": "\xff"}', '{"format": "\\q"}',
    '{"format": "\\u12"}', '{"format": "\\ud800"}', '{"format": "a\nb"}', '{"format": "', "{\0}", '{"format": "a", "format": "b"}',
    '{"format": "simulation-results", "version": 2, "units": []}', '{"format": "simulation-results", "version": 1}',
    '{"format": "simulation-results", "version": 1.5}', '{"format": "simulation-results", "version": 1, "units": 3}',
    RESULTS % "1", RESULTS % '{"id": "x"}', RESULTS % '{"id": null}', RESULTS % f'{{"id": "{ID}"}}',
    RESULTS % ", ".join([f'{{"id": "{ID}", "name": "Q1"}}'] * 2), UNIT % '"size": 1', UNIT % '"visibleSteps": {"first": 0}',
    UNIT % '"visibleSteps": {"first": 0, "last": 3}, "steps": [null]', UNIT % '"visibleSteps": true', UNIT % '"tools": null',
    UNIT % '"tools": [{"id": "a", "kind": "x"}]', UNIT % '"tools": [{"id": "a", "kind": "bolt"}, {"id": "a", "kind": "bolt"}]',
    UNIT % '"toolGroupings": {"Clamps": []}', UNIT % '"joinsDefinedInUnit": ["1"]', TOOL % '"series": {}', SERIES % '"values": 1',
    SERIES % '"values": [1], "pairs": []', TOOL % '"series": [{"quantity": "x"}]', SERIES % '"pairs": [[1]]', SERIES % '"pairs": [[1, 2, 3]]',
    SERIES % '"pairs": [1]', VALUE % '"x"', VALUE % "1.", VALUE % "1e", VALUE % "1e400", VALUE % ("9" * 320), VALUE % "-", VALUE % "01",
    VALUE % "{}", VALUE % "true", VALUE % "NaN", STEP % '"joins": [1]', STEP % '"lineJoins": [{"guid": 1}]',
    STEP % f'"suctionZones": [{{"guid": "{ID}", "name": "a", "active": 1}}]',
    STEP % f'"joins": [{{"guid": "{ID}", "id": "a", "name": "b", "state": -1}}]',
    STEP % f'"joins": [{{"guid": "{ID}", "id": "a", "name": "b", "state": 4294967296}}]',
    STEP % f'"lineJoins": [{{"guid": "{ID}", "id": "a", "name": "b", "state": 1, "skins": {{"LineJoinGap": {{"min": "x"}}}}}}]',
]  # fmt: skip

LIMITS = '{"format": "limits", "version": 1, %s}'
DOCUMENT = (pathlib.Path(__file__).parent.parent / "data/limits_documents/example.limits").read_bytes()
DOCUMENTS = [b"Q", bytes(64), DOCUMENT[:-1], DOCUMENT[:8] + b"\2" + DOCUMENT[9:], DOCUMENT[:-1] + bytes([DOCUMENT[-1] ^ 1])]
TEXTS_OF_LIMITS = [
    "{", LIMITS % '"all": 1', LIMITS % '"all": {"limits": {"Bolt": 1}}', LIMITS % '"all": {"limits": {"BoltNormalForce": "x"}}',
    LIMITS % '"all": {"columns": {"Bolts": {"ClampNormalForce": 3}}}', LIMITS % '"all": {"columns": {"Nuts": {}}}',
    LIMITS % '"all": {"columns": {"Clamps": {"Bolt": 3}}}', LIMITS % '"units": [{"name": "Q99"}]', LIMITS % '"units": [{}]',
    LIMITS % '"units": [{"name": "Q1"}, {"name": "Q1"}]', LIMITS % f'"units": [{{"id": "{ID}"}}, {{"id": "{ID}"}}]',
    LIMITS % '"all": {"columns": {"Clamps": {"ClampClosingForce": 320}}}',
]  # fmt: skip

HISTORIES = [
    "", "Q\n", "a,b\n1,2\n", "time\n0\n", "time,Q,Q\n0,1,2\n", "time,Q\n0,1,2\n", "time,Q\n0,x\n", "time,Q\nx,1\n", 'time,"Q\n', 'time,"Q"x\n',
    'time,Q"x\n', "time,Q\n1,2\n0,2\n", b"time,Gr\xf6\xdfe\n0,1\n", "time,Q\n", "time;Q\n0,5;1,5\n", "entity,quantity,time,value\nQ,Q,0\n",
    "entity,quantity,time,value\n,Q,0,1\n", "time,Q\n0,1e999\n", "time,\n0,1\n", "time,Q\n0,1,5\n",
]  # fmt: skip

FORCES = " forces (fx,fy,fz) for set Q and time  0.1000000E+01\n\n"
PRINTS = [
    "", "Q\n", " forces (fx,fy,fz) for set Q\n", FORCES, FORCES + "         1  1.0\n", FORCES + "         x  1.0 2.0 3.0\n",
    FORCES + "         1  1.0 2.0 3.0 4.0\n", FORCES + "         1  1.0 x 3.0\n", " forces (fx,fy,fz) for set Q and time  x\n\n",
    FORCES + "         1  1.0 2.0 3.0\n\n" + FORCES.replace("E+01", "E+02") + "         2  1.0 2.0 3.0\n",
    FORCES + "         1  1.0 2.0 3.0\n\n" + FORCES.replace("E+01", "E+02"),
    " stresses (elem, integ.pnt.,sxx,syy,szz,sxy,sxz,syz) for set Q and time  0.1000000E+01\n\n         x  1  1 2 3 4 5 6\n",
    " stresses (elem, integ.pnt.,sxx,syy,szz,sxy,sxz,syz) for set Q and time  0.1000000E+01\n\n         1  x  1 2 3 4 5 6\n",
    b" forces (fx,fy,fz) for set \xff and time  0.1000000E+01\n",
]  # fmt: skip

MAP = '{"format": "import-map", "version": 1, "units": [%s]}'
MAP_UNIT = MAP % ('{"id": "%s", "name": "Q1", %%s}' % ID)
MAP_SERIES = MAP_UNIT % '"tools": [{"id": "Q2", "kind": "bolt", "series": [{"quantity": "Q3", %s}]}]'
MAP_TERM = MAP_SERIES % '"sum": [{"history": "%s"%s}]'
MAPS = [
    "{", MAP % "", MAP % "1", MAP_UNIT % '"tools": [{"id": "a", "kind": "x"}]', MAP_SERIES % '"history": "Q"', MAP_SERIES % '"sum": []',
    MAP_SERIES % '"sum": [], "norm": []', MAP_SERIES % '"norm": []', MAP_SERIES % '"sum": [{}]', MAP_SERIES % '"form": "x", "sum": [{}]',
    MAP_TERM % ("Q", ""), MAP_TERM % ("left.force", ', "node": 3'), MAP_TERM % ("left.force", ', "scale": "x"'),
    MAP_TERM % ("left.force", ', "element": 3'), MAP_UNIT % '"step": "x"',
    MAP_UNIT % '"toolGroupings": {"Rollers": [{"name": "a", "tools": ["x"]}]}',
    MAP_SERIES % '"sum": [{"history": "left.force"}, {"history": "Q"}]', MAP_UNIT % '"stepTimes": [null, 1], "joins": [{}]',
    MAP_UNIT % f'"stepTimes": [null, 1], "suctionZones": [{{"guid": "{ID}", "name": "a", "active": [true]}}]',
    MAP_UNIT % '"tools": [{"id": "a", "kind": "bolt"}, {"id": "a", "kind": "bolt"}]', MAP_UNIT % '"joinsDefinedInUnit": ["x"]',
]  # fmt: skip
MAPS_OF_PRINTS = {
    "cube.dat": [("BOTTOM.forces fx", ', "node": 99'), ("BOTTOM.total force fx", ', "node": 1')],
    "elements.dat": [("BODIES.sxx", ""), ("BODIES.sxx", ', "element": 99, "point": 1'), ("BODIES.sxx", ', "node": 1')],
    "punches.dat": [("PUNCHES.sxx", ', "reduce": "sum"'), ("PUNCHES.sxx", ', "reduce": "x"')],
}


COMMAND_LINES = """
shwo | show | show r1.json x --bogus | show r1.json --family x | show r1.json --family | show r1.json --teaching=x
show r1.json --unit x | show none.json | show . | show r1.json/x | show r1.json --format x
show r1.json --format csv --csv x | show r1.json --format json --csv plain | show r1.json --digits 0
show r1.json --colour x | show r1.json --digits 1 --digits 2 | show r1.json --limits none.limits | show r1.json --limits=
show r1.json --limits r1.json | show r1.json --output none/x | show r1.json --output= | show press.csv --map
show r1.json --map press.map.json | show press.csv --map press.map.json --from x | show r1.json --from csv
show r1.json --decimal-comma | show r1.json r2.json --limits d.limits | show - --limits - | check r1.json --jobs 0
check r1.json --jobs x | check r1.json --format html --curves x | diff r1.json | diff - - | diff r1.json r2.json --abs x
diff r1.json r2.json --abs=-1 | diff r1.json r2.json r2.json | series r1.json --item x | series r1.json --key x | limits
limits x | limits set r1.json --type x --value 1 --all | limits set r1.json --type 99 --value 1 --all
limits set r1.json --type 14 --value 1 --all | limits set r1.json --type BoltNormalForce --value x --all
limits set r1.json --type BoltNormalForce --value 1 | limits set r1.json --type BoltNormalForce --value 1 --all --unit x
limits set r1.json --type NoLimit --value 1 --unit x | limits set r1.json --type BoltNormalForce --all | limits dump none
limits list r1.json --format x | limits sync - | limits set r1.json --type BoltNormalForce --value 1 --all --limits r1.json
import | import x | import csv press.csv | import csv press.csv --list --make-map | import csv press.csv --map none.json
import csv none.csv --list | import csv press.csv --map r1.json | import calculix cube.dat --map cube.map.json --step x
import calculix cube.dat --map cube.map.json --step 99 | import calculix press.csv --list | import csv cube.dat --list
import csv press.csv --list --step 1 | import calculix punches.dat --map cube.map.json | study | study x | study list none.db
study list r1.json | study list . | study list postgresql://%zz | study list postgresql://a:b@c/d | study add t.db none.json
study add t.db r1.json r2.json --run x | study add t.db r1.json --label x | study add t.db r1.json --label a=1 --label a=2
study add t.db - | study add t.db s.db --family Bolts | study worst s.db --top 0 | study worst s.db --unit x
study trend s.db --unit x --family Bolts --item x --key x | study trend s.db --family Bolts --item x --key x --unit Q1
study compare s.db R0 x | study compare s.db R0 | study remove s.db x | study export s.db --long --statistics
study export s.db --statistics --format json
"""


def wrong_inputs():
    """What each file holds, and the command that must refuse it."""
    for name, contents, command in (
        ("q{}.json", RESULTS_FILES, "show {}"),
        ("q{}.limits", TEXTS_OF_LIMITS, "limits import r1.json {}"),
        ("d{}.limits", DOCUMENTS, "limits list r1.json --limits {}"),
        ("q{}.csv", HISTORIES, "import csv {} --map press.map.json"),
        ("q{}.dat", PRINTS, "import calculix {} --map cube.map.json"),
        ("q{}.map", MAPS, "import csv press.csv --map {}"),
    ):
        for number, content in enumerate(contents):
            file = name.format(number)
            yield file, content, command.format(file).split()
    for name, terms in MAPS_OF_PRINTS.items():
        for term in terms:
            yield "q.map", MAP_TERM % term, f"import calculix {name} --map q.map".split()


def wrong_command_lines():
    return [line.split() for line in COMMAND_LINES.replace("\n", "|").split("|") if line.strip()]
