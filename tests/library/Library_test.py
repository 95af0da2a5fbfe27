"""The example program, built with nothing but the installed library."""
from subprocess import check_call

from program import CACHE, ROOT, StagedTest, messages, run

COMPILER, SANITIZERS = CACHE['CMAKE_CXX_COMPILER'], CACHE['DNZCNF_SANITIZE']
FLAGS = '-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror' + (
    SANITIZERS and f' -fsanitize={SANITIZERS}')
RECORDS = ('-->xxxInitialize.*<--xcsConvertString .rc= OK.*0000  47 72 FC DF 65.*'
           '<--xnzGetMessage .rc= OK.*-->xnzTermCommonServices.*! Trace termination')


class Library(StagedTest):
    def test_example_converts_dumps_and_shows_a_message(self):
        build = self.folder / 'build'
        check_call(['cmake', '-G', 'Ninja', '-S', ROOT / 'examples/services', '-B', build,
                    f'-DCMAKE_PREFIX_PATH={self.folder}/opt/nzm', f'-DCMAKE_CXX_FLAGS={FLAGS}',
                    f'-DCMAKE_CXX_COMPILER={COMPILER}'])
        check_call(['cmake', '--build', build])
        message = messages()[1013].replace('%3', 'two words').encode() + b'\n'
        variables = {'NLSPATH': self.folder / 'opt/nzm/bin/dnz.cat', 'DNZ_PATH': self.folder}
        answer = run(build / 'convert_text', self.folder, variables=variables)  # without tables
        self.assertEqual((answer.output, answer.code), (message, 1))
        self.assertIn(b"The text can't be converted: ", answer.errors)

        variables.update(DNZ_XLAT_PATH=self.folder / 'var/nzm/conv/table', DNZ_TRACE='ON')
        answer = run(build / 'convert_text', self.folder, variables=variables)
        self.assertEqual(answer[:3], ('Grüße\n'.encode('latin-1') + message, b'', 0))
        trace, = self.folder.glob('*.TRC')
        self.assertRegex(trace.read_text('latin-1'), f'(?s){RECORDS}')

    def test_every_header_compiles_alone(self):
        root = self.folder / 'opt/nzm/include/dnz'
        for header in root.rglob('*.h'):
            check_call([COMPILER, '-std=c++20', '-fsyntax-only', '-I', root, '-x', 'c++',
                        '-include', header, '/dev/null'])
