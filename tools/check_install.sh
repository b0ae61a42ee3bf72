#!/usr/bin/env bash
# check_install.sh BUILD EXAMPLES CMAKE CC CXX TOOLCHAIN [EMULATOR...]
#
# Installs BUILD into a scratch folder, moves that folder (an installation may be moved), builds the examples against it by
# pkg-config and by find_package, and runs them with the simulated module. For another machine TOOLCHAIN is its toolchain
# file, and EMULATOR runs its programs; for this one TOOLCHAIN is empty.
set -euo pipefail
build="$1" examples="$2" cmake="$3" cc="$4" cxx="$5" toolchain="$6"
emulator=("${@:7}")

scratch="$build/install-check"
rm -rf "$scratch"
"$cmake" --install "$build" --prefix "$scratch/first" >/dev/null
mkdir "$scratch/moved"
mv "$scratch/first" "$scratch/moved/talvek"
prefix="$scratch/moved/talvek"
cp -r "$examples" "$scratch/examples"

check() { # NAME EXPECTED COMMAND...
    local name="$1" expected="$2" output
    shift 2
    output="$("$@")" || { echo "$name: failed: $output"; exit 1; }
    [ "$output" = "$expected" ] || { echo "$name: printed '$output', not '$expected'"; exit 1; }
    echo "$name: $output"
}

pc="$(find "$prefix" -name talvek.pc)"
export PKG_CONFIG_PATH="${pc%/*}"
libraries="$(pkg-config --variable=libdir talvek)"
# shellcheck disable=SC2046
"$cc" -std=c11 -Wall -Wextra -Wpedantic -Werror "$scratch/examples/hello.c" -o "$scratch/hello" \
    $(pkg-config --cflags --libs talvek) "-Wl,-rpath,$libraries"
# shellcheck disable=SC2046
"$cxx" -std=c++17 -Wall -Wextra -Wpedantic -Werror "$scratch/examples/hello_class.cpp" -o "$scratch/hello_class" \
    $(pkg-config --cflags --libs talvek) "-Wl,-rpath,$libraries"

"$cmake" -S "$scratch/examples" -B "$scratch/build" -G Ninja "-DCMAKE_C_COMPILER=$cc" "-DCMAKE_CXX_COMPILER=$cxx" \
    ${toolchain:+"-DCMAKE_TOOLCHAIN_FILE=$toolchain" "-DCMAKE_FIND_ROOT_PATH=$prefix"} "-DCMAKE_PREFIX_PATH=$prefix" >/dev/null
"$cmake" --build "$scratch/build" >/dev/null

run() {
    ${emulator[@]+"${emulator[@]}"} "$prefix/bin/talvekctl" sim exec "$1" -- ${emulator[@]+"${emulator[@]}"} "$2"
}
for folder in "$scratch" "$scratch/build"; do
    check "hello, CDMA" "K2.0.12C-SIM (ORV_RCODE_OK)" run cdma "$folder/hello"
    check "hello, GSM/UMTS" "K2.0.12U-SIM (ORV_RCODE_OK)" run umts "$folder/hello"
    check "hello_class" "Kestavo (vendor status 0)" run cdma "$folder/hello_class"
done
