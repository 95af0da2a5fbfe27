#!/usr/bin/python3
"""The form of an ini file, made by a script as a person would write it: what the program is measured
beside."""
import os
import sys
import urllib.parse

NEW_ENTRY = """</TABLE>
<P>To add an entry, give its name. Name and value are one word each; the description is free text. A name that the list above has already is not added again.</P>
<TABLE BORDER=0>
<TR><TH>Name</TH><TH>Value</TH><TH>Description</TH></TR>
<TR><TD><INPUT NAME=dnzNewName VALUE="" SIZE=25></TD>                  
<TD><INPUT NAME=dnzNewValue VALUE="" SIZE=25></TD>
                  <TD><INPUT NAME=dnzNewDesc VALUE="" SIZE=25></TD></TR>
</TABLE>
<PRE><STRONG><FONT size=+1>
Save as file</FONT></STRONG>"""


def entries(name):
    """Name, value and description of each entry, by name."""
    found = {}
    with open(name, encoding='utf-8') as file:
        for line in file:
            words = line.split(None, 1)
            if words:
                value, _, description = (words[1] if len(words) > 1 else '').partition('#')
                found[words[0]] = value.strip(), description.rstrip('\n')
    return sorted(found.items())


def field(kind, name, value):
    return f'<TD><INPUT TYPE= {kind}  NAME= {name} VALUE= "{value}"  SIZE= 25 > </TD>\n '


def template(name):
    with open(name, encoding='utf-8') as file:
        return file.read() + '\n'


body = sys.stdin.read(int(os.environ['CONTENT_LENGTH']))
file_name = urllib.parse.parse_qs(body)['dnzINIfile'][0]
page = ['Content-type: text/html\n\n', template('dnzcnf2.htm')]
rows = entries(file_name)
for row, (name, (value, description)) in enumerate(rows):
    page.append('<TR>\n<TD> %s</TD>' % name)
    page.append(field('INPUT', f'v{row}', value))
    page.append(field('INPUT', f'd{row}', description))
    page.append(f'<TD><INPUT TYPE= CHECKBOX  NAME= e{row} VALUE= n  > </TD>\n')
    page.append(field('HIDDEN', f'n{row}', name))
    page.append('</TR>\n')
page.append(NEW_ENTRY)
page.append(f'<INPUT NAME=dnzINIsave VALUE={file_name} SIZE=25></PRE>\n')
page.append(field('HIDDEN', 'dnzNumPairs', len(rows)))
page.append(field('HIDDEN', 'dnzhidefile', file_name))
page.append(template('dnzcnf3.htm'))
sys.stdout.write(''.join(page))
