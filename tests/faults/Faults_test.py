"""Requests under faults of the system: failing calls, a kill, a full disk, a client that went away,
a crowd.

Usage: Faults_test.py SOURCE BUILD SANITIZERS. Each request works in a folder of its own, and what
becomes of all files there is looked at.
"""
import collections
import contextlib
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
import urllib.parse

SOURCE, BUILD = map(pathlib.Path, sys.argv[1:3])
SANITIZERS = sys.argv[3]
PROGRAM = BUILD / 'frontend/dnzcnf'
WITH_FAULTS = BUILD / 'tests/faults/dnzcnf_with_faults'

OLD = b'A 1 #first\nB 2 # \nGone x # \n'
NEW = b'A 11 #first\nB 2 # \nC 3 #third\n'
TARGET = b'T 5 #only there\n'
ROWS = {'n0': 'A', 'v0': '11', 'd0': 'first', 'n1': 'B', 'v1': '2', 'n2': 'Gone', 'v2': 'x',
        'e2': 'on', 'dnzNumPairs': '3', 'dnzNewName': 'C', 'dnzNewValue': '3',
        'dnzNewDesc': 'third', 'dnzhidefile': 'dnz.ini', 'dnzSave': 'save'}
SAVE = {**ROWS, 'dnzINIsave': 'dnz.ini'}

# Each with the file that it saves, and what that file holds then.
SAVES = ((SAVE, 'dnz.ini', NEW), ({**ROWS, 'dnzINIsave': 'target.ini'}, 'target.ini', NEW + TARGET))
REQUESTS = (({'dnzcnf': 'open', 'dnzINIfile': 'dnz.ini'}, None, b''), *SAVES)

ALLOCATIONS = ('malloc', 'calloc', 'new')
CALLS = ALLOCATIONS + ('fopen', 'fread', 'fwrite', 'fprintf', 'fclose', 'fflush', 'fstat',
                       'ftruncate', 'open', 'read', 'catopen', 'setlocale')
# A save that did not take place is told.
NOT_SAVED = (b'Nothing was saved', b'not a complete form', b'Velmora was unable to')


class Folder(tempfile.TemporaryDirectory):
    """A working directory with the files of an installation."""

    def __init__(self, place=None):
        super().__init__(prefix='dnzcnf-faults-', dir=place)
        self.path = pathlib.Path(self.name)
        self.reports = self.path / 'reports'
        self.reports.mkdir()
        self.files = {'dnz.ini': OLD, 'target.ini': TARGET, 'bystander.ini': OLD}
        for name in ('dnzcnf2.htm', 'dnzcnf3.htm'):
            self.files[name] = (SOURCE / 'tests/requests/fixtures' / name).read_bytes()
        for name, contents in self.files.items():
            (self.path / name).write_bytes(contents)

    def __enter__(self):
        return self

    def start(self, form, *, program=(PROGRAM,), variables=(), stdout=subprocess.PIPE):
        body = urllib.parse.urlencode(form).encode()
        environment = {name: value for name, value in os.environ.items() if 'SAN_OPTIONS' in name}
        environment.update(
            variables, REQUEST_METHOD='POST', CONTENT_TYPE='application/x-www-form-urlencoded',
            CONTENT_LENGTH=str(len(body)), PATH='/usr/bin:/bin', DNZ_PATH=self.reports,
            NLSPATH=f'{BUILD}/install/%N.cat')
        with tempfile.TemporaryFile() as stdin:
            stdin.write(body)
            stdin.seek(0)
            return subprocess.Popen(program, cwd=self.path, env=environment, stdin=stdin,
                                    stdout=stdout, stderr=subprocess.PIPE)

    def request(self, form, **options):
        with self.start(form, **options) as child:
            return *child.communicate(timeout=60), child.returncode


@contextlib.contextmanager
def small_disk():
    with tempfile.TemporaryDirectory(prefix='dnzcnf-full-') as path:
        if subprocess.run(['mount', '-t', 'tmpfs', '-o', 'size=64k', 'none', path],
                          capture_output=True, check=False).returncode != 0:
            raise unittest.SkipTest('a file system may not be mounted here')
        try:
            yield path
        finally:
            subprocess.run(['umount', path], check=True)


