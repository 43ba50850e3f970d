"""Wrong inputs in one table: what is wrong, how the program is run, and what its message says.

Whatever is wrong, the program ends with its own exit code and one message that begins with "qoc: " and names the place; it
leaves nothing behind, and an output file that was there stays as it was.
"""

import os
import resource
import signal
import subprocess
import threading
import typing
import unittest

from program import PROGRAM, ProgramTest

DEEP = 100000


class Row(typing.NamedTuple):
    name: str
    arguments: tuple  # Of the program.
    parts: tuple  # What the message holds, in this order.
    files: dict = {}  # By name: what is in them.
    stdin: bytes = b""
    written: int = 0  # Lines on standard output; what stands before a fault is written.
    code: int = 2
    setting: typing.Callable = None  # Changes the directory and how the program is started; see Setting.


class Setting:
    """How a row's program is started: its directory, and what `subprocess` is told beside the usual."""

    def __init__(self, directory, options):
        self.directory = directory
        self.options = options
        self.before = []  # Called in the child before the program runs.
        self.cleanups = []
        self.leftovers = set()  # Names that the setting itself may leave or take away.


GOOD = '{"lexicons": [{"words": ["word"]}], "fieldings": ["AA99"]}'


def dictionary(name, content, *parts):
    """A dictionary that is refused; a message names the file first."""
    return Row("dictionary " + name, ("run", "-d", "d.json"), ("qoc: d.json:", *parts), {"d.json": content}, b"word\n")


def section(name, key, value, *parts):
    """A section of a dictionary that is refused; `value` is JSON."""
    return dictionary(f"{key} {name}", '{"lexicons": [{"words": ["word"]}], "%s": %s}' % (key, value), *parts)


def lexicons(name, value, *parts):
    return dictionary("lexicons " + name, '{"lexicons": %s}' % value, *parts)


def reading(name, line, *parts, written=1):
    """A line of NDJSON that is refused behind one that is read."""
    content = b'{"text":"word"}\n' + (line if isinstance(line, bytes) else line.encode("utf-8")) + b"\n"
    return Row("reading " + name, ("convert", "r.ndjson"), ("qoc: r.ndjson:2", *parts), {"r.ndjson": content},
               written=written)


def document(name, content, *parts, written=0):
    """An engine's page that is refused."""
    return Row("document " + name, ("convert", "page"), ("qoc: page:", *parts), {"page": content},
               written=written)


def usage(name, arguments, *parts):
    """A command line that is refused."""
    return Row("usage " + name, arguments, ("qoc: ", *parts), {"d.json": GOOD, "r.txt": "word\n"})


def run(name, *arguments, parts):
    """An option of `run` that is refused."""
    return usage(name, ("run", "-d", "d.json", *arguments, "r.txt"), *parts)


NUMBER = "; expected a whole number from "

