"""What the tests share: the program's messages, a request, and the build as it is installed and
served."""
import collections
import contextlib
import os
import pathlib
import re
import socket
import subprocess
import tempfile
import time
import unittest
import urllib.parse

ROOT = pathlib.Path(__file__).parents[2]
BUILD = pathlib.Path(os.environ.get('DNZCNF_BUILD', ROOT / 'build/release')).resolve()
FORM_TYPE = 'application/x-www-form-urlencoded'

Answer = collections.namedtuple('Answer', 'output errors code pid')


def messages(language='en_US', encoding='utf-8'):
    """The texts by number, in the order of the source, as gencat compiles them."""
    def byte(match):
        return {'n': '\n', 't': '\t', 'r': '\r'}.get(match[1]) or (
            chr(int(match[1], 8)) if match[1].isdigit() else match[1])

    source = (ROOT / 'install/messages' / language / 'dnz.msg').read_text(encoding)
    return {int(number): re.sub(r'\\([0-7]{3}|.)', byte, text)
            for number, text in re.findall(r'^(\d+) (.*)$', source, re.MULTILINE)}


def form(fields, encoding='utf-8'):
    return urllib.parse.urlencode(fields, encoding=encoding).encode()


def run(command, folder, body=None, variables=(), **options):
    """The answer to a request in the folder, a form post if it has a body; None removes a variable.

    Nothing of the caller's own environment goes to the program but what the sanitizers read."""
    values = {name: value for name, value in os.environ.items() if name.endswith('SAN_OPTIONS')}
    if body is not None:
        values.update(REQUEST_METHOD='POST', CONTENT_TYPE=FORM_TYPE, CONTENT_LENGTH=len(body))
    values.update({'PATH': '/bin', **dict(variables)})
    values = {name: str(value) for name, value in values.items() if value is not None}
    with tempfile.TemporaryFile() as stdin:
        stdin.write(body or b'')
        stdin.seek(0)
        streams = {'stdin': stdin, 'stdout': subprocess.PIPE, 'stderr': subprocess.PIPE, **options}
        with subprocess.Popen(command, cwd=folder, env=values, **streams) as child:
            try:
                return Answer(*child.communicate(timeout=120), child.returncode, child.pid)
            finally:
                child.kill()


def cached(name):
    """A variable of the build, empty if there is none."""
    cache = (BUILD / 'CMakeCache.txt').read_text('utf-8')
    return ''.join(re.findall(rf'^{name}:\w+=(.*)$', cache, re.MULTILINE))


def output_of(*command, **options):
    done = subprocess.run(command, capture_output=True, text=True, check=False, **options)
    if done.returncode != 0:
        raise RuntimeError(f'{command}\n{done.stdout}{done.stderr}')
    return done.stdout


class StagedTest(unittest.TestCase):
    """Tests that share an installation in a folder."""

    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.folder.chmod(0o755)  # for servers that run as another user
        cls.ini = cls.folder / 'var/nzm/dnz.ini'
        output_of('cmake', '--install', BUILD, env={**os.environ, 'DESTDIR': str(cls.folder)})


@contextlib.contextmanager
def running(port, *command, **options):
    """A server that has begun to listen, until the context is left."""
    with subprocess.Popen(command, **options) as server:
        try:
            for _ in range(400):
                with socket.socket() as probe:
                    if probe.connect_ex(('127.0.0.1', port)) == 0:
                        break
                time.sleep(0.05)
            yield f'http://127.0.0.1:{port}'
        finally:
            server.terminate()


def free_port():
    with socket.create_server(('127.0.0.1', 0)) as probe:
        return probe.getsockname()[1]


def served(folder, **variables):
    """The address at which the folder is served by the script of ./run."""
    port = free_port()
    return running(port, ROOT / 'tools/serve.sh', folder, str(port), env={**os.environ, **variables})
