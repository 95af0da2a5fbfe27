"""What the tests share about the program: its messages, the environment of a request, and a run."""
import collections
import os
import pathlib
import re
import subprocess
import tempfile
import urllib.parse

ROOT = pathlib.Path(__file__).parents[2]
FORM_TYPE = 'application/x-www-form-urlencoded'
TIMEOUT_SECONDS = 120

Answer = collections.namedtuple('Answer', 'output errors code pid')


def messages(language='en_US', encoding='utf-8'):
    """The texts by number, in the order of the source, as gencat compiles them."""
    def byte(match):
        if match[1].isdigit():
            return chr(int(match[1], 8))
        return {'n': '\n', 't': '\t', 'r': '\r'}.get(match[1], match[1])

    source = (ROOT / 'install/messages' / language / 'dnz.msg').read_text(encoding)
    return {int(number): re.sub(r'\\([0-7]{3}|.)', byte, text)
            for number, text in re.findall(r'^(\d+) (.*)$', source, re.MULTILINE)}


def form(fields, encoding='utf-8'):
    return urllib.parse.urlencode(fields, encoding=encoding).encode()


def environment(body=None, **variables):
    """The whole environment of a request, a form post if it has a body; None removes a variable.

    Nothing of the caller's own environment goes to the program but what the sanitizers read."""
    values = {name: value for name, value in os.environ.items() if name.endswith('SAN_OPTIONS')}
    values['PATH'] = '/bin'
    if body is not None:
        values.update(REQUEST_METHOD='POST', CONTENT_TYPE=FORM_TYPE, CONTENT_LENGTH=len(body))
    values.update(variables)
    return {name: str(value) for name, value in values.items() if value is not None}


def start(command, folder, body=None, variables=None, **options):
    """Starts a request in the folder; `variables` go beside those of environment()."""
    with tempfile.TemporaryFile() as stdin:
        stdin.write(body or b'')
        stdin.seek(0)
        return subprocess.Popen(command, cwd=folder, env=environment(body, **variables or {}),
                                stdin=stdin, **{'stdout': subprocess.PIPE,
                                                'stderr': subprocess.PIPE, **options})


def run(*arguments, **options):
    """The answer to a request that is started as start() does."""
    with start(*arguments, **options) as child:
        try:
            return Answer(*child.communicate(timeout=TIMEOUT_SECONDS), child.returncode, child.pid)
        except subprocess.TimeoutExpired:
            child.kill()
            raise
