"""Edits an ini file through a real web server behind its snippet, and tries what it has to refuse.

Usage: Servers_test.py SOURCE BUILD SERVER, a server of servers.py. The build is staged into a
temporary folder.
"""
import base64
import http.client
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import urllib.parse

SOURCE, BUILD, SERVER = sys.argv[1:4]
sys.path.append(SOURCE + '/tests/support')
from servers import SERVERS
from staging import stage

PROGRAM = '/cgi-bin/dnzcnf'
PAGES = ('/dnzgate/', '/dnzgate/dnzcnf.css')
LIMIT = 1024 * 1024
FORM_TYPE = 'application/x-www-form-urlencoded'
FILE = b'NZIGwQueue GATE.IN #requests\n'
SAVE = {'dnzhidefile': 'dnz.ini', 'dnzINIsave': 'dnz.ini', 'dnzSave': 'save', 'dnzNumPairs': '1',
        'n0': 'NZIGwQueue', 'v0': 'GATE.NEW', 'd0': 'requests'}
SAVED = FILE.replace(b'GATE.IN', b'GATE.NEW')
PASSWORD = 'open: sésame'

HEADERS = {
    'Content-Security-Policy':
        "default-src 'none'; style-src 'self'; img-src 'self'; form-action 'self'; "
        "base-uri 'none'; frame-ancestors 'none'; sandbox allow-forms allow-same-origin",
    'X-Content-Type-Options': 'nosniff',
    'Referrer-Policy': 'same-origin',
}
CACHE_CONTROL = {PROGRAM: 'private, no-cache', **dict.fromkeys(PAGES, 'no-store')}

REFUSED_POSTS = {
    'no login': {'Authorization': None},
    'wrong password': {'Authorization': ('anna', 'wrong')},
    'unknown user': {'Authorization': ('otto', PASSWORD)},
    'another origin': {'Origin': 'https://elsewhere.example'},
    'another port': {'Origin': 'http://127.0.0.1:1'},
    'an origin that begins alike': {'Origin': '{origin}0'},
    'an origin that has none': {'Origin': 'null'},
    'cross-site': {'Sec-Fetch-Site': 'cross-site'},
    'same-site': {'Sec-Fetch-Site': 'same-site'},
    'no content type': {'Content-Type': None},
    'plain text': {'Content-Type': 'text/plain'},
    'several parts': {'Content-Type': 'multipart/form-data; boundary=x'},
    'a length over the limit': {'Content-Length': str(LIMIT + 1)},
    'an endless length': {'Content-Length': str(2 ** 62)},
}

WRONG_PATHS = ('/dnzgate', '/dnzgate/dnzcnf1.htm', '/dnzgate/dnzcnf2.htm', '/dnzgate/de_DE/',
               '/dnzgate/en_US/dnzcnf1.htm', '/dnzgate/dnzcnf.css/', '/dnzgate/../../bin/dnzcnf',
               '/dnzgate/../../../../etc/dnzcnf/passwords', '/dnzgate/%2e%2e/%2e%2e/bin/dnz.cat',
               '/dnzgate/..%2f..%2fbin%2fdnz.cat', '/cgi-bin/', PROGRAM + '/', PROGRAM + '/dnz.ini',
               '/cgi-bin/../bin/dnzcnf', '/opt/nzm/bin/dnz.cat', '/var/nzm/dnz.ini')


