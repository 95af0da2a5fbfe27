"""The build that is measured: the program as it is shipped, and the programs that measure it."""
import pathlib
import subprocess

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / 'build' / 'bench'


def build(target='all'):
    for command in (['cmake', '--preset', 'release', '-B', BUILD, '-DDNZCNF_BENCHMARKS=ON',
                     '-DBUILD_TESTING=OFF'], ['cmake', '--build', BUILD, '--target', target]):
        subprocess.run(command, cwd=ROOT, check=True, stdout=subprocess.DEVNULL)
