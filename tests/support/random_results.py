"""Random results files and texts of limits: everything that their formats allow, names that mean harm, numbers at the edges."""

import json
import struct
import uuid

NAMES = [
    "",
    " ",
    "Clamp 1",
    "Clamp 10",
    " blanks around ",
    "<b>&amp;</b>",
    "</script><script>alert(1)</script>",
    "]]>",
    "<!-- --",
    "\"quoted\", 'too'",
    "a,b;c\td",
    "line\nbreak\r\n",
    "\u0000",
    "\u0001\u001f\u007f\u0085",
    "=1+1",
    "+cmd|' /C calc'!A0",
    "-2",
    "@SUM(A1)",
    "'",
    "_x0041_",
    "_x005F_x0041_",
    "\u202eabc\u202c",
    "\u05e9\u05dc\u05d5\u05dd",
    "\u0645\u0631\u062d\u0628\u0627 \u200f!",
    "T\u00fcr, \u5de6",
    "e\u0301\u0323",
    "\U0001f527\U00010348",
    "\ufffe\uffff\ufdd0",
    "\u2028\u2029",
    "\ufeff",
    "\ufffd",
    "NaN",
    "inf",
    "1e5",
    "TRUE",
    "{}",
    "%s%n",
    "\\",
    "x" * 300,
    "\u00e4" * 5000,
    "\u2013",
]

QUANTITIES = {
    "clamp": ["ClampNormalForce", "ClampClosingForce", "ClampSupportingForce", "ClampTangentialForce", "ClampNormalDisplacement"]
    + ["ClampTeachingDistance" + axis for axis in "XYZ"],
    "pilot": [],
    "tool": ["TotalToolForces"],
    "suctionZone": ["SuctionZoneAbsForce", "SuctionDistance"],
    "joiningTong": ["JoiningTong" + what for what in ("NormalForce", "ClosingForce", "SupportingForce", "Distance", "Gap")]
    + ["JoiningTeaching" + axis for axis in "XYZ"],
    "spotWeld": ["JoinForceN"],
}
QUANTITIES["bolt"] = QUANTITIES["clamp"]

SKINS = ["LineJoinSumForceN", "LineJoinSumForceT", "LineJoinDistToInput", "LineJoinGap"]
GROUPED = ["ClampingTools", "Rollers", "Steels", "HemmingBed"]
KINDS_OF_LIMITS = """JoiningTongNormalForce JoiningTongDistance JoiningTongGap LineJoiningToolDistanceToInput JoinNormalForce
 JoinTangentialForce LineJoiningToolGap SuctionDistance SuctionZoneForce PilotForce RollerForce SteelForce
 HemmingBedForce BoltNormalForce""".split()
COLUMNS_WITHOUT_KIND = {
    "Clamps": QUANTITIES["clamp"],
    "ClampingTools": ["TotalToolForces"],
    "JoiningTongs": ["JoiningTongClosingForce", "JoiningTongSupportingForce"],
    "Bolts": QUANTITIES["bolt"][1:],
    "LineWelds": SKINS[:2],
}


