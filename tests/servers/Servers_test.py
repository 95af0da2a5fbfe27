"""A real web server, configured with nothing but its snippet: what it serves and what it refuses."""
import base64
import contextlib
import http.client
import os
import re
import shutil
import socket
import subprocess

from program import FORM_TYPE, StagedTest, form

PROGRAM, ENTRY, STYLE = '/cgi-bin/dnzcnf', '/dnzgate/', '/dnzgate/dnzcnf.css'
LIMIT = 1024 * 1024
FILE = b'NZIGwQueue GATE.IN #requests\n'
SAVED = FILE.replace(b'GATE.IN', b'GATE.NEW')
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
    '/dnzgate/dnzcnf1.htm', '/dnzgate/de_DE/', STYLE + '/', '/cgi-bin/../bin/dnzcnf', '/cgi-bin/',
    '/dnzgate/%2e%2e/%2e%2e/bin/dnz.cat', '/dnzgate/..%2f..%2fbin%2fdnz.cat', PROGRAM + '/',
    PROGRAM + '/dnz.ini', '/var/nzm/dnz.ini')
NOT_SERVED = {'GET': (), 'POST': (ENTRY,)}  # what else, and by all other methods both
SHOW_ENVIRONMENT = '#!/bin/sh\n/bin/cat >/dev/null; printf "Content-Type: text/plain\n\n"; /usr/bin/env\n'


class Snippet:
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        own, cls.passwords = cls.folder / 'server', cls.folder / 'etc/dnzcnf/passwords'
        for path in own / 'temp', cls.folder / 'run', cls.passwords.parent:
            path.mkdir(parents=True)
        places = {'root': cls.folder, 'own': own, 'port': cls.port, 'origin': cls.address}
        (own / 'conf').write_text(cls.configuration % places)
        log = cls.enterClassContext(open(own / 'log', 'wb'))
        cls.options = {'cwd': '/', 'stdout': log, 'stderr': log,
                       'env': {'PATH': '/usr/sbin:/usr/bin', 'STRAY': 'for no program'}}
        if os.getuid() == 0:  # the user owns the ini files, and nothing else of the installation
            cls.options.update(user='nobody', group='nogroup', extra_groups=[])
            for path in own, own / 'temp', cls.ini.parent, cls.ini:
                shutil.chown(path, 'nobody', 'nogroup')
        cls.enterClassContext(cls.running(*(cls.command % places).split(), **cls.options))
        digest = subprocess.check_output(['openssl', 'passwd', '-6', 'open: sésame'])
        cls.passwords.write_bytes(b'anna:' + digest)
        for name in 'b.ini', '<i>.ini', 'c.txt':
            (cls.ini.parent / name).touch()

    def request(self, statuses, method='POST', path=PROGRAM, body=None, saved=FILE, **changed):
        """The answer to a save that is served, but for what the arguments change."""
        self.ini.write_bytes(FILE)
        headers = {'Authorization': LOGIN, 'Content-Type': FORM_TYPE, 'Connection': 'close', **changed}
        headers = {name: str(value).replace('{origin}', self.address)
                   for name, value in headers.items() if value is not None}
        connection = http.client.HTTPConnection('127.0.0.1', self.port, timeout=30)
        with contextlib.suppress(OSError):  # refused while it is sent
            connection.request(method, path, body or SAVE * (method == 'POST'), headers)
        answer = connection.getresponse()
        answer.text = answer.read().decode()
        self.assertIn(answer.status, statuses)
        self.assertEqual(self.ini.read_bytes(), saved)
        if path in (PROGRAM, ENTRY, STYLE) and answer.status not in (303, 411, 413):
            cache = {'Cache-Control': 'private, no-cache' if path == PROGRAM else 'no-store'}
            self.assertLessEqual({**SECURITY, **cache}.items(), dict(answer.headers).items())
        return answer

    def test_edit_from_the_typed_address_to_the_saved_file(self):
        browser = {'Origin': '{origin}', 'Sec-Fetch-Site': 'same-origin'}
        location = self.request({303}, 'GET').headers['Location']
        self.assertEqual(location.removeprefix(self.address), ENTRY)
        for path, kind in (STYLE, 'text/css'), (ENTRY, 'text/html'):
            answer = self.request({200}, 'GET', path)
            self.assertEqual(answer.headers['Content-Type'].lower(), kind + '; charset=utf-8')
        self.assertEqual(re.findall('<button .*value="(.*)"', answer.text), ['b.ini', 'dnz.ini'])
        answer = self.request({200}, body=b'dnzcnf=open&dnzINIfile=dnz.ini', **browser)
        self.assertIn('"GATE.IN"', answer.text)
        self.request({200}, saved=SAVED, **browser)
        # Of no browser, and as long as may be.
        self.request({200}, body=(SAVE + b'&x=').ljust(LIMIT, b'x'), saved=SAVED)

    def test_refused(self):
        for name, (values, statuses) in REFUSED.items():
            for value in values:
                with self.subTest(name, value=value):
                    self.request(statuses, **{name: value})
        chunked = b'%x\r\n%s\r\n0\r\n\r\n' % (LIMIT + 9, SAVE.ljust(LIMIT + 9, b'&'))
        self.request({411, 413}, body=chunked, **{'Transfer-Encoding': 'chunked'})
        for method in 'GET', 'POST', 'PUT', 'DELETE', 'OPTIONS':
            for path in WRONG_PATHS + NOT_SERVED.get(method, (ENTRY, PROGRAM)):
                with self.subTest(method, path=path):
                    self.request(range(400, 500), method, path)
        self.addCleanup(self.passwords.write_bytes, self.passwords.read_bytes())
        self.passwords.unlink()
        for method, path in ('GET', ENTRY), ('GET', STYLE), ('POST', PROGRAM):
            self.request({401, 403, 500}, method, path)

    def test_environment_of_the_program(self):
        program = self.folder / 'opt/nzm/bin/dnzcnf'
        self.addCleanup(program.with_suffix('.away').rename, program)
        program.rename(program.with_suffix('.away'))
        program.write_text(SHOW_ENVIRONMENT)
        program.chmod(0o755)
        text = self.request({200}).text
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
            'env mime setenvif cgid headers').split()) + '''Listen 127.0.0.1:%(port)s
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
    client_body_temp_path %(own)s/temp; fastcgi_temp_path %(own)s/temp; access_log off;
    proxy_temp_path %(own)s/temp; uwsgi_temp_path %(own)s/temp; scgi_temp_path %(own)s/temp;
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
        unit = (cls.folder / 'usr/lib/systemd/system/dnzcnf.service').read_text()
        command = re.search('(?m)^ExecStart=(.*)', unit.replace('\\\n', ''))[1]
        command = command.replace('/opt/nzm', f'{cls.folder}/opt/nzm').split()
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind(f'{cls.folder}/run/dnzcnf.socket')
            listener.listen(64)
            (cls.folder / 'run/dnzcnf.socket').chmod(0o666)
            stdin = listener if 'StandardInput=socket' in unit else subprocess.DEVNULL
            cls.enterClassContext(cls.running(*command, stdin=stdin, **cls.options))
