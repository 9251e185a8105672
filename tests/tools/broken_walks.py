"""Broken walk folders, each with all that the program has to say about it.

    broken_walks.py PROGRAM

Each case spoils a sound walk in one way. The program must leave with exit code 1 and exactly the messages expected, print
nothing else, and touch neither the output that is there nor anything beside it.
"""

import collections
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

R, F, B, E = TABLES = "recording.csv", "foot_cycles.csv", "feet_cycles.csv", "exclusions.csv"

MEASURED = ("hs,gct,swing,stance,contact,cadence,ldr,ffr,pur,slength,swidth,path_length,speed,ta,peakswing,top,hsp,step_time,"
            "step_length,strike_eversion,max_hc,min_tc,max_tc1,max_tc2,mtc_speed,impact_vert,impact_hor")
VALUES = ("1.125,37.5,62.5,703,106.7,12.5,55.5,32.5,1.25,0.05,104.5,1.15,2.5,410.5,-65.5,25.5,0.55,0.65,-4.5,0.25,0.015,0.065,"
          "0.155,2.75,1.5,0.75")

SOUND = {
    R: ["foot,sampling_rate,signal_1_samples,signal_2_samples", "left,100,1000,1000", "right,100,1000,1000"],
    F: ["foot,index,first_sample,last_sample," + MEASURED,
        "left,0,0,99,0.5," + VALUES, "left,1,100,199,1.5," + VALUES,
        "right,0,50,149,1.0," + VALUES, "right,1,150,249,2.0," + VALUES],
    B: ["index,gct,ds,right_index,left_index", "0,1.125,25.5,0,0", "1,1.125,26.5,1,1"],
    E: ["cycles,list,index,reason", "feet,excluded_1,1,turn", "left,excluded_2,0,start"],
}
LAST = {R: 3, F: 5, B: 3, E: 3}  # the last line of each


# ---- Edits: each takes the lines of all tables, and gives them changed ----------------------------------------------

def line(table, number, text):
    """Another text for a line."""
    return lambda walk: walk[table].__setitem__(number - 1, text)


def cell(table, number, column, text):
    """Another text for a cell, as it stands in the table."""
    def edit(walk):
        cells = walk[table][number - 1].split(",")
        cells[walk[table][0].split(",").index(column)] = text
        walk[table][number - 1] = ",".join(cells)
    return edit


def header(table, old, new):
    """Another name in the header line, or several."""
    def edit(walk):
        assert old in walk[table][0]
        walk[table][0] = walk[table][0].replace(old, new)
    return edit


def column_removed(table, column):
    def edit(walk):
        at = walk[table][0].split(",").index(column)
        walk[table] = [",".join(row.split(",")[:at] + row.split(",")[at + 1:]) for row in walk[table]]
    return edit


def column_added(table, name, value):
    def edit(walk):
        walk[table] = [row + "," + (value if i else name) for i, row in enumerate(walk[table])]
    return edit


def row_removed(table, number):
    return lambda walk: walk[table].pop(number - 1)


def row_added(table, text):
    return lambda walk: walk[table].append(text)


def header_only(table):
    return lambda walk: walk.__setitem__(table, walk[table][:1])


def every(table, old, new):
    """Replaces a text everywhere."""
    return lambda walk: walk.__setitem__(table, [row.replace(old, new) for row in walk[table]])


def content(table, data):
    """Another content for the whole file: bytes, or a function from the sound text."""
    return lambda walk: walk.__setitem__(table, data if isinstance(data, bytes) else data("".join(x + "\n" for x in walk[table])))


def missing(table):
    return lambda walk: walk.__setitem__(table, None)


def in_place(table, make):
    """Something that is no file: `make` is called with its path."""
    return lambda walk: walk.__setitem__(table, make)


Case = collections.namedtuple("Case", "name edits messages arguments", defaults=((),))


def case(name, *edits_and_messages, arguments=()):
    edits = [e for e in edits_and_messages if callable(e)]
    messages = [m for m in edits_and_messages if isinstance(m, str)]
    return Case(name, edits, messages, arguments)


