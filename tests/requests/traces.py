"""Trace files and failure reports: every byte of one is explained here, or the test fails.

The records of a trace are written as a tree, a label indented by the depth of the calls:

    Caller = 1                    entry and exit with the return code text 1; OK when left out
      ! text                      a text record
      Callee -> Other label       an exit under another label than the entry
      First ; Callee x3           one call, then three
      Callee > ! text ; Inner     what happens inside, on the same line
      @name one|two               the records of a named block, with its $1 and $2 replaced
"""
import re
import time

MONTHS = '(?:Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec)'
DATE = rf'(?:Mon|Tue|Wed|Thu|Fri|Sat|Sun) {MONTHS} [ \d]\d \d\d:\d\d:\d\d \d{{4}}'
BUILD_DATE = rf'{MONTHS} [ 1-3]\d \d{{4}}'
LEVEL = r'@\(!\)      \*{5} Code Level is \d+\.\d+\.\d+ \*{5}'
HEAD = (rf'\nTrace for program  ---- Brellin Zentrik ----  started at ({DATE})\n\r\n\r\n{LEVEL}\n'
        rf'(\n  !!! User Tracing is activated !!!\n)?   ! BuildDate {BUILD_DATE}\n')
TIME = r'\d\d:\d\d:\d\d\n'
CODE = r'-?\w+|Not found in retcode translation table \([0-9A-F]+\) \(\d+\)'
RECORD = re.compile(rf'{TIME}   (-+)>(.*)\n|{TIME}   <(-+)([^-].*) \(rc= (?:{CODE})\)\n'
                    rf'|   ! .*(?:\n(?!   ! |{TIME}).*)*\n')
OTHER_EXITS = {'URLDecoder::hexStringToChar': 'URLDecoder::hexStringToInt'}
THREAD = re.compile(r'   !  PosixThreadId=([0-9a-f]{16})\n   !  ThreadId=([0-9a-f]{8,16})\n'
                    r'   !  Normalised ThreadId=([0-9a-f]{8})\n')


class Unexplained(Exception):
    pass


def read_trace(text):
    """The records of a whole trace file without their times, and whether the user's banner is
    there."""
    head = re.match(HEAD, text)
    if not head or abs(time.time() - time.mktime(time.strptime(head[1]))) > 600:
        raise Unexplained(f'the head of the trace: {text[:300]!r}')
    position, records, callers = head.end(), [], []
    while position < len(text):
        record = RECORD.match(text, position)
        if not record or not nests(record, callers):
            raise Unexplained(f'after {records[-3:]}: {text[position:position + 200]!r}')
        records.append(re.sub(TIME, '', record[0], count=1))
        position = record.end()
    if callers:
        raise Unexplained(f'entries without exits: {callers}')
    return THREAD.sub(masked_thread, ''.join(records)), bool(head[2])


def nests(record, callers):
    entry, entered, exit_dashes, left = record.groups()
    if entry:
        callers.append(entered)
        return entry == dashes(len(callers) - 1)
    if exit_dashes:
        entered = callers.pop() if callers else ''
        return (exit_dashes == dashes(len(callers))
                and left == OTHER_EXITS.get(entered, entered.split(' l=')[0]))
    return True


def dashes(depth):
    return '-' * min(2 * depth + 2, 60)


def masked_thread(match):
    """The identity of the thread differs from run to run; what is made of it is checked here."""
    wide, plain, normalised = (int(digits, 16) for digits in match.groups())
    return '   !  Thread\n' if wide == plain and normalised == wide % 100000 else match[0]


def read_report(text):
    """A failure report with its dates and its code level as in the sample."""
    text = re.sub(rf'(:- ){DATE}', r'\1Thu Jan  1 12:00:00 2004', text)
    text = re.sub(rf'(Build Date        :- ){BUILD_DATE}', r'\1Jan  1 2004', text)
    return re.sub(r'Level is \d+\.\d+\.\d+ \*{5} +',
                  lambda m: 'Level is 9.9.9 *****'.ljust(len(m[0])), text)


def read_blocks(text):
    """Each "@name" line begins a block."""
    parts = re.split(r'^@(\S+)\n', text, flags=re.MULTILINE)
    return dict(zip(parts[1::2], parts[2::2]))


def expand(tree, blocks, depth=0):
    """The records that a tree stands for."""
    indent, records = re.match(r' *', tree)[0], ''
    for line, below in re.findall(rf'^{indent}(\S.*)\n((?:{indent} .*\n)*)', tree, re.MULTILINE):
        siblings, _, inside = line.partition(' > ')
        inner = inside and expand(inside + '\n', blocks, depth + 1)
        inner += below and expand(below, blocks, depth + 1)
        *first, last = siblings.split(' ; ')
        records += ''.join(expand_one(one, '', blocks, depth) for one in first)
        records += expand_one(last, inner, blocks, depth)
    return records


def expand_one(text, inner, blocks, depth):
    if repeated := re.fullmatch(r'(.*) x(\d+)', text):
        return expand_one(repeated[1], inner, blocks, depth) * int(repeated[2])
    if text.startswith('!'):
        return f'   {text}\n'
    if text.startswith('@'):
        name, _, arguments = text[1:].partition(' ')
        body = blocks[name]
        for number, argument in enumerate(arguments.split('|'), 1):
            body = body.replace(f'${number}', argument)
        return expand(body, blocks, depth)
    label, left, code = re.fullmatch(r'(.*?)(?: -> (.*?))?(?: = (.*))?', text).groups()
    return (f'   {dashes(depth)}>{label}\n{inner}'
            f'   <{dashes(depth)}{left or label} (rc= {code or "OK"})\n')


def plain(records):
    """The records without the depth of the calls."""
    return re.sub('-+', '-', records)
