#!/usr/bin/env bash
# Runs a Windows program under Wine: in a prefix of the build's own, on a display of its own, in a virtual desktop
# where WINE_DESKTOP asks for one (captions and borders need it). The prefix is made on first use.
# usage: run-under-wine.sh PROGRAM [ARGUMENT...]
set -u
prefix=${VELTRANO_WINEPREFIX:-$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build/wineprefix}
export WINEPREFIX=$prefix WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES=mscoree,mshtml=

if [ ! -e "$prefix/system.reg" ]; then
    mkdir -p "$prefix"
    # A lock, so that programs started side by side do not make the prefix twice.
    flock "$prefix/making.lock" bash -c '[ -e "$WINEPREFIX/.ready" ] || { xvfb-run -a wineboot -i && wineserver -w && touch "$WINEPREFIX/.ready"; }' >/dev/null 2>&1
fi
command=(wine "$@")
[ -n "${WINE_DESKTOP:-}" ] && command=(wine explorer "/desktop=$WINE_DESKTOP" "$@")
# A display that is there is used: a caller that runs many programs opens one for all of them.
[ -n "${DISPLAY:-}" ] || command=(xvfb-run -a -s '-screen 0 1280x1024x24' "${command[@]}")
exec "${command[@]}"
