#!/usr/bin/perl
# The form of an ini file, made by a script as a person would write it.
use strict;
use warnings;

my $new_entry = <<'END';
</TABLE>
<P>To add an entry, give its name. Name and value are one word each; the description is free text. A name that the list above has already is not added again.</P>
<TABLE BORDER=0>
<TR><TH>Name</TH><TH>Value</TH><TH>Description</TH></TR>
<TR><TD><INPUT NAME=dnzNewName VALUE="" SIZE=25></TD>                  
<TD><INPUT NAME=dnzNewValue VALUE="" SIZE=25></TD>
                  <TD><INPUT NAME=dnzNewDesc VALUE="" SIZE=25></TD></TR>
</TABLE>
<PRE><STRONG><FONT size=+1>
Save as file</FONT></STRONG>
END
chomp $new_entry;

sub template {
    open my $file, '<', $_[0] or die "$_[0]: $!";
    local $/;
    return <$file> . "\n";
}

sub field {
    my ($kind, $name, $value) = @_;
    return qq(<TD><INPUT TYPE= $kind  NAME= $name VALUE= "$value"  SIZE= 25 > </TD>\n );
}

read STDIN, my $body, $ENV{CONTENT_LENGTH};
my %form = map { my ($name, $value) = split /=/, $_, 2; $value =~ tr/+/ /;
                 $value =~ s/%([0-9A-Fa-f]{2})/chr hex $1/ge; ($name => $value) } split /&/, $body;
my $file_name = $form{dnzINIfile};

my %entries;
open my $file, '<', $file_name or die "$file_name: $!";
while (my $line = <$file>) {
    chomp $line;
    my ($name, $rest) = split ' ', $line, 2 or next;
    my ($value, $description) = split /#/, $rest // '', 2;
    $value =~ s/^\s+|\s+$//g;
    $entries{$name} = [$value, $description // ''];
}

my $page = "Content-type: text/html\n\n" . template('dnzcnf2.htm');
my $row = 0;
for my $name (sort keys %entries) {
    my ($value, $description) = @{ $entries{$name} };
    $page .= "<TR>\n<TD> $name</TD>" . field('INPUT', "v$row", $value)
        . field('INPUT', "d$row", $description)
        . "<TD><INPUT TYPE= CHECKBOX  NAME= e$row VALUE= n  > </TD>\n"
        . field('HIDDEN', "n$row", $name) . "</TR>\n";
    ++$row;
}
$page .= "$new_entry<INPUT NAME=dnzINIsave VALUE=$file_name SIZE=25></PRE>\n"
    . field('HIDDEN', 'dnzNumPairs', $row) . field('HIDDEN', 'dnzhidefile', $file_name)
    . template('dnzcnf3.htm');
print $page;