class RandomResults:
    """A results file and a text of limits for it, both as objects of JSON."""

    def __init__(self, random):
        self.random = random
        self.names = random.sample(NAMES, 12)
        self.joins = [self.guid() for _ in range(2)]
        self.results = {
            "format": "simulation-results",
            "version": 1,
            "units": [self.unit() for _ in range(random.choice([1, 1, 2, 3]))],
        }
        self.limits = {"format": "limits", "version": 1, "all": self.limits_of_unit()}
        self.limits["units"] = [
            {"id": unit["id"], **self.limits_of_unit()} for unit in self.results["units"] if random.random() < 0.5
        ]

    def guid(self):
        return str(uuid.UUID(int=self.random.getrandbits(128)))

    def name(self):
        if self.random.random() < 0.2:
            return "".join(chr(self.codepoint()) for _ in range(self.random.randrange(1, 12)))
        return self.random.choice(self.names)

    def codepoint(self):
        point = self.random.choice([self.random.randrange(0x80), self.random.randrange(0x3000), self.random.randrange(0x110000)])
        return 0x3F if 0xD800 <= point < 0xE000 else point

    def finite(self):
        """A number, often a usual one."""
        choice = self.random.random()
        if choice < 0.6:
            return self.random.choice([round(self.random.gauss(0, 500), 2), self.random.gauss(0, 1), float(self.random.randrange(-9, 9))])
        if choice < 0.8:
            return self.random.choice([0.0, -0.0, 5e-324, -2.5e-310, 1.7976931348623157e308, -1e300, 1e-300, 0.1 + 0.2, 1e22, 123456789012345678])
        while True:
            number = struct.unpack("<d", self.random.randbytes(8))[0]
            if number == number and abs(number) != float("inf"):
                return number

    def value(self):
        return self.random.choice([None, "Infinity", "-Infinity"]) if self.random.random() < 0.08 else self.finite()

    def values(self):
        kind = self.random.random()
        if kind < 0.1:
            return {"values": []}
        if kind < 0.15:
            return {"values": [None] * 3}
        count = self.random.randrange(1, 6)
        if kind < 0.4:
            return {"pairs": [[self.value(), self.value()] for _ in range(count)]}
        return {"values": [self.value() for _ in range(count)]}

    def tool(self, number):
        kind = self.random.choice(list(QUANTITIES))
        quantities = [quantity for quantity in QUANTITIES[kind] if self.random.random() < 0.8]
        if kind == "pilot":
            quantities = ["PilotForce_" + self.name() for _ in range(2)]
        tool = {"id": self.name() + (str(number) if number % 3 else "\u200b" * number), "kind": kind}
        tool["series"] = [{"quantity": quantity, **self.values()} for quantity in quantities]
        if kind == "spotWeld" and self.random.random() < 0.8:
            tool["tangentialForce"] = self.values()
        return tool

    def step(self, tools):
        if self.random.random() < 0.2:
            return None
        ids = {kind: [tool["id"] for tool in tools if tool["kind"] == kind] for kind in QUANTITIES}
        return {
            "suctionZones": [{"guid": self.guid(), "name": name, "active": self.random.random() < 0.7} for name in ids["suctionZone"]],
            "joiningTongs": [{"id": name, "name": self.name(), "state": self.random.randrange(12)} for name in ids["joiningTong"]],
            "joins": [{"guid": self.guid(), "id": name, "name": self.name(), "state": self.random.randrange(12)} for name in ids["spotWeld"]],
            "lineJoins": [self.line_join(number) for number in range(self.random.randrange(3))],
        }

    def line_join(self, number):
        skins = {}
        for name in SKINS:
            if self.random.random() < 0.8:
                skins[name] = self.random.choice([None, {"min": self.finite(), "max": self.finite()}, {"min": self.finite()}])
        guid = str(uuid.UUID(int=number + 1))
        return {"guid": guid, "id": str(number), "name": self.name(), "state": self.random.randrange(12), "simulationUnitJoin": self.random.choice(self.joins), "skins": skins}

    def unit(self):
        tools = {}
        for number in range(self.random.randrange(8)):
            tool = self.tool(number)
            tools[tool["id"]] = tool
        tools = list(tools.values())
        unit = {"id": self.guid(), "name": self.name(), "tools": tools, "joinsDefinedInUnit": [self.joins.pop()] if self.joins else []}
        self.joins = self.joins or [self.guid()]
        steps = self.random.randrange(4)
        unit["steps"] = [self.step(tools) for _ in range(steps)]
        if steps:
            unit["visibleSteps"] = {"first": 0, "last": steps - 1}
        names = [tool["id"] for tool in tools if tool["kind"] == "tool"] + ["not there"]
        unit["toolGroupings"] = {
            family: [{"name": self.name(), "tools": self.random.sample(names, self.random.randrange(len(names)))} for _ in range(2)]
            for family in GROUPED
            if self.random.random() < 0.5
        }
        return unit

    def limits_of_unit(self):
        return {
            "limits": {kind: self.value() for kind in KINDS_OF_LIMITS if self.random.random() < 0.3},
            "columns": {
                family: {key: self.value() for key in keys if self.random.random() < 0.3} for family, keys in COLUMNS_WITHOUT_KIND.items()
            },
        }

    def write(self, folder):
        """Both files, as RESULTS and LIMITS."""
        for name, content in (("results.json", self.results), ("limits.json", self.limits)):
            (folder / name).write_text(json.dumps(content, ensure_ascii=self.random.random() < 0.5), encoding="utf-8")
