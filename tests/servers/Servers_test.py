"""A real web server, configured with nothing but its snippet: what it serves and what it refuses."""
import base64
import contextlib
import http.client
import os
import re
import shutil
import socket
import subprocess

from program import FORM_TYPE, StagedTest, form, free_port, running

PROGRAM, ENTRY = '/cgi-bin/dnzcnf', '/dnzgate/'
LIMIT = 1024 * 1024
FILE = b'NZIGwQueue GATE.IN #requests\n'
SAVE = form({'dnzhidefile': 'dnz.ini', 'dnzINIsave': 'dnz.ini', 'dnzSave': 'save', 'n0': 'NZIGwQueue',
             'v0': 'GATE.NEW', 'd0': 'requests', 'dnzNumPairs': '1'})
LOGIN, WRONG_PASSWORD, UNKNOWN_USER = (
    'Basic ' + base64.b64encode(login.encode()).decode()
    for login in ('anna:open: sésame', 'anna:wrong', 'otto:open: sésame'))
SECURITY = {
    'Content-Security-Policy':
        "default-src 'none'; style-src 'self'; img-src 'self'; form-action 'self'; "
        "base-uri 'none'; frame-ancestors 'none'; sandbox allow-forms allow-same-origin",
    'X-Content-Type-Options': 'nosniff', 'Referrer-Policy': 'same-origin'}
REFUSED = {  # a header of a good save, what it must not be, and the status then
    'Authorization': ((None, WRONG_PASSWORD, UNKNOWN_USER), {401}),
    'Origin': (('https://elsewhere.example', 'http://127.0.0.1:1', '{origin}0', 'null'), {403}),
    'Sec-Fetch-Site': (('cross-site', 'same-site'), {403}),
    'Content-Type': ((None, 'text/plain', 'multipart/form-data; boundary=x'), {403, 415}),
    'Content-Length': ((LIMIT + 1, 2 ** 62), {413})}
WRONG_PATHS = (
    '/dnzgate/dnzcnf1.htm', '/dnzgate/de_DE/', '/dnzgate/dnzcnf.css/', '/cgi-bin/../bin/dnzcnf',
    '/dnzgate/%2e%2e/%2e%2e/bin/dnz.cat', '/dnzgate/..%2f..%2fbin%2fdnz.cat', '/cgi-bin/',
    PROGRAM + '/', PROGRAM + '/dnz.ini', '/var/nzm/dnz.ini')
SHOW_ENVIRONMENT = '#!/bin/sh\n/bin/cat >/dev/null; printf "Content-Type: text/plain\n\n"; /usr/bin/env\n'


class Snippet:
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.port = free_port()
        cls.origin = f'http://127.0.0.1:{cls.port}'
        cls.own, cls.passwords = cls.folder / 'server', cls.folder / 'etc/dnzcnf/passwords'
        for path in cls.own / 'temp', cls.folder / 'run', cls.passwords.parent:
            path.mkdir(parents=True)
        places = {'root': cls.folder, 'own': cls.own, 'port': cls.port, 'origin': cls.origin}
        (cls.own / 'conf').write_text(cls.configuration % places)
        log = cls.enterClassContext(open(cls.own / 'log', 'wb'))
        cls.options = {'cwd': '/', 'stdout': log, 'stderr': log,
                       'env': {'PATH': '/usr/sbin:/usr/bin', 'STRAY': 'for no program'}}
        if os.getuid() == 0:  # the user owns the ini files, and nothing else of the installation
            cls.options.update(user='nobody', group='nogroup', extra_groups=[])
            for path in cls.own, cls.own / 'temp', cls.ini.parent, cls.ini:
                shutil.chown(path, 'nobody', 'nogroup')
        cls.enterClassContext(running(cls.port, *(cls.command % places).split(), **cls.options))
        cls.digest = subprocess.check_output(['openssl', 'passwd', '-6', 'open: sésame'])

    def setUp(self):
        self.ini.write_bytes(FILE)
        for name in 'b.ini', '<i>.ini', 'c.txt':
            (self.ini.parent / name).touch()
        self.passwords.write_bytes(b'anna:' + self.digest)

    def request(self, method='POST', path=PROGRAM, body=None, **changed):
        """The answer to a save that is served, but for what the arguments change."""
        body = body or (SAVE if method == 'POST' else b'')
        headers = {'Authorization': LOGIN, 'Content-Type': FORM_TYPE, 'Content-Length': len(body)}
        connection = http.client.HTTPConnection('127.0.0.1', self.port, timeout=30)
        self.addCleanup(connection.close)
        connection.putrequest(method, path)
        for name, value in {**headers, **changed}.items():
            if value is not None:
                connection.putheader(name, str(value).replace('{origin}', self.origin))
        connection.endheaders()
        with contextlib.suppress(OSError):  # refused while it is sent
            connection.send(body)
        answer = connection.getresponse()
        answer.text = answer.read().decode()
        return answer

    def check(self, answer, statuses, saved=FILE, cache='private, no-cache'):
        self.assertIn(answer.status, statuses)
        self.assertEqual(self.ini.read_bytes(), saved)
        expected = {**SECURITY, 'Cache-Control': cache} if answer.status != 413 else {}
        self.assertEqual({name: answer.headers.get(name) for name in expected}, expected)

    def test_edit_from_the_typed_address_to_the_saved_file(self):
        browser = {'Origin': '{origin}', 'Sec-Fetch-Site': 'same-origin'}
        answer = self.request('GET')
        self.assertEqual(answer.headers['Location'].removeprefix(self.origin), ENTRY)
        for path, kind in ('/dnzgate/dnzcnf.css', 'text/css'), (ENTRY, 'text/html'):
            answer = self.request('GET', path)
            self.check(answer, {200}, cache='no-store')
            self.assertEqual(answer.headers['Content-Type'].lower(), kind + '; charset=utf-8')
        self.assertEqual(re.findall('<button .*value="(.*)"', answer.text), ['b.ini', 'dnz.ini'])
        answer = self.request(body=b'dnzcnf=open&dnzINIfile=dnz.ini', **browser)
        self.check(answer, {200})
        self.assertIn('"GATE.IN"', answer.text)
        self.check(self.request(**browser), {200}, saved := FILE.replace(b'GATE.IN', b'GATE.NEW'))
        self.ini.write_bytes(FILE)
        body = (SAVE + b'&x=').ljust(LIMIT, b'x')  # of no browser, and as long as may be
        self.check(self.request(body=body), {200}, saved)

    def test_refused(self):
        for name, (values, statuses) in REFUSED.items():
            for value in values:
                with self.subTest(name, value=value):
                    self.check(self.request(**{name: value}), statuses)
        chunked = b'%x\r\n%s\r\n0\r\n\r\n' % (LIMIT + 9, SAVE.ljust(LIMIT + 9, b'&'))
        answer = self.request(body=chunked, **{'Content-Length': None, 'Transfer-Encoding': 'chunked'})
        self.assertIn(answer.status, {411, 413})
        for method in 'GET', 'POST', 'PUT', 'DELETE', 'OPTIONS':
            for path in WRONG_PATHS + (() if method in 'GET POST' else (PROGRAM,)):
                with self.subTest(method, path=path):
                    self.assertIn(self.request(method, path).status, range(400, 500))
        self.passwords.unlink()
        for method, path in ('GET', ENTRY), ('GET', '/dnzgate/dnzcnf.css'), ('POST', PROGRAM):
            self.assertIn(self.request(method, path).status, (401, 403, 500))
        self.assertEqual(self.ini.read_bytes(), FILE)

    def test_environment_of_the_program(self):
        program = self.folder / 'opt/nzm/bin/dnzcnf'
        program.rename(program.with_suffix('.away'))
        self.addCleanup(program.with_suffix('.away').rename, program)
        program.write_text(SHOW_ENVIRONMENT)
        program.chmod(0o755)
        text = self.request(Cookie='a=b').text
        self.assertIn(f'\nPATH={self.folder}/opt/nzm/html/dnzgate/en_US\n', text)
        self.assertNotRegex(text, 'STRAY|DNZ_TRACE=|DNZ_PATH=|' + LOGIN.split()[1])


