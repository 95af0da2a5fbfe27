"""Makes the Debian packages and looks into them; nothing is installed.

Usage: Package_test.py SOURCE BUILD VERSION
"""
import glob
import gzip
import io
import os
import re
import shutil
import subprocess
import sys
import tarfile
import tempfile
import unittest

SOURCE, BUILD, VERSION = sys.argv[1:4]
LANGUAGES = sorted(os.listdir(SOURCE + '/install/messages'))

PROGRAMS = {'opt/nzm/bin/dnzcnf', 'opt/nzm/cgi-bin/dnzcnf'}
CONFFILES = ['/var/nzm/dnz.ini'] + [f'/opt/nzm/html/dnzgate/{language}/dnzcnf1.htm'
                                    for language in LANGUAGES]
TOOL_PLACES = ('opt/nzm/bin/', 'opt/nzm/cgi-bin/', 'opt/nzm/html/dnzgate/', 'opt/nzm/servers/',
               'var/nzm/', 'usr/share/locale/', 'usr/share/man/man8/', 'usr/share/doc/dnzcnf/',
               'usr/share/lintian/overrides/')
LIBRARY_PLACES = ('opt/nzm/include/dnz/', 'opt/nzm/lib/', 'usr/share/doc/libdnzservices-dev/',
                  'usr/share/lintian/overrides/')
EXPECTED = PROGRAMS | {name.lstrip('/') for name in CONFFILES} | {
    'opt/nzm/bin/dnz.cat', 'opt/nzm/html/dnzgate/dnzcnf.css',
    'opt/nzm/servers/lighttpd/dnzcnf.conf', 'usr/share/doc/dnzcnf/changelog.gz',
    'usr/share/doc/dnzcnf/copyright', 'usr/share/man/man8/dnzcnf.8.gz',
    'var/nzm/conv/table/ccsid.tbl'}
EXPECTED |= {f'opt/nzm/html/dnzgate/{language}/dnzcnf{page}.htm'
             for language in LANGUAGES for page in (2, 3)}
EXPECTED |= {f'usr/share/locale/{language}/LC_MESSAGES/DNZ'
             for language in LANGUAGES if language != 'en_US'}


def output_of(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, **options).stdout


def make_packages(folder):
    """The packages by name, made with an umask that must not show in them."""
    output_of('cpack', '--config', BUILD + '/CPackConfig.cmake', '-B', folder, umask=0o077,
              stderr=subprocess.DEVNULL)
    return {os.path.basename(path).split('_')[0]: path for path in glob.glob(folder + '/*.deb')}


def read(path):
    with open(os.path.join(SOURCE, path), encoding='utf-8') as stream:
        return stream.read()


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix='dnzcnf-package-')
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        cls.packages = make_packages(cls.folder + '/first')
        cls.control = cls.folder + '/control'
        output_of('dpkg-deb', '--control', cls.packages['dnzcnf'], cls.control)

    def members(self, package):
        archive = output_of('dpkg-deb', '--fsys-tarfile', self.packages[package])
        with tarfile.open(fileobj=io.BytesIO(archive)) as tar:
            return {member.name.removeprefix('./'): member for member in tar}

    def field(self, package, name):
        return output_of('dpkg-deb', '--field', self.packages[package], name, text=True).strip()

    def test_owners_and_modes(self):
        for package, places in (('dnzcnf', TOOL_PLACES), ('libdnzservices-dev', LIBRARY_PLACES)):
            for name, member in self.members(package).items():
                with self.subTest(package, name=name):
                    self.assertEqual((member.uid, member.gid), (0, 0))
                    self.assertTrue(member.isdir() or member.isreg())
                    executable = member.isdir() or name in PROGRAMS
                    self.assertEqual(oct(member.mode), oct(0o755 if executable else 0o644))
                    self.assertTrue(f'{name}/'.startswith(places) or
                                    any(place.startswith(name) for place in places))

    def test_tool_is_whole(self):
        self.assertEqual(EXPECTED - self.members('dnzcnf').keys(), set())

    def test_library_is_whole(self):
        members = self.members('libdnzservices-dev')
        for name in ('lib/libdnzservices.a', 'lib/cmake/dnzservices/dnzservicesConfig.cmake',
                     'include/dnz/ServiceCalls.h', 'include/dnz/TextConversion.h'):
            self.assertIn('opt/nzm/' + name, members)

    def test_control_fields(self):
        for package in self.packages:
            self.assertEqual(self.field(package, 'Version'), VERSION)
        self.assertEqual(self.field('dnzcnf', 'Depends'), 'adduser')  # no library: it is static

    def test_conffiles_are_what_administrators_edit(self):
        with open(self.control + '/conffiles', encoding='utf-8') as conffiles:
            self.assertEqual(sorted(conffiles.read().split()), sorted(CONFFILES))

    def test_only_the_first_installation_sets_owners(self):
        """The script of the package at work, with stand-ins that say how they were called."""
        for name in ('adduser', 'chown'):
            with open(f'{self.folder}/{name}', 'w', encoding='ascii') as stand_in:
                stand_in.write('#!/bin/sh\necho "${0##*/} $*"\n')
            os.chmod(f'{self.folder}/{name}', 0o755)

        def configure(*arguments):
            return output_of(self.control + '/postinst', *arguments, text=True,
                             env={'PATH': self.folder}).splitlines()

        user, owners = configure('configure', '')
        self.assertRegex(user, r'^adduser .*--system .* dnzcnf$')
        self.assertEqual(owners, 'chown -h dnzcnf:dnzcnf /var/nzm /var/nzm/dnz.ini')
        self.assertEqual(configure('configure', '0.9'), [user])
        self.assertEqual(configure('abort-upgrade', '0.9'), [])

    def test_same_source_gives_the_same_packages(self):
        again = make_packages(self.folder + '/second')
        for package, path in self.packages.items():
            with open(path, 'rb') as one, open(again[package], 'rb') as other:
                self.assertTrue(one.read() == other.read(), package)

    def test_versions_agree(self):
        self.assertIn(f'\n## {VERSION} (', read('CHANGELOG.md'))
        self.assertTrue(read('install/debian/changelog').startswith(f'dnzcnf ({VERSION}) '))
        self.assertRegex(read('install/man/dnzcnf.8'),
                         rf'^\.TH DNZCNF 8 [0-9-]+ "dnzcnf {re.escape(VERSION)}"')

    def test_manual_page_has_no_warning(self):
        page = self.folder + '/dnzcnf.8'
        archive = output_of('dpkg-deb', '--fsys-tarfile', self.packages['dnzcnf'])
        with tarfile.open(fileobj=io.BytesIO(archive)) as tar, open(page, 'wb') as stream:
            stream.write(gzip.decompress(
                tar.extractfile('./usr/share/man/man8/dnzcnf.8.gz').read()))
        shown = subprocess.run(['man', '--warnings', '-E', 'UTF-8', '-l', '-Tutf8', page],
                               env={**os.environ, 'LC_ALL': 'C.UTF-8', 'MANWIDTH': '80'},
                               capture_output=True, text=True, check=True)
        self.assertEqual(shown.stderr, '')
        self.assertIn('each request writes a trace file', shown.stdout)

    @unittest.skipUnless(shutil.which('lintian'), 'lintian is not installed')
    def test_lintian_finds_nothing_unexplained(self):
        output_of('lintian', '--allow-root', '--fail-on', 'error,warning', '--tag-display-limit',
                  '0', *self.packages.values())


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1], verbosity=2)
