#!/usr/bin/env python3
"""Runs the cases of a file against the program, in one fresh folder and with no environment but the
one they name. Whole answers and whole files are compared. Unless the cases trace by themselves,
they run a second time with tracing on: nothing may change, and each trace has to explain itself.

A case begins with "== " and what it shows; the lines before the first one belong to all. A line is
a keyword with its arguments; text that belongs to it is indented, or follows ": " in the same line.

    file NAME            a file to make first; with "/" at its end a folder, with "|" a pipe
    env NAME=value, ...  variables; a bare NAME takes the variable away
    without NAME         takes a file away
    open NAME            the first view of a file. Below it may be its lines, each as
                             line => name | value | description, or nothing
    save [NAME]          the form of dnz.ini comes back, to be saved as NAME. Below are its rows, each
                         with its line in the file if it isn't plain, or its faults and value then:
                             name | value | description | box => line
                             name | value | description | box ! 1015 1016 value
                             + name | value | description      the new entry
    back [NAME]          the form of the answer before comes back, to be saved as NAME
    with NAME=value, ... fields beside those; a bare NAME takes the field away
    raw                  fields as sent, after those: an "&" a line
    closed STREAM        stdin, stdout or stderr is closed before the program starts
    taken KIND           the name of the trace file is taken: by a "folder", a "pipe", a "full" device

The outcome is a page with the rows of the file; a save writes its rows in name order. Otherwise:

    page NAME [SAVE [FOLDER]]   the form page, one "name | value | description" a row
    refused 1013|insert, 1012   the failure page, behind the faults of the rows
    stdout, stderr, exit N      what is said there; 1 is the exit value unless said
    after NAME                  a file that is new or has changed; no other file may
    trace [FOLDER [user]]       the tree of records (see traces.py); an own DNZ_TRACE needs FOLDER
    report FOLDER               a failure report, or lines of it

Texts: \\x20 stands for a byte, a last \\ for no line end, {x*80} for a run, {cwd} for the folder,
{1010|insert|insert} for a message, {0-9|text @} for ten lines with 0000 to 0009 in them.
"""
import difflib
import functools
import os
import pathlib
import re
import sys
import tempfile

import traces

HERE = pathlib.Path(__file__).parent
sys.path.append(str(HERE.parent / 'support'))
import program

ENCODING = 'latin-1'  # bytes pass through unchanged
MESSAGES = program.messages(encoding=ENCODING)
PROGRAM, CATALOGUES = sys.argv[2] + '/frontend/dnzcnf', sys.argv[2] + '/install'


def read(path):
    return path.read_bytes().decode(ENCODING)


BLOCKS = traces.read_blocks(read(HERE / 'fixtures/records.txt'))
ROW, TAIL = read(HERE / 'fixtures/form.txt').split('---\n')


def read_lines(text):
    lines = re.findall(r'^(\w+) ?(.*?)(?:: (.*))?\n((?:  .*\n|\n(?=\n*  ))*)', text, re.MULTILINE)
    return [(keyword, arguments, f'{first}\n' if first else re.sub('^  ', '', block, flags=re.M))
            for keyword, arguments, first, block in lines]


def expand(text, folder):
    """The bytes that a text of a case stands for."""
    def run(match):
        first, last = int(match[1]), int(match[2])
        step = 1 if first <= last else -1
        return ''.join(match[3].replace('@', f'{number:04}') + '\n'
                       for number in range(first, last + step, step))

    def message(match):
        number, *inserts = match[1].split('|')
        values = dict(zip('345', inserts + ['', '', '']))
        return re.sub('%([3-5])', lambda m: values[m[1]], MESSAGES[int(number)])[:1999]

    text = re.sub(r'\{(\d+)-(\d+)\|(.*?)\}\n?', run, text.replace('{cwd}', folder))
    text = re.sub(r'\\(?:x(..)|\n)', lambda m: chr(int(m[1], 16)) if m[1] else '', text)
    text = re.sub(r'\{(.)\*(\d+)\}', lambda m: m[1] * int(m[2]), text)
    return re.sub(r'\{(\d{4}(?:\|[^{}|]*)*)\}', message, text)