DICTIONARIES = [
    # What is no JSON.
    dictionary("of a byte", b"\x00", "1:1: not JSON"),
    dictionary("cut in a text", '{"lexicons": [{"words": ["a', "1:28: not JSON"),
    dictionary("cut in a character", b'{"lexicons": [{"words": ["\xc3', "1: byte 27 (0xC3) is not UTF-8"),
    dictionary("cut in a word", '{"lexicons": tru', "1:17: not JSON"),
    dictionary("with a comma too many", '{\n"lexicons": [],\n}', "3:1: not JSON"),
    dictionary("with a comment", '{"lexicons": [] /* none */}', "1:17: not JSON"),
    dictionary("with single quotes", "{'lexicons': []}", "1:2: not JSON"),
    dictionary("with a bare key", "{lexicons: []}", "1:2: not JSON"),
    dictionary("of two values", '{"lexicons": []}\n{"lexicons": []}', "2:1: not JSON"),
    dictionary("in UTF-16", GOOD.encode("utf-16"), "1: byte 1 (0xFF) is not UTF-8"),
    dictionary("in Latin-1", '{"lexicons": [{"words": ["\xe4pfel"]}]}'.encode("latin-1"), "1: byte 27 (0xE4)"),
    dictionary("with a character too long", b'{"a\xc0\xaf": 1}', "1: byte 4 (0xC0) is not UTF-8"),
    dictionary("with half a pair in UTF-8", b'{"a": "\xed\xa0\x80"}', "1: byte 8 (0xED) is not UTF-8"),
    dictionary("beyond Unicode", b'{"a": "\xf4\x90\x80\x80"}', "1: byte 8 (0xF4) is not UTF-8"),
    dictionary("with half a pair", r'{"a": "\ud83d"}', "1:", "not JSON"),
    dictionary("with a pair the wrong way", r'{"a": "\udc00\ud800"}', "1:", "not JSON"),
    dictionary("with a short escape", r'{"a": "\u12"}', "1:", "not JSON"),
    dictionary("with an unknown escape", r'{"a": "\x41"}', "1:", "not JSON"),
    dictionary("with a line end in a text", '{"a": "b\nc"}', "1:", "not JSON"),
    dictionary("with a number of leading zeros", '{"parameters": {"maxEdits": 01}}', "1:", "not JSON"),
    dictionary("with a number in hexadecimal", '{"parameters": {"maxEdits": 0x1}}', "1:", "not JSON"),
    dictionary("with a number that is none", '{"parameters": {"maxEdits": NaN}}', "1:", "not JSON"),
    dictionary("with an infinite number", '{"parameters": {"maxEdits": -Infinity}}', "1:", "not JSON"),
    dictionary("of many digits", '{"parameters": {"maxEdits": %s}}' % ("9" * 400), "1:", "not usable JSON"),
    dictionary("of many open objects", '{"a":' * DEEP, "1:", "not JSON"),
    dictionary("of many closed objects", '{"a":' * DEEP + "1" + "}" * DEEP, " /a: unknown key"),
    dictionary("of many closed arrays within resolving", '{"resolving":{"confusions":' + "[" * DEEP + "]" * DEEP + "}}",
               " /resolving/confusions/0: found array; expected an object"),
    dictionary("that is a number", "5", " /: found 5; expected an object"),
    dictionary("that is null", "null", " /: found null; expected an object"),
    dictionary("of an empty key", '{"": 1}', " /: unknown key"),
    dictionary("with a key of many characters", '{"%s": 1}' % ("k" * 5000), " /kkkk", "unknown key"),
    dictionary("with a key and control characters", r'{"a\u0007b": 1}', " /a", "unknown key"),

    # Word lists.
    lexicons("of null", "[null]", " /lexicons/0: found null; expected an object"),
    lexicons("of lists", "[[]]", " /lexicons/0: found array; expected an object"),
    lexicons("of no words", '[{"words": null}]', " /lexicons/0/words: found null; expected an array of words"),
    lexicons("of words that are objects", '[{"words": [{}]}]', " /lexicons/0/words/0: found object; expected a word"),
    lexicons("of what is to be done with duplicates", '[{"words": [], "duplicates": true}]',
             " /lexicons/0/duplicates: found true; expected"),
    *(Row("dictionary lexicons with " + what, ("run", "-d", "d.json"), (f"qoc: {name}{message}", "(d.json: /lexicons/0/file)"),
          {"d.json": '{"lexicons": [{"file": "%s"}]}' % name})
      for what, name, message in (("a directory", ".", ": cannot read: Is a directory"),
                                  ("a file below a file", "d.json/words", ": cannot open: Not a directory"),
                                  ("a name too long", "n" * 300, ": cannot open: File name too long"),
                                  ("a list that cannot be read", "/proc/self/mem", ": cannot read: "))),
    lexicons("with a reserved word", r'[{"words": ["a", "\uf8ff"]}]', " /lexicons/0/words/1: the character U+F8FF"),
    lexicons("of a later list", '[{"words": ["a"]}, {"words": ["b", "b"]}]', " /lexicons/1/words/1: duplicate of the word at",
             "/lexicons/1/words/0"),

    # Parameters.
    section("of a fraction", "parameters", '{"maxEdits": 1.0}', " /parameters/maxEdits: found 1.0" + NUMBER),
    section("of an exponent", "parameters", '{"maxEdits": 1e3}', " /parameters/maxEdits: found 1000.0" + NUMBER),
    section("of null", "parameters", '{"maxEdits": null}', " /parameters/maxEdits: found null" + NUMBER),
    section("of an array", "parameters", '{"maxEdits": [1]}', " /parameters/maxEdits: found array" + NUMBER),
    section("of a truth", "parameters", '{"maxEdits": true}', " /parameters/maxEdits: found true" + NUMBER),
    section("below 64 bits", "parameters", '{"minLength": -9223372036854775808}', " /parameters/minLength: found -92233"),
    section("beyond 64 bits", "parameters", '{"maxLength": 18446744073709551616}', " /parameters/maxLength: found 1.8446"),
    section("of no length", "parameters", '{"maxLength": 0}', " /parameters: the smallest length is greater than"),
    section("of a number for a truth", "parameters", '{"returnBestOnly": 0}', " /parameters/returnBestOnly: found 0; expected"),
    section("of a ranking that is none", "parameters", '{"ranking": null}', " /parameters/ranking: found null; expected"),
    section("of a key of the other table", "parameters", '{"minReach": 1}', " /parameters/minReach: unknown key"),
    section("of null", "fitParameters", "null", " /fitParameters: found null; expected an object"),
    section("of a negative number", "fitParameters", '{"maxSkipped": -1}', " /fitParameters/maxSkipped: found -1" + NUMBER),
    section("of a text", "fitParameters", '{"minReach": "all"}', ' /fitParameters/minReach: found "all"' + NUMBER),
    section("of a placement that is none", "fitParameters", '{"placement": "half"}', ' /fitParameters/placement: found "half"'),

    # Expressions.
    *(section(name, "regularExpressions", '["%s"]' % expression, " /regularExpressions/0: ", *parts)
      for name, expression, parts in (
          ("with a group that stays open", "a(b", ["parenthes", "a(b"]),
          ("of many open groups", "(" * 20000, ["regular expression"]),
          ("with a repeat the wrong way", "a{3,2}", ["a{3,2}"]),
          ("with a repeat too often", "a{1001}", ["a{1001}"]),
          ("with a repeat of many digits", "a{99999999999999999999}", ["a{9999"]),
          ("with repeats that multiply", "((((a{1000}){1000}){1000}){1000}){1000}", ["regular expression"]),
          ("with a repeat that stays open", "a{3", ["a{3"]),
          ("with a range the wrong way", "[z-a]", ["[z-a]"]),
          ("with a class that stays open", "[a-", ["class", "[a-"]),
          ("with a backslash at the end", r"a\\", ["backslash"]),
          ("with a backreference", r"(a)\\1", ["backslash"]),
          ("with a code of many digits", r"\\x{FFFFFFFFFFFFFFFFF}", ["backslash"]),
          ("with a code that is none", r"\\xGG", ["backslash"]),
          ("with a look ahead", "(?=a)", ["(?=a)"]),
          ("with a name", "(?<n>a)", ["(?<n>a)"]),
          ("with a repeat of nothing", "a|*", ["repeats nothing"]),
          ("with a reserved character", r"a\ufffd\uf800", ["U+F800"]))),
    section("of an object", "regularExpressions", '[{}]', " /regularExpressions/0: found object; expected a regular expression"),

    # Fieldings.
    section("of null", "fieldings", "[null]", " /fieldings/0: found null; expected a line"),
    section("with null", "fieldings", '[["digit", null]]', " /fieldings/0/1: found null; expected a position"),
    section("of classes in classes", "fieldings", '[[["digit", ["upper"]]]]', " /fieldings/0/0/1: found array; expected a class"),
    section("of classes that are empty", "fieldings", '[[{"classes": []}]]', " /fieldings/0/0/classes: the array is empty"),
    section("of characters twice", "fieldings", '[[{"characters": "--"}]]', " /fieldings/0/0/characters: ", "twice"),
    section("with a control key", "fieldings", '[[{"characters": "a", "class": 1}]]', " /fieldings/0/0/class: unknown key"),

    # Swaps.
    section("of null", "swaps", "null", " /swaps: found null; expected an object"),
    section("of numbers", "swaps", '{"groups": [10]}', " /swaps/groups/0: found 10; expected a group"),
    section("of three", "swaps", '{"sequences": [["a", "bc", "d"]]}', " /swaps/sequences/0: found array; expected a swap"),
    section("of a sequence twice", "swaps", '{"sequences": [["ab", "ab"]]}', " /swaps/sequences/0: ", "are equal"),
    section("of a set that is a number", "swaps", '{"sets": [1]}', " /swaps/sets/0: found 1; expected"),
    section("of sets that are null", "swaps", '{"sets": null}', " /swaps/sets: found null; expected an array"),

    # Shapes and their checks.
    section("of a number", "shapes", "[1]", " /shapes/0: found 1; expected the name"),
    section("of null", "shapes", "null", " /shapes: found null; expected an array"),
    section("of checks alone", "shapes", '[{"checks": {}}]', " /shapes/0: ", '"regularExpressions"'),
    section("with an unknown key", "shapes", '[{"regex": ["a"]}]', " /shapes/0/regex: unknown key"),
    *(section("with a check of " + name, "shapes", '[{"regularExpressions": ["9"], "checks": [%s]}]' % check,
              " /shapes/0/checks/0", *parts)
      for name, check, parts in (
          ("null", "null", [": found null; expected an object"]),
          ("a number", '{"method": 1}', ["/method: found 1; expected the name"]),
          ("an object of parts", '{"method": "luhn", "parts": {}}', ["/parts: found object; expected an array of parts"]),
          ("parts without numbers", '{"method": "luhn", "parts": [[]]}', ["/parts/0: found array; expected a part"]),
          ("parts of three numbers", '{"method": "luhn", "parts": [[1, 2, 3]]}', ["/parts/0: ", "expected a part"]),
          ("a part of texts", '{"method": "luhn", "parts": [["a"]]}', ['/parts/0/0: found "a"' + NUMBER]),
          ("an enormous part", '{"method": "luhn", "parts": [[-2147483648]]}', ["/parts/0/0: found -2147483648" + NUMBER]),
          ("ignored numbers", '{"method": "luhn", "ignored": 1}', ["/ignored: found 1; expected the characters"]))),

    # Resolving.
    *(section("of " + name, "resolving", rules, " /resolving", *parts)
      for name, rules, parts in (
          ("null", "null", [": found null; expected an object"]),
          ("a text", '{"minMargin": "5"}', ['/minMargin: found "5"; expected a number of points']),
          ("many points", '{"swapPenalty": 1e7}', ["/swapPenalty: found 10000000.0; expected a number of points"]),
          ("points below none", '{"extraPenalty": -0.01}', ["/extraPenalty: found -0.01; expected a number of points"]),
          ("a check that is a number", '{"requireCheck": 1}', ["/requireCheck: found 1; expected true or false"]),
          ("alternatives below none", '{"alternatives": -1}', ["/alternatives: found -1" + NUMBER]),
          ("half an alternative", '{"alternatives": 0.5}', ["/alternatives: found 0.5" + NUMBER]),
          ("free words that are a number", '{"freeWord": 5}', ["/freeWord: found 5; expected an object"]),
          ("many percents", '{"freeShape": {"leadPercent": 1001}}', ["/freeShape/leadPercent: found 1001" + NUMBER]),
          ("a base that is too low", '{"freeWord": {"base": -1e9}}', ["/freeWord/base: found -1000000000.0; expected"]),
          ("confusions that are an object", '{"confusions": {}}', ["/confusions: found object; expected an array"]),
          ("a confusion of what is meant", '{"confusions": [{"meant": "a"}]}', ['/confusions/0: the key "read" is missing']),
          ("a confusion of numbers", '{"confusions": [{"read": 1, "meant": "a"}]}', ["/confusions/0/read: found 1; expected"]),
          ("a confusion's penalty", '{"confusions": [{"read": "a", "meant": "b", "swapPenalty": -1}]}',
           ["/confusions/0/swapPenalty: found -1; expected"]))),
]

