#!/bin/sh
# Builds and runs the project beside this script, in every way in which it can get at kalo.
# usage: run.sh BUILD_DIR SOURCE_DIR shared|static|sources
#   shared   the installed shared library of BUILD_DIR, what was installed with it, add_subdirectory
#   static   the same for the static library
#   sources  every header, and the library without CMake
# TOOL_RPATH is where the installed tool looks for the library before it asks the loader; empty: only
# there
set -eu
build=$1
source=$2
way=$3
consumer=$source/tests/package/consumer
cxx="${CXX:-g++} -std=c++17"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unset LD_LIBRARY_PATH

fail() {
    echo "package.$way: $*" >&2
    exit 1
}

# expect KIND COMMAND...: the consumer decodes, and was built for that kind of library
expect() {
    kind=$1
    shift
    output=$("$@") || fail "$* failed: $output"
    [ "$output" = "$kind 48.117300 11.516667 8" ] || fail "$*: $output"
}

# usesShared PROGRAM: prints the libkalo that the loader takes
usesShared() {
    ldd "$1" | sed -n 's/.*libkalo[^ ]* => \(.*\) (.*/\1/p'
}

files() {
    (cd "$1" && find . ! -type d | LC_ALL=C sort)
}

# testInstalled: find_package and pkg-config against $work/moved
testInstalled() {
    libDir=$(dirname "$(find "$work/moved" -name 'libkalo.*' | head -n 1)")
    export PKG_CONFIG_PATH="$libDir/pkgconfig"
    version=$(pkg-config --modversion kalo)

    cmake -S "$consumer" -B "$work/found" -DCMAKE_PREFIX_PATH="$work/moved" \
        -DKALO_WANTED="${version%.*}" >"$work/log" || fail "find_package: $(cat "$work/log")"
    grep -q "^kalo_DIR:PATH=$libDir/" "$work/found/CMakeCache.txt" || fail "found another kalo"
    cmake --build "$work/found" >"$work/log" || fail "find_package: $(cat "$work/log")"
    expect "$way" "$work/found/consumer"

    if cmake -S "$consumer" -B "$work/refused" -DCMAKE_PREFIX_PATH="$work/moved" \
        -DKALO_WANTED=$((${version%%.*} + 1)) >"$work/log" 2>&1; then
        fail "the next major version was accepted"
    fi
    grep -q "version: $version" "$work/log" || fail "not refused for its version: $(cat "$work/log")"

    $cxx $(pkg-config --cflags kalo) "$consumer/main.cpp" $(pkg-config --libs kalo) -o "$work/plain"
    expect "$way" env LD_LIBRARY_PATH="$libDir" "$work/plain"
    if [ "$way" = static ] && [ -n "$(usesShared "$work/plain")" ]; then
        fail "a shared library is in use"
    fi
}

# buildInside OPTION...: add_subdirectory
buildInside() {
    cmake -S "$consumer" -B "$work/inside" -DKALO_TREE="$source" "$@" >"$work/log" ||
        fail "add_subdirectory: $(cat "$work/log")"
    cmake --build "$work/inside" >"$work/log" || fail "add_subdirectory: $(cat "$work/log")"
    expect "$way" "$work/inside/consumer"
}

# testTool TOOL: its RPATH, and that it runs with the library in $libDir
testTool() {
    runpath=$(readelf -d "$1" | sed -n 's/.*R.*PATH.*\[\(.*\)\]/\1/p')
    [ "$runpath" = "$TOOL_RPATH" ] || fail "the RPATH of the tool is '$runpath', not '$TOOL_RPATH'"
    case $runpath in
    *'$ORIGIN'*) ;;
    *) export LD_LIBRARY_PATH="$libDir" ;;
    esac
    [ "$(readlink -f "$(usesShared "$1")")" = "$libDir/libkalo.so.$version" ] ||
        fail "the tool does not find the library beside it"
    "$1" --version | grep -qF "$version" || fail "the tool has another version"
    unset LD_LIBRARY_PATH
}

