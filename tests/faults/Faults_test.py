"""Requests under faults of the system: failing calls, a kill, a full disk, a client that went away,
a crowd.

Usage: Faults_test.py SOURCE BUILD. Each request works in a folder of its own, and what becomes of all
files there is looked at.
"""
import collections
import contextlib
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
import urllib.parse

SOURCE, BUILD = sys.argv[1:3]
PROGRAM = BUILD + '/frontend/dnzcnf'
WITH_FAULTS = BUILD + '/tests/faults/dnzcnf_with_faults'

OLD = b'A 1 #first\nB 2 # \nGone x # \n'
NEW = b'A 11 #first\nB 2 # \nC 3 #third\n'
TARGET = b'T 5 #only there\n'
MERGED = NEW + TARGET
ROWS = {'n0': 'A', 'v0': '11', 'd0': 'first', 'n1': 'B', 'v1': '2', 'n2': 'Gone', 'v2': 'x',
        'e2': 'on', 'dnzNumPairs': '3', 'dnzNewName': 'C', 'dnzNewValue': '3',
        'dnzNewDesc': 'third', 'dnzhidefile': 'dnz.ini', 'dnzSave': 'save'}
OPEN = {'dnzcnf': 'open', 'dnzINIfile': 'dnz.ini'}
SAVE = {**ROWS, 'dnzINIsave': 'dnz.ini'}
SAVE_ELSEWHERE = {**ROWS, 'dnzINIsave': 'target.ini'}

ALLOCATIONS = ('malloc', 'calloc', 'new')
CALLS = ALLOCATIONS + ('fopen', 'fread', 'fwrite', 'fclose', 'fflush', 'fstat', 'ftruncate', 'open',
                       'read', 'catopen', 'setlocale')
# A save that did not take place is told.
NOT_SAVED = (b'Nothing was saved', b'not a complete form', b'Velmora was unable to')


class Folder:
    """A working directory with the files of an installation, looked at before and after."""

    def __init__(self, place=None):
        self.path = tempfile.mkdtemp(prefix='dnzcnf-faults-', dir=place)
        self.reports = tempfile.mkdtemp(prefix='dnzcnf-reports-')
        self.files = {'dnz.ini': OLD, 'target.ini': TARGET, 'bystander.ini': OLD}
        for name in ('dnzcnf2.htm', 'dnzcnf3.htm'):
            with open(f'{SOURCE}/tests/requests/fixtures/{name}', 'rb') as template:
                self.files[name] = template.read()
        for name, contents in self.files.items():
            with open(f'{self.path}/{name}', 'wb') as file:
                file.write(contents)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.path)
        shutil.rmtree(self.reports)

    def now(self):
        found = {}
        for name in os.listdir(self.path):
            with open(f'{self.path}/{name}', 'rb') as file:
                found[name] = file.read()
        return found

    def start(self, form, *, program=(PROGRAM,), **options):
        body = urllib.parse.urlencode(form).encode()
        environment = {name: value for name, value in os.environ.items() if 'SAN_OPTIONS' in name}
        environment.update(REQUEST_METHOD='POST', CONTENT_LENGTH=str(len(body)), PATH='/usr/bin:/bin',
                           CONTENT_TYPE='application/x-www-form-urlencoded',
                           NLSPATH=f'{BUILD}/install/%N.cat', DNZ_PATH=self.reports, **options.pop('variables', {}))
        with tempfile.TemporaryFile() as stdin:
            stdin.write(body)
            stdin.seek(0)
            return subprocess.Popen(program, cwd=self.path, env=environment, **{
                'stdin': stdin, 'stdout': subprocess.PIPE, 'stderr': subprocess.PIPE, **options})

    def request(self, form, **options):
        with self.start(form, **options) as child:
            output, errors = child.communicate(timeout=60)
        return child.returncode, output or b'', errors or b''