READINGS = [
    reading("of null", "null", ": /: found null; expected a reading"),
    reading("of a text", '"word"', ': /: found "word"; expected a reading'),
    reading("of two objects", '{"text":"a"}{"text":"b"}', ":13: not JSON"),
    reading("that is cut", '{"text":"a', ":11: not JSON"),
    reading("with a tab in a text", '{"text":"a\tb"}', "not JSON"),
    reading("with a zero byte", b'{"text":"a\x00b"}', "not JSON"),
    reading("cut in a character", b'{"text":"\xf0\x9f\x98', ": byte 10 (0xF0) is not UTF-8"),
    reading("with half a pair", b'{"text":"\xed\xb0\x80"}', ": byte 10 (0xED) is not UTF-8"),
    reading("with half an escaped pair", r'{"text":"\udfff"}', "not JSON"),
    reading("of many open arrays", '{"positions":' + "[" * DEEP, "not JSON"),
    reading("of many closed arrays", '{"positions":' + "[" * DEEP + "]" * DEEP + "}", ": /positions/0/0: found array; expected a candidate"),
    reading("of no positions", '{"positions":null}', ": /positions: found null; expected an array of positions"),
    reading("of positions that are numbers", '{"positions":[1]}', ": /positions/0: found 1; expected a position"),
    reading("of candidates that are objects", '{"positions":[[{"w":1}]]}', ": /positions/0/0: found object; expected a cand"),
    reading("with a score that is true", '{"positions":[[["w",true]]]}', ": /positions/0/0/1: found true; expected a score"),
    reading("with a score of many digits", '{"positions":[[["w",%s]]]}' % ("9" * 30), "expected a score from -21474836.48"),
    reading("with a score that is infinite", '{"positions":[[["w",-1e400]]]}', "numbers that a double can hold"),
    reading("with a candidate of two codes", '{"positions":[[["e\u0301",1]]]}', ": /positions/0/0/0: ", "a single character"),
    reading("with a later candidate", '{"positions":[[["a",1]],[["b",1],["c"]]]}', ": /positions/1/1: ", "expected a candidate"),
    reading("with a reserved candidate", '{"positions":[[["\U000ffffd",1]]]}', ": /positions/0/0/0: the character U+FFFFD"),
    reading("called true", '{"id":true,"text":"a"}', ": /id: found true; expected a string or a number"),
    reading("called by an object", '{"id":{},"text":"a"}', ": /id: found object; expected a string or a number"),
    reading("of a list of texts", '{"text":["a"]}', ": /text: found array; expected the reading"),
    reading("with a box of three", '{"text":"a","box":[1,2,3]}', ": /box: ", "expected a box"),
    reading("with a box of texts", '{"text":"a","box":["1",2,3,4]}', ': /box/0: found "1"; expected a number'),
    reading("with a box that is an object", '{"text":"a","box":{}}', ": /box: found object; expected a box"),
    reading("with boxes that are null", '{"text":"a","boxes":null}', ": /boxes: found null; expected an array"),
    reading("with a box too many", '{"text":"a","boxes":[null,null]}', ": /boxes: found 2 boxes; expected one for each"),
    reading("with boxes of numbers", '{"text":"a","boxes":[1]}', ": /boxes/0: found 1; expected a box"),
    reading("with a picture that is a number", '{"text":"a","image":1}', ": /image: found 1; expected the path"),
    reading("with a key twice", '{"positions":[],"text":"a","positions":[]}', 'the key "positions" stands twice'),
    Row("lines with an invalid one", ("convert", "r.txt"), ("qoc: r.txt:3: byte 1 (0x80) is not UTF-8",),
        {"r.txt": b"a\nb\n\x80\n"}, written=2),
    Row("lines with a zero byte", ("convert", "r.txt"), ("qoc: r.txt:2: the character U+0000 is reserved",),
        {"r.txt": b"a\n\x00\n"}, written=1),
    Row("lines with a second mark", ("convert", "r.txt", "s.txt"), ("qoc: s.txt:1: byte 3 (0xFF) is not UTF-8",),
        {"r.txt": b"\xef\xbb\xbfa\n", "s.txt": b"ab\xff\n"}, written=1),
    Row("readings of the wrong format", ("convert", "--from", "alto", "r.txt"), ("qoc: r.txt:2:1: not well-formed XML",),
        {"r.txt": "word\n"}),

    # What engines write.
    document("that ends in a tag", "<html><body", "1:", "not well-formed XML"),
    document("with a bare value", "<html a=b></html>", "1:", "not well-formed XML"),
    document("with a value that stays open", '<html a="b></html>', "1:", "not well-formed XML"),
    document("with a comment that stays open", "<html><!-- </html>", "1:", "not well-formed XML"),
    document("with CDATA that stays open", "<html><![CDATA[ </html>", "1:", "not well-formed XML"),
    document("with an instruction that stays open", "<?xml version='1.0'", "1:", "not well-formed XML"),
    document("with ends in the wrong order", "<html><p><b></p></b></html>", "1:", "not well-formed XML"),
    document("in UTF-32", "<html/>".encode("utf-32"), "1: byte 1: the document is UTF-16 or UTF-32"),
    document("of an unknown root", "<?xml version='1.0'?>\n<book/>", "2:2: the document's element is \"book\""),
    document("with a line's box", "<html><p class='ocr_line' title='bbox 1 2 3 x'>a</p></html>", "1:8: ",
             'found "x"; expected bbox with four numbers'),
    document("with a line's infinite box", "<html><p class='ocr_line' title='bbox 1 2 3 1e999'>a</p></html>", "1:8: ",
             'found "1e999"; expected bbox'),
    document("with a line's score", "<html><p class='ocr_line' title='x_wconf high'>a</p></html>", "1:8: ",
             'found "high"; expected x_wconf'),
    document("with a choice's score", "<html><p class='ocr_line'><b class='ocrx_word'>a<i id='lstm_choices_1'>"
             "<u title='x_confs -'>a</u></i></b></p></html>", 'found "-"; expected x_confs'),
    document("with a string's score", "<alto><TextLine><String CONTENT='a' WC='1.5'/></TextLine></alto>",
             "1:18: ", 'found "1.5"; expected WC, a number from 0 to 1'),
    document("with a variant's score", "<alto><TextLine><String><Glyph CONTENT='a'><Variant CONTENT='b' VC='-1'/></Glyph>"
             "</String></TextLine></alto>", 'found "-1"; expected VC'),
    document("with a string's place", "<alto><TextLine HPOS='' VPOS='1' WIDTH='1' HEIGHT='1'/></alto>",
             "1:8: ", 'found ""; expected HPOS, a number'),
    document("with a reserved string", "<alto><TextLine><String CONTENT='&#xF800;'/></TextLine></alto>",
             "1:18: the character U+F800 is reserved"),
    document("with points without a comma", "<PcGts><TextLine><Coords points='1,2 3'/></TextLine></PcGts>",
             "1:19: ", 'found ""; expected points'),
    document("with an equivalent's score", "<PcGts><TextLine><TextEquiv conf='2'><Unicode>a</Unicode></TextEquiv></TextLine>"
             "</PcGts>", "1:19: ", 'found "2"; expected conf'),
    document("with an equivalent's index", "<PcGts><TextLine><TextEquiv index=''/></TextLine></PcGts>", 'found ""; expected index'),
]

