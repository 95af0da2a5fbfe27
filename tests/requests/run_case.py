"""Runs the cases of a file, which docs/request-cases.md explains, against the program."""
import collections
import difflib
import os
import pathlib
import re
import shutil
import sys
import tempfile

import program
import traces

CASES = pathlib.Path(sys.argv[1])
FIXTURES = pathlib.Path(__file__).parent / 'fixtures'
ENCODING = 'latin-1'  # bytes pass through unchanged
MESSAGES = program.messages(encoding=ENCODING)


def read(path):
    return path.read_bytes().decode(ENCODING)


TEMPLATES = ('dnzcnf2.htm', 'dnzcnf3.htm')
ROW, TAIL = read(FIXTURES / 'form.txt').split('---\n')
FOLDER_FIELD = re.search('<TD>.*<directory>.*\n ', TAIL)[0]


def read_cases():
    """Title and text of each case, those of a table one by one; the first makes the files of all."""
    common, *parts = re.split('(?m)^== (.*)\n', re.sub('(?m)^#.*\n', '', read(CASES)))
    for title, part in zip(parts[::2], parts[1::2]):
        title, _, request = title.partition(' [')
        kind, *others = request[:-1].split('; ')
        text, *each = re.split(r'(?m)^each ?(.*)\n((?:  .*\n)*)', f'{kind}\n{part}')
        text = ''.join([text, *each[2:], *(f'{line}\n' for line in others)])
        items = each and (each[0].split(', ') if each[0] else re.split(
            r'\n| {3,}(?! |\|)', each[1].rstrip()))
        for row in items or ['']:
            values = dict(enumerate(re.split(r' +\| ?', row.strip()), 1))
            yield f'{title} {row}', common + re.sub(r'\$(\d)', lambda m: values[int(m[1])], text)
            common = re.sub(r'(?m)^(file|without) .*\n(  .*\n)*', '', common)


def expand(text, folder):
    """The bytes that a text of a case stands for."""
    def message(match):
        number, *inserts = match[1].split('|')
        values = dict(zip('345', inserts + ['', '', '']))
        return re.sub('%([3-5])', lambda m: values[m[1]], MESSAGES[int(number)])[:1999]

    text = re.sub(r'\{(\d+)-(\d+)\|(.*?)\}\n', lambda m: ''.join(
        m[3].replace('@', f'{n:04}') + '\n' for n in range(int(m[1]), int(m[2]) + 1)), text)
    text = re.sub(r'\\(?:x(..)|\n)', lambda m: chr(int(m[1], 16)) if m[1] else '', text)
    text = re.sub(r'\{(.)\*(\d+)\}', lambda m: m[1] * int(m[2]), text.replace('{cwd}', folder))
    return re.sub(r'\{(\d{4}(?:\|[^{}|]*)*)\}', message, text)


def cells(row):
    found = re.split(r' \|(?=$| \|)| \| ', row)
    return found + [''] * (3 - len(found))


def entries(text):
    """The cells of each line of an ini file as the program writes it, in name order."""
    return sorted(re.fullmatch('([^ ]*)(?: ([^ ]*))?(?: #(.*))?', line).groups('')
                  for line in text.splitlines())


def saved_line(name, value, description, *_):
    if value or description:
        return f'{name} {value} #{description or " "}' if value else f'{name}  #{description}'
    return name


def fill(template, **values):
    return re.sub('<([a-z]+)>', lambda match: str(values[match[1]]), template)


