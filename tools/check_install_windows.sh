#!/usr/bin/env bash
# check_install_windows.sh BUILD SOURCE CMAKE TOOLCHAIN CC CXX RUNNER...
#
# Installs BUILD into a scratch folder, builds clients against nothing but what was installed, and runs them: one by each
# import library, one that loads the library by name, one of the class. RUNNER runs a Windows program here.
set -euo pipefail
build="$1" source="$2" cmake="$3" toolchain="$4" cc="$5" cxx="$6"
shift 6
runner=("$@")

scratch="$build/install-check"
rm -rf "$scratch"
"$cmake" --install "$build" --prefix "$scratch/first" >/dev/null
mkdir "$scratch/moved"
mv "$scratch/first" "$scratch/moved/talvek"
prefix="$scratch/moved/talvek"
cp -r "$source/examples" "$scratch/examples"
# Where a vendor's library would be: beside the program.
cp "$prefix/lib/talvek-sim/GobiApi.dll" "$prefix/bin/"

warnings=(-Wall -Wextra -Wpedantic -Werror)
"$cc" -std=c11 "${warnings[@]}" -I"$prefix/include" "$source/examples/windows/load_by_name.c" -o "$prefix/bin/load_by_name.exe"
# A linker in Microsoft's style, and its kind of object file. `main` is all that such a program has without a C library.
clang --target=x86_64-pc-windows-msvc -ffreestanding -std=c11 "${warnings[@]}" -I"$prefix/include" \
    -c "$source/examples/windows/no_runtime.c" -o "$scratch/no_runtime.obj"
lld-link /nologo /subsystem:console /nodefaultlib /entry:start "$scratch/no_runtime.obj" "$prefix/lib/TALVEK.lib" \
    "/out:$prefix/bin/no_runtime.exe"
"$cmake" -S "$scratch/examples" -B "$scratch/build" -G Ninja "-DCMAKE_TOOLCHAIN_FILE=$toolchain" \
    -DCMAKE_EXE_LINKER_FLAGS=-static "-Dtalvek_DIR=$prefix/lib/cmake/talvek" >/dev/null
"$cmake" --build "$scratch/build" >/dev/null
cp "$scratch/build/hello.exe" "$scratch/build/hello_class.exe" "$prefix/bin/"

check() { # PROGRAM EXPECTED
    local output
    output="$("${runner[@]}" "$prefix/bin/$1.exe")" || { echo "$1: failed: $output"; exit 1; }
    [ "$output" = "$2" ] || { echo "$1: printed '$output', not '$2'"; exit 1; }
    echo "$1: $output"
}

"${runner[@]}" reg add 'HKCU\Software\Kestavo Inc' /v DeviceID /d 'VID_3D5E&PID_5101' /f >/dev/null
export TALVEK_SIM=cdma
check load_by_name "K2.0.12C-SIM (ORV_RCODE_OK)"
check hello "K2.0.12C-SIM (ORV_RCODE_OK)"
check hello_class "Kestavo (vendor status 0)"
check no_runtime ""