TSV_HEAD = "level\tpage_num\tblock_num\tpar_num\tline_num\tword_num\tleft\ttop\twidth\theight\tconf\ttext\n"
TSV_ROW = "5\t1\t1\t1\t%d\t1\t1\t2\t39\t18\t%s\t%s\n"

READINGS += [
    document("of a table cut in a row", TSV_HEAD + TSV_ROW % (1, "9", "a") + "5\t1", "3: expected 12 fields", written=0),
    document("of a table with an empty score", TSV_HEAD + TSV_ROW % (1, "9", "a") + TSV_ROW % (2, "", "b"),
             '3: found ""; expected conf, a number', written=1),
    document("of a table with an infinite score", TSV_HEAD + TSV_ROW % (1, "inf", "a"), '2: found "inf"; expected conf'),
    document("of a table with an enormous score", TSV_HEAD + TSV_ROW % (1, "1e300", "a"), "2: expected a score from"),
    document("of a table with a reserved character", TSV_HEAD + TSV_ROW % (1, "9", "\uf8ff"), "2: the character U+F8FF"),
    document("of a table with a zero byte", TSV_HEAD + TSV_ROW % (1, "9", "\0"), "2: the character U+0000"),
    document("of a table with a width that is none", TSV_HEAD + (TSV_ROW % (1, "9", "a")).replace("\t39\t", "\t\t"),
             '2: found ""; expected width'),
]

