"""Requests under faults: calls that fail, a kill at each system call, lost clients, a full disk, a
crowd. Each works in a folder of its own, and what becomes of all files there is looked at."""
import concurrent.futures
import contextlib
import itertools
import os
import pathlib
import re
import resource
import signal
import tempfile
import unittest

from program import BUILD, ROOT, cached, form, messages, run

PROGRAM, SANITIZERS = BUILD / 'frontend/dnzcnf', cached('DNZCNF_SANITIZE')
OLD = b'T 5 #only there\n'
NEW = b'A 11 #first\nB 2 # \nC 3 #third\n' + OLD
FILES = {'dnz.ini': b'A 1 #first\nB 2 # \nGone x # \n', 'target.ini': OLD,
         'dnzcnf2.htm': b'<FORM>\n', 'dnzcnf3.htm': b'</FORM>\n'}
SAVE = {'n0': 'A', 'v0': '11', 'd0': 'first', 'n1': 'B', 'v1': '2', 'n2': 'Gone', 'v2': 'x',
        'e2': 'on', 'dnzNumPairs': '3', 'dnzNewName': 'C', 'dnzNewValue': '3', 'dnzNewDesc': 'third',
        'dnzhidefile': 'dnz.ini', 'dnzINIsave': 'target.ini', 'dnzSave': 'save'}
ALLOCATIONS = 'malloc', 'calloc', 'new'
OPEN = {'dnzcnf': 'open', 'dnzINIfile': 'dnz.ini'}
TRACED = ['strace', '-qqq', *(f'-P{name}' for name in (*FILES, BUILD / 'install/dnz.cat')), '-o']
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

    def check_answer(self, answer, value, new):
        """A request that comes to its end says so if nothing was saved."""
        if answer.code != -signal.SIGABRT:
            self.assertIn(answer.code, (0, 1))
            self.assertTrue(answer.output.startswith(b'Content-type: text/'), answer.output)
            self.assertTrue(value != OLD or new == OLD or any(
                text in answer.output for text in NOT_SAVED), answer.output)

    def test_each_allocation_that_fails(self):
        for call, (fields, new) in itertools.product(ALLOCATIONS, ((OPEN, OLD), (SAVE, NEW))):
            for number in range(1, 1000, 3 if SANITIZERS else 1):  # their processes start slowly
                with self.subTest(new, call=call, number=number), self.folder() as folder:
                    answer = self.request(folder, fields, BUILD / 'tests/faults/dnzcnf_with_faults',
                                          variables={'FAULT': f'{call}:{number}'})
                    came = b'The fault came' in answer.errors
                    value = self.check(folder, *((OLD, new) if came else (new,)))
                    self.check_answer(answer, value, new)
                    # Inserts without memory are reported; nothing else here is.
                    reports = len(os.listdir(folder / 'reports'))
                    self.assertEqual(reports, came and call == 'calloc')
                if not came:
                    break
            self.assertGreater(number, 1, call)

    def test_kill_and_error_at_each_system_call(self):
        with self.folder() as folder, tempfile.NamedTemporaryFile('r') as log:
            self.request(folder, SAVE, *TRACED, log.name, PROGRAM)
            calls = re.findall(r'^(\w+)\(', log.read(), re.MULTILINE)
        self.assertIn('ftruncate', calls)
        for place, call in enumerate(calls):
            for fault in 'signal=SIGKILL', 'error=ENOSPC':
                inject = f'inject={call}:{fault}:when={calls[:place + 1].count(call)}'
                with self.subTest(inject), self.folder() as folder:
                    answer = self.request(folder, SAVE, *TRACED, '/dev/null', '-e', inject, PROGRAM)
                    # A target that can't be opened counts as one without entries.
                    value = self.check(folder, OLD, NEW)
                    if 'KILL' in fault:
                        self.assertEqual(answer.code, -signal.SIGKILL, answer.errors)
                    else:
                        self.check_answer(answer, value, NEW)

    def test_client_that_went_away(self):
        reader, writer = os.pipe()
        os.close(reader)
        with open('/dev/full', 'wb') as full, open(writer, 'wb') as unread:
            for output in full, unread:
                with self.folder() as folder:
                    self.assertIn(self.request(folder, SAVE, stdout=output).code, (0, 1))
                    self.assertEqual((folder / 'target.ini').read_bytes(), NEW)

    def test_full_disk(self):
        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (20, 20))

        with self.folder() as folder:
            self.assertTrue(self.request(folder, SAVE, preexec_fn=limit).output)
            self.assertEqual((folder / 'target.ini').read_bytes(), NEW[:20])

    def test_crowd(self):
        """Saves at once, one after the other by the lock: the file is one of them, whole."""
        forms = [{**SAVE, 'd0': 'x' * (1 + i % 97)} for i in range(200)]
        with self.folder() as folder, concurrent.futures.ThreadPoolExecutor(100) as pool:
            variables = {'DNZCNF_PROGRAM': PROGRAM, 'DNZCNF_INI_FOLDER': folder, 'DNZCNF_LOCK': '120'}
            list(pool.map(lambda fields: self.request(
                folder, fields, ROOT / 'install/cgi-bin/dnzcnf', variables=variables), forms))
            value = (folder / 'target.ini').read_bytes()
            versions = [NEW.replace(b'first', b'x' * (1 + i)) for i in range(97)]
            self.assertTrue(value in versions, value)
