"""Trace files and failure reports: every byte of one is explained here, or the test fails.

A tree of records is written as its labels, indented by the depth of the calls:

    Caller = 1                  entry and exit with the return code text 1; OK when left out
      ! text                    a text record
      Callee -> Other label     an exit under another label than the entry
      Callee x3                 three times
      @block one|two            the records of a block, with its $1 and $2 replaced
"""

import re
import time

from case_file import decode

MONTHS = "(?:Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec)"
DAYS = "(?:Mon|Tue|Wed|Thu|Fri|Sat|Sun)"
DATE = rf"{DAYS} {MONTHS} [ \d]\d \d\d:\d\d:\d\d \d{{4}}"
BUILD_DATE = rf"{MONTHS} [ 1-3]\d \d{{4}}"
LEVEL = r"@\(!\)      \*{5} Code Level is \d+\.\d+\.\d+ \*{5}"
BANNER = r"\n  !!! User Tracing is activated !!!\n"
HEAD = (rf"\nTrace for program  ---- Brellin Zentrik ----  started at ({DATE})\n\r\n\r\n"
        rf"{LEVEL}\n({BANNER})?   ! BuildDate {BUILD_DATE}\n")
TIME = r"\d\d:\d\d:\d\d\n"
CODE = (r"OK|-?\d+|(?:xec|NZRC_)\w+"
        r"|Not found in retcode translation table \([0-9A-F]+\) \(\d+\)")
RECORD = re.compile(rf"{TIME}   (?P<entry>-+)>(?P<entered>.*)\n"
                    rf"|{TIME}   <(?P<exit>-+)(?P<left>[^-].*) \(rc= (?:{CODE})\)\n"
                    rf"|   ! (?P<text>.*)\n")
# A form value with a line feed in it goes to the trace as it is.
TEXT_LINES = re.compile(rf"   ! (?P<text>.*(?:\n(?!   ! |{TIME}).*)*)\n")
OTHER_EXITS = {"URLDecoder::hexStringToChar": "URLDecoder::hexStringToInt"}


class Unexplained(Exception):
    pass


def read_trace(text, *, user_banner=False, line_feeds=False):
    """The lines of the records, without their times, of a whole trace file."""
    head = re.match(HEAD, text)
    if not head or bool(head[2]) != user_banner:
        raise Unexplained(f"the head of the trace: {text[:300]!r}")
    if abs(time.time() - time.mktime(time.strptime(head[1]))) > 600:
        raise Unexplained(f"the start of the trace: {head[1]}")
    position, lines, callers = head.end(), [], []
    while position < len(text):
        record = line_feeds and TEXT_LINES.match(text, position) or RECORD.match(text, position)
        if not record:
            rest = text[position:position + 200]
            raise Unexplained(f"in the trace, behind {lines[-1:]}: {rest!r}")
        check_nesting(record.groupdict(), callers)
        lines.append(re.sub(TIME, "", record[0], count=1))
        position = record.end()
    if callers:
        raise Unexplained(f"entries without exits: {callers}")
    return mask_thread("".join(lines))


def check_nesting(record, callers):
    matches = True
    if record.get("entry"):
        matches = record["entry"] == dashes(len(callers))
        callers.append(record["entered"])
    elif record.get("exit"):
        entered = callers.pop() if callers else ""
        matches = (record["exit"] == dashes(len(callers))
                   and record["left"] == OTHER_EXITS.get(entered, entered.split(" l=")[0]))
    if not matches:
        raise Unexplained(f"the nesting of {record} below {callers}")


def dashes(depth):
    return "-" * min(2 * depth + 2, 60)


def mask_thread(lines):
    """The identity of the thread differs from run to run; what is made of it is checked here."""
    def masked(match):
        wide, plain, normalised = (int(digits, 16) for digits in match.groups())
        if wide != plain or normalised != wide % 100000:
            raise Unexplained(f"the thread: {match[0]}")
        return "   !  PosixThreadId=#\n   !  ThreadId=#\n   !  Normalised ThreadId=#\n"
    return re.sub(r"   !  PosixThreadId=([0-9a-f]{16})\n   !  ThreadId=([0-9a-f]{8,16})\n"
                  r"   !  Normalised ThreadId=([0-9a-f]{8})\n", masked, lines)


def read_report(text):
    """A failure report with its dates and its code level as in the sample."""
    text = re.sub(rf"(:- ){DATE}", r"\1Thu Jan  1 12:00:00 2004", text)
    text = re.sub(rf"(Build Date        :- ){BUILD_DATE}", r"\1Jan  1 2004", text)
    sample = "@(!)      ***** Code Level is 9.9.9 *****"
    return re.sub(rf"(:- )({LEVEL} *)", lambda m: m[1] + sample.ljust(len(m[2])), text)


def read_blocks(text):
    """Each "@name" line begins a block, whose records are indented by at least one level."""
    parts = re.split(r"^@([\w-]+)\n", text, flags=re.MULTILINE)
    return dict(zip(parts[1::2], parts[2::2]))


def expand_tree(tree, blocks, depth=0):
    """The lines of the records that a tree stands for."""
    return "".join(expand_node(line.strip(), children, blocks, depth)
                   for line, children in nodes(tree))


def nodes(tree):
    """The nodes of the outermost level, each with the text of the tree below it."""
    indent = re.match(r" *", tree)[0]
    return re.findall(rf"^{indent}(\S.*)\n((?:{indent} .*\n)*)", tree, re.MULTILINE)


def expand_node(text, children, blocks, depth):
    if repeated := re.fullmatch(r"(.*) x(\d+)", text):
        return expand_node(repeated[1], children, blocks, depth) * int(repeated[2])
    if text.startswith("! "):
        return f"   {decode(text)}\n"
    if text.startswith("@"):
        name, _, arguments = text[1:].partition(" ")
        body = blocks[name]
        for number, argument in enumerate(arguments.split("|"), 1):
            body = body.replace(f"${number}", argument)
        return expand_tree(body, blocks, depth)
    label, left, code = re.fullmatch(r"(.*?)(?: -> (.*?))?(?: = (.*))?", text).groups()
    return (f"   {dashes(depth)}>{label}\n" + expand_tree(children, blocks, depth + 1)
            + f"   <{dashes(depth)}{left or label} (rc= {code or 'OK'})\n")
