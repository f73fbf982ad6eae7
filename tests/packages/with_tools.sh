#!/usr/bin/env bash
# Uses what the packages bring for other programs: manual pages, completion, the desktop's files, the library.
# Usage: with_tools.sh DOCUMENTS VERSION, in an empty folder. DOCUMENTS is the folder of README.md and examples.
set -euo pipefail

documents=$1
version=$2

# Fails unless the text is in standard input; reads all of it.
shows() {
    local output
    output=$(cat)
    [[ $output == *"$1"* ]] || { printf 'There is no "%s" in:\n%s\n' "$1" "$output" && return 1; } >&2
}

kv_tr --version | shows "kv_tr $version"
QT_QPA_PLATFORM=offscreen kv_tr_desktop --version | shows "$version"
pkg-config --modversion kv_tr | shows "$version"
python3 -c 'from importlib.metadata import version; print(version("kv_tr"))' | shows "$version"
echo "ok: one version everywhere"

export MANPAGER=cat MANROFFOPT=-Wall
man kv_tr | shows "kv_tr adjust"
man kv_tr-adjust | shows "--exclude"
man -L hu kv_tr-adjust | shows "--exclude"
man kv_tr_layers | shows "kv_tr adjust"
man kv_tr_desktop | shows "--language"
for page in /usr/share/man/{,??/}man1/kv_tr*.1.gz; do
    warnings=$(man --warnings -l "$page" 2>&1 >/dev/null)
    [[ -z $warnings ]] || { echo "$page: $warnings" >&2 && exit 1; }
done
echo "ok: manual pages"

bash --norc -c '. /usr/share/bash-completion/bash_completion
    _completion_loader kv_tr
    COMP_WORDS=(kv_tr adjust points.dat --type hel)
    COMP_CWORD=4
    _kv_tr kv_tr
    echo "${COMPREPLY[@]}"' | shows helmert
zsh -f -c 'autoload -Uz compinit; compinit -D; whence -v ${_comps[kv_tr]}' | shows vendor-completions/_kv_tr
fish -c 'complete --do-complete "kv_tr adj"' | shows adjust
echo "ok: completion in bash, zsh and fish"

desktop-file-validate /usr/share/applications/kv_tr.desktop
appstreamcli validate --no-net --explain /usr/share/metainfo/kv_tr.metainfo.xml
echo '{}' >town.kvtr
gio info --attributes=standard::content-type town.kvtr | shows application/x-kv-tr-project
gio mime application/x-kv-tr-project | shows kv_tr.desktop
echo "ok: files of the desktop"

# Builds an example with the CMake package.
build() {
    cmake -G Ninja -S "$documents/examples/$1" -B "$1" -DCMAKE_BUILD_TYPE=Release >"$1.log"
    cmake --build "$1" >>"$1.log" || { cat "$1.log" >&2 && return 1; }
}

build host
(cd host && ./host town.trp log.txt) | shows "rms 0.032 m"
[[ -s host/town.trp && -s host/log.txt ]]
build host_gdal
host_gdal/host_gdal "$documents/examples/parcels.gpkg" moved.gpkg | shows "3 layers, 8 features"
build host_qt
c++ "$documents/examples/host/main.cpp" -o by_pkg_config $(pkg-config --cflags --libs kv_tr)
./by_pkg_config town.trp log.txt | shows "rms 0.032 m"
echo "ok: programs with the library, by CMake and by pkg-config"