class Case:
    """One case in one pass."""

    def __init__(self, text, folder, trace_folder, shown):
        self.folder, self.trace_folder = folder, trace_folder
        self.rows, self.kind = [], ''
        self.lines = collections.defaultdict(list)
        for keyword, arguments, text, block in re.findall(
                r'^(\w+) ?(.*?)(?:: (.*))?\n((?:  .*\n|\n(?=\n*  ))*)', text, re.MULTILINE):
            if keyword in ('open', 'save', 'back'):
                self.kind = keyword
                self.rows = [[self.expand(cell) for cell in row] for row in re.findall(
                    r'^  (\+ )?(.+?)(?: +(=>|!) ?(.*))?\n', block, re.MULTILINE)]
                block = ''
            text = re.sub('(?m)^  ', '', block) + (text and text + '\n')
            self.lines[keyword].append((self.expand(arguments), self.expand(text)))
        self.by_name = sorted(self.rows, key=lambda row: cells(row[1])[0])
        self.fields = self.form_fields(shown)

    def expand(self, text):
        return expand(text, str(self.folder))

    def argument(self, keyword, default=''):
        return self.lines[keyword][-1][0] if self.lines[keyword] else default

    def text(self, keyword):
        return ''.join(text for _, text in self.lines[keyword])

    def changes(self, keyword):
        """Names with their new values, None for one that is taken away."""
        return [(name, value if sets else None) for arguments, _ in self.lines[keyword]
                for name, sets, value in (item.partition('=') for item in arguments.split(', '))]

    def compare(self, what, expected, actual):
        assert expected == actual, '\n'.join(difflib.unified_diff(
            *([repr(line) for line in text.splitlines(True)] for text in (expected, actual)),
            f'{what}, expected', f'{what}, actual', lineterm='', n=1))

    def form_fields(self, shown):
        """The fields of the form post, or none."""
        name = self.argument(self.kind)
        fields = {'open': {'dnzcnf': 'open', 'dnzINIfile': name},
                  'save': {'dnzhidefile': 'dnz.ini', 'dnzINIsave': 'dnz.ini', 'dnzNumPairs': 0},
                  'back': dict(re.findall(r'NAME= ?(\S+) VALUE= ?"?(.*?)"? +SIZE', shown)),
                  '': {}}[self.kind]
        if self.kind == 'save':
            for new, row, *_ in self.rows:
                names = ['dnzNewName', 'dnzNewValue', 'dnzNewDesc'] if new else [
                    f'{kind}{fields["dnzNumPairs"]}' for kind in 'nvde']
                fields['dnzNumPairs'] += not new
                fields.update((name, cell) for name, cell in zip(names, cells(row)) if cell)
        if self.kind in ('save', 'back'):
            fields.update(dnzINIsave=name or fields['dnzINIsave'], dnzSave='Save')
        fields.update(self.changes('with'))
        return {field: value for field, value in fields.items() if value is not None}

    def make_files(self):
        for name, text in self.lines['file']:
            path = self.folder / name.rstrip('|')
            (path if name.endswith('/') else path.parent).mkdir(parents=True, exist_ok=True)
            if name.endswith('|') and not path.exists():
                os.mkfifo(path)
            elif not name.endswith(('/', '|')):
                path.write_text(text, ENCODING, newline='')
        if self.kind == 'open' and self.rows:
            lines = ''.join(f'{line}\n' for _, line, *_ in self.rows)
            (self.folder / self.argument('open')).write_text(lines, ENCODING, newline='')
        for name, _ in self.lines['without']:
            (self.folder / name).unlink()

    def files(self):
        return {str(path.relative_to(self.folder)): read(path)
                for path in self.folder.rglob('*') if path.is_file()}

    def check(self):
        """Sends the request, compares what comes of it, and returns the answer."""
        self.make_files()
        files = self.files()
        body = '&'.join([program.form(self.fields, ENCODING).decode()] * bool(self.fields)
                        + self.text('raw').splitlines()).encode(ENCODING)
        variables = {'NLSPATH': program.BUILD / 'install/%N.cat'}
        if self.trace_folder:
            variables.update(DNZ_TRACE='ON', DNZ_PATH=self.trace_folder)
        variables.update(self.changes('env'))
        answer = program.run(
            [program.BUILD / 'frontend/dnzcnf'], self.folder, body or None, variables,
            preexec_fn=lambda: [os.close(int(stream)) for stream in self.argument('closed').split()])
        output = answer.output.decode(ENCODING)
        self.check_trace(self.folder / (self.trace_folder or self.argument('trace')), variables,
                         f'DNZ{answer.pid % 100000:05d}')
        page = self.text('stdout') if self.lines['stdout'] else self.refusal()
        files.update(self.lines['after'])
        if self.kind == 'save' and page is None and not self.lines['after']:
            files[self.fields['dnzINIsave']] = ''.join(
                f'{line or saved_line(*cells(row))}\n'
                for _, row, _, line in self.by_name if not cells(row)[3:])
        self.compare('standard output', self.form_page(files) if page is None else page, output)
        self.compare('standard error', self.text('stderr'), answer.errors.decode(ENCODING))
        self.compare('exit value', self.argument('exit', '1'), str(answer.code))
        actual = self.files()
        for name in sorted(files.keys() | actual.keys()):
            self.compare(f'file {name}', files.get(name, '(none)'), actual.get(name, '(none)'))
        return output

    def refusal(self):
        """The failure page, with the faults of the rows."""
        faults = ''
        for _, row, mark, texts in self.by_name:
            numbers, _, shown = texts.partition(': ')
            for number in numbers.split() if mark == '!' else []:
                name, value, *_ = cells(row)
                faults += f'{{{number}}}\n{{1010|{name}|{shown or value}}}\n'
        if not faults and not self.lines['refused']:
            return None
        last = self.argument('refused', '1012').replace(', ', '}\n{')
        return self.expand(f'Content-type: text/plain\n\n{{1005}}\n{faults}{{{last}}}\n')

    def form_page(self, files):
        names = self.argument('page') or self.fields.get('dnzINIsave') or self.argument('open')
        hide, save, directory = (names.split() + ['', ''])[:3]
        path = self.folder / (directory + os.path.basename(hide) if directory else hide)
        if self.text('page'):
            rows = [cells(row) for row in self.text('page').splitlines()]
        elif self.kind == 'open' and self.rows:
            rows = sorted(cells(shown if mark else ' | '.join(entries(line)[0]))
                          for _, line, mark, shown in self.rows if shown or not mark)
        else:
            rows = entries(files.get(os.path.relpath(path, self.folder), ''))
        head, tail = (files.get(name, files.get(f'pages/{name}')) for name in TEMPLATES)
        return ('Content-type: text/html\n\n' + head + '\n' + ''.join(
                    fill(ROW, i=i, name=row[0], value=row[1], description=row[2])
                    for i, row in enumerate(rows))
                + self.expand(fill(TAIL if directory else TAIL.replace(FOLDER_FIELD, ''), hide=hide,
                                   save=save or hide, directory=directory, rows=len(rows)))
                + (self.expand('<HTML>{1000|dnzcnf3.htm}</HTML>') if tail is None else tail + '\n'))

    def check_trace(self, folder, variables, stem):
        """Compares the trace file and the report, and takes them away."""
        if 'DNZ_TRACE' in variables and (self.trace_folder or self.lines['trace']):
            user = variables['DNZ_TRACE'][:1] in ('U', 'u') and variables['DNZ_PATH'] is not None
            records = traces.read_trace(self.take(folder / f'{stem}.TRC'), user)
            for _, tree in self.lines['trace']:
                part = traces.expand(tree or '\n', dict(self.lines['block']))
                self.compare('trace', part, part if part in records else records)
        for place, report in self.lines['report']:
            path = self.folder / place / f'{stem}.FDC'
            self.compare('report', report, traces.read_report(self.take(path), stem))

    def take(self, path):
        self.compare('mode', '0o100600', oct(path.stat().st_mode))
        text = read(path)
        path.unlink()
        return text


def run_pass(trace_folder=None):
    """All cases, up to the first that differs from its outcome."""
    with tempfile.TemporaryDirectory(prefix='dnzcnf-') as name:
        folder, shown = pathlib.Path(name).resolve(), ''
        for name in TEMPLATES:
            shutil.copy(FIXTURES / name, folder)
        for title, text in read_cases():
            try:
                output = Case(text, folder, trace_folder, shown).check()
            except (AssertionError, OSError) as problem:
                sys.exit(f'{title} (traced: {bool(trace_folder)})\n{problem}')
            shown = output if 'dnzNumPairs' in output else shown


run_pass()
if 'DNZ_TRACE' not in read(CASES):
    with tempfile.TemporaryDirectory(prefix='dnzcnf-trace-') as traces_folder:
        run_pass(traces_folder)
