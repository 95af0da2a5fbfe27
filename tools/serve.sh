#!/bin/sh
# Serves a staged installation on loopback, in the foreground, for ./run and the browser test.
#   tools/serve.sh STAGE PORT
# STAGE is the folder of `DESTDIR=STAGE cmake --install ...`. What the server needs for itself it
# writes into STAGE/server. Trace files and failure reports go to STAGE/trace; DNZ_TRACE and the
# options of the sanitizers are handed on to the program if they are set. DNZCNF_LANGUAGE chooses
# the language of the pages, en_US if it is not set, and DNZCNF_ORIGIN names the server as the
# browser calls it, if not by its address and port. Whoever calls it by another name is sent to that
# address. There is no login, since nobody but this machine's users can reach it; all the rest is as
# it is installed.
set -eu

stage=$1
port=$2
server=$stage/server
trace=$stage/trace
address=http://127.0.0.1:$port
origin=${DNZCNF_ORIGIN:-${address%:80}}
mkdir -p "$server/empty" "$trace"

# One element of a lighttpd list for each variable of that name in the environment.
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