class Snippet(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix='dnzcnf-servers-')
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        cls.ini = cls.folder + '/var/nzm/dnz.ini'
        cls.passwords = cls.folder + '/etc/dnzcnf/passwords'
        stage(BUILD, cls.folder)
        cls.server = cls.enterClassContext(SERVERS[SERVER](cls.folder).running())

    def setUp(self):
        with open(self.ini, 'wb') as file:
            file.write(FILE)
        digest = subprocess.run(['openssl', 'passwd', '-6', '-stdin'], input=PASSWORD.encode(),
                                check=True, stdout=subprocess.PIPE).stdout.decode()
        os.makedirs(os.path.dirname(self.passwords), exist_ok=True)
        with open(self.passwords, 'w', encoding='ascii') as file:
            file.write('anna:' + digest)

    def saved(self):
        with open(self.ini, 'rb') as file:
            return file.read()

    def request(self, method, path, body=b'', **headers):
        """Sends the headers as they are, and the path too; the answer, whole, and its text."""
        headers.setdefault('Authorization', ('anna', PASSWORD))
        connection = http.client.HTTPConnection('127.0.0.1', self.server.port, timeout=30)
        self.addCleanup(connection.close)
        connection.putrequest(method, path)
        for name, value in headers.items():
            if isinstance(value, tuple):
                value = 'Basic ' + base64.b64encode(':'.join(value).encode()).decode()
            if value is not None:
                connection.putheader(name, value.format(origin=self.server.origin))
        connection.endheaders()
        try:
            connection.send(body)
        except OSError:
            pass  # the server has refused it on the way, and tells why
        answer = connection.getresponse()
        return answer, answer.read().decode()

    def post(self, fields, **headers):
        body = urllib.parse.urlencode(fields).encode()
        return self.request('POST', PROGRAM, body, **{
            'Content-Type': FORM_TYPE, 'Content-Length': str(len(body)), **headers})

    def check_headers(self, answer, path):
        expected = {**HEADERS, 'Cache-Control': CACHE_CONTROL[path]}
        for name, value in expected.items():
            self.assertEqual(answer.headers.get_all(name), [value], name)

    def check_refusal(self, answer):
        self.assertGreaterEqual(answer.status, 400)
        self.assertLess(answer.status, 500)
        self.assertEqual(self.saved(), FILE)

    def test_edit_from_the_entry_page_to_the_saved_file(self):
        browser = {'Origin': self.server.origin, 'Sec-Fetch-Site': 'same-origin'}
        types = {}
        for path in PAGES:
            answer, text = self.request('GET', path)
            self.assertEqual(answer.status, 200, path)
            self.check_headers(answer, path)
            types[path] = answer.headers['Content-Type'].lower()
            if path == '/dnzgate/':
                button = re.search('<button name="dnzINIfile" value="(.*)">', text)
        self.assertEqual(list(types.values()),
                         ['text/html; charset=utf-8', 'text/css; charset=utf-8'])

        answer, form = self.post({'dnzcnf': 'open', 'dnzINIfile': button[1]}, **browser)
        self.assertEqual(answer.status, 200)
        self.assertTrue(answer.headers['Content-Type'].startswith('text/html'))
        self.check_headers(answer, PROGRAM)
        self.assertIn('"GATE.IN"', form)
        self.assertEqual(self.saved(), FILE)

        answer, form = self.post(SAVE, **browser)
        self.check_headers(answer, PROGRAM)
        self.assertIn('"GATE.NEW"', form)
        self.assertEqual(self.saved(), SAVED)

    def test_clients_that_are_no_browsers_are_served(self):
        for headers in ({}, {'Sec-Fetch-Site': 'none'}):
            self.setUp()
            self.assertEqual(self.post(SAVE, **headers)[0].status, 200)
            self.assertEqual(self.saved(), SAVED)

    def test_posts_that_are_refused(self):
        for case, headers in REFUSED_POSTS.items():
            with self.subTest(case):
                answer, _ = self.post(SAVE, **headers)
                self.check_refusal(answer)
                if self.server.headers_on_refusals:
                    self.check_headers(answer, PROGRAM)
                self.assertEqual(answer.status == 401, 'Authorization' in headers, answer.status)
                self.assertEqual(answer.status == 413, 'Content-Length' in headers, answer.status)

    def test_body_up_to_the_limit(self):
        body = urllib.parse.urlencode(SAVE).encode() + b'&x='
        body += (LIMIT - len(body)) * b'x'
        answer, _ = self.request('POST', PROGRAM, body + b'x', **{
            'Content-Type': FORM_TYPE, 'Content-Length': str(LIMIT + 1)})
        self.assertEqual(answer.status, 413)
        self.assertEqual(self.saved(), FILE)
        chunked = b'%x\r\n%sx\r\n0\r\n\r\n' % (LIMIT + 1, body)
        answer, _ = self.request('POST', PROGRAM, chunked, **{
            'Content-Type': FORM_TYPE, 'Transfer-Encoding': 'chunked'})
        self.assertIn(answer.status, (411, 413))
        self.assertEqual(self.saved(), FILE)
        answer, _ = self.request('POST', PROGRAM, body, **{
            'Content-Type': FORM_TYPE, 'Content-Length': str(LIMIT)})
        self.assertEqual(answer.status, 200)
        self.assertEqual(self.saved(), SAVED)

    def test_other_methods(self):
        for method in ('GET', 'HEAD'):
            answer, _ = self.request(method, PROGRAM)
            self.assertEqual(answer.status, 303, method)
            target = urllib.parse.urljoin(self.server.origin + PROGRAM, answer.headers['Location'])
            self.assertEqual(target, self.server.origin + '/dnzgate/')
        for method in ('PUT', 'DELETE', 'OPTIONS'):
            with self.subTest(method):
                self.check_refusal(self.request(method, PROGRAM, **{'Content-Type': FORM_TYPE})[0])

    def test_wrong_paths(self):
        for path in WRONG_PATHS:
            with self.subTest(path):
                self.check_refusal(self.request('GET', path)[0])
                body = urllib.parse.urlencode(SAVE).encode()
                self.check_refusal(self.request('POST', path, body, **{
                    'Content-Type': FORM_TYPE, 'Content-Length': str(len(body))})[0])

    def test_nothing_works_without_a_login(self):
        def statuses(**headers):
            answers = [self.request('GET', path, **headers) for path in PAGES]
            answers.append(self.post(SAVE, **headers))
            self.assertEqual(self.saved(), FILE)
            return [answer.status for answer, _ in answers]

        self.assertEqual(statuses(Authorization=None), [401] * 3)
        os.remove(self.passwords)
        for status in statuses():
            self.assertIn(status, (401, 403, 500))

    def test_environment_of_the_program(self):
        program = self.folder + '/opt/nzm/bin/dnzcnf'
        os.rename(program, program + '.away')
        self.addCleanup(os.rename, program + '.away', program)
        with open(program, 'w', encoding='ascii') as file:
            file.write('#!/bin/sh\n/bin/cat >/dev/null\nprintf "Content-Type: text/plain\\n\\n"\n'
                       '/bin/pwd\n/usr/bin/id -u\n/usr/bin/tr "\\0" "\\n" </proc/$$/environ\n')
        os.chmod(program, 0o755)
        _, text = self.post(SAVE, Cookie='a=b')
        folder, user, *lines = text.splitlines()
        self.assertEqual(folder, os.path.dirname(self.ini))
        self.assertEqual(int(user), os.stat(self.ini).st_uid)
        names = [line.partition('=')[0] for line in lines]
        self.assertEqual(len(names), len(set(names)), 'a variable stands there twice')
        environment = dict(line.split('=', 1) for line in lines)
        expected = {'REQUEST_METHOD': 'POST', 'CONTENT_TYPE': FORM_TYPE, 'LANG': 'en_US.UTF-8',
                    'PATH': self.folder + '/opt/nzm/html/dnzgate/en_US',
                    'NLSPATH': f'{self.folder}/usr/share/locale/%l_%t/LC_MESSAGES/%N:'
                               f'{self.folder}/opt/nzm/bin/%N.cat',
                    'DNZ_XLAT_PATH': self.folder + '/var/nzm/conv/table'}
        self.assertEqual({name: environment.get(name) for name in expected}, expected)
        for name in ('STRAY', 'DNZ_TRACE', 'DNZ_PATH'):
            self.assertNotIn(name, environment)
        self.assertNotIn(base64.b64encode(f'anna:{PASSWORD}'.encode()).decode(), text)


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1], verbosity=2)
