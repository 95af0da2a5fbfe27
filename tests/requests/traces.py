"""Trace files and failure reports: every byte of one is explained here, or the test fails."""
import pathlib
import re
import time

MONTHS = '(?:Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec)'
DATE = rf'(?:Mon|Tue|Wed|Thu|Fri|Sat|Sun) {MONTHS} [ \d]\d \d\d:\d\d:\d\d \d{{4}}'
BUILD_DATE = rf'{MONTHS} [ 1-3]\d \d{{4}}'
LEVEL = r'Level is \d+\.\d+\.\d+ \*{5}'
HEAD = (rf'\nTrace for program  ---- Brellin Zentrik ----  started at ({DATE})\n\r\n\r\n'
        rf'@\(!\)      \*{{5}} Code {LEVEL}\n(\n  !!! User Tracing is activated !!!\n)?'
        rf'   ! BuildDate {BUILD_DATE}\n')
TIME = r'\d\d:\d\d:\d\d\n'
CODE = r'-?\w+|Not found in retcode translation table \([0-9A-F]+\) \(\d+\)'
RECORD = re.compile(rf'{TIME}   (-+)>(.*)\n|{TIME}   <(-+)([^-].*)( \(rc= (?:{CODE})\))\n'
                    rf'|   (! .*(?:\n(?!   ! |{TIME}).*)*)\n')
OTHER_EXITS = {'URLDecoder::hexStringToChar': 'URLDecoder::hexStringToInt'}
THREAD = re.compile(r'!  PosixThreadId=([0-9a-f]{16})\n!  ThreadId=([0-9a-f]{8,16})\n'
                    r'!  Normalised ThreadId=([0-9a-f]{8})\n')

# Each "@name" line begins a block of records; one of a single line follows its name.
BLOCKS = dict(re.findall(r'^@([\w-]+):?((?: .*)?\n(?:  .*\n)*)', (
    pathlib.Path(__file__).parent / 'fixtures/records.txt').read_text(), re.MULTILINE))


def read_trace(text, user):
    """The records of a whole trace file, one a line; that of a user has a banner."""
    head = re.match(HEAD, text)
    assert head and bool(head[2]) == user, text[:300]
    assert abs(time.time() - time.mktime(time.strptime(head[1]))) < 600, head[1]
    position, records, callers = head.end(), '', []
    while position < len(text):
        record = RECORD.match(text, position)
        assert record, text[position - 300:position + 300]
        entry, entered, leave, left, code, told = record.groups()
        position = record.end()
        callers += [entered] * bool(entered)
        assert told or (entry or leave) == '-' * min(2 * len(callers), 60), record[0]
        if left:
            entered = callers.pop()
            assert left == OTHER_EXITS.get(entered, entered.split(' l=')[0]), (entered, left)
        records += (told or (f'<{left}{code}' if left else f'>{entered}')) + '\n'
    assert not callers, callers
    return THREAD.sub(masked_thread, records)


def masked_thread(match):
    """The identity of the thread differs from run to run; what is made of it is checked here."""
    wide, plain, normalised = (int(digits, 16) for digits in match.groups())
    return '!  Thread\n' if wide == plain and normalised == wide % 100000 else match[0]


def read_report(text, stem):
    """A failure report with its dates, its code level and its process as in the sample."""
    text = text.replace(stem, 'DNZ04711')
    text = re.sub(rf'(:- ){DATE}', r'\1Thu Jan  1 12:00:00 2004', text)
    text = re.sub(rf'(Build Date        :- ){BUILD_DATE}', r'\1Jan  1 2004', text)
    return re.sub(f'{LEVEL} +', lambda m: 'Level is 9.9.9 *****'.ljust(len(m[0])), text)


def expand(tree, blocks):
    """The records that a tree stands for."""
    indent, records = re.match('\n?( *)', tree)[1], ''
    for line, below in re.findall(rf'^{indent}(\S.*)\n((?:{indent} .*\n)*)', tree, re.MULTILINE):
        siblings, _, inside = line.partition(' > ')
        inner = (expand(inside + '\n', blocks) if inside else '') + expand(below, blocks)
        *first, last = siblings.split(' ; ')
        records += ''.join(expand_one(one, '', blocks) for one in first)
        records += expand_one(last, inner, blocks)
    return records


def expand_one(text, inner, blocks):
    text, count = re.fullmatch(r'(.*?)(?: x(\d+))?', text).groups('1')
    if text.startswith('!'):
        return text + '\n'
    if text.startswith('@'):
        name, _, arguments = text[1:].partition(' ')
        values = arguments.split('|')
        tree = re.sub(r'\$(\d)', lambda m: values[int(m[1]) - 1], {**BLOCKS, **blocks}[name])
        return expand(tree, blocks) * int(count)
    label, left, code = re.fullmatch('(.*?)(?: -> (.*?))?(?: = (.*))?', text).groups()
    return f'>{label}\n{inner}<{left or label} (rc= {code or "OK"})\n' * int(count)
