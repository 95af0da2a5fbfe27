"""What the tests share: the program's messages, a request, and the build, installed and served."""
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
CACHE = dict(re.findall(r'(?m)^(\w+):\w+=(.*)$', (BUILD / 'CMakeCache.txt').read_text('utf-8')))
FORM_TYPE = 'application/x-www-form-urlencoded'

Answer = collections.namedtuple('Answer', 'output errors code pid')


def messages(language='en_US', encoding='utf-8'):
    """The texts by number, in the order of the source, as gencat compiles them."""
    source = (ROOT / 'install/messages' / language / 'dnz.msg').read_text(encoding)
    return {int(number): text.replace(r'\n', '\n')
            for number, text in re.findall(r'(?m)^(\d+) (.*)$', source)}


def form(fields, encoding='utf-8'):
    return urllib.parse.urlencode(fields, encoding=encoding).encode()


def run(command, folder, body=None, variables=(), **options):
    """The answer to a request, a form post if it has a body; None takes a variable away."""
    values = {name: value for name, value in os.environ.items() if name.endswith('SAN_OPTIONS')}
    if body is not None:
        values.update(REQUEST_METHOD='POST', CONTENT_TYPE=FORM_TYPE, CONTENT_LENGTH=len(body))
    values.update({'PATH': '/bin', **dict(variables)})
    values = {name: str(value) for name, value in values.items() if value is not None}
    streams = dict.fromkeys(('stdin', 'stdout', 'stderr'), subprocess.PIPE)
    with subprocess.Popen(command, cwd=folder, env=values, **(streams | options)) as child:
        try:
            return Answer(*child.communicate(body, timeout=120), child.returncode, child.pid)
        finally:
            child.kill()


class StagedTest(unittest.TestCase):
    """Tests that share an installation in a folder, and the address of a server for it."""
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.folder.chmod(0o755)  # for servers that run as another user
        cls.ini = cls.folder / 'var/nzm/dnz.ini'
        stage = os.environ | {'DESTDIR': cls.folder}
        subprocess.check_output(['cmake', '--install', BUILD], env=stage)
        with socket.create_server(('127.0.0.1', 0)) as probe:
            cls.port = probe.getsockname()[1]
        cls.address = f'http://127.0.0.1:{cls.port}'

    @classmethod
    @contextlib.contextmanager
    def running(cls, *command, **options):
        """A server that has begun to listen, until the context is left; by default that of ./run."""
        command = command or (ROOT / 'tools/serve.sh', cls.folder, str(cls.port))
        with subprocess.Popen(command, **options) as server:
            try:
                while server.poll() is None:
                    with socket.socket() as probe:
                        if probe.connect_ex(('127.0.0.1', cls.port)) == 0:
                            break
                    time.sleep(0.02)
                yield server
            finally:
                server.terminate()
