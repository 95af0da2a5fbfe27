"""The real web servers on loopback, each configured with nothing but its snippet.

A server serves an installation staged in a folder, and keeps its own files in FOLDER/server. It
runs as the user of the test; when that is root, as nobody, who owns the ini files and nothing
else of the installation.
"""
import contextlib
import os
import pwd
import signal
import subprocess

from staging import free_port, wait_until_served

SERVER_PATH = '/usr/sbin:/usr/bin:/sbin:/bin'


class Server:
    """A server that runs until the context is left."""

    # A variable that the server gets and that the program must not see.
    environment = {'PATH': SERVER_PATH, 'STRAY': 'stray'}
    headers_on_refusals = True

    def __init__(self, folder):
        self.folder = folder
        self.own = folder + '/server'
        self.port = free_port()
        self.origin = f'http://127.0.0.1:{self.port}'

    @contextlib.contextmanager
    def running(self):
        self.make_folders()
        with open(self.own + '/server.conf', 'w', encoding='utf-8') as file:
            file.write(self.configuration())
        with contextlib.ExitStack() as processes:
            for command in self.commands():
                processes.enter_context(self.process(command))
            try:
                wait_until_served(self.port)
            except OSError as error:
                with open(self.own + '/error.log', encoding='utf-8') as log:
                    raise RuntimeError(log.read()) from error
            yield self

    def make_folders(self):
        for name in ('empty', 'temp'):
            os.makedirs(f'{self.own}/{name}', exist_ok=True)
        os.makedirs(self.folder + '/run', exist_ok=True)
        if os.getuid() == 0:
            os.chmod(self.folder, 0o755)
            nobody = pwd.getpwnam('nobody')
            for path in (self.own, self.own + '/temp', self.folder + '/run',
                         self.folder + '/var/nzm', self.folder + '/var/nzm/dnz.ini'):
                os.chown(path, nobody.pw_uid, nobody.pw_gid)

    @contextlib.contextmanager
    def process(self, command):
        user = {}
        if os.getuid() == 0:
            user = {'user': 'nobody', 'group': 'nogroup', 'extra_groups': []}
        with open(self.own + '/output.log', 'ab') as log:
            process = subprocess.Popen(command, cwd='/', env=self.environment, stderr=log,
                                       stdout=log, start_new_session=True, **user)
        try:
            yield
        finally:
            process.send_signal(signal.SIGTERM)
            process.wait(20)

    def configuration(self):
        raise NotImplementedError

    def commands(self):
        raise NotImplementedError


class Lighttpd(Server):
    # A refusal is lighttpd's own fixed page, made before the module that sets headers has its turn.
    headers_on_refusals = False

    def configuration(self):
        return f"""
            server.bind = "127.0.0.1"
            server.port = {self.port}
            server.document-root = "{self.own}/empty"
            server.errorlog = "{self.own}/error.log"
            server.upload-dirs = ( "{self.own}/temp" )
            var.dnzcnf_root = "{self.folder}"
            var.dnzcnf_language = "en_US"
            var.dnzcnf_origin = "{self.origin}"
            include "{self.folder}/opt/nzm/servers/lighttpd/dnzcnf.conf"
            """

    def commands(self):
        return [['lighttpd', '-D', '-f', self.own + '/server.conf']]


class Apache(Server):
    # What Debian switches on by itself, and what the snippet's head names.
    modules = ('mpm_event authn_core authn_file authz_core authz_host authz_user auth_basic alias '
               'dir env mime setenvif cgid headers').split()

    def configuration(self):
        loaded = '\n'.join(f'LoadModule {name}_module /usr/lib/apache2/modules/mod_{name}.so'
                           for name in self.modules)
        return f"""{loaded}
            ServerName 127.0.0.1
            Listen 127.0.0.1:{self.port}
            DocumentRoot {self.own}/empty
            PidFile {self.own}/pid
            TypesConfig /dev/null
            ScriptSock {self.own}/cgid
            ErrorLog {self.own}/error.log
            <Directory />
                AllowOverride None
                Require all denied
            </Directory>
            <Directory {self.own}/empty>
                Require all granted
            </Directory>
            <VirtualHost *:{self.port}>
                Define dnzcnf_root {self.folder}
                Define dnzcnf_language en_US
                Define dnzcnf_origin {self.origin}
                Include {self.folder}/opt/nzm/servers/apache/dnzcnf.conf
            </VirtualHost>
            """

    def commands(self):
        return [['apache2', '-D', 'FOREGROUND', '-d', self.own, '-f', self.own + '/server.conf']]


class Nginx(Server):
    def configuration(self):
        temporary = '\n'.join(f'{kind}_temp_path {self.own}/temp/{kind};'
                              for kind in 'client_body proxy fastcgi uwsgi scgi'.split())
        return f"""
            daemon off;
            pid {self.own}/pid;
            error_log {self.own}/error.log;
            events {{}}
            http {{
                {temporary}
                access_log off;
                server {{
                    listen 127.0.0.1:{self.port};
                    root {self.own}/empty;
                    set $dnzcnf_root {self.folder};
                    set $dnzcnf_language en_US;
                    set $dnzcnf_origin {self.origin};
                    include {self.folder}/opt/nzm/servers/nginx/dnzcnf.conf;
                }}
            }}
            """

    def commands(self):
        return [['env', '-i', '/usr/sbin/fcgiwrap', '-f',
                 '-s', f'unix:{self.folder}/run/dnzcnf.socket',
                 '-p', self.folder + '/opt/nzm/cgi-bin/dnzcnf'],
                ['nginx', '-e', self.own + '/error.log', '-c', self.own + '/server.conf']]


SERVERS = {'lighttpd': Lighttpd, 'apache': Apache, 'nginx': Nginx}
