"""What a map can name: the columns of strides, what fills them, and the keys of a map.

These tables are visited by the reader of maps, printed as pages, and read by tests.
"""

from __future__ import annotations

from dataclasses import dataclass


@dataclass(frozen=True)
class Field:
    """A column that a map can fill.

    Attributes:
        name: its name in ``[columns]``.
        unit: the unit that it has in a walk folder.
        meaning: what it holds.
        kind: "measured"; "sample", a place in the recording; "moment", a time in it.
        words: words that tables have for it, in the order in which ``--suggest`` tries them. All
            words of a group must occur in a column's name; after "=" they must be all of it.
    """

    name: str
    unit: str
    meaning: str
    kind: str = "measured"
    words: tuple[str, ...] = ()


FIELDS = (
    Field(
        "first_sample",
        "samples",
        "where the stride begins",
        "sample",
        ("start sample", "first sample", "start index", "pre ic", "start"),
    ),
    Field(
        "last_sample",
        "samples",
        "the last sample that belongs to the stride",
        "sample",
        ("end sample", "last sample", "end index"),
    ),
    Field(
        "hs",
        "s",
        "moment of the heel strike that begins the stride",
        "moment",
        (
            "heel strike time",
            "first contact",
            "initial contact",
            "contact start",
            "contact begin",
            "contact initial",
            "ic time",
            "=ic",
            "=fs",
            "=t ic",
            "strike",
            "start time",
            "begin",
            "time",
            "timestamp",
            "initial kontakt",
            "auftritt",
            "fersenkontakt",
            "clock",
            "uhrzeit",
            "zeit",
        ),
    ),
    Field(
        "end",
        "s",
        "moment of the foot's next heel strike, which ends the stride",
        "moment",
        ("end time", "stride end", "ende"),
    ),
    Field(
        "lift_off",
        "s",
        "moment at which the toes leave the ground, within the stride",
        "moment",
        (
            *("toe off", "lift off", "last contact", "final contact", "foot off", "contact end"),
            *("=to", "=fc", "=fo", "=t fc", "=t to"),
        ),
    ),
    Field(
        "gct",
        "s",
        "duration of the stride",
        words=(
            "stride time",
            "stride duration",
            "gait cycle time",
            "cycle duration",
            "cycle time",
            "gct",
            "stride interval",
            "doppelschrittdauer",
            "zyklusdauer",
            "gangzyklus",
            "doppelschrittzeit",
            "zyklus",
            "durée cycle",
            "temps cycle",
            "durée foulée",
            "duración zancada",
            "tiempo zancada",
            "durata ciclo",
            "stride",
            "cycle",
            "=duration",
            "=dauer",
            "=durée",
        ),
    ),
    Field(
        "swing",
        "%",
        "swing phase, % of the stride",
        words=(
            *("swing", "schwungphase", "schwung", "phase oscillante", "balanceo", "oscilación"),
            "oscillazione",
        ),
    ),
    Field(
        "stance",
        "%",
        "stance phase, % of the stride",
        words=(
            *("stance", "standphase", "stand", "phase appui", "durée appui", "temps appui"),
            *("fase apoyo", "fase appoggio"),
        ),
    ),
    Field(
        "contact",
        "ms",
        "duration of the contact",
        words=("contact time", "contact duration", "temps contact"),
    ),
    Field(
        "cadence",
        "steps/min",
        "steps of both feet",
        words=("cadence", "kadenz", "cadencia", "cadenza"),
    ),
    Field("ldr", "%", "loading, % of stance", words=("loading", "ldr")),
    Field("ffr", "%", "foot-flat, % of stance", words=("foot flat", "ffr")),
    Field("pur", "%", "pushing, % of stance", words=("pushing", "push", "pur")),
    Field(
        "slength",
        "m",
        "stride length",
        words=(
            *("stride length", "slength", "doppelschrittlänge", "doppelschrittlaenge"),
            *("longueur cycle", "longueur foulée", "longueur enjambée", "longitud zancada"),
        ),
    ),
    Field("swidth", "m", "swing width", words=("swing width", "lateral excursion", "swidth")),
    Field(
        "path_length",
        "%",
        "length of the foot's path, % of stride length",
        words=("path length", "arc length"),
    ),
    Field(
        "speed",
        "m/s",
        "stride velocity",
        words=(
            *("velocity", "speed", "geschwindigkeit", "tempo", "vitesse", "velocidad", "velocità"),
            *("ganggeschwindigkeit", "gehgeschwindigkeit", "schrittgeschwindigkeit"),
            "doppelschrittgeschwindigkeit",
        ),
    ),
    Field(
        "ta", "deg", "turning angle, to the left positive", words=("turning angle", "turn angle")
    ),
    Field(
        "peakswing",
        "deg/s",
        "peak angular velocity in swing",
        words=("peak swing", "peakswing", "angular velocity"),
    ),
    Field(
        "top",
        "deg",
        "lift-off angle, negative where the heel is higher",
        words=("lift off angle", "toe off angle", "tc angle"),
    ),
    Field(
        "hsp",
        "deg",
        "strike angle, positive where the toes are higher",
        words=("strike angle", "ic angle"),
    ),
    Field(
        "step_time",
        "s",
        "time of the step that ends with the strike which begins the stride",
        words=(
            "step time",
            "step duration",
            "schrittdauer",
            "schrittzeit",
            "durée pas",
            "temps pas",
        ),
    ),
    Field(
        "step_length",
        "m",
        "length of that step",
        words=("step length", "schrittlänge", "schrittlaenge", "longueur pas"),
    ),
    Field("strike_eversion", "deg", "eversion at strike", words=("eversion",)),
    Field("max_hc", "m", "maximal heel clearance", words=("heel clearance",)),
    Field("min_tc", "m", "minimal toe clearance", words=("minimal toe clearance", "min toe")),
    Field("max_tc1", "m", "first maximal toe clearance", words=("max toe clearance 1",)),
    Field("max_tc2", "m", "second maximal toe clearance", words=("max toe clearance 2",)),
    Field("mtc_speed", "m/s", "foot speed in swing", words=("swing speed", "foot speed")),
    Field("impact_vert", "g", "vertical impact", words=("vertical impact", "impact vert")),
    Field("impact_hor", "g", "horizontal impact", words=("horizontal impact", "impact hor")),
    Field(
        "ds",
        "%",
        "double support, both phases, % of the stride",
        words=("double support", "doppelstand", "doppelstütz", "double appui", "doble apoyo"),
    ),
)
FIELD = {field.name: field for field in FIELDS}