USAGES = [
    usage("of no command", (), "A subcommand is required"),
    usage("of an unknown command", ("match", "-d", "d.json"), 'found "match"; expected one of the commands "run", '),
    usage("of an unknown option", ("--dictionary", "d.json", "run"), "--dictionary"),
    usage("of a command behind its operands", ("run", "--json", "-d", "d.json", "run"), "run: cannot open: No such file"),
    *(usage(f"of {command} without a dictionary", (command,), "--dictionary is required")
      for command in ("run", "fit", "explain", "report", "check", "learn", "swaps")),
    usage("of check with an operand", ("check", "-d", "d.json", "r.txt"), "not expected: r.txt"),
    usage("of swaps with an operand", ("swaps", "-d", "d.json", "r.txt"), "not expected: r.txt"),
    usage("of convert with a dictionary", ("convert", "-d", "d.json", "r.txt"), "not expected: -d"),
    usage("of learn with threads", ("learn", "-d", "d.json", "-j", "2", "r.txt"), "not expected: -j"),
    usage("of a dictionary twice", ("run", "-d", "d.json", "-d", "d.json", "r.txt"), "--dictionary: "),
    usage("of an empty dictionary", ("run", "-d", "", "r.txt"), '"": cannot open: No such file'),
    usage("of a dictionary below a file", ("run", "-d", "d.json/x", "r.txt"), "d.json/x: cannot open: Not a directory"),
    usage("of a dictionary's long name", ("run", "-d", "n" * 300, "r.txt"), "nnn: cannot open: File name too long"),
    usage("of a reading's bytes", ("convert", b"\xff\xfe"), "cannot open: No such file"),
    usage("of an empty reading", ("convert", ""), '"": cannot open: No such file'),
    usage("of a directory of readings", ("convert", "."), ".: cannot read: Is a directory"),
    usage("of standard input twice", ("run", "-d", "-", "-"), "standard input can be read once"),
    run("of an option cut short", "--max-edit", "1", parts=["--max-edit"]),
    run("of a letter", "-x", parts=["-x"]),
    run("of an option twice", "--max-edits", "1", "--max-edits", "1", parts=["--max-edits: "]),
    *(run("of the number " + repr(number), "--max-edits", number,
          parts=[f'--max-edits: found "{number}"; expected a whole number from 0 to 2147483647'])
      for number in ("0x1", "1e0", "1.0", " 1", "1 ", "+1", "1_0", "1,0", "\u0661", "", "2147483648", "9" * 40)),
    run("of no number", "--max-edits=", parts=["--max-edits: "]),
    run("of a skip below none", "--skip", "-1", parts=["--skip: "]),
    run("of half a skip", "--skip", "0.5", parts=['--skip: found "0.5"; expected a whole number']),
    run("of many threads", "-j", "1025", parts=['--jobs: found "1025"; expected a whole number from 0 to 1024']),
    run("of a margin", "--min-margin", "1000001", parts=["--min-margin: ", "from 0 to 1000000"]),
    run("of alternatives", "--alternatives", "1000", parts=["--alternatives: ", "from 0 to 999"]),
    run("of lengths that cross", "--min-length", "9", "--max-length", "8", parts=["run parameters", "smallest length"]),
    run("of an unknown unit", "--unit", "page", parts=["--unit: page"]),
    run("of an empty ranking", "--ranking", "", parts=["--ranking: "]),
    run("of an unknown progress", "--progress", "always", parts=["--progress: always"]),
    run("of JSON in a table", "--json", "--tsv", parts=["--json excludes --tsv"]),
    run("of JSON in a document", "--json", "--to", "hocr", parts=["--json", "--to"]),
    run("of a window and none", "--window", "--no-window", parts=["--window", "excludes --no-window"]),
    run("of an output without documents", "-o", "out.txt", parts=["--output requires --to"]),
    run("of an unknown document", "--to", "pdf", parts=["--to: pdf"]),
    run("of a document of readings", "--to", "hocr", parts=["r.txt:1: the reading is of no document"]),
    run("of a flag's value", "--json=maybe", parts=["--json", "maybe"]),
    usage("of a format to convert to", ("convert", "--to", "hocr", "r.txt"), "--to: hocr"),
    usage("of fit without lines", ("fit", "-d", "words.json", "r.txt"), "words.json: cannot open"),
    usage("of fit's placement", ("fit", "-d", "d.json", "--placement", "half", "r.txt"), "--placement: half"),
    usage("of fit's reach", ("fit", "-d", "d.json", "--min-reach", "-1", "r.txt"), "--min-reach: "),
    usage("of learn's parts", ("learn", "-d", "d.json", "--parts", "1", "r.txt"), '--parts: found "1"; ', "from 2 to 1000"),
    usage("of learn's threshold", ("learn", "-d", "d.json", "--threshold", "0", "r.txt"), '--threshold: found "0"; '),
    usage("of an id that is not there", ("explain", "-d", "d.json", "--id", "x", "r.txt"), 'no reading is called "x"'),
    usage("of pictures that are nowhere", ("report", "-d", "d.json", "--images", "nowhere", "r.txt"),
          "nowhere: cannot open: No such file"),
    usage("of pictures in a file", ("report", "-d", "d.json", "--images", "r.txt", "r.txt"),
          "r.txt: cannot open: Not a directory"),
    usage("of a report that is a directory", ("report", "-d", "d.json", "-o", ".", "r.txt"), ".: cannot write: Is a directory"),
    usage("of a report below a file", ("report", "-d", "d.json", "-o", "r.txt/x", "r.txt"), "r.txt/x: cannot write: Not a dir"),
    usage("of a report nowhere", ("report", "-d", "d.json", "-o", "no/where.html", "r.txt"), "no/where.html: cannot write: No"),
]


