#!/usr/bin/env bash
# Runs a Windows program under Wine: in a prefix of the build's own, which is made on first use, and on a display of its
# own unless DISPLAY names one. Gives the program's exit code.
# usage: run-under-wine.sh PROGRAM [ARGUMENT...]
#        run-under-wine.sh --session COMMAND [ARGUMENT...]
# The second form runs a command of this system, such as ctest, that runs many programs under Wine. One display and one
# start of Wine's services do for all of them; otherwise each program takes seconds to start.
set -u
prefix=${VELTRANO_WINEPREFIX:-$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build/wineprefix}
export WINEPREFIX=$prefix WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES=mscoree,mshtml=
export LC_ALL=C.UTF-8 # Wine takes the encoding of file names and the language from it, whatever the user's are

make_prefix() {
    [ -e "$prefix/.ready" ] && return # another program has made it meanwhile
    xvfb-run -a wineboot -i && wineserver -w
    # The signs on caption buttons are drawn with Marlett, which Wine looks for in the prefix alone.
    cp /usr/share/wine/fonts/{marlett,tahoma,tahomabd}.ttf "$prefix/drive_c/windows/Fonts/"
    # A virtual desktop draws captions and borders, and shows windows at once: no window manager is waited for.
    wine reg add 'HKCU\Software\Wine\Explorer' /v Desktop /d Default /f
    wine reg add 'HKCU\Software\Wine\Explorer\Desktops' /v Default /d 1280x1024 /f
    wineserver -w
    touch "$prefix/.ready"
}

if [ ! -e "$prefix/.ready" ]; then
    mkdir -p "$prefix"
    (flock 9 && make_prefix) 9>"$prefix/making.lock" >/dev/null 2>&1
fi
if [ "${1:-}" = --session ]; then
    shift
    # While cmd waits for input, the services stay. It greets once they run.
    exec xvfb-run -a -s '-screen 0 1280x1024x24' bash -c \
        'coproc wine cmd 2>/dev/null; read -r -u "${COPROC[0]}"; "$@"; code=$?; wineserver -k; exit $code' bash "$@"
fi
if [ -n "${DISPLAY:-}" ]; then
    exec wine "$@"
fi
# The server ends with the display, else the desktop's process would complain of its loss.
exec xvfb-run -a -s '-screen 0 1280x1024x24' bash -c 'wine "$@"; code=$?; wineserver -k; exit $code' bash "$@"