ANGLES = tuple(field.name for field in FIELDS if field.unit == "deg")
# A -1 can be measured in these; elsewhere it stands for missing.
SIGNED = (
    *ANGLES,
    *("step_length", "min_tc", "max_tc1", "max_tc2"),
    *(field.name for field in FIELDS if field.kind != "measured"),
)
# What no stride has a 0 of.
NEVER_ZERO = (
    *("gct", "contact", "cadence", "stance", "swing"),
    *("speed", "slength", "step_length", "step_time"),
)

# Words for the feet. Those of a map come first; without any, these alone are taken for granted.
FOOT_WORDS = {"left": ("left", "l"), "right": ("right", "r")}
# Words that --suggest and messages know besides.
MORE_FOOT_WORDS = {
    "left": (
        *("links", "linker", "linke", "linkes", "li", "lt", "lf"),
        *("gauche", "g", "izquierda", "izquierdo", "izq", "sinistra", "sinistro"),
    ),
    "right": (
        *("rechts", "rechter", "rechte", "rechtes", "re", "rt", "rf"),
        *("droite", "droit", "d", "derecha", "derecho", "dcha", "destra", "destro"),
    ),
}

# Words for the events of a foot, in small letters and without the foot's own.
EVENT_WORDS = {
    "strike": (
        *("heel strike", "heel contact", "foot strike", "foot contact", "foot down", "touch down"),
        *("initial contact", "first contact", "contact", "strike", "hs", "ic", "fs", "td", "on"),
        *("fersenkontakt", "fersenauftritt", "auftritt", "initialkontakt", "erstkontakt"),
        *("contact initial", "contact talon", "attaque du talon", "pose du talon"),
        *("contacto inicial", "apoyo de talón", "contatto iniziale"),
    ),
    "lift_off": (
        *("toe off", "foot off", "lift off", "final contact", "last contact", "end contact"),
        *("to", "fo", "fc", "lc", "off"),
        *("zehenablösung", "zehenabstoß", "abheben", "ablösung", "letzter kontakt"),
        *("décollement des orteils", "décollement", "despegue de dedos", "despegue", "stacco"),
    ),
}

