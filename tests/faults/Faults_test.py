"""Requests under faults: calls that fail, a kill at each system call, lost clients, a full disk, a
crowd. Each works in a folder of its own, and what becomes of all files there is looked at."""
import concurrent.futures
import contextlib
import os
import pathlib
import re
import shutil
import signal
import subprocess
import tempfile
import unittest

from program import ROOT, form, messages, run
from staging import BUILD, cached

PROGRAM, SANITIZERS = BUILD / 'frontend/dnzcnf', cached('DNZCNF_SANITIZE')
OLD = b'T 5 #only there\n'
NEW = b'A 11 #first\nB 2 # \nC 3 #third\n' + OLD
FILES = {'dnz.ini': b'A 1 #first\nB 2 # \nGone x # \n', 'target.ini': OLD,
         'dnzcnf2.htm': b'<FORM>\n', 'dnzcnf3.htm': b'</FORM>\n'}
SAVE = {'n0': 'A', 'v0': '11', 'd0': 'first', 'n1': 'B', 'v1': '2', 'n2': 'Gone', 'v2': 'x',
        'e2': 'on', 'dnzNumPairs': '3', 'dnzNewName': 'C', 'dnzNewValue': '3', 'dnzNewDesc': 'third',
        'dnzhidefile': 'dnz.ini', 'dnzINIsave': 'target.ini', 'dnzSave': 'save'}
ALLOCATIONS = 'malloc', 'calloc', 'new'
CALLS = ('fopen fread fwrite fprintf fclose fflush fstat ftruncate open read catopen'
         ' setlocale').split()
NOT_SAVED = [messages()[number].encode() for number in (1011, 1012)] + [b'Velmora was unable to']


class Faults(unittest.TestCase):
    @contextlib.contextmanager
    def folder(self, place=None):
        """A folder in which no file changes but target.ini."""
        with tempfile.TemporaryDirectory(dir=place) as name:
            folder = pathlib.Path(name)
            (folder / 'reports').mkdir()
            for file, contents in FILES.items():
                (folder / file).write_bytes(contents)
            yield folder
            now = {path.name: path.read_bytes() for path in folder.iterdir() if path.is_file()}
            self.assertEqual({**now, 'target.ini': OLD}, FILES)

    def request(self, folder, fields, *program, variables=(), **options):
        return run(program or [PROGRAM], folder, form(fields), {
            'NLSPATH': BUILD / 'install/%N.cat', 'DNZ_PATH': folder / 'reports', **dict(variables)},
            **options)

    def check(self, folder, *contents):
        """target.ini contains one of these, or the front of the last one."""
        value = (folder / 'target.ini').read_bytes()
        self.assertTrue(value in contents or contents[-1].startswith(value), value)
        return value

    def test_each_call_that_fails(self):
        for call in (*ALLOCATIONS, *CALLS):
            counts = [self.fail_each(call, *request) for request in (
                ({'dnzcnf': 'open', 'dnzINIfile': 'dnz.ini'}, OLD), (SAVE, NEW))]
            self.assertTrue(any(counts), call)

    def fail_each(self, call, fields, new):
        for number in range(1, 1000, 3 if SANITIZERS else 1):  # their processes start slowly
            with self.subTest(new, call=call, number=number), self.folder() as folder:
                output, errors, code, _ = self.request(
                    folder, fields, BUILD / 'tests/faults/dnzcnf_with_faults',
                    variables={'FAULT': f'{call}:{number}'})
                came = b'The fault came' in errors
                # Inserts without memory are reported; nothing else here is.
                self.assertEqual(len(os.listdir(folder / 'reports')), came and call == 'calloc')
                self.assertIn(code, (0, 1, -signal.SIGABRT) if call in ALLOCATIONS else (0, 1))
                lines = new.splitlines(keepends=True)
                if came and call == 'fprintf':  # nobody notices that the line is missing
                    del lines[number - 1]
                # A target that can't be opened counts as one without entries.
                unread = [new.removesuffix(OLD)] if call == 'open' else []
                value = self.check(folder, OLD, *unread, b''.join(lines))
                if not came:
                    self.assertEqual(value, new)
                    return number - 1
                if code >= 0 and value == OLD != new:
                    self.assertTrue(any(text in output for text in NOT_SAVED), output)
                elif code >= 0 and call not in ('fwrite', 'fflush'):
                    self.assertTrue(output.startswith(b'Content-type: text/'), output)

    @unittest.skipIf(SANITIZERS, 'the system calls would be those of the sanitizers')
    def test_kill_at_each_system_call(self):
        with self.folder() as folder, tempfile.NamedTemporaryFile('r') as log:
            self.request(folder, SAVE, 'strace', '-qq', '-o', log.name, PROGRAM)
            calls = re.findall(r'^(\w+)\(', log.read(), re.MULTILINE)[1:]  # after execve
        self.assertIn('ftruncate', calls)
        for place, call in enumerate(calls):
            inject = f'inject={call}:signal=SIGKILL:when={calls[:place + 1].count(call)}'
            with self.subTest(inject), self.folder() as folder:
                answer = self.request(
                    folder, SAVE, 'strace', '-qq', '-o', '/dev/null', '-e', inject, PROGRAM)
                self.assertEqual(answer.code, -signal.SIGKILL, answer.errors)
                self.check(folder, OLD, NEW)

    def test_client_that_went_away(self):
        reader, writer = os.pipe()
        os.close(reader)
        with open('/dev/full', 'wb') as full, open(writer, 'wb') as unread:
            for output in full, unread:
                with self.folder() as folder:
                    self.assertIn(self.request(folder, SAVE, stdout=output).code, (0, 1))
                    self.assertEqual((folder / 'target.ini').read_bytes(), NEW)

    def test_full_disk(self):
        long, fields = 'x' * 100, {**SAVE, 'dnzNumPairs': '60', 'e2': ''}
        for row in range(60):
            fields.update({f'n{row}': f'D{row:03}', f'v{row}': long, f'd{row}': long})
        new = ''.join(f'D{row:03} {long} #{long}\n' for row in range(60)).encode()
        disk = self.enterContext(tempfile.TemporaryDirectory())
        if subprocess.run(['mount', '-t', 'tmpfs', '-o', 'size=64k', 'none', disk]).returncode:
            self.skipTest('a file system may not be mounted here')
        self.addCleanup(subprocess.run, ['umount', disk])
        with self.folder(disk) as folder:
            (folder / 'reports/filler').write_bytes(b'x' * shutil.disk_usage(disk).free)
            self.assertTrue(self.request(folder, fields).output)
            self.assertLess(len(self.check(folder, OLD, b'C 3 #third\n' + new)), len(new))

    def test_crowd(self):
        """Saves at once, one after the other by the lock: the file is one of them, whole."""
        forms = [{**SAVE, 'd0': 'x' * (1 + i % 97)} for i in range(200)]
        with self.folder() as folder, concurrent.futures.ThreadPoolExecutor(100) as pool:
            variables = {'DNZCNF_PROGRAM': PROGRAM, 'DNZCNF_INI_FOLDER': folder, 'DNZCNF_LOCK': '60'}
            list(pool.map(lambda fields: self.request(
                folder, fields, ROOT / 'install/cgi-bin/dnzcnf', variables=variables), forms))
            value = (folder / 'target.ini').read_bytes()
            versions = [NEW.replace(b'first', b'x' * (1 + i)) for i in range(97)]
            self.assertTrue(value in versions, value)