# What goes wrong around the program. ---------------------------------------------------------------------------------

def closed(descriptor):
    def prepare(setting):
        setting.before.append(lambda: os.close(descriptor))
    return prepare


def full(setting):
    """Standard output is a full disk."""
    device = open("/dev/full", "wb")
    setting.cleanups.append(device.close)
    setting.options["stdout"] = device


def broken_pipe(setting):
    """Nobody reads standard output, and the program is not ended by a signal for it."""
    reader, writer = os.pipe()
    os.close(reader)
    setting.cleanups.append(lambda: os.close(writer))
    setting.options["stdout"] = writer
    setting.options["restore_signals"] = False
    setting.before.append(lambda: signal.signal(signal.SIGPIPE, signal.SIG_IGN))


def broken_pipe_that_ends_it(setting):
    broken_pipe(setting)
    setting.before.append(lambda: signal.signal(signal.SIGPIPE, signal.SIG_DFL))


def small_files(setting):
    """No file may become larger than some bytes, as on a disk that runs full."""
    def limit():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000))
    setting.options["restore_signals"] = False
    setting.before.append(limit)


def readable_by_others_only(setting):
    """The dictionary may not be read. The superuser may read everything, so the program runs as somebody else."""
    (setting.directory / "d.json").chmod(0)
    if os.geteuid() == 0:
        setting.directory.chmod(0o755)
        setting.options["user"] = 65534


