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
OLD, NEW = b'A 1 #first\nB 2 # \nGone x # \n', b'A 11 #first\nB 2 # \nC 3 #third\n'
TARGET = b'T 5 #only there\n'
FILES = {'dnz.ini': OLD, 'target.ini': TARGET, 'bystander.ini': OLD, 'dnzcnf2.htm': b'<FORM>\n',
         'dnzcnf3.htm': b'</FORM>\n'}
SAVE = {'n0': 'A', 'v0': '11', 'd0': 'first', 'n1': 'B', 'v1': '2', 'n2': 'Gone', 'v2': 'x',
        'e2': 'on', 'dnzNumPairs': '3', 'dnzNewName': 'C', 'dnzNewValue': '3', 'dnzNewDesc': 'third',
        'dnzhidefile': 'dnz.ini', 'dnzINIsave': 'dnz.ini', 'dnzSave': 'save'}
# A form, the file that it may change, and what that contains then.
SAVES = (SAVE, 'dnz.ini', NEW), ({**SAVE, 'dnzINIsave': 'target.ini'}, 'target.ini', NEW + TARGET)
OPEN = {'dnzcnf': 'open', 'dnzINIfile': 'dnz.ini'}, 'dnz.ini', OLD
ALLOCATIONS = 'malloc', 'calloc', 'new'
CALLS = ('fopen fread fwrite fprintf fclose fflush fstat ftruncate open read catopen'
         ' setlocale').split()
NOT_SAVED = [messages()[number].encode() for number in (1011, 1012)] + [b'Velmora was unable to']


class Faults(unittest.TestCase):
    @contextlib.contextmanager
    def folder(self, saved, place=None):
        """A folder in which no file changes but the one that is saved."""
        with tempfile.TemporaryDirectory(dir=place) as name:
            folder = pathlib.Path(name)
            (folder / 'reports').mkdir()
            for file, contents in FILES.items():
                (folder / file).write_bytes(contents)
            yield folder
            now = {path.name: path.read_bytes() for path in folder.iterdir() if path.is_file()}
            self.assertEqual({**now, saved: None}, {**FILES, saved: None})

    def request(self, folder, fields, *program, variables=(), **options):
        return run(program or [PROGRAM], folder, form(fields), {
            'NLSPATH': BUILD / 'install/%N.cat', 'DNZ_PATH': folder / 'reports', **dict(variables)},
            **options)

    def check(self, path, *contents):
        """The file contains one of these, or the front of the last one."""
        value = path.read_bytes()
        self.assertTrue(value in contents or contents[-1].startswith(value), value)
        return value

    def test_each_call_that_fails(self):
        for call in (*ALLOCATIONS, *CALLS):
            counts = [self.fail_each(call, *request) for request in (OPEN, *SAVES)]
            self.assertTrue(any(counts), call)

    def fail_each(self, call, fields, saved, new):
        for number in range(1, 1000, 3 if SANITIZERS else 1):  # their processes start slowly
            with self.subTest(saved, call=call, number=number), self.folder(saved) as folder:
                output, errors, code, _ = self.request(
                    folder, fields, BUILD / 'tests/faults/dnzcnf_with_faults',
                    variables={'FAULT': f'{call}:{number}'})
                came = b'The fault came' in errors
                # Inserts without memory are reported; nothing else here is.
                self.assertEqual(len(os.listdir(folder / 'reports')), came and call == 'calloc')
                self.assertIn(code, (0, 1, -signal.SIGABRT) if call in ALLOCATIONS else (0, 1))
                lines, old = new.splitlines(keepends=True), FILES[saved]
                if came and call == 'fprintf':  # nobody notices that the line is missing
                    del lines[number - 1]
                # A target that can't be read counts as one without entries.
                unread = [NEW] if call in ('open', 'read', 'fstat') else []
                value = self.check(folder / saved, old, *unread, b''.join(lines))
                if not came:
                    self.assertEqual(value, new)
                    return number - 1
                if code >= 0 and value == old != new:
                    self.assertTrue(any(text in output for text in NOT_SAVED), output)
                elif code >= 0 and call not in ('fwrite', 'fflush'):
                    self.assertTrue(output.startswith(b'Content-type: text/'), output)

    @unittest.skipIf(SANITIZERS, 'the system calls would be those of the sanitizers')
    def test_kill_at_each_system_call(self):
        for fields, saved, new in SAVES:
            with self.folder(saved) as folder, tempfile.NamedTemporaryFile('r') as log:
                self.request(folder, fields, 'strace', '-qq', '-o', log.name, PROGRAM)
                calls = re.findall(r'^(\w+)\(', log.read(), re.MULTILINE)[1:]  # after execve
            self.assertIn('ftruncate', calls)
            for place, call in enumerate(calls):
                inject = f'inject={call}:signal=SIGKILL:when={calls[:place + 1].count(call)}'
                with self.subTest(saved, inject=inject), self.folder(saved) as folder:
                    answer = self.request(
                        folder, fields, 'strace', '-qq', '-o', '/dev/null', '-e', inject, PROGRAM)
                    self.assertEqual(answer.code, -signal.SIGKILL, answer.errors)
                    self.check(folder / saved, FILES[saved], new)

    def test_client_that_went_away(self):
        reader, writer = os.pipe()
        os.close(reader)
        with open('/dev/full', 'wb') as full, open(writer, 'wb') as unread:
            for output in full, unread:
                with self.folder('dnz.ini') as folder:
                    self.assertIn(self.request(folder, SAVE, stdout=output).code, (0, 1))
                    self.assertEqual((folder / 'dnz.ini').read_bytes(), NEW)

    def test_full_disk(self):
        fields = {**SAVE, 'dnzNumPairs': '60', 'dnzNewName': '', 'e2': ''}
        for row in range(60):
            fields.update({f'n{row}': f'E{row:03}', f'v{row}': 'x' * 100, f'd{row}': 'x' * 100})
        new = ''.join(f'E{row:03} {"x" * 100} #{"x" * 100}\n' for row in range(60)).encode()
        disk = self.enterContext(tempfile.TemporaryDirectory())
        if subprocess.run(['mount', '-t', 'tmpfs', '-o', 'size=64k', 'none', disk]).returncode:
            self.skipTest('a file system may not be mounted here')
        self.addCleanup(subprocess.run, ['umount', disk])
        with self.folder('dnz.ini', disk) as folder:
            (folder / 'reports/filler').write_bytes(b'x' * shutil.disk_usage(disk).free)
            answer = self.request(folder, fields)
            self.assertTrue(answer.output)
            self.assertLess(len(self.check(folder / 'dnz.ini', OLD, new)), len(new))

    def test_crowd(self):
        """Saves at once, one after the other by the lock: the file is one of them, whole."""
        texts = [f'{i} #' + 'x' * (i % 97) for i in range(200)]
        forms = [{**SAVE, 'dnzNumPairs': '1', 'dnzNewName': '', 'v0': value, 'd0': description}
                 for value, description in (text.split(' #') for text in texts)]
        with self.folder('dnz.ini') as folder, concurrent.futures.ThreadPoolExecutor(100) as pool:
            variables = {'DNZCNF_PROGRAM': PROGRAM, 'DNZCNF_INI_FOLDER': folder, 'DNZCNF_LOCK': '60'}
            list(pool.map(lambda fields: self.request(
                folder, fields, ROOT / 'install/cgi-bin/dnzcnf', variables=variables), forms))
            value = (folder / 'dnz.ini').read_text()
            self.assertTrue(value in [f'A {text}\n' for text in texts], value)
