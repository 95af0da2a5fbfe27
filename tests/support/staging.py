"""The build as it is installed, in a folder, and served on loopback as ./run does it."""
import contextlib
import os
import socket
import subprocess
import tempfile
import time


def stage(build, folder):
    subprocess.run(['cmake', '--install', build], check=True, stdout=subprocess.DEVNULL,
                   env={**os.environ, 'DESTDIR': folder})


@contextlib.contextmanager
def staged(build):
    """A folder with the installation, until the context is left."""
    with tempfile.TemporaryDirectory(prefix='dnzcnf-', ignore_cleanup_errors=True) as folder:
        stage(build, folder)
        yield folder


@contextlib.contextmanager
def served(source, folder, **variables):
    """The address of a server that runs until the context is left."""
    port = free_port()
    server = subprocess.Popen([source + '/tools/serve.sh', folder, str(port)],
                              env={**os.environ, **variables})
    try:
        wait_until_served(port)
        yield f'http://127.0.0.1:{port}'
    finally:
        server.terminate()
        server.wait()


def free_port():
    with socket.create_server(('127.0.0.1', 0)) as probe:
        return probe.getsockname()[1]


def wait_until_served(port):
    deadline = time.monotonic() + 20
    while True:
        try:
            return socket.create_connection(('127.0.0.1', port), 1).close()
        except OSError:
            if time.monotonic() > deadline:
                raise
            time.sleep(0.05)