class Faults(unittest.TestCase):
    def check_files(self, folder, saved=None, *contents):
        """The file that is saved holds one of the contents, or the front of the last one; no other
        file has changed."""
        now = {path.name: path.read_bytes() for path in folder.path.iterdir()
               if path != folder.reports}
        value = now.pop(saved, None)
        self.assertEqual(now, {name: old for name, old in folder.files.items() if name != saved})
        if saved:
            self.assertTrue(value in contents or contents[-1].startswith(value), value)
        return value

    def test_each_call_that_fails(self):
        counts = {call: sum(self.fail_each(call, *request) for request in REQUESTS)
                  for call in CALLS}
        print('failed calls:', counts, file=sys.stderr)
        self.assertTrue(all(counts.values()))

    def fail_each(self, call, form, saved, new):
        number, came = 0, True
        while came:
            number, came = number + 1, False
            with self.subTest(saved=saved, call=call, number=number), Folder() as folder:
                output, errors, code = folder.request(
                    form, program=(WITH_FAULTS,), variables={'FAULT': f'{call}:{number}'})
                came = b'The fault came' in errors
                # Inserts that find no room are reported; nothing else here is.
                self.assertEqual(len(os.listdir(folder.reports)), int(came and call == 'calloc'))
                self.assertIn(code, (0, 1, -signal.SIGABRT) if call in ALLOCATIONS else (0, 1))
                if not saved:
                    self.check_files(folder)
                    continue
                lines, old = new.splitlines(keepends=True), folder.files[saved]
                if came and call == 'fprintf':  # nobody notices that the line is missing
                    del lines[number - 1]
                # A target that can't be read counts as one without entries.
                unread = [NEW] if call in ('open', 'read', 'fstat') else []
                value = self.check_files(folder, saved, old, *unread, b''.join(lines))
                self.assertTrue(came or value == new)
                if value == old and code >= 0:
                    self.assertTrue(any(text in output for text in NOT_SAVED), output)
                elif code >= 0 and call not in ('fwrite', 'fflush'):
                    self.assertTrue(output.startswith(b'Content-type: text/'), output)
        return number - 1

    @unittest.skipIf(SANITIZERS, 'the system calls would be those of the sanitizers')
    @unittest.skipUnless(shutil.which('strace'), 'strace is not installed')
    def test_kill_at_each_system_call(self):
        for form, saved, new in SAVES:
            with Folder() as folder, tempfile.NamedTemporaryFile('r') as log:
                folder.request(form, program=('strace', '-qq', '-o', log.name, PROGRAM))
                calls = re.findall(r'^(\w+)\(', log.read(), re.MULTILINE)[1:]  # behind execve
            self.assertIn('ftruncate', calls)
            seen, outcomes = collections.Counter(), collections.Counter()
            for call in calls:
                seen[call] += 1
                with self.subTest(saved, call=call, number=seen[call]), Folder() as folder:
                    inject = f'inject={call}:signal=SIGKILL:when={seen[call]}'
                    _, errors, code = folder.request(
                        form, program=('strace', '-qq', '-o', '/dev/null', '-e', inject, PROGRAM))
                    self.assertEqual(code, -signal.SIGKILL, errors)
                    old = folder.files[saved]
                    value = self.check_files(folder, saved, old, new)
                    outcomes['old' if value == old else 'new' if value == new else 'prefix'] += 1
            print(f'killed at {len(calls)} calls: {dict(outcomes)}', file=sys.stderr)

    def test_client_that_went_away(self):
        reader, writer = os.pipe()
        os.close(reader)
        with open('/dev/full', 'wb') as full, os.fdopen(writer, 'wb') as unread:
            for what, output in (('nobody reads', unread), ('full device', full),
                                 ('a single byte is read', subprocess.PIPE)):
                with self.subTest(what), Folder() as folder:
                    child = folder.start(SAVE, stdout=output)
                    if child.stdout:
                        os.read(child.stdout.fileno(), 1)
                        child.stdout.close()
                    child.communicate(timeout=60)
                    self.assertIn(child.returncode, (0, 1))
                    self.assertEqual(self.check_files(folder, 'dnz.ini', NEW), NEW)

    def test_full_disk(self):
        long, rows = 'x' * 100, range(60)
        form = {'dnzNumPairs': str(len(rows)), 'dnzhidefile': 'dnz.ini', 'dnzINIsave': 'dnz.ini',
                'dnzSave': 'save'}
        for row in rows:
            form.update({f'n{row}': f'E{row:03}', f'v{row}': long, f'd{row}': long})
        new = ''.join(f'E{row:03} {long} #{long}\n' for row in rows).encode()
        with small_disk() as disk, Folder(disk) as folder:
            space = os.statvfs(disk)
            (folder.reports / 'filler').write_bytes(b'x' * space.f_bavail * space.f_frsize)
            output, _, code = folder.request(form)
            self.assertIn(code, (0, 1))
            self.assertTrue(output)
            self.assertLess(len(self.check_files(folder, 'dnz.ini', OLD, new)), len(new))

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
