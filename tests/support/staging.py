"""The build as it is installed, in a folder, and served on loopback as ./run does it."""
import contextlib
import os
import pathlib
import re
import socket
import subprocess
import tempfile
import time
import unittest

from program import ROOT

BUILD = pathlib.Path(os.environ.get('DNZCNF_BUILD', ROOT / 'build/release')).resolve()


def cached(name):
    """A variable of the build, empty if there is none."""
    cache = (BUILD / 'CMakeCache.txt').read_text('utf-8')
    return ''.join(re.findall(rf'^{name}:\w+=(.*)$', cache, re.MULTILINE))


def output_of(*command, **options):
    done = subprocess.run(command, capture_output=True, text=True, check=False, **options)
    if done.returncode != 0:
        raise RuntimeError(f'{command}\n{done.stdout}{done.stderr}')
    return done.stdout


def stage(build, folder):
    output_of('cmake', '--install', build, env={**os.environ, 'DESTDIR': str(folder)})


class StagedTest(unittest.TestCase):
    """Tests that share an installation in a folder."""

    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.folder.chmod(0o755)  # for servers that run as another user
        cls.ini = cls.folder / 'var/nzm/dnz.ini'
        stage(BUILD, cls.folder)


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
            yield
        finally:
            server.terminate()


def free_port():
    with socket.create_server(('127.0.0.1', 0)) as probe:
        return probe.getsockname()[1]


@contextlib.contextmanager
def served(source, folder, **variables):
    """The address at which the folder is served by the script of ./run."""
    port = free_port()
    with running(port, f'{source}/tools/serve.sh', folder, str(port),
                 env={**os.environ, **variables}):
        yield f'http://127.0.0.1:{port}'
