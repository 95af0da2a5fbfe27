#!/usr/bin/perl
# The form of an ini file, made by a script as a person would write it.
use strict;
use warnings;

sub template {
    local (@ARGV, $/) = @_;
    return <> . "\n";
}

sub field {
    my ($kind, $name, $value) = @_;
    return qq(<TD><INPUT TYPE= $kind  NAME= $name VALUE= "$value"  SIZE= 25 > </TD>\n );
}

read STDIN, my $body, $ENV{CONTENT_LENGTH};
my %form = map { s/%([0-9A-Fa-f]{2})/chr hex $1/ger } map { split /=/, tr/+/ /r, 2 } split /&/, $body;
my $file_name = $form{dnzINIfile};

my %entries;
open my $file, '<', $file_name or die "$file_name: $!";
while (<$file>) {
    $entries{$1} = [$2, $3 // ''] if /^\s*(\S+)\s*([^#]*?)\s*(?:#(.*))?$/;
}

print "Content-type: text/html\n\n", template('dnzcnf2.htm');
my $row = 0;
for my $name (sort keys %entries) {
    my ($value, $description) = @{ $entries{$name} };
    print "<TR>\n<TD> $name</TD>", field('INPUT', "v$row", $value),
        field('INPUT', "d$row", $description),
        "<TD><INPUT TYPE= CHECKBOX  NAME= e$row VALUE= n  > </TD>\n",
        field('HIDDEN', "n$row", $name), "</TR>\n";
    ++$row;
}
print <<"END";
</TABLE>
<P>To add an entry, give its name. Name and value are one word each; the description is free text. A name already in the list is not added again.</P>
<TABLE BORDER=0>
<TR><TH>Name</TH><TH>Value</TH><TH>Description</TH></TR>
<TR><TD><INPUT NAME=dnzNewName VALUE="" SIZE=25></TD>                  
<TD><INPUT NAME=dnzNewValue VALUE="" SIZE=25></TD>
                  <TD><INPUT NAME=dnzNewDesc VALUE="" SIZE=25></TD></TR>
</TABLE>
<PRE><STRONG><FONT size=+1>
Save as file (no spaces)</FONT></STRONG><INPUT NAME=dnzINIsave VALUE=$file_name SIZE=25></PRE>
END
print field('HIDDEN', 'dnzNumPairs', $row), field('HIDDEN', 'dnzhidefile', $file_name),
    template('dnzcnf3.htm');
