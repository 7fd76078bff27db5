# What every entry point needs: packages, a Wine prefix and a display of this checkout's own. Source it.
#
#   rollout_install_packages [tests]   installs what Debian 12 lacks (as root or by sudo): to build and run the product,
#                              and for the tests too
#   rollout_build_logged LOG TARGET...   builds for Windows with the whole output in LOG, and shows how far it is
#   rollout_prefix [FOLDER]    makes the Wine prefix (default: build/prefix) and exports WINEPREFIX
#   rollout_display            exports DISPLAY: the caller's with ROLLOUT_INTERACTIVE=1, otherwise a hidden one
#   rollout_wine PROGRAM ...   runs a Windows program in that prefix, pinned to one core
#   rollout_default_answers MEDIA   names the answers file of an unattended ./run on those media
#   rollout_stop               ends the display and the Wine server that this process started

ROLLOUT_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
ROLLOUT_BUILD=${ROLLOUT_BUILD:-$ROLLOUT_ROOT/build}
ROLLOUT_BIN=$ROLLOUT_BUILD/windows/bin

# One package a line with what it is for; CI and a bare machine install from here and nowhere else.
ROLLOUT_PACKAGES=(
    cmake ninja-build          # the build
    g++-mingw-w64-x86-64-posix # the cross compiler, with C++ threads
    gcc-mingw-w64-i686-posix   # the sample product's 32-bit program
    googletest                 # the tests' framework, built from its source; CMake names its targets in every tree
    wine wine64                # where the Windows binaries run
    xvfb x11-utils xauth       # the hidden display
    msitools gcab              # the sample product's databases and cabinets
    python3                    # scripts of the sample media and the checks
    zip unzip                  # the package for Windows users
    fonts-liberation           # a metric match for the dialogs' font
    util-linux procps
)
ROLLOUT_TEST_PACKAGES=(
    g++                        # compiles CMake's own checks and the native helpers
    clang-14 libclang-rt-14-dev # sanitizers and fuzzers of the native tree
    clang-format-14            # the formatting check
    libexpat1-dev              # reads XML for the rules' tests and fuzzers of the native tree
    git                        # lists the sources for the checks
)

rollout_say() { printf '%s\n' "$*" >&2; }

rollout_install_packages() {
    local missing=() wanted=("${ROLLOUT_PACKAGES[@]}") package
    [ "${1:-}" != tests ] || wanted+=("${ROLLOUT_TEST_PACKAGES[@]}")
    for package in "${wanted[@]}"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || { rollout_say "Not root and no sudo: install these first: ${missing[*]}"; return 1; }
        as_root=(sudo)
    fi
    rollout_say "Installing ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

rollout_wine() {
    # Client and server on one core: the prefix then answers several times faster, and figures scatter less.
    # Steady addresses: scripts/steady_addresses.py says why, and warns where the system refuses them.
    local core=${ROLLOUT_CORE:-0} steady=(setarch -R)
    "${steady[@]}" true 2>/dev/null || steady=()
    taskset -c "$core" ${steady[@]+"${steady[@]}"} wine "$@"
}

rollout_prefix() {
    WINEPREFIX=$(realpath -m "${1:-$ROLLOUT_BUILD/prefix}")
    export WINEPREFIX
    export WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all}
    export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
    local made_by=3 # raise it when the settings below change
    [ "$(cat "$WINEPREFIX/.rollout" 2>/dev/null)" = "$made_by" ] && return 0
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    # A half-made one is not marked as made, or every later run would fail in it.
    DISPLAY='' rollout_wine wineboot --init >/dev/null 2>&1 && [ -d "$WINEPREFIX/drive_c/windows" ] ||
        { rollout_say "Wine made no prefix in $WINEPREFIX."; return 1; }
    # No crash dialog would ever be answered; an unmanaged window goes at once instead of after two seconds.
    cat >"$WINEPREFIX/settings.reg" <<'REG'
REGEDIT4

[HKEY_CURRENT_USER\Software\Wine\WineDbg]
"ShowCrashDialog"=dword:00000000

[HKEY_CURRENT_USER\Software\Wine\X11 Driver]
"Managed"="N"

[HKEY_CURRENT_USER\Software\Wine\FileOpenAssociations]
"Enable"="N"
REG
    DISPLAY='' rollout_wine regedit /S "$(rollout_windows_path "$WINEPREFIX/settings.reg")" >/dev/null 2>&1
    # These processes have no display; whoever comes while their server still runs would share their desktop and could
    # make no window.
    wineserver -k || true
    wineserver -w
    echo "$made_by" >"$WINEPREFIX/.rollout"
}