class Faults(unittest.TestCase):
    def check_files(self, folder, saved=None, *contents):
        """The file that is saved holds one of the contents, or the front of the last one; no other
        file has changed."""
        now = folder.now()
        value = now.pop(saved, None)
        self.assertEqual(now, {name: old for name, old in folder.files.items() if name != saved})
        if saved:
            self.assertTrue(value in contents or contents[-1].startswith(value), value)
        return value

    def test_each_call_that_fails(self):
        counts = collections.Counter()
        for name, form, saved, new in (('open', OPEN, None, None), ('save', SAVE, 'dnz.ini', NEW),
                                       ('save elsewhere', SAVE_ELSEWHERE, 'target.ini', MERGED)):
            for call in CALLS:
                counts[call] += self.fail_each(name, call, form, saved, new)
        print('failed calls:', dict(counts), file=sys.stderr)
        for call in CALLS:
            self.assertGreater(counts[call], 0, call)

    def fail_each(self, name, call, form, saved, new):
        number, came = 0, True
        while came:
            number, came = number + 1, False
            with self.subTest(name, call=call, number=number), Folder() as folder:
                code, output, errors = folder.request(
                    form, program=(WITH_FAULTS,), variables={'FAULT': f'{call}:{number}'})
                came = b'The fault came' in errors
                # Inserts that find no room are reported; nothing else here is.
                self.assertEqual(len(os.listdir(folder.reports)), int(came and call == 'calloc'))
                self.assertIn(code, (0, 1, -signal.SIGABRT) if call in ALLOCATIONS else (0, 1))
                if not saved:
                    self.check_files(folder)
                    continue
                old = folder.files[saved]
                # A target that can't be read counts as one without entries.
                accepted = [old, NEW, new] if call in ('open', 'read', 'fstat') else [old, new]
                value = self.check_files(folder, saved, *accepted)
                if value == old and code >= 0:
                    self.assertTrue(any(text in output for text in NOT_SAVED), output)
                elif code >= 0 and call not in ('fwrite', 'fflush'):
                    self.assertTrue(output.startswith(b'Content-type: text/'), output)
        return number - 1

    @unittest.skipIf('asan' in BUILD or not shutil.which('strace'), 'no strace under sanitizers')
    def test_kill_at_each_system_call(self):
        for form, saved, new in ((SAVE, 'dnz.ini', NEW), (SAVE_ELSEWHERE, 'target.ini', MERGED)):
            with Folder() as folder, tempfile.NamedTemporaryFile('r') as log:
                folder.request(form, program=('strace', '-qq', '-o', log.name, PROGRAM))
                calls = re.findall(r'^(\w+)\(', log.read(), re.MULTILINE)[1:]  # behind execve
            self.assertIn('ftruncate', calls)
            seen, outcomes = collections.Counter(), collections.Counter()
            for call in calls:
                seen[call] += 1
                with self.subTest(saved, call=call, number=seen[call]), Folder() as folder:
                    inject = f'inject={call}:signal=SIGKILL:when={seen[call]}'
                    code, _, errors = folder.request(
                        form, program=('strace', '-qq', '-o', '/dev/null', '-e', inject, PROGRAM))
                    self.assertEqual(code, -signal.SIGKILL, errors)
                    old = folder.files[saved]
                    value = self.check_files(folder, saved, old, new)
                    outcomes['old' if value == old else 'new' if value == new else 'prefix'] += 1
            print(f'killed at {len(calls)} calls: {dict(outcomes)}', file=sys.stderr)

    def test_client_that_went_away(self):
        for first in range(3):  # nobody reads; nobody reads behind the first bytes; /dev/full
            with self.subTest(first), Folder() as folder:
                reader, writer = os.pipe()
                if first == 2:
                    writer = os.open('/dev/full', os.O_WRONLY)
                if first == 0:
                    os.close(reader)
                child = folder.start(SAVE, stdout=writer)
                os.close(writer)
                if first == 1:
                    os.read(reader, 1)
                if first > 0:
                    os.close(reader)
                child.communicate(timeout=60)
                self.assertIn(child.returncode, (0, 1))
                self.assertEqual(self.check_files(folder, 'dnz.ini', NEW), NEW)

    def test_full_disk(self):
        with tempfile.TemporaryDirectory(prefix='dnzcnf-full-') as disk:
            mounted = subprocess.run(['mount', '-t', 'tmpfs', '-o', 'size=64k', 'none', disk],
                                     capture_output=True, check=False)
            if mounted.returncode != 0:
                self.skipTest('a file system may not be mounted here')
            with contextlib.ExitStack() as stack:
                stack.callback(subprocess.run, ['umount', disk], check=True)
                folder = stack.enter_context(Folder(disk))
                with open(disk + '/filler', 'wb', buffering=0) as filler:
                    try:
                        while filler.write(b'x' * 4096):
                            pass
                    except OSError:
                        pass
                long = {**SAVE, 'dnzNewDesc': 'x' * 200, 'dnzNumPairs': '60'}
                long.update({f'{kind}{row}': f'E{row:03}' if kind == 'n' else 'x' * 100
                             for row in range(60) for kind in 'nvd'})
                code, output, _ = folder.request(long)
                self.assertIn(code, (0, 1))
                self.assertTrue(output)
                lines = [f'E{row:03} {"x" * 100} #{"x" * 100}\n' for row in range(60) if row != 2]
                self.check_files(folder, 'dnz.ini', OLD, ('C 3 #' + 'x' * 200 + '\n'
                                                          + ''.join(lines)).encode())

    def test_crowd(self):
        """All versions are of one length: the file isn't locked, so others could mix."""
        with Folder() as folder:
            versions = {OLD.replace(b'first', b'%05d' % i): {**SAVE, 'd0': f'{i:05}', 'v0': '1',
                                                             'dnzNewName': '', 'e2': ''}
                        for i in range(200)}
            crowd = [folder.start(form, stdout=subprocess.DEVNULL) for form in versions.values()]
            for child in crowd:
                child.communicate(timeout=120)
                self.assertEqual(child.returncode, 1)
            self.assertIn(self.check_files(folder, 'dnz.ini', *versions), versions)


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1], verbosity=2)
