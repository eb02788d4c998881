# Debian packages that the build needs, and how a missing one gets installed. Sourced by ./run and ./check.

packages_to_build="g++ cmake ninja-build libsqlite3-dev libcli11-dev libfmt-dev nlohmann-json3-dev"
packages_to_bench="$packages_to_build libbenchmark-dev valgrind python3 binutils g++-arm-linux-gnueabihf"
packages_to_check="$packages_to_bench git libexpat1-dev libgtest-dev googletest clang-format clang-tidy cppcheck procps"
# The 32-bit ARM build, and the fuzzing engine.
packages_to_check="$packages_to_check g++-arm-linux-gnueabihf qemu-user clang-14 libclang-rt-14-dev"

# Installs those of the given packages that are missing, as root or through sudo.
install_packages() {
    missing=""
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0
    as_root=""
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "$0: these packages are missing:$missing. Install them, or run this as root or with sudo available." >&2
            return 1
        }
        as_root="sudo"
    fi
    echo "$0: installing$missing" >&2
    $as_root apt-get update -qq >&2 &&
        $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >&2
}

# Runs a command with its output in a log, which is shown only when the command fails.
quietly() {
    log="$1"
    shift
    mkdir -p "$(dirname "$log")"
    "$@" >"$log" 2>&1 || {
        cat "$log" >&2
        echo "$0: failed: $*" >&2
        return 1
    }
}
