#!/bin/bash
# on_display.sh SCREEN COMMAND...: runs a command on an X display of its own, of a size as in 1366x768x24. The server
# takes a free number and tells it once it serves; to guess a number and to wait for a signal, as the usual script
# does, now and then waits for ever. DISPLAY_SERVER is the process that serves it.
set -u
screen=$1
shift
coproc server { exec Xvfb -displayfd 1 -noreset -nolisten tcp -screen 0 "$screen" 2>/dev/null; }
pid=$!
trap 'kill "$pid" 2>/dev/null && wait "$pid"' EXIT
read -r -t 60 number <&"${server[0]}" || { echo "No display could be opened." >&2; exit 1; }
DISPLAY=:$number DISPLAY_SERVER=$pid "$@"