def links_in_a_circle(setting):
    (setting.directory / "circle").symlink_to("circle")
    setting.leftovers.add("circle")


def on_the_way(act):
    """Writes the first reading into the pipe r.txt, changes something while the program waits there, and ends it."""
    def prepare(setting):
        pipe = setting.directory / "pipe"
        os.mkfifo(pipe)
        setting.leftovers.update({"pipe", "r.txt", "out"})

        def feed():
            with open(pipe, "wb", buffering=0) as writer:
                writer.write(b"word\n")
                act(setting.directory)

        thread = threading.Thread(target=feed)
        thread.start()
        setting.cleanups.append(thread.join)
    return prepare


def remove_next(directory):
    (directory / "r.txt").unlink()


def replace_next_by_directory(directory):
    (directory / "r.txt").unlink()
    (directory / "r.txt").mkdir()


def remove_output_directory(directory):
    for path in (directory / "out").iterdir():
        path.unlink()
    (directory / "out").rmdir()


def output_directory(setting):
    (setting.directory / "out").mkdir()
    on_the_way(remove_output_directory)(setting)


def around(name, arguments, *parts, setting=None, stdin=b"word\n", written=0, code=2):
    files = {"d.json": GOOD, "r.txt": "word\n" * 2000, "page.hocr": "<html><p class='ocr_line'>word</p></html>",
             "old.html": "as it was\n"}
    return Row("around " + name, arguments, parts, files, stdin, written, code, setting)


RUN = ("run", "-d", "d.json", "r.txt")