NUMBER = "expected a number or an empty cell"
FINITE = "expected a finite number or an empty cell"
REPRESENTABLE = "expected a number that is neither too large nor too small to compute with"
WHOLE = "expected a whole number"
INT = "expected a whole number from 0 to 2147483647"
UINT64 = "expected a whole number from 0 to 18446744073709551615"
LISTS = "expected one of: excluded_1, excluded_1_fallback, excluded_2, excluded_2_fallback"
UTF8 = "found a byte that is not UTF-8, expected UTF-8: save the table as UTF-8"
QUOTE_INSIDE = "found a quotation mark inside a cell, expected such marks only around a whole cell"
QUOTE_OPEN = "found a quotation mark that is never closed, expected another one"
GONE = "found no such file, expected a table"
HEADERS = {table: rows[0] for table, rows in SOUND.items()}


def empty(table):
    return f"{table}: found an empty file, expected the header line {HEADERS[table]}"


def unknown(table, name, expected):
    return f"{table}:1: column {name}: found an unknown column, expected {expected}"


def lacking(table, name):
    return f"{table}:1: column {name}: found no such column, expected it in the header line"


# Messages begin with the table; the runner puts the folder before them.
CASES = [
    # Files.
    case("no recording", missing(R), f"{R}: {GONE}"),
    case("no foot cycles", missing(F), f"{F}: {GONE}"),
    case("no feet cycles", missing(B), f"{B}: {GONE}"),
    case("no exclusions", missing(E), f"{E}: {GONE}"),
    case("no table at all", *map(missing, TABLES), *(f"{table}: {GONE}" for table in TABLES)),
    case("a name in capitals", missing(R), in_place("Recording.csv", lambda path: path.write_text("x")), f"{R}: {GONE}"),
    case("a folder for a table", in_place(F, os.mkdir), f"{F}: found a folder, expected a table"),
    case("a link to nothing", in_place(B, lambda path: path.symlink_to("nowhere")), f"{B}: {GONE}"),
    case("a link to itself", in_place(E, lambda path: path.symlink_to(path)),
         f"{E}: found a file that cannot be read (Too many levels of symbolic links), expected a table"),
    case("a link to the folder", in_place(E, lambda path: path.symlink_to(".")), f"{E}: found a folder, expected a table"),
    case("a device that ends at once", in_place(E, lambda path: path.symlink_to("/dev/null")), empty(E)),
    case("a device without end", in_place(F, lambda path: path.symlink_to("/dev/zero")),
         f"{F}:1: found a NUL byte, expected text"),

    # Nothing in them.
    case("an empty recording", content(R, b""), empty(R)),
    case("empty foot cycles", content(F, b""), empty(F)),
    case("empty feet cycles", content(B, b""), empty(B)),
    case("empty exclusions", content(E, b""), empty(E)),
    case("blank lines alone", content(E, b"\n\r\n  \n\r"), empty(E)),
    case("a byte-order mark alone", content(R, b"\xef\xbb\xbf"), empty(R)),
    case("a recording with the header alone", header_only(R), f"{R}: found no row, expected one for each foot"),
    case("foot cycles with the header alone", header_only(F), header_only(B), row_added(B, "0,1.125,25.5,,"),
         f"{F}: found no cycle of the left foot, expected at least one: recording.csv names that foot",
         f"{F}: found no cycle of the right foot, expected at least one: recording.csv names that foot"),
    case("feet cycles with the header alone", header_only(B), f"{B}: found no row, expected at least one cycle of both feet"),
    case("no header", row_removed(E, 1), f"{E}:1: found \"feet\", expected the header line {HEADERS[E]}"),
    case("a table of something else", content(E, b"Patient,Date\nx,2020-02-30\n"),
         f"{E}:1: found \"Patient\", expected the header line {HEADERS[E]}"),
    case("two tables exchanged", content(R, lambda _: ("\n".join(SOUND[E]) + "\n").encode()),
         f"{R}:1: found \"cycles\", expected the header line {HEADERS[R]}"),
    case("a title above the header", content(B, lambda text: ("Walk of Monday\n" + text).encode()),
         f"{B}:1: found \"Walk of Monday\", expected the header line {HEADERS[B]}"),

    # Text.
    case("UTF-16 with a byte-order mark", content(F, lambda text: text.encode("utf-16")),
         f"{F}: found UTF-16 text, expected UTF-8: save the table as UTF-8"),
    case("UTF-16 of the other order", content(R, lambda text: b"\xfe\xff" + text.encode("utf-16-be")),
         f"{R}: found UTF-16 text, expected UTF-8: save the table as UTF-8"),
    case("UTF-16 without a mark", content(B, lambda text: text.encode("utf-16-le")),
         f"{B}: found UTF-16 text, expected UTF-8: save the table as UTF-8"),
    case("UTF-32", content(E, lambda text: text.encode("utf-32")),
         f"{E}: found UTF-32 text, expected UTF-8: save the table as UTF-8"),
    case("Latin-1", content(E, lambda text: text.replace("start", "müde").encode("latin-1")), f"{E}:3: {UTF8}"),
    case("an end in the middle of a character", content(E, lambda text: (text.strip() + "ä").encode()[:-1]), f"{E}:3: {UTF8}"),
    case("an end in the middle of a row", content(F, lambda text: text[:-80].encode()), f"{F}:5: found 16 cells, expected 31"),
    case("a NUL byte", content(R, lambda text: text.replace("right", "ri\0ht").encode()), f"{R}:3: found a NUL byte, expected text"),
    case("a picture", content(F, b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR"), f"{F}:1: {UTF8}"),
    case("a spreadsheet", content(F, b"PK\x03\x04\x14\0\x06\0\x08\0\0\0!\0"), f"{F}:1: found a NUL byte, expected text"),
    case("a web page", content(R, b"<!DOCTYPE html>\n<html></html>\n"),
         f"{R}:1: found \"<!DOCTYPE html>\", expected the header line {HEADERS[R]}"),
    case("what follows the table", content(E, lambda text: (text + "\x1a").encode()), f"{E}:4: found 1 cell, expected 4"),
    case("a remark below the table", row_added(B, "# made by hand"), f"{B}:4: found 1 cell, expected 5"),
    case("lines of a merge conflict", line(E, 2, "<<<<<<< HEAD"), f"{E}:2: found 1 cell, expected 4"),

    # Separators and quoting.
    case("semicolons in the recording", every(R, ",", ";"), f"{R}:1: found columns separated by semicolons, expected commas"),
    case("semicolons in the foot cycles", every(F, ",", ";"), f"{F}:1: found columns separated by semicolons, expected commas"),
    case("tabs", every(B, ",", "\t"), f"{B}:1: found columns separated by tabs, expected commas"),
    case("semicolons below the header", line(R, 2, "left;100;1000;1000"), f"{R}:2: found 1 cell, expected 4"),
    case("bars", every(E, ",", "|"), f"{E}:1: found \"cycles|list|index|reason\", expected the header line {HEADERS[E]}"),
    case("a quotation mark in a cell", line(E, 2, 'feet,excluded_1,1,a "turn"'), f"{E}:2: {QUOTE_INSIDE}"),
    case("a quotation mark too few", line(E, 2, 'feet,excluded_1,1,"turn'), f"{E}:2: {QUOTE_OPEN}"),
    case("text behind a quoted cell", line(E, 3, 'left,excluded_2,0,"start" here'), f"{E}:3: {QUOTE_INSIDE}"),
    case("an open quotation in the header", header(R, "foot", '"foot'), f"{R}:1: {QUOTE_OPEN}"),
    case("a comma in a reason", line(E, 2, "feet,excluded_1,1,turn, left"),
         f"{E}:2: found 5 cells, expected 4: a reason with a comma in it needs quotation marks around it"),
    case("a row in one pair of quotation marks", line(R, 2, '"left,100,1000,1000"'), f"{R}:2: found 1 cell, expected 4"),
    case("a fault behind mixed line ends",
         content(E, b"cycles,list,index,reason\rfeet,excluded_1,1,turn\r\n\nfeet,excluded_1,x,\n"),
         f"{E}:4: column index: found \"x\", {WHOLE}"),
    case("a fault behind CR line ends", content(E, b"cycles,list,index,reason\r\rfeet,excluded_1,x,\r"),
         f"{E}:3: column index: found \"x\", {WHOLE}"),
    case("a fault behind a cell of two lines", content(E, b'cycles,list,index,reason\nfeet,excluded_1,1,"a\nb"\nfeet,excluded_1,x,\n'),
         f"{E}:4: column index: found \"x\", {WHOLE}"),

    # Columns.
    case("a column left out of the recording", column_removed(R, "signal_2_samples"), lacking(R, "signal_2_samples")),
    case("a column left out of the foot cycles", column_removed(F, "speed"), lacking(F, "speed")),
    case("the index left out", column_removed(F, "index"), lacking(F, "index")),
    case("a column left out of the feet cycles", column_removed(B, "left_index"), lacking(B, "left_index")),
    case("a column left out of the exclusions", column_removed(E, "reason"), lacking(E, "reason")),
    case("a column too many", column_added(R, "date", "2020-02-02"),
         unknown(R, "date", "only " + HEADERS[R])),
    case("a column without a name", column_added(B, "", ""), f"{B}:1: found no name for column 6, expected one"),
    case("a column twice", column_added(B, "ds", "30"), f"{B}:1: column ds: found the column twice, expected it once"),
    case("a column misspelt", header(F, ",swing,", ",swnig,"), unknown(F, "swnig", "swing"), lacking(F, "swing")),
    case("a column in capitals", header(R, "foot", "Foot"), unknown(R, "Foot", "foot"), lacking(R, "foot")),
    case("a column with its unit", header(F, "stance", "stance [%]"),
         unknown(F, "stance [%]", "only " + HEADERS[F]), lacking(F, "stance")),
    case("a column with a blank", header(F, "path_length", "path length"),
         unknown(F, "path length", "path_length"), lacking(F, "path_length")),
    case("a fault in reordered columns",
         content(B, b"left_index,right_index,ds,gct,index\n0,0,25.5,1.1,0\n1,1,x,1.1,1\n"),
         f"{B}:3: column ds: found \"x\", {NUMBER}"),
    case("a cell too few", line(R, 2, "left,100,1000"), f"{R}:2: found 3 cells, expected 4"),
    case("a cell too many", line(R, 2, "left,100,1000,1000,1000"), f"{R}:2: found 5 cells, expected 4"),

    # Measured values.
    case("a word for a number", cell(F, 2, "gct", "long"), f"{F}:2: column gct: found \"long\", {NUMBER}"),
    case("a number with its unit", cell(F, 3, "slength", "1.25 m"), f"{F}:3: column slength: found \"1.25 m\", {NUMBER}"),
    case("a percentage", cell(B, 2, "ds", "25.5%"), f"{B}:2: column ds: found \"25.5%\", {NUMBER}"),
    case("a quoted decimal comma", cell(B, 3, "ds", '"26,5"'),
         f"{B}:3: column ds: found \"26,5\" with a decimal comma, expected a decimal point"),
    case("a decimal comma", cell(F, 2, "gct", "1,125"),
         f"{F}:2: found 32 cells, expected 31: are there decimal commas in place of decimal points?"),
    case("decimal commas in a whole row", line(F, 4, "right,0,50,149,1,0," + VALUES.replace(".", ",")),
         f"{F}:4: found 57 cells, expected 31: are there decimal commas in place of decimal points?"),
    case("decimal commas of both feet", line(B, 2, "0,1,125,25,5,0,0"),
         f"{B}:2: found 7 cells, expected 5: are there decimal commas in place of decimal points?"),
    case("a negative number with a decimal comma", cell(F, 5, "top", "-65,5"),
         f"{F}:5: found 32 cells, expected 31: are there decimal commas in place of decimal points?"),
    case("a cell too many among decimal points", row_added(B, "2,1.125,25.5,0.5,,,"), f"{B}:4: found 7 cells, expected 5"),
    case("a separator of thousands", cell(F, 2, "peakswing", '"1,410.5"'), f"{F}:2: column peakswing: found \"1,410.5\", {NUMBER}"),
    case("a blank for thousands", cell(F, 2, "contact", "1 703"), f"{F}:2: column contact: found \"1 703\", {NUMBER}"),
    case("a hexadecimal number", cell(F, 2, "cadence", "0x6A"), f"{F}:2: column cadence: found \"0x6A\", {NUMBER}"),
    case("a fraction", cell(B, 2, "gct", "9/8"), f"{B}:2: column gct: found \"9/8\", {NUMBER}"),
    case("a formula's error", cell(F, 3, "speed", "#DIV/0!"), f"{F}:3: column speed: found \"#DIV/0!\", {NUMBER}"),
    case("a formula", cell(F, 3, "speed", "=M3/F3"), f"{F}:3: column speed: found \"=M3/F3\", {NUMBER}"),
    case("infinity", cell(F, 2, "ldr", "inf"), f"{F}:2: column ldr: found \"inf\", {FINITE}"),
    case("negative infinity in words", cell(B, 2, "gct", "-Infinity"), f"{B}:2: column gct: found \"-Infinity\", {FINITE}"),
    case("a NaN with a sign", cell(F, 2, "ffr", "-nan"), f"{F}:2: column ffr: found \"-nan\", {NUMBER}"),
    case("null", cell(F, 2, "pur", "null"), f"{F}:2: column pur: found \"null\", {NUMBER}"),
    case("too large a number", cell(F, 2, "hs", "1e309"), f"{F}:2: column hs: found \"1e309\", {REPRESENTABLE}"),
    case("too small a number", cell(F, 2, "ta", "1e-400"), f"{F}:2: column ta: found \"1e-400\", {REPRESENTABLE}"),
    case("a Unicode minus", cell(F, 2, "top", "−65.5"), f"{F}:2: column top: found \"−65.5\", {NUMBER}"),
    case("digits of another script", cell(F, 2, "hsp", "٢٥"), f"{F}:2: column hsp: found \"٢٥\", {NUMBER}"),
    case("a control character", cell(F, 2, "hsp", "\x1b[2J25"), f"{F}:2: column hsp: found \"\\x1b[2J25\", {NUMBER}"),
    case("a long cell", cell(F, 2, "hsp", "x" * 100000), f"{F}:2: column hsp: found \"{'x' * 40}...\", {NUMBER}"),

    # Whole numbers.
    case("an index with decimals", cell(F, 2, "index", "0.0"), f"{F}:2: column index: found \"0.0\", {WHOLE} without decimals"),
    case("a sample with a separator of thousands", cell(F, 2, "last_sample", '"1,099"'),
         f"{F}:2: column last_sample: found \"1,099\", {WHOLE} without a comma"),
    case("a negative sample", cell(F, 2, "first_sample", "-1"), f"{F}:2: column first_sample: found \"-1\", {INT}"),
    case("a sample beyond 32 bits", cell(F, 2, "last_sample", "2147483648"),
         f"{F}:2: column last_sample: found \"2147483648\", {INT}"),
    case("an empty sample", cell(F, 5, "first_sample", ""), f"{F}:5: column first_sample: found an empty cell, {WHOLE}"),
    case("a link with decimals", cell(B, 2, "right_index", "0.5"),
         f"{B}:2: column right_index: found \"0.5\", {WHOLE} without decimals"),
    case("a link in words", cell(B, 2, "left_index", "first"), f"{B}:2: column left_index: found \"first\", {WHOLE}"),
    case("a rate with decimals", cell(R, 2, "sampling_rate", "102.4"),
         f"{R}:2: column sampling_rate: found \"102.4\", {WHOLE} without decimals"),
    case("a rate of zero", cell(R, 3, "sampling_rate", "0"),
         f"{R}:3: column sampling_rate: found \"0\", expected a whole number from 1 to 2147483647"),
    case("a negative rate", cell(R, 2, "sampling_rate", "-100"),
         f"{R}:2: column sampling_rate: found \"-100\", expected a whole number from 1 to 2147483647"),
    case("a rate with its unit", cell(R, 2, "sampling_rate", "100 Hz"), f"{R}:2: column sampling_rate: found \"100 Hz\", {WHOLE}"),
    case("a number of samples beyond 64 bits", cell(R, 2, "signal_1_samples", "18446744073709551616"),
         f"{R}:2: column signal_1_samples: found \"18446744073709551616\", {UINT64}"),
    case("a number of samples with an exponent", cell(R, 3, "signal_2_samples", "1e3"),
         f"{R}:3: column signal_2_samples: found \"1e3\", {WHOLE} without decimals"),
    case("an exclusion of no index", cell(E, 2, "index", ""), f"{E}:2: column index: found an empty cell, {WHOLE}"),
    case("an exclusion of a range", cell(E, 2, "index", "0-1"), f"{E}:2: column index: found \"0-1\", {WHOLE}"),

    # Words.
    case("an unknown foot", cell(R, 2, "foot", "links"), f"{R}:2: column foot: found \"links\", expected one of: left, right"),
    case("a foot in capitals", cell(F, 4, "foot", "Right"), f"{F}:4: column foot: found \"Right\", expected one of: left, right"),
    case("a foot by its letter", cell(F, 2, "foot", "L"), f"{F}:2: column foot: found \"L\", expected one of: left, right"),
    case("a foot left empty", cell(F, 3, "foot", ""), f"{F}:3: column foot: found an empty cell, expected one of: left, right"),
    case("a truth value", cell(R, 2, "foot", "true"), f"{R}:2: column foot: found \"true\", expected one of: left, right"),
    case("exclusions of unknown cycles", cell(E, 2, "cycles", "both"),
         f"{E}:2: column cycles: found \"both\", expected one of: feet, left, right"),
    case("an unknown exclusion list", cell(E, 2, "list", "excluded_3"), f"{E}:2: column list: found \"excluded_3\", {LISTS}"),
    case("an exclusion list by its number", cell(E, 3, "list", "1"), f"{E}:3: column list: found \"1\", {LISTS}"),

    # What the tables say together.
    case("a foot recorded twice", row_added(R, "left,100,1000,1000"),
         f"{R}:4: column foot: found \"left\" again (as on line 2), expected each foot once"),
    case("feet with different rates", cell(R, 3, "sampling_rate", "200"),
         f"{R}:3: column sampling_rate: found \"200\", expected the sampling rate of the other foot, \"100\""),
    case("a foot that was not recorded", row_removed(R, 3),
         f"{F}:4: column foot: found \"right\" (rows: 2), expected only feet that recording.csv names",
         f"{B}:2: found a cycle of both feet, expected no row: recording.csv names one foot only"),
    case("a foot without cycles", row_removed(F, 5), row_removed(F, 4), header_only(B), row_added(B, "0,1.125,25.5,,0"),
         f"{F}: found no cycle of the right foot, expected at least one: recording.csv names that foot"),
    case("an index twice", cell(F, 3, "index", "0"), header_only(B), row_added(B, "0,1.125,25.5,0,0"),
         f"{F}:3: column index: found \"0\" again (as on line 2), expected each index of the left foot once"),
    case("a gap between indices", cell(F, 5, "index", "2"), cell(B, 3, "right_index", "2"),
         f"{F}:5: column index: found \"2\" as the next index of the right foot, expected \"1\": indices run from 0 without gaps"),
    case("indices from 1", cell(B, 2, "index", "1"), cell(B, 3, "index", "2"),
         f"{B}:2: column index: found \"1\" as the next index, expected \"0\": indices run from 0 without gaps"),
    case("an index of both feet twice", cell(B, 3, "index", "0"),
         f"{B}:3: column index: found \"0\" again (as on line 2), expected each index once"),
    case("samples in the wrong order", cell(F, 2, "first_sample", "100"),
         f"{F}:2: column last_sample: found \"99\", expected at least the first sample, \"100\""),
    case("a link to a right cycle that is not there", cell(B, 3, "right_index", "2"),
         f"{B}:3: column right_index: found \"2\", expected the index of a cycle of the right foot"),
    case("a link to a left cycle that is not there", cell(B, 2, "left_index", "2147483647"),
         f"{B}:2: column left_index: found \"2147483647\", expected the index of a cycle of the left foot"),
    case("every cycle excluded", row_added(E, "feet,excluded_2,0,"),
         f"{E}: found all 2 cycles of \"feet\" excluded, expected at least one to be left"),
    case("every cycle of the one foot excluded", row_added(E, "left,excluded_1,1,"),
         f"{E}: found all 2 cycles of \"left\" excluded, expected at least one to be left", arguments=("--foot", "left")),
    case("a foot asked for that is not there", row_removed(R, 3), row_removed(F, 5), row_removed(F, 4), missing(B), header_only(E),
         f"{R}: column foot: found no right foot, expected the foot that is to be analysed", arguments=("--foot", "right")),
    case("more strides than are taken",
         f"{F}: found 2 strides of the left foot, expected at most 1, the limit that was set",
         f"{F}: found 2 strides of the right foot, expected at most 1, the limit that was set",
         f"{B}: found 2 cycles of both feet, expected at most 1, the limit that was set", arguments=("--max-strides", "1")),

    # Several at once.
    case("a fault in every table", cell(R, 2, "sampling_rate", "x"), cell(F, 2, "gct", "x"), cell(B, 2, "ds", "x"),
         cell(E, 2, "index", "x"), f"{R}:2: column sampling_rate: found \"x\", {WHOLE}", f"{F}:2: column gct: found \"x\", {NUMBER}",
         f"{B}:2: column ds: found \"x\", {NUMBER}", f"{E}:2: column index: found \"x\", {WHOLE}"),
    case("more faults than are shown", *(row_added(E, "feet,excluded_1,x,") for _ in range(30)),
         *(f"{E}:{number}: column index: found \"x\", {WHOLE}" for number in range(4, 24)), f"{E}: and 10 more"),
]


def write_walk(folder, edits):
    walk = {table: list(lines) for table, lines in SOUND.items()}
    for edit in edits:
        edit(walk)
    folder.mkdir()
    for table, lines in walk.items():
        path = folder / table
        if callable(lines):
            lines(path)
        elif lines is not None:
            path.write_bytes(lines if isinstance(lines, bytes) else "".join(text + "\n" for text in lines).encode())


def files_below(folder):
    return sorted(os.path.join(path, name) for path, folders, files in os.walk(folder) for name in folders + files)


class BrokenWalks(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="broken_walks_")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.walk = self.folder / "w"
        self.out = self.folder / "out"
        self.out.mkdir()
        self.output = self.out / "report"

    def run_program(self, edits, arguments):
        """What the program did, and whether it wrote or removed anything."""
        write_walk(self.walk, edits)
        self.output.write_text("old")
        before = files_below(self.folder)
        result = subprocess.run([PROGRAM, *arguments, "--output", self.output, self.walk], stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, cwd=self.out, check=False, timeout=60)
        wrote = files_below(self.folder) != before or self.output.read_text() != "old"
        subprocess.run(["rm", "-r", self.walk], check=True)
        return result, wrote

    def test_the_walk_that_they_are_made_of_is_sound(self):
        result, wrote = self.run_program([], [])
        self.assertEqual((result.returncode, result.stdout, result.stderr, wrote), (0, b"", b"", True))

    def test_are_refused_with_the_message_expected(self):
        refused = crashes = outputs = 0
        for broken in CASES:
            result, wrote = self.run_program(broken.edits, broken.arguments)
            expected = "".join(f"{self.walk}/{message}\n" for message in broken.messages)
            with self.subTest(broken.name):
                self.assertEqual(result.stderr.decode(), expected)
                self.assertEqual((result.returncode, result.stdout, wrote), (1, b"", False))
            refused += (result.returncode, result.stderr.decode()) == (1, expected)
            crashes += result.returncode < 0
            outputs += wrote or result.stdout != b""
        print(f"{len(CASES)} broken walks, {refused} refused with the message expected, {crashes} crashes, {outputs} outputs written",
              flush=True)

    def test_have_names_of_their_own(self):
        self.assertEqual(len({broken.name for broken in CASES}), len(CASES))


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv[1])
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