# toolFiles: the tool, a manual page for each command that it lists, and the completions
toolFiles() {
    {
        echo ./bin/kalo
        echo ./share/bash-completion/completions/kalo
        echo ./share/fish/vendor_completions.d/kalo.fish
        echo ./share/man/man1/kalo.1
        "$build/tools/kalo" help | sed -n 's|^  \([a-z][a-z]*\) .*|./share/man/man1/kalo-\1.1|p'
        echo ./share/zsh/site-functions/_kalo
    } | LC_ALL=C sort
}

testShared() {
    if readelf -d "$build/tools/kalo" | grep -F "$build"; then
        fail "the tool's bytes depend on the build folder"
    fi
    cmake --install "$build" --prefix "$work/first" >/dev/null
    for component in Runtime Development Tools; do
        cmake --install "$build" --prefix "$work/$component" --component $component >/dev/null
    done
    files "$work/first" >"$work/all"
    for component in Runtime Development Tools; do
        files "$work/$component"
    done | LC_ALL=C sort | diff "$work/all" - || fail "the components are not the whole"
    toolFiles >"$work/toolFiles"
    files "$work/Tools" | diff "$work/toolFiles" - || fail "other files are installed in Tools"
    (cd "$work/first" && find . -name '*.h' | sed 's|^./include/||' | LC_ALL=C sort) |
        diff "$build/tests/package/headers.txt" - || fail "other headers are installed"

    mv "$work/first" "$work/moved"
    testInstalled
    soname="libkalo.so.${version%%.*}"
    readelf -d "$libDir/libkalo.so" | grep -q "SONAME.*\[$soname\]" || fail "SONAME"
    [ "$(files "$work/Runtime" | sed 's|.*/||' | tr '\n' ' ')" = "$soname libkalo.so.$version " ] ||
        fail "Runtime: $(files "$work/Runtime")"
    testTool "$work/moved/bin/kalo"

    DESTDIR=$work/staged cmake --install "$build" --prefix /usr >/dev/null
    PKG_CONFIG_PATH=$(dirname "$(find "$work/staged/usr" -name kalo.pc)")
    flags=$(echo $(pkg-config --cflags --libs kalo))
    [ "$flags" = -lkalo ] || fail "the flags below /usr are $flags"

    buildInside -DBUILD_SHARED_LIBS=ON
    cmake --install "$work/inside" --prefix "$work/none" >/dev/null
    [ ! -e "$work/none" ] || fail "as a part of another project kalo installs $(files "$work/none")"
}

testStatic() {
    buildInside -DKALO_INSTALL=ON -DBUILD_SHARED_LIBS=OFF
    cmake --install "$work/inside" --prefix "$work/first" >/dev/null
    mv "$work/first" "$work/moved"
    testInstalled
}

testSources() {
    headers=$build/tests/package/headers.txt
    diff "$source/kalo/kalo.h" "$build/tests/package/kalo.h" ||
        fail "the list of headers has changed; run script/update"
    (cd "$source" && grep -Lri --include='*.h' 'not installed' kalo | LC_ALL=C sort) |
        diff "$headers" - || fail "a header is not listed, and does not say that it is not installed"
    while read -r header; do
        printf '#include "%s"\n' "$header" |
            $cxx -fsyntax-only -Wall -Werror -H -I "$source" -x c++ - 2>"$work/log" ||
            fail "$header: $(grep -v '^\.' "$work/log")"
        if grep -E '^\.+ .*/(iostream|sstream|regex)$' "$work/log"; then
            fail "$header includes this"
        fi
    done <"$headers"

    cd "$source"
    $cxx -fPIC -shared -I. kalo/*/*.cpp -o "$work/libkalo.so"
    $cxx -I. "$consumer/main.cpp" "$work/libkalo.so" -o "$work/plain"
    expect shared "$work/plain"
}

case $way in
shared) testShared ;;
static) testStatic ;;
sources) testSources ;;
*) fail "there is no such way" ;;
esac
