#!/usr/bin/env python3
"""Runs cases against the program: each in a fresh folder and with the environment it names alone.

Whole answers and whole files are compared. A case that doesn't trace by itself runs a second
time with tracing on: nothing of its outcome may change, and each trace file has to explain itself.
The form of a case file is told in case_file.py.
"""

import argparse
import difflib
import functools
import html.parser
import os
import pathlib
import subprocess
import sys
import tempfile
import urllib.parse

import trace_file
from answers import Catalogue, Expander, failure_page, form_page
from case_file import ENCODING, decode, read_case

HERE = pathlib.Path(__file__).parent
FIXTURES = HERE / "fixtures"
MESSAGES = HERE.parents[1] / "install" / "messages" / "en_US" / "dnz.msg"
TEMPLATES = ("dnzcnf2.htm", "dnzcnf3.htm")
SANITIZER_VARIABLES = ("ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS")
SAMPLE_TRACE = "DNZ04711.TRC"
TIMEOUT_SECONDS = 120


class FormFields(html.parser.HTMLParser):
    """The fields that a browser sends when no box is ticked and no control has a name."""

    def __init__(self, page):
        super().__init__()
        self.fields = {}
        self.feed(page)

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        kind = attributes.get("type", "text").lower()
        if tag == "input" and kind not in ("checkbox", "submit"):
            self.fields[attributes["name"]] = attributes["value"]


def read(path):
    return path.read_bytes().decode(ENCODING)


class Differences:
    def __init__(self):
        self.texts = []

    def compare(self, what, expected, actual):
        if expected != actual:
            self.texts.append("\n".join(difflib.unified_diff(
                visible(expected), visible(actual), f"{what}, expected", f"{what}, actual",
                lineterm="")))


def visible(text):
    """Lines with everything but plain characters escaped, and the missing last line feed told."""
    *lines, rest = [repr(line)[1:-1] for line in text.split("\n")]
    lines += [rest + " (no line feed)"] if rest else []
    return [line[:-1] + "\\x20" if line.endswith(" ") else line for line in lines]


