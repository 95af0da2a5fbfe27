"""The Debian packages: made, unpacked, and searched by lintian; nothing is installed."""
import io
import re
import subprocess
import tarfile

from program import BUILD, ROOT, StagedTest, cached, output_of

VERSION = cached('CMAKE_PROJECT_VERSION')


def make_packages(folder):
    """The bytes of each package, made with an umask that must not show in them."""
    output_of('cpack', '--config', BUILD / 'CPackConfig.cmake', '-B', folder, umask=0o077)
    return {path.name: path.read_bytes() for path in folder.glob('*.deb')}


class Package(StagedTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.packages = make_packages(cls.folder / 'packages')
        cls.tool, cls.library = sorted(cls.folder.glob('packages/*.deb'))
        cls.control = cls.folder / 'control'
        output_of('dpkg-deb', '--control', cls.tool, cls.control)

    def test_packages_have_all_that_is_installed(self):
        names = set()
        for package in self.tool, self.library:
            archive = subprocess.check_output(['dpkg-deb', '--fsys-tarfile', package])
            for member in tarfile.open(fileobj=io.BytesIO(archive)):
                names.add(member.name.removeprefix('./'))
                executable = member.isdir() or re.search('/bin/dnzcnf$|/cgi-bin/', member.name)
                self.assertEqual((member.uid, member.gid, oct(member.mode)),
                                 (0, 0, oct(0o755 if executable else 0o644)), member.name)
        installed = {str(path.relative_to(self.folder)) for place in ('opt', 'usr', 'var')
                     for path in (self.folder / place).rglob('*') if path.is_file()}
        self.assertEqual(installed - names, set())

    def test_an_upgrade_keeps_what_administrators_edit(self):
        pages = [f'/opt/nzm/html/dnzgate/{path.name}/dnzcnf1.htm'
                 for path in (ROOT / 'install/html').iterdir() if path.is_dir()]
        self.assertEqual(sorted((self.control / 'conffiles').read_text().split()),
                         sorted(['/var/nzm/dnz.ini', *pages]))

        for name in 'adduser', 'chown':  # stand-ins that say how they were called
            path = self.folder / name
            path.write_text('#!/bin/sh\necho "${0##*/} $*"\n')
            path.chmod(0o755)
        for old, owners in ('', 'chown -h dnzcnf:dnzcnf /var/nzm /var/nzm/dnz.ini\n'), ('0.9', ''):
            called = output_of(self.control / 'postinst', 'configure', old, env={'PATH': self.folder})
            self.assertRegex(called, rf'^adduser .*--system .* dnzcnf\n{owners}$')

    def test_same_source_gives_the_same_packages_of_its_version(self):
        self.assertTrue(make_packages(self.folder / 'again') == self.packages)
        for package in self.tool, self.library:
            self.assertEqual(output_of('dpkg-deb', '-f', package, 'Version'), VERSION + '\n')
        # No library: the program is static.
        self.assertEqual(output_of('dpkg-deb', '-f', self.tool, 'Depends'), 'adduser\n')
        for name, text in (('CHANGELOG.md', f'\n## {VERSION} ('),
                           ('install/debian/changelog', f'dnzcnf ({VERSION}) '),
                           ('install/man/dnzcnf.8', f'"dnzcnf {VERSION}"')):
            self.assertIn(text, (ROOT / name).read_text('utf-8')[:1000], name)

    def test_lintian_finds_nothing_unexplained(self):
        output_of('lintian', '--allow-root', '--fail-on', 'error,warning', self.tool, self.library)