# What people call a column, and what it is called here.
SYNONYMS = {
    "start": "hs",
    "begin": "hs",
    "time": "hs",
    "strike": "hs",
    "initial_contact": "hs",
    "stop": "end",
    "toe_off": "lift_off",
    "duration": "gct",
    "stride_time": "gct",
    "stride_duration": "gct",
    "stride_length": "slength",
    "velocity": "speed",
    "stride_velocity": "speed",
    "double_support": "ds",
    "stance_time": "stance",
    "swing_time": "swing",
    "turning_angle": "ta",
    "strike_angle": "hsp",
    "lift_off_angle": "top",
}


@dataclass(frozen=True)
class Conversion:
    """What becomes of a value that is given as another quantity than its column's.

    Attributes:
        fields: the columns.
        given: a unit of that quantity.
        base: the column, or "rate", that it is taken with.
        words: how the report says it.
    """

    fields: tuple[str, ...]
    given: str
    base: str
    words: str


SHARES = ("swing", "stance", "ds")
PHASES = ("ldr", "ffr", "pur")
CONVERSIONS = (
    Conversion(
        ("first_sample", "last_sample"),
        "s",
        "rate",
        "its time x sampling rate, rounded; last_sample - 1",
    ),
    Conversion(
        ("hs", "end", "lift_off", "gct", "step_time"), "samples", "rate", "samples / sampling rate"
    ),
    Conversion(SHARES, "s", "gct", "100 x its time / gct"),
    Conversion(PHASES, "s", "contact", "100 x its time / contact"),
    Conversion(("contact",), "%", "gct", "its share x gct"),
    Conversion(("path_length",), "m", "slength", "100 x its length / slength"),
)


@dataclass(frozen=True)
class Derivation:
    """What ``derive`` can name.

    Attributes:
        name: the column that it fills, where that has no value.
        ways: from what, and how; the first that is possible counts.
        needs: the columns that it can be made from, any of these groups.
    """

    name: str
    ways: tuple[str, ...]
    needs: tuple[tuple[str, ...], ...]


DERIVATIONS = (
    Derivation(
        "gct",
        ("end - hs", "(last_sample - first_sample + 1) / sampling rate"),
        (("end", "hs"), ("first_sample", "last_sample")),
    ),
    Derivation(
        "hs", ("end - gct", "first_sample / sampling rate"), (("end", "gct"), ("first_sample",))
    ),
    Derivation(
        "contact", ("lift_off - hs", "stance x gct"), (("lift_off", "hs"), ("stance", "gct"))
    ),
    Derivation("stance", ("100 x contact / gct", "100 - swing"), (("contact", "gct"), ("swing",))),
    Derivation("swing", ("100 - stance",), (("stance",),)),
    Derivation("cadence", ("120 / gct",), (("gct",),)),
    Derivation("slength", ("speed x gct",), (("speed", "gct"),)),
    Derivation("speed", ("slength / gct",), (("slength", "gct"),)),
    Derivation("step_time", ("this strike - the other foot's strike before it",), (("hs", "gct"),)),
    Derivation(
        "ds",
        (
            "both phases, (left lift-off - right strike) + (right lift-off - left strike), % of "
            "the right stride",
        ),
        (("hs", "gct", "lift_off"), ("hs", "gct", "contact")),
    ),
)
DERIVATION = {derivation.name: derivation for derivation in DERIVATIONS}
DERIVED_NAMES = tuple(derivation.name for derivation in DERIVATIONS)