def cells(row):
    return [*re.split(r' \|(?=$| \|)| \| ', row), '', ''][:max(3, row.count('|') + 1)]


def entries(text):
    """The cells of each line of an ini file as the program writes it."""
    return [[*re.fullmatch('([^ ]*)(?: ([^ ]*))?(?: #(.*))?', line).groups('')]
            for line in text.splitlines()]


def saved_line(name, value, description):
    if value or description:
        return f'{name} {value} #{description or " "}' if value else f'{name}  #{description}'
    return name


def fill(template, **values):
    for name, value in values.items():
        template = template.replace(f'<{name}>', str(value))
    return template


class Case:
    """One case in one pass. What differs from its outcome is collected."""

    def __init__(self, folder, trace_folder, lines, answer):
        self.folder, self.trace_folder = folder, trace_folder
        self.expand = functools.partial(expand, folder=str(folder))
        self.lines = [(keyword, self.expand(arguments), text) for keyword, arguments, text in lines]
        self.kind, self.name, text = ([*self.find('open', 'save', 'back'), ('', '', '')])[0]
        self.rows = [(self.expand(left), mark, self.expand(right)) for left, mark, right in
                     re.findall(r'(.+?)(?: +(=>|!) ?(.*))?\n', text)]
        self.form = self.fields(answer)
        self.differences = []

    def find(self, *keywords):
        return [line for line in self.lines if line[0] in keywords]

    def text(self, keyword, default=''):
        return self.expand(''.join(text for _, _, text in self.find(keyword)) or default)

    def compare(self, what, expected, actual):
        if expected != actual:
            self.differences += difflib.unified_diff(
                *([repr(line) for line in text.splitlines(True)] for text in (expected, actual)),
                f'{what}, expected', f'{what}, actual', lineterm='', n=1)

    def fields(self, answer):
        fields = {'open': {'dnzcnf': 'open', 'dnzINIfile': self.name},
                  'save': {'dnzhidefile': 'dnz.ini', 'dnzINIsave': 'dnz.ini', 'dnzSave': 'Save'},
                  'back': {name: quoted or plain for name, quoted, plain in re.findall(
                      r'NAME= ?(\S+) VALUE= ?(?:"(.*?)"|(\S+)) +SIZE', answer)}}.get(self.kind, {})
        if self.kind == 'save':
            olds = [cells(row) for row, _, _ in self.rows if not row.startswith('+ ')]
            for index, row in enumerate(olds):
                fields.update((f'{kind}{index}', cell) for kind, cell in zip('nvde', row) if cell)
            fields['dnzNumPairs'] = len(olds)
            for row, _, _ in self.rows[len(olds):]:
                fields.update(zip(('dnzNewName', 'dnzNewValue', 'dnzNewDesc'), cells(row[2:])))
        if self.kind in ('save', 'back'):
            fields.update({'dnzSave': 'Save', **({'dnzINIsave': self.name} if self.name else {})})
        for _, changes, _ in self.find('with'):
            for name, sets, value in (change.partition('=') for change in changes.split(', ')):
                fields[name] = value if sets else None
        return {name: value for name, value in fields.items() if value is not None}

    def make_files(self):
        for _, name, text in self.find('file'):
            path = self.folder / name.rstrip('|')
            (path if name.endswith('/') else path.parent).mkdir(parents=True, exist_ok=True)
            if name.endswith('|') and not path.exists():
                os.mkfifo(path)
            elif not name.endswith(('/', '|')):
                path.write_text(self.expand(text), ENCODING, newline='')
        if self.kind == 'open' and self.rows:
            lines = ''.join(line + '\n' for line, _, _ in self.rows)
            (self.folder / self.name).write_text(lines, ENCODING, newline='')
        for _, name, _ in self.find('without'):
            (self.folder / name).unlink()

    def files(self):
        return {str(path.relative_to(self.folder)): read(path)
                for path in self.folder.rglob('*') if path.is_file()}

    def saved(self):
        """The lines of the rows in the order of their names."""
        rows = [(cells(row.removeprefix('+ ')), line) for row, _, line in self.rows]
        return ''.join(f'{line or saved_line(*row[:3])}\n'
                       for row, line in sorted(rows) if not row[3:])

    def faults(self):
        """The messages of the rows with faults, in the order of their names."""
        for row, mark, faults in sorted(self.rows):
            if mark == '!':
                name, value, _ = cells(row.removeprefix('+ '))[:3]
                numbers, _, shown = faults.partition(': ')
                for number in numbers.split():
                    yield f'{{{number}}}\n{{1010|{name}|{shown or value}}}\n'

    def expected_page(self, files):
        if self.find('stdout'):
            return self.text('stdout')
        faults = ''.join(self.faults())
        if faults or self.find('refused'):
            (_, refused, _), = self.find('refused') or [('', '1012', '')]
            return self.expand('Content-type: text/plain\n\n{1005}\n' + faults + ''.join(
                f'{{{text}}}\n' for text in refused.split(', ')))
        (_, names, rows), = self.find('page') or [('', '', '')]
        hide, save, directory = ((names or self.form['dnzINIsave' if 'dnzSave' in self.form else 'dnzINIfile']).split() + ['', ''])[:3]
        if rows:
            rows = [cells(row) for row in self.expand(rows).splitlines()]
        elif self.kind == 'open' and self.rows:
            rows = sorted(row for line, mark, shown in self.rows
                          for row in ([cells(shown)] if shown else [] if mark else entries(line)))
        else:
            rows = sorted(entries(files.get(os.path.relpath(self.folder / (directory and directory + os.path.basename(hide) or hide), self.folder), '')))
        field = functools.partial(fill, '<TD><INPUT TYPE= HIDDEN  NAME= <name> VALUE= "<value>"  SIZE= 25 > </TD>\n ')
        head, tail = (self.template(f'dnzcnf{number}.htm', files) for number in '23')
        return self.expand('Content-type: text/html\n\n') + head + ''.join(fill(ROW, i=index, name=name, value=value, description=description) for index, (name, value, description) in enumerate(rows)) + self.expand(fill(TAIL, rows=len(rows), hide=hide, save=save or hide, directory=directory and field(name='dnzfilepath', value=directory))) + tail

    def template(self, name, files):
        found = [files[path] for path in sorted(files) if path in (name, f'pages/{name}')]
        return found[0] + '\n' if found else self.expand(f'<HTML>{{1000|{name}}}</HTML>')

    def prepare_child(self):
        """What happens in the child, with its process id, before it becomes the program."""
        for kind, place in (taken.split() for _, taken, _ in self.find('taken')):
            path = self.folder / place / trace_name(os.getpid(), 'TRC')
            {'folder': path.mkdir, 'pipe': functools.partial(os.mkfifo, path),
             'full': functools.partial(path.symlink_to, '/dev/full')}[kind]()
        for _, name, _ in self.find('closed'):
            os.close(('stdin', 'stdout', 'stderr').index(name))

    def check(self):
        self.make_files()
        files = self.files()
        raw = '&'.join(line for line in self.text('raw').splitlines())
        body = (program.form(self.form, ENCODING).decode() + ('&' if self.form and raw else '') + raw).encode(ENCODING)
        variables = {'NLSPATH': CATALOGUES + '/%N.cat'}
        if self.trace_folder:
            variables.update(DNZ_TRACE='ON', DNZ_PATH=self.trace_folder)
        for _, changes, _ in self.find('env'):
            variables.update((name, value if sets else None) for name, sets, value in
                             (change.partition('=') for change in changes.split(', ')))
        answer = program.run([PROGRAM], self.folder, body if self.form or self.find('raw') else None, variables, preexec_fn=self.prepare_child)
        self.answer = answer.output.decode(ENCODING)
        self.check_records(answer.pid)
        if self.find('after'):
            files.update((name, self.expand(text)) for _, name, text in self.find('after'))
        elif self.kind == 'save' and not any(self.faults()) and not self.find('refused', 'stdout'):
            files[self.form['dnzINIsave']] = self.saved()
        self.compare('standard output', self.expected_page(files), self.answer)
        self.compare('standard error', self.text('stderr'), answer.errors.decode(ENCODING))
        (_, code, _), = self.find('exit') or [('', '1', '')]
        self.compare('exit value', code, str(answer.code))
        actual = self.files()
        for name in sorted(files.keys() | actual.keys()):
            self.compare(f'file {name}', files.get(name, '(none)'), actual.get(name, '(none)'))
        return self.differences

    def check_records(self, pid):
        """Compares the trace file and the report, and takes them away."""
        own = any('DNZ_TRACE' in changes for _, changes, _ in self.find('env'))
        trees = (self.find('trace') or [('', '', '')] * bool(self.trace_folder)
                 if own or self.trace_folder else [])
        for _, place, tree in trees:
            place, _, user = place.partition(' ')
            blocks = BLOCKS | {name: self.expand(text) for _, name, text in self.find('block')}
            text = self.take(self.trace_folder or self.folder / place, pid, 'TRC')
            try:
                records, banner = traces.read_trace(text)
                self.compare('banner', user, 'user' if banner else '')
                if tree:
                    self.compare('trace', traces.expand(self.expand(tree), blocks), records)
                for _, _, part in self.find('traced'):
                    part = traces.plain(traces.expand(self.expand(part), blocks))
                    if part not in traces.plain(records):
                        self.compare('trace', part, records)
            except traces.Unexplained as problem:
                self.differences.append(str(problem))
        for _, place, report in self.find('report'):
            text = traces.read_report(self.take(self.folder / place, pid, 'FDC').replace(trace_name(pid, 'TRC'), 'DNZ04711.TRC'))
            self.compare('report', self.expand(report), text if report.startswith('+') else ''.join(line for line in self.expand(report).splitlines(True) if line.strip() in text))

    def take(self, folder, pid, kind):
        path = pathlib.Path(folder) / trace_name(pid, kind)
        if not path.exists():
            return 'no such file'
        self.compare('mode', '0o100600', oct(path.stat().st_mode))
        text = read(path)
        path.unlink()
        return text