class CaseRun:
    """One pass of a case: a folder, the requests one after the other."""

    def __init__(self, arguments, common, folder, trace_folder=None):
        self.program = arguments.program
        self.folder = pathlib.Path(folder)
        self.trace_folder = trace_folder
        self.common = common
        self.differences = Differences()
        self.expand = Expander(Catalogue(MESSAGES), folder)
        self.environment = {name: os.environ[name] for name in SANITIZER_VARIABLES
                            if name in os.environ}
        self.environment.update(PATH="/bin", NLSPATH=f"{arguments.catalogue_dir}/%N.cat")
        self.answer = ""
        for name in TEMPLATES:
            if not any(section[:2] == ("without", name) for section in common.sections):
                self.write(name, read(FIXTURES / name))

    def write(self, name, text):
        path = self.folder / name.removesuffix("|")
        (path if name.endswith("/") else path.parent).mkdir(parents=True, exist_ok=True)
        if name.endswith("|"):
            os.mkfifo(path)
        elif not name.endswith("/"):
            path.write_text(text, encoding=ENCODING, newline="")

    def files(self):
        return {str(path.relative_to(self.folder)): read(path)
                for path in self.folder.rglob("*") if path.is_file()}

    def body(self, request):
        """The body of a form post, None for another request."""
        if request.find("submit"):
            fields = FormFields(self.answer).fields
            fields.update(line.split("=", 1) for line in
                          self.expand(decode(request.text("submit"))).splitlines())
            return urllib.parse.urlencode(fields, encoding=ENCODING)
        if request.find("post"):
            return "&".join(decode(line)
                            for line in self.expand(request.text("post")).splitlines())
        return None

    def request_environment(self, request, body):
        environment = dict(self.environment)
        if body is not None:
            environment.update(REQUEST_METHOD="POST", CONTENT_LENGTH=str(len(body)),
                               CONTENT_TYPE="application/x-www-form-urlencoded")
        if self.trace_folder:
            environment.update(DNZ_TRACE="ON", DNZ_PATH=self.trace_folder)
        for line in (self.common.text("env", "") + request.text("env", "")).splitlines():
            name, sets, value = self.expand(decode(line)).partition("=")
            if sets:
                environment[name] = value
            else:
                environment.pop(name, None)
        return environment

    def prepare_child(self, request, environment):
        """What happens in the child, with its process id, before it becomes the program."""
        def prepare():
            for _, kind, _ in request.find("taken"):
                folder = self.folder / environment.get("DNZ_PATH", "")
                name = folder / trace_name(os.getpid(), "TRC")
                make = {"directory": name.mkdir, "pipe": functools.partial(os.mkfifo, name),
                        "full": functools.partial(name.symlink_to, "/dev/full")}
                make[kind]()
            for _, name, _ in request.find("closed"):
                os.close(("stdin", "stdout", "stderr").index(name))
        return prepare

    def run(self, request):
        for _, name, text in request.find("file"):
            self.write(name, self.expand(decode(text)))
        expected = self.files()
        body = self.body(request)
        environment = self.request_environment(request, body)
        child = subprocess.Popen(
            [self.program], cwd=self.folder, env=environment,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            preexec_fn=self.prepare_child(request, environment))
        output, errors = self.talk(child, body or "")
        compare = self.differences.compare
        compare("standard output", self.expected_answer(request), output)
        compare("standard error", self.expand(decode(request.text("stderr", ""))), errors)
        compare("exit value", request.argument("exit", "1"), str(child.returncode))
        self.check_records(request, environment, child, body or "")
        expected.update((name, self.expand(decode(text)))
                        for _, name, text in request.find("after"))
        self.compare_files(expected)
        self.answer = output

    @staticmethod
    def talk(child, body):
        try:
            answers = child.communicate(body.encode(ENCODING), timeout=TIMEOUT_SECONDS)
        except subprocess.TimeoutExpired:
            child.kill()
            raise
        return (answer.decode(ENCODING) for answer in answers)

    def expected_answer(self, request):
        (keyword, arguments, text), = request.find("stdout", "page", "faults")
        if keyword == "page":
            text = form_page(self.expand(arguments), text, *map(self.template, TEMPLATES))
        else:
            text = decode(failure_page(text) if keyword == "faults" else text)
        return self.expand(text)

    def template(self, name):
        path = self.folder / name
        return read(path) + "\n" if path.exists() else f"<HTML>{{1000|{name}}}</HTML>"

    def compare_files(self, expected):
        actual = self.files()
        for name in sorted(expected.keys() | actual.keys()):
            self.differences.compare(f"file {name}", expected.get(name, "(no such file)"),
                                     actual.get(name, "(no such file)"))

    def check_records(self, request, environment, child, body):
        """Compares the trace file and the report, and takes them away."""
        blocks = trace_file.read_blocks(read(FIXTURES / "trace_blocks.txt")
                                        + request.text("blocks", ""))
        banner = environment.get("DNZ_TRACE", "")[:1] in ("U", "u") and environment.get("DNZ_PATH")
        read_trace = functools.partial(trace_file.read_trace, user_banner=bool(banner),
                                       line_feeds="%0A" in body.upper())
        compare = self.differences.compare
        if self.trace_folder:
            self.check_last_record(self.take(self.trace_folder, child, "TRC", read_trace), child)
            compare("other files of the trace folder", "", "\n".join(os.listdir(self.trace_folder)))
        for _, folder, tree in request.find("trace"):
            lines = self.take(folder, child, "TRC", read_trace)
            if tree:
                compare("trace", trace_file.expand_tree(self.expand(tree), blocks), lines)
            self.check_last_record(lines, child)
        for _, folder, text in request.find("report"):
            report = self.take(folder, child, "FDC", trace_file.read_report)
            compare("report", self.expand(decode(text)),
                    report.replace(trace_name(child.pid, "TRC"), SAMPLE_TRACE))

    def check_last_record(self, lines, child):
        code = "OK" if child.returncode == 0 else str(child.returncode)
        self.differences.compare("last record of the trace", f"   <--NZGcnf (main) (rc= {code})\n",
                                 lines[lines.rfind("   <--"):])

    def take(self, folder, child, kind, explain):
        path = self.folder / folder / trace_name(child.pid, kind)
        try:
            self.differences.compare(f"mode of {path.name}", "0o100600", oct(path.stat().st_mode))
            text = read(path)
            path.unlink()
            return explain(text)
        except (OSError, trace_file.Unexplained) as problem:
            self.differences.texts.append(str(problem))
            return ""


def trace_name(process_id, kind):
    return f"DNZ{process_id % 100000:05d}.{kind}"


def run_pass(arguments, case, trace_folder):
    """The differences of one pass, each with the request it belongs to."""
    common, requests = read_case(case)
    with tempfile.TemporaryDirectory(prefix="dnzcnf-") as folder:
        run = CaseRun(arguments, common, os.path.realpath(folder), trace_folder)
        # Files for all requests are made with the first one.
        requests[0].sections += [section for section in common.sections if section[0] != "env"]
        for request in requests:
            already = len(run.differences.texts)
            run.run(request)
            for text in run.differences.texts[already:]:
                how = "traced" if trace_folder else "plain"
                yield f"{case}: {request.title} ({how})\n{text}"


def run_case(arguments, case):
    common, requests = read_case(case)
    found = list(run_pass(arguments, case, None))
    if not any("DNZ_TRACE" in part.text("env", "") for part in [common] + requests):
        with tempfile.TemporaryDirectory(prefix="dnzcnf-trace-") as trace_folder:
            found += run_pass(arguments, case, trace_folder)
    return found


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", required=True, type=os.path.abspath)
    parser.add_argument("--catalogue-dir", required=True, type=os.path.abspath)
    parser.add_argument("cases", nargs="+", metavar="CASEFILE")
    arguments = parser.parse_args()
    found = [text for case in arguments.cases for text in run_case(arguments, case)]
    if found:
        print("\n\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