@dataclass(frozen=True)
class Key:
    """A key of a map.

    Attributes:
        section: the section that it stands in; empty for the top of the map.
        name: the key.
        kind: what it takes, one of ``KINDS``, or words to choose from, with | between them.
        meaning: what it says.
        example: a value, as it is written.
    """

    section: str
    name: str
    kind: str
    meaning: str
    example: str


# What compares the times of both feet; without times it would compare what was made up.
CHECKS_OF_TIMES = ("left_opens_within_right", "linked_strides_overlap", "unlinked_strides")

LISTS = "excluded_1|excluded_1_fallback|excluded_2|excluded_2_fallback"

KEYS = (
    Key("", "about", "text", "what the map is for; `--list-maps` prints it", '"our lab\'s export"'),
    Key("", "sampling_rate", "number", "samples per second (Hz)", "128"),
    Key(
        "",
        "recording_duration",
        "number",
        "length of the recording (s)",
        "300",
    ),
    Key(
        "",
        "rows",
        "strides|footfalls",
        "what a row is: a stride, or a contact of a foot, where a stride goes from one contact to "
        "the next of the same foot",
        '"footfalls"',
    ),
    Key(
        "",
        "walk",
        "texts",
        "columns that tell walks apart; `{file}` and `{sheet}` stand for the table's name, "
        "`{blank row}` for its parts between blank rows, `{restart of Stride}` for those in which "
        "a column begins anew. Each walk becomes a folder of its own",
        '["subject", "trial"]',
    ),
    Key(
        "",
        "breaks",
        "texts",
        "columns whose change ends a stretch of walking: nothing is taken across it",
        '["Pass Number"]',
    ),
    Key(
        "",
        "missing",
        "cells",
        "values and words that stand for what was not measured, in all columns",
        '[0, -1, "n.a."]',
    ),
    Key(
        "",
        "fill_down",
        "texts",
        "columns whose empty cells repeat the cell above, such as merged cells",
        '["subject"]',
    ),
    Key(
        "",
        "times",
        "given|end to end|from the first",
        "`from the first`: the first strike of the walk is at 0 s. `end to end`: there are no "
        "times; each stride begins where the foot's one before it ends",
        '"end to end"',
    ),
    Key("", "sort", "truth", "puts the strides of a walk in order of time", "true"),
    Key(
        "",
        "pairs",
        "time|rows|order|none",
        "which left stride belongs to a right one: the first that begins within it (`time`), the "
        "one of the same row, or the one of the same number; `none`: feet are analysed alone",
        '"rows"',
    ),
    Key("", "derive", "texts", "columns to compute where they have no value", '["cadence", "hs"]'),
    Key(
        "",
        "optional",
        "truth",
        "columns that the table does not have are passed over",
        "true",
    ),
    Key(
        "",
        "without_checks",
        "texts",
        "data checks that do not apply to the table",
        '["cadence_and_duration"]',
    ),
    Key(
        "table",
        "separator",
        "text",
        'what separates columns: `","`, `";"`, `"tab"`, `"space"` (any white space) or another '
        "character; found from the text otherwise",
        '";"',
    ),
    Key("table", "decimal", ".|,", "the decimal sign; found from the cells otherwise", '","'),
    Key("table", "thousands", "text", "the sign between thousands", '"."'),
    Key(
        "table",
        "dates",
        "day first|month first",
        "what 03/04/2025 is; found from the cells where a number above 12 tells",
        '"day first"',
    ),
    Key("table", "encoding", "text", "UTF-8, UTF-16 with a mark, else cp1252", '"latin-1"'),
    Key(
        "table",
        "header",
        "whole",
        "line of the column names, from 1; 0: there are none. Found from the names otherwise",
        "4",
    ),
    Key("table", "header_rows", "whole", "lines that the names stand in, one below the other", "2"),
    Key("table", "sheet", "texts", "sheets of a workbook to read", '"Strides"'),
    Key(
        "table",
        "turned",
        "truth",
        "the table has a column for each stride and a row for each quantity",
        "true",
    ),
    Key("table", "comment", "text", "lines that begin with it are passed over", '"%"'),
    Key("feet", "column", "text", "the column that says which foot", '"Side"'),
    Key(
        "feet",
        "by",
        "column|columns|sheets|files|headings|rows",
        "how feet are told, where not by `column`: columns for each foot (`{foot}` in their "
        "names), a sheet or a file for each, a line with the foot's word alone above its rows, or "
        "alternating rows",
        '"sheets"',
    ),
    Key(
        "feet",
        "left",
        "cells",
        "the word for the left foot: a cell, what stands for `{foot}`, the sheet, or a part of the "
        "file's name",
        '"L"',
    ),
    Key("feet", "right", "cells", "the same for the right foot", '"R"'),
    Key(
        "feet", "first", "left|right", "the foot of each walk's first row: rows alternate", '"left"'
    ),
    Key("feet", "only", "left|right", "all rows are strides of this foot", '"left"'),
    Key(
        "feet",
        "pattern",
        "text",
        "which part of the cell is the word: a regular expression with a group",
        "'\\d: (\\w+)'",
    ),
    Key(
        "events",
        "column",
        "text",
        "the column that says which event of a foot a row is, with `{foot}` where each foot has "
        "its own; `hs` names that of their times",
        '"Event"',
    ),
    Key(
        "events",
        "strike",
        "cells",
        "words for a strike; `heel strike`, `initial contact`, `HS`, `IC` and the like otherwise",
        '["LHS", "RHS"]',
    ),
    Key(
        "events",
        "lift_off",
        "cells",
        "words for a lift-off; `toe off`, `final contact`, `TO`, `FC` and the like otherwise",
        '["LTO", "RTO"]',
    ),
)