def trace_name(process_id, kind):
    return f'DNZ{process_id % 100000:05d}.{kind}'


def each_case(parts):
    """The cases with their titles; one with a table is a case for each of its rows."""
    for title, part in zip(parts[::2], parts[1::2]):
        (row, block), = re.findall(r'^each ?(.*)\n((?:  .*\n)*)', part, re.MULTILINE) or [('', '')]
        for row in block.splitlines() if block else row.split(', '):
            values = dict(enumerate(re.split(r' +\| ?', row.strip()), 1))
            yield f'{title} {row}', re.sub(r'\$(\d)', lambda m: values[int(m[1])],
                                           re.sub(r'^each.*\n(  .*\n)*', '', part, flags=re.M))


def run_pass(path, trace_folder):
    text = re.sub(r'^#.*\n', '', read(pathlib.Path(path)), flags=re.MULTILINE)
    common, *parts = re.split(r'^== (.*)\n', text, flags=re.MULTILINE)
    answer = ''
    with tempfile.TemporaryDirectory(prefix='dnzcnf-') as folder:
        folder = pathlib.Path(os.path.realpath(folder))
        setup = read_lines(common)
        for name in ('dnzcnf2.htm', 'dnzcnf3.htm'):
            (folder / name).write_bytes((HERE / 'fixtures' / name).read_bytes())
        for title, part in each_case(parts):
            case = Case(folder, trace_folder, setup + read_lines(part), answer)
            if differences := case.check():
                yield '\n'.join([f'{path}: {title} ({"traced" if trace_folder else "plain"})', *differences, ''])
            setup = [line for line in setup if line[0] not in ('file', 'without')]
            answer = case.answer if 'dnzNumPairs' in case.answer else answer


def main(paths):
    found = []
    for path in paths:
        found += run_pass(path, None)
        if 'DNZ_TRACE' not in read(pathlib.Path(path)):
            with tempfile.TemporaryDirectory(prefix='dnzcnf-trace-') as trace_folder:
                found += run_pass(path, trace_folder)
    print('\n'.join(found), end='')
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[3:]))