# The Windows path of a Linux path, by the drive that Wine gives to the root.
rollout_windows_path() { printf 'Z:%s' "$(realpath -m "$1" | tr / '\\')"; }

# The Linux path of a Windows path on the drive of the root.
rollout_linux_path() { printf '%s' "${1#[Zz]:}" | tr '\\' /; }

rollout_display() {
    if [ "${ROLLOUT_INTERACTIVE:-0}" = 1 ] && [ -n "${DISPLAY:-}" ]; then
        return 0
    fi
    local number_file
    number_file=$(mktemp)
    Xvfb -displayfd 3 -screen 0 "${ROLLOUT_SCREEN:-1280x1024x24}" -nolisten tcp 3>"$number_file" >/dev/null 2>&1 &
    ROLLOUT_XVFB=$!
    while [ ! -s "$number_file" ]; do
        kill -0 "$ROLLOUT_XVFB" 2>/dev/null || { rollout_say "Xvfb did not start."; return 1; }
        sleep 0.05
    done
    DISPLAY=:$(cat "$number_file")
    export DISPLAY
    rm -f "$number_file"
}

rollout_stop() {
    [ -n "${WINEPREFIX:-}" ] && wineserver -k 2>/dev/null
    [ -n "${ROLLOUT_XVFB:-}" ] && kill "$ROLLOUT_XVFB" 2>/dev/null
    return 0
}

rollout_build_windows() {
    [ -f "$ROLLOUT_BUILD/windows/build.ninja" ] ||
        cmake -S "$ROLLOUT_ROOT" -B "$ROLLOUT_BUILD/windows" -G Ninja \
            -DCMAKE_TOOLCHAIN_FILE="$ROLLOUT_ROOT/cmake/mingw-w64-x86_64.cmake" >"$ROLLOUT_BUILD/windows-configure.log" ||
        { cat "$ROLLOUT_BUILD/windows-configure.log" >&2; return 1; }
    ninja -C "$ROLLOUT_BUILD/windows" "$@"
}

# Every tenth of the steps as a line, so that a log shows it too: "Building: 48 of 240 steps".
rollout_build_logged() {
    local log=$1
    shift
    rollout_build_windows "$@" 2>&1 | tee "$log" | awk -F'[][/]' '
        /^\[[0-9]+\/[0-9]+\]/ {
            part = int($2 * 10 / $3)
            if (part > shown || $2 == 1) { printf "Building: %d of %d steps\n", $2, $3; fflush(); shown = part }
        }' >&2
    [ "${PIPESTATUS[0]}" = 0 ] && return 0
    rollout_say "The build failed; the whole output is in $log."
    tail -n 30 "$log" >&2
    return 1
}

rollout_build_native() {
    [ -f "$ROLLOUT_BUILD/native/build.ninja" ] ||
        CC=clang-14 CXX=clang++-14 cmake -S "$ROLLOUT_ROOT" -B "$ROLLOUT_BUILD/native" -G Ninja \
            -DROLLOUT_NATIVE=ON >"$ROLLOUT_BUILD/native-configure.log" ||
        { cat "$ROLLOUT_BUILD/native-configure.log" >&2; return 1; }
    ninja -C "$ROLLOUT_BUILD/native" "$@"
}

mkdir -p "$ROLLOUT_BUILD"

# The sample's answers are for media whose flow has all of the pages answered there. A lone package has no flow.
rollout_default_answers() {
    python3 "$ROLLOUT_ROOT/scripts/page_table.py" --default-answers "$1"
}