CONDITION_KEYS = (
    Key("", "column", "text", "the column to look at, by its name in the table", '"Turn"'),
    Key("", "is", "cells", "the cell is one of these", "[1, 2]"),
    Key("", "is_not", "cells", "the cell is none of these", '"straight"'),
    Key("", "above", "number", "the cell is a number above this", "3"),
    Key("", "below", "number", "the cell is a number below this", "0.2"),
    Key("", "empty", "truth", "the cell is empty (false: is not)", "true"),
    Key("", "number", "truth", "the cell is a number (false: is none)", "false"),
    Key("", "lines", "wholes", "rows by their number in the table", "[3, 17]"),
    Key(
        "",
        "table",
        "text",
        "of several tables or sheets, the one whose rows are meant, by the name that messages have "
        "for it; all of them otherwise",
        '"left.csv"',
    ),
)
EXCLUDE_KEYS = (
    *CONDITION_KEYS,
    Key(
        "",
        "times",
        "spans",
        "strides that touch these times: seconds as the table counts them; times of day or dates "
        "as texts",
        "[[12.0, 15.5]]",
    ),
    Key(
        "",
        "first",
        "whole",
        "so many strides at the start of each foot; beside `last`, those at either end",
        "2",
    ),
    Key("", "last", "whole", "so many strides at the end of each foot", "2"),
    Key("", "reason", "text", "why, for people", '"turn"'),
    Key("", "list", LISTS, "the list; excluded_1 otherwise", '"excluded_2"'),
)
COLUMN_KEYS = (
    Key("", "column", "texts", "the column; of several names, the first that is there", '"Stride"'),
    Key("", "left", "text", "the column of the left foot", '"L stride"'),
    Key("", "right", "text", "the column of the right foot", '"R stride"'),
    Key("", "unit", "text", "its unit", '"cm/s"'),
    Key("", "factor", "number", "multiplies the value as it stands in the table", "-1"),
    Key("", "add", "number", "is added to it after that", "-1"),
    Key(
        "",
        "missing",
        "cells",
        "what stands for missing in this column, in place of the map's",
        "[]",
    ),
    Key("", "valid", "span", "numbers outside of these two are missing", "[0, 100]"),
    Key(
        "",
        "row",
        "this|next|previous|next of foot|previous of foot",
        "which row has the value of the stride that begins in this row",
        '"next of foot"',
    ),
)
SECTIONS = ("table", "feet", "events", "columns", "about", "skip", "exclude")
