"""The Debian packages: made, listed, and searched by lintian; nothing is installed. The program in
them: hardened, and static without a difference in any locale."""
from subprocess import check_call, check_output

from program import BUILD, CACHE, ROOT, StagedTest, run

VERSION = CACHE['CMAKE_PROJECT_VERSION']
STAND_INS = 'adduser() { echo adduser "$@"; }\nchown() { echo chown "$@"; }\nsystemctl() { :; }\n'
REFUSED = b'dnzhidefile=x&dnzINIsave=x&dnzSave=&dnzNumPairs=0&dnzNewName=two+words'
LANGUAGES = 'de_DE.UTF-8', 'de_DE', 'C', 'C.UTF-8', 'xx_YY', ''


def make_packages(folder):
    """The packages of tool and library, made with an umask that must not show in them."""
    config = BUILD / 'CPackConfig.cmake'
    check_output(['cpack', '--config', config, '-B', folder], umask=0o077)
    return sorted(folder.glob('*.deb'))


def dpkg(*arguments):
    return check_output(['dpkg-deb', *arguments], text=True)


class Package(StagedTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.packages = make_packages(cls.folder / 'packages')

    def test_packages_have_all_that_is_installed(self):
        contents = ''.join(dpkg('--contents', package) for package in self.packages)
        for place in 'opt', 'usr', 'var':
            for path in (self.folder / place).rglob('*'):
                self.assertIn(f' ./{path.relative_to(self.folder)}', contents)

    def test_an_upgrade_keeps_what_administrators_edit(self):
        pages = (path.relative_to(ROOT / 'install/html')
                 for path in ROOT.glob('install/html/*/dnzcnf1.htm'))
        kept = ['/var/nzm/dnz.ini', *(f'/opt/nzm/html/dnzgate/{page}' for page in pages)]
        self.assertEqual(set(dpkg('--info', self.packages[0], 'conffiles').split()), set(kept))
        script = STAND_INS + dpkg('--info', self.packages[0], 'postinst')
        for old, owners in ('', 'chown -h dnzcnf:dnzcnf /var/nzm /var/nzm/dnz.ini\n'), ('0.9', ''):
            called = check_output(['sh', '-c', script, 'postinst', 'configure', old], text=True)
            self.assertRegex(called, rf'^adduser .*--system .* dnzcnf\n{owners}$')

    def test_same_source_gives_the_same_packages_of_its_version(self):
        for package, again in zip(self.packages, make_packages(self.folder / 'again'), strict=True):
            self.assertTrue(package.read_bytes() == again.read_bytes(), package.name)
            self.assertEqual(dpkg('-f', package, 'Version'), VERSION + '\n')
        # No library: the program is static.
        self.assertEqual(dpkg('-f', self.packages[0], 'Depends'), 'adduser\n')
        for name, text in (('CHANGELOG.md', f'\n## {VERSION} ('),
                           ('install/debian/changelog', f'dnzcnf ({VERSION}) '),
                           ('install/man/dnzcnf.8', f'"dnzcnf {VERSION}"')):
            self.assertIn(text, (ROOT / name).read_text('utf-8')[:1000], name)

    def test_lintian_finds_nothing_unexplained(self):
        check_call(['lintian', '--allow-root', '--fail-on', 'error,warning', *self.packages])

    def test_hardening(self):
        headers = check_output(['readelf', '-hldW', BUILD / 'frontend/dnzcnf'], text=True)
        for expected in (r'Type: +DYN \(Position-Independent', 'GNU_RELRO', r'GNU_STACK .* RW ',
                         r'FLAGS_1\) +Flags: NOW PIE'):
            self.assertRegex(headers, expected)
        self.assertNotRegex(headers, 'INTERP|LOAD .* RWE ')
        # The C library inside the program has such calls too, so its own objects are asked.
        needed = check_output(['nm', '-u', *BUILD.glob('*/**/lib*.a')], text=True)
        self.assertRegex(needed, r' U __stack_chk_fail\n(.*\n)* +U __vsnprintf_chk\n')
        self.assertNotRegex(needed, r' U v?snprintf\n')

    def test_static_program_answers_as_a_dynamic_one(self):
        check_call(['localedef', '-i', 'de_DE', '-f', 'UTF-8', self.folder / 'de_DE.UTF-8'])
        catalogues = ':'.join(f'{BUILD}/install/{name}.cat' for name in ('%l_%t', '%N'))
        for language in LANGUAGES:
            variables = {'LOCPATH': self.folder, 'NLSPATH': catalogues, 'LANG': language}
            static, dynamic = (run(BUILD / name, self.folder, REFUSED, variables).output.decode()
                               for name in ('frontend/dnzcnf', 'tests/faults/dnzcnf_with_faults'))
            self.assertEqual(static, dynamic, language)
            self.assertEqual('Leerzeichen' in static, 'de' in language)
