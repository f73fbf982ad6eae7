#!/usr/bin/env bash
# Tests the component through Wine: run_com_tests.sh PART PREFIX KV_TR_COM.DLL COM_TESTS.EXE
# PART is registration, client, windows or script. PREFIX is where Wine's Windows is made.
set -euo pipefail
cd "$(dirname "$0")"

part=$1 dll=$3 client=$4
export WINEPREFIX=$2 WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml='
unset DISPLAY WAYLAND_DISPLAY # no window, so that nothing waits for a user
unset LC_ALL LANGUAGE
export LANG=C.UTF-8 # for letters of messages
wine=/usr/lib/wine/wine64
[[ -x $wine ]] || wine=/usr/lib/wine/wine # of a system for 32-bit processors

if [[ ! -e $WINEPREFIX/system.reg ]]; then
    mkdir -p "$WINEPREFIX"
    "$wine" wineboot -i
    /usr/lib/wine/wineserver -w
fi

# The keys below a root that are the component's: its classes, names, interfaces and type library.
keys() {
    "$wine" reg query "$1\\Software\\Classes" /s 2>/dev/null | tr -d '\r' |
        grep -iE '^HKEY.*(KV_Tr\.|5bb3fed9-84b0-431d-8047-1a6ff797)' || true
}

expect_keys() { # ROOT some|none
    local found
    found=$(keys "$1")
    case $2 in
        none)
            [[ -z $found ]] || { echo "left below $1: $found" && exit 1; }
            ;;
        some)
            local name
            for name in clsTr clsTrCalc clsFile GCommonDialog clsComponent clsDebug clsRec; do
                grep -qi "KV_Tr.$name.1.CLSID\$" <<<"$found" || { echo "no KV_Tr.$name.1 below $1" && exit 1; }
            done
            # Seven classes, their interfaces with the one of events, the type library.
            [[ $(grep -icE 'CLSID.{5bb3fed9-[-0-9a-f]*}$' <<<"$found") == 7 ]] || { echo "classes: $found" && exit 1; }
            [[ $(grep -icE 'Interface.{5bb3fed9-[-0-9a-f]*}$' <<<"$found") == 8 ]] ||
                { echo "interfaces: $found" && exit 1; }
            grep -qiE 'TypeLib.{5bb3fed9-[-0-9a-f]*}.1.0.0.win(32|64)$' <<<"$found" ||
                { echo "no type library: $found" && exit 1; }
            ;;
    esac
}

register() { "$wine" regsvr32 /s "$@" "$dll"; }

unregister() {
    register /u /n /i:machine
    if [[ $part == windows ]]; then "$wine" reg delete "$drivers" /v Graphics /f >/dev/null; fi
}

drivers='HKCU\Software\Wine\Drivers'

case $part in
    registration)
        register /u # what a test that was stopped left
        register /u /n /i:machine
        expect_keys HKCU none
        expect_keys HKLM none
        register
        expect_keys HKCU some
        expect_keys HKLM none
        register /u
        expect_keys HKCU none
        register /n /i:machine
        expect_keys HKCU none
        expect_keys HKLM some
        register /u /n /i:machine
        expect_keys HKLM none
        register /u /n /i:machine # twice is no failure
        ! register /n /i:elsewhere
        ;;
    client | windows | script)
        trap unregister EXIT
        if [[ $part == windows ]]; then # windows that nobody sees, but programs do
            "$wine" reg add "$drivers" /v Graphics /d null /f >/dev/null
            /usr/lib/wine/wineserver -w
        fi
        register /n /i:machine # Wine 8 does not look for classes of the user
        case $part in
            windows)
                "$wine" "$client" --gtest_filter='Windows.*'
                ;;
            client)
                output=$("$wine" "$client" --gtest_filter='-Windows.*' 2>&1) || { echo "$output" && exit 1; }
                echo "$output"
                # What a fit with too few passes says where nothing can be shown: the component and the library.
                [[ $(grep -c 'A transzformáció nem számítható!' <<<"$output") == 2 ]]
                ;;
            script)
                output=$("$wine" cscript //nologo script.vbs | tr -d '\r') || true # told by its last line
                echo "$output"
                # A script that an error ends prints no last line.
                [[ $(tail -n 1 <<<"$output") == "all as expected" ]]
                ;;
        esac
        ;;
    *)
        echo "no part $part" >&2
        exit 2
        ;;
esac