class Lighttpd(Snippet, StagedTest):
    command = 'lighttpd -D -f %(own)s/conf'
    configuration = '''server.bind = "127.0.0.1"
server.port = %(port)s
server.document-root = "%(own)s/temp"
server.upload-dirs = ( "%(own)s/temp" )
var.dnzcnf_root = "%(root)s"
var.dnzcnf_language = "en_US"
var.dnzcnf_origin = "%(origin)s"
include "%(root)s/opt/nzm/servers/lighttpd/dnzcnf.conf"
'''


class Apache(Snippet, StagedTest):
    command = 'apache2 -D FOREGROUND -d %(own)s -f %(own)s/conf'
    # The modules that Debian switches on by itself, and those that the snippet's head names.
    configuration = ''.join(
        f'LoadModule {name}_module /usr/lib/apache2/modules/mod_{name}.so\n' for name in (
            'mpm_event authn_core authn_file authz_core authz_host authz_user auth_basic alias dir '
            'env mime setenvif cgid headers').split()) + '''ServerName 127.0.0.1
Listen 127.0.0.1:%(port)s
PidFile %(own)s/pid
TypesConfig /dev/null
ScriptSock %(own)s/cgid
ErrorLog %(own)s/error.log
<Directory />
    Require all denied
</Directory>
Define dnzcnf_root %(root)s
Define dnzcnf_language en_US
Define dnzcnf_origin %(origin)s
Include %(root)s/opt/nzm/servers/apache/dnzcnf.conf
'''


class Nginx(Snippet, StagedTest):
    command = 'nginx -e stderr -c %(own)s/conf'
    configuration = '''daemon off; pid %(own)s/pid; events {} http {
    client_body_temp_path %(own)s/temp/body; fastcgi_temp_path %(own)s/temp/fastcgi;
    proxy_temp_path %(own)s/temp/proxy; uwsgi_temp_path %(own)s/temp/uwsgi;
    scgi_temp_path %(own)s/temp/scgi; access_log off;
    server {
        listen 127.0.0.1:%(port)s; root %(own)s/temp;
        set $dnzcnf_root "%(root)s"; set $dnzcnf_language en_US; set $dnzcnf_origin %(origin)s;
        include %(root)s/opt/nzm/servers/nginx/dnzcnf.conf;
    }
}'''

    @classmethod
    def setUpClass(cls):
        """Also starts fcgiwrap, as its unit says."""
        super().setUpClass()
        unit, = (path.read_text() for path in cls.folder.glob('**/dnzcnf.service'))
        command = re.search('^ExecStart=(.*)', unit.replace('\\\n', ''), re.MULTILINE)[1]
        command = command.replace('/opt/nzm', f'{cls.folder}/opt/nzm').split()
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind(f'{cls.folder}/run/dnzcnf.socket')
            listener.listen(64)
            (cls.folder / 'run/dnzcnf.socket').chmod(0o666)
            stdin = listener if 'StandardInput=socket' in unit else subprocess.DEVNULL
            cls.enterClassContext(running(cls.port, *command, stdin=stdin, **cls.options))
