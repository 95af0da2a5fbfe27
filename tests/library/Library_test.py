"""The example program, built with nothing but the installed library."""
import re

from program import ROOT, StagedTest, cached, messages, output_of, run

FLAGS = '-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror'


class Library(StagedTest):
    def test_example_converts_dumps_and_shows_a_message(self):
        sanitizers, compiler = cached('DNZCNF_SANITIZE'), cached('CMAKE_CXX_COMPILER')
        output_of('cmake', '-G', 'Ninja', '-S', ROOT / 'examples/services', '-B', self.folder / 'build',
                  f'-DCMAKE_PREFIX_PATH={self.folder}/opt/nzm', f'-DCMAKE_CXX_COMPILER={compiler}',
                  f'-DCMAKE_CXX_FLAGS={FLAGS}' + (sanitizers and f' -fsanitize={sanitizers}'))
        output_of('cmake', '--build', self.folder / 'build')
        message = messages()[1013].replace('%3', 'two words').encode() + b'\n'
        variables = {'NLSPATH': self.folder / 'opt/nzm/bin/dnz.cat', 'DNZ_PATH': self.folder}
        program = self.folder / 'build/convert_text'

        answer = run(program, self.folder, variables={
            **variables, 'DNZ_XLAT_PATH': self.folder / 'var/nzm/conv/table', 'DNZ_TRACE': 'ON'})
        self.assertEqual(answer[:3], ('Grüße\n'.encode('latin-1') + message, b'', 0))
        trace, = self.folder.glob('*.TRC')
        self.assertRegex(trace.read_text('latin-1'), re.compile('.*'.join((
            '-->xxxInitialize', r'<--xcsConvertString \(rc= OK\)', '0000  47 72 FC DF 65',
            r'<--xnzGetMessage \(rc= OK\)', '-->xnzTermCommonServices', '! Trace termination')),
            re.DOTALL))

        answer = run(program, self.folder, variables=variables)  # without tables
        self.assertEqual((answer.output, answer.code), (message, 1))
        self.assertIn(b"The text can't be converted: ", answer.errors)

    def test_every_header_compiles_alone(self):
        folder = self.folder / 'opt/nzm/include/dnz'
        for header in folder.rglob('*.h'):
            output_of(cached('CMAKE_CXX_COMPILER'), '-std=c++20', '-fsyntax-only', '-x', 'c++',
                      '-I', folder, '-include', header, '/dev/null')