AROUND = [
    *(around("full disk: " + " ".join(arguments), arguments, "qoc: standard output: cannot write: No space left", setting=full)
      for arguments in (("--help",), ("--version",), ("run", "--help"), ("run", "-d", "d.json", "--tsv", "r.txt"),
                        ("explain", "-d", "d.json", "r.txt"), ("convert", "r.txt"), ("report", "-d", "d.json", "r.txt"),
                        ("check", "-d", "d.json"), ("swaps", "-d", "d.json"), ("learn", "-d", "d.json", "r.txt"),
                        ("fit", "-d", "d.json", "r.txt"), ("run", "-d", "d.json", "--to", "hocr", "page.hocr"))),
    *(around("closed pipe: " + " ".join(arguments), arguments, "qoc: standard output: cannot write: Broken pipe",
             setting=broken_pipe)
      for arguments in (("--help",), RUN, ("convert", "-j", "2", "r.txt"), ("report", "-d", "d.json", "r.txt"))),
    around("closed pipe that ends it", RUN, setting=broken_pipe_that_ends_it, code=-signal.SIGPIPE),
    around("closed output", RUN, "qoc: standard output: cannot write: Bad file descriptor", setting=closed(1)),
    around("closed output, and a report that needs none", ("report", "-d", "no.json", "-o", "old.html"), "qoc: no.json: cannot",
           setting=closed(1)),
    around("closed input", ("run", "--tsv", "-d", "d.json"), "qoc: standard input: cannot read: Bad file descriptor",
           setting=closed(0), written=1),
    around("closed input for the dictionary", ("run", "-d", "-", "r.txt"), "qoc: standard input: cannot read: Bad file desc",
           setting=closed(0)),
    around("closed messages", ("run", "-d", "no.json"), setting=closed(2)),
    around("input that is a directory", ("convert",), "qoc: standard input: cannot read: Is a directory",
           setting=lambda setting: setting.options.update(stdin=os.open(setting.directory, os.O_RDONLY))),
    around("dictionary that cannot be read", ("run", "-d", "/proc/self/mem", "r.txt"), "qoc: /proc/self/mem: cannot read: "),
    around("readings that cannot be read", ("convert", "r.txt", "/proc/self/mem"), "qoc: /proc/self/mem: cannot read: ",
           written=2000),
    around("dictionary that may not be read", RUN, "qoc: d.json: cannot open: Permission denied",
           setting=readable_by_others_only),
    around("dictionary of links in a circle", ("run", "-d", "circle", "r.txt"), "qoc: circle: cannot open: Too many levels",
           setting=links_in_a_circle),
    around("disk that runs full under a report", ("report", "-d", "d.json", "-o", "old.html", "r.txt"), "cannot write: File too",
           setting=small_files),
    around("disk that runs full under a document", ("run", "-d", "d.json", "--to", "hocr", "-o", "new.hocr", "long.hocr"),
           "qoc: new.hocr: cannot write: File too large", setting=lambda setting: (
               small_files(setting),
               (setting.directory / "long.hocr").write_text("<html>" + "<p class='ocr_line'>word</p>" * 100 + "</html>"),
               setting.leftovers.add("long.hocr"))),
    around("report onto a full device", ("report", "-d", "d.json", "-o", "/dev/full", "r.txt"),
           "qoc: /dev/full: cannot write: No space left"),
    around("readings that vanish", ("convert", "pipe", "r.txt"), "qoc: r.txt: cannot open: No such file",
           setting=on_the_way(remove_next), written=1),
    around("readings that become a directory", ("convert", "pipe", "r.txt"), "qoc: r.txt: cannot read: Is a directory",
           setting=on_the_way(replace_next_by_directory), written=1),
    around("output directory that vanishes", ("report", "-d", "d.json", "-o", "out/report.html", "pipe"),
           "qoc: out/report.html: cannot move the finished file into its place: No such file", setting=output_directory),
    around("report of readings that are refused", ("report", "-d", "d.json", "-o", "old.html", "-"),
           "qoc: standard input:2: byte 1 (0xFF) is not UTF-8", stdin=b"word\n\xff\n"),
    around("document of readings that are refused", ("run", "-d", "d.json", "--to", "hocr", "-o", "old.html", "-"),
           "qoc: standard input:1:", stdin=b"<html><p class='ocr_line' title='bbox x'>a</p></html>"),
]

TABLE = DICTIONARIES + READINGS + USAGES + AROUND


class WrongInputsTest(ProgramTest):
    def check(self, row):
        for path in self.directory.iterdir():
            path.unlink()
        for name, content in row.files.items():
            self.write(name, content)
        options = {"stdout": subprocess.PIPE, "input": row.stdin}
        setting = Setting(self.directory, options)
        if row.setting is not None:
            row.setting(setting)
        if "stdin" in options:
            del options["input"]
        try:
            done = subprocess.run([PROGRAM, *row.arguments], stderr=subprocess.PIPE, cwd=self.directory, timeout=300, check=False,
                                  preexec_fn=lambda: [act() for act in setting.before], **options)
        finally:
            for clean in setting.cleanups:
                clean()
        message = done.stderr.decode("utf-8", "replace")
        self.assertEqual(done.returncode, row.code, message)
        at = 0
        for part in row.parts:
            self.assertIn(part, message[at:])
            at = message.index(part, at) + len(part)
        self.assertEqual(message.startswith("qoc: "), bool(row.parts), message)
        for trace in ("Sanitizer", "runtime error", "Assertion", "terminate called"):
            self.assertNotIn(trace, message)
        if done.stdout is not None:
            self.assertEqual(len(done.stdout.splitlines()), row.written, done.stdout[:1000])
        left = {path.name for path in self.directory.iterdir()} - setting.leftovers
        self.assertEqual(left, set(row.files) - setting.leftovers)
        for name in left:
            content = row.files[name]
            now = (self.directory / name).read_bytes()
            self.assertEqual(now, content if isinstance(content, bytes) else content.encode(), name)

    def check_all(self, rows):
        for row in rows:
            with self.subTest(row.name):
                self.setUp()
                self.check(row)

    def test_dictionaries(self):
        self.check_all(DICTIONARIES)

    def test_readings(self):
        self.check_all(READINGS)

    def test_usage(self):
        self.check_all(USAGES)

    def test_what_goes_wrong_around_the_program(self):
        self.check_all(AROUND)

    def test_the_table_is_long_and_its_names_differ(self):
        self.assertGreaterEqual(len(TABLE), 150)
        self.assertEqual(len({row.name for row in TABLE}), len(TABLE))


if __name__ == "__main__":
    unittest.main()
