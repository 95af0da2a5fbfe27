#!/bin/sh
# Serves a staged installation on loopback, in the foreground, for ./run and the browser test.
#   tools/serve.sh STAGE PORT
# STAGE is the folder of `DESTDIR=STAGE cmake --install ...`. The server writes its own files to
# STAGE/server, and the program its traces and failure reports to STAGE/trace. These variables have an
# effect:
#   DNZCNF_LANGUAGE  the language of the pages, en_US by default
#   DNZCNF_ORIGIN    the server as the browser calls it, by default its address and port; requests for
#                    other names are redirected there
#   DNZ_TRACE and the options of the sanitizers, which are passed on to the program
# There is no login, since only users of this machine can reach the server. Everything else is as
# installed.
set -eu

stage=$1
port=$2
server=$stage/server
trace=$stage/trace
address=http://127.0.0.1:$port
origin=${DNZCNF_ORIGIN:-${address%:80}}
mkdir -p "$server/empty" "$trace"

# An element of a lighttpd list for each of these variables that is set.
hand_on() {
    for name; do
        if value=$(printenv "$name"); then
            printf ', "%s" => "%s"' "$name" "$value"
        fi
    done
}

cat >"$server/lighttpd.conf" <<END
var.dnzcnf_root = "$stage"
var.dnzcnf_language = "${DNZCNF_LANGUAGE:-en_US}"
var.dnzcnf_origin = "$origin"
server.bind = "127.0.0.1"
server.port = $port
server.document-root = "$server/empty"
server.errorlog = "$server/error.log"
server.breakagelog = "$server/program.log"
include "$stage/opt/nzm/servers/lighttpd/dnzcnf.conf"
\$HTTP["url"] =~ "" {
    auth.require = ()
}
\$HTTP["url"] == "/cgi-bin/dnzcnf" {
    setenv.add-environment = ( "DNZ_PATH" => "$trace"$(hand_on DNZ_TRACE ASAN_OPTIONS LSAN_OPTIONS UBSAN_OPTIONS) )
}
\$HTTP["url"] =~ "^/(dnzgate)?$" {
    url.redirect = ( "" => "/dnzgate/" )
}
\$HTTP["host"] != "${origin#*://}" {
    url.redirect = ( "" => "$origin/dnzgate/" )
    url.redirect-code = 303
}
END

lighttpd=$(PATH=$PATH:/usr/sbin:/sbin command -v lighttpd)
exec "$lighttpd" -D -f "$server/lighttpd.conf"
