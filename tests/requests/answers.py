"""What the program has to answer: messages from the catalogue's source, and the form page."""

import re

from case_file import ENCODING, decode


MESSAGE_BYTES = 1999


class Catalogue:
    def __init__(self, source):
        with open(source, encoding=ENCODING) as stream:
            text = stream.read().replace("\\\n", "")
        self.texts = {int(number): self.unescape(text)
                      for number, text in re.findall(r"^(\d+) (.*)$", text, re.MULTILINE)}

    @staticmethod
    def unescape(text):
        def byte(match):
            if match[1].isdigit():
                return chr(int(match[1], 8))
            return {"n": "\n", "t": "\t", "r": "\r"}.get(match[1], match[1])
        return re.sub(r"\\([0-7]{3}|.)", byte, text)

    def message(self, number, *inserts):
        """The first section of a message, with its text inserts in place of %3 to %5."""
        values = {"6": str(int(f"4000{number}", 16)), **dict.fromkeys("1278", "0"),
                  **dict(zip("345", inserts + ("", "", "")))}
        filled = re.sub(r"%([1-8])", lambda m: values[m[1]], self.texts[number])
        return filled.split("\x14")[0][:MESSAGE_BYTES]


class Expander:
    """Puts real texts in the place of {x*80}, {cwd} and {1010|name|value}."""

    def __init__(self, catalogue, folder):
        self.catalogue = catalogue
        self.folder = folder

    def __call__(self, text):
        text = re.sub(r"\{(.)\*(\d+)\}", lambda m: m[1] * int(m[2]), text)
        text = text.replace("{cwd}", self.folder)
        return re.sub(r"\{(\d{4})((?:\|[^{}|]*)*)\}",
                      lambda m: self.catalogue.message(int(m[1]), *m[2].split("|")[1:]), text)


def failure_page(texts):
    return "Content-type: text/plain\n\n{1005}\n" + texts


def input_cell(kind, name, value):
    return f'<TD><INPUT TYPE= {kind}  NAME= {name} VALUE= "{value}"  SIZE= 25 > </TD>\n '


def row(index, name, value="", description=""):
    return ("<TR>\n"
            f"<TD> {name}</TD>"
            + input_cell("INPUT", f"v{index}", value)
            + input_cell("INPUT", f"d{index}", description)
            + f"<TD><INPUT TYPE= CHECKBOX  NAME= e{index} VALUE= n  > </TD>\n"
            + input_cell("HIDDEN", f"n{index}", name)
            + "</TR>\n")


def form_page(arguments, rows, head, tail):
    """The form page between the two templates; `rows` is a line for each row."""
    hide, save, directory = (arguments.split() + [None, None])[:3]
    rows = [[decode(cell) for cell in re.split(r" \|(?=$| \|)| \| ", line)]
            for line in rows.splitlines()]
    return ("Content-type: text/html\n\n"
            + head
            + "".join(row(index, *cells) for index, cells in enumerate(rows))
            + "</TABLE>\n<P>{1021}</P>\n"
            "<TABLE BORDER=0>\n"
            "<TR><TH>{1018}</TH><TH>{1019}</TH><TH>{1020}</TH></TR>\n"
            '<TR><TD><INPUT NAME=dnzNewName VALUE="" SIZE=25></TD>                  \n'
            '<TD><INPUT NAME=dnzNewValue VALUE="" SIZE=25></TD>\n'
            '                  <TD><INPUT NAME=dnzNewDesc VALUE="" SIZE=25></TD></TR>\n'
            "</TABLE>\n"
            + (input_cell("HIDDEN", "dnzfilepath", directory) if directory else "")
            + "<PRE><STRONG><FONT size=+1>\n"
            "{1004}</FONT></STRONG>"
            f"<INPUT NAME=dnzINIsave VALUE={save or hide} SIZE=25></PRE>\n"
            + input_cell("HIDDEN", "dnzNumPairs", len(rows))
            + input_cell("HIDDEN", "dnzhidefile", hide)
            + tail)
