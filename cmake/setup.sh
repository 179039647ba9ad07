# What ./demo, ./check and .ci/run share. They source it from the root of the repository: packages of Debian, and steps
# whose output goes to a file below build/ while the user sees how far they are.

export LC_ALL=C.UTF-8

logs=build/logs

library_packages=(cmake g++ libqwt-qt5-dev libudev-dev ninja-build qtbase5-dev
    qttools5-dev-tools)
check_packages=("${library_packages[@]}" bash-completion dpkg-dev fakeroot file
    help2man libbenchmark-dev libumockdev-dev lintian pkg-config umockdev)

die() {
    printf '%s\n' "$*" >&2
    exit 1
}

# Copies the lines of a running step to a terminal, each over the one before it; to anything else one in half a minute.
show_progress() {
    local line width='' shown_at=$SECONDS
    if [[ -t 1 && ${TERM:-dumb} != dumb ]]; then
        read -r _ width < <(stty size <&1 2>/dev/null) || true
        ((${width:-0} > 10)) || width=80
        while IFS= read -r line; do
            line=${line//[[:cntrl:]]/ }
            printf '\r\033[K  %s' "${line:0:width-3}"
        done
        printf '\r\033[K'
    else
        while IFS= read -r line; do
            if ((SECONDS - shown_at >= 30)); then
                shown_at=$SECONDS
                printf '  %s\n' "${line:0:100}"
            fi
        done
    fi
}

# run_logged NAME LOG COMMAND...: runs the command without input, its output in build/logs/LOG. Gives its exit status.
run_logged() {
    local name=$1 log=$logs/$2 status=0 began=$SECONDS
    shift 2
    mkdir -p "$logs"
    printf '%s ...\n' "$name"
    "$@" </dev/null 2>&1 | tee "$log" | show_progress || status=${PIPESTATUS[0]}
    if ((status == 0)); then
        printf '  done in %d s\n' $((SECONDS - began))
    else
        printf '  FAILED after %d s\n' $((SECONDS - began))
    fi
    return "$status"
}

# The same, and on failure shows the end of the log and says where all of it is.
step() {
    local status=0
    run_logged "$@" || status=$?
    if ((status != 0)); then
        tail -n 40 "$logs/$2" >&2
        printf '%s failed. All of its output is in %s\n' "$1" "$logs/$2" >&2
    fi
    return "$status"
}

# install_packages PACKAGE...: says which are missing, and installs them.
install_packages() {
    local package missing=() as_root=()
    if ! command -v dpkg-query >/dev/null; then
        printf 'This is not Debian, so nothing is installed. Needed are: %s\n' "$*"
        return 0
    fi
    for package; do
        dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
    done
    ((${#missing[@]} > 0)) || return 0

    printf 'Missing packages, to be installed with apt-get: %s\n' "${missing[*]}"
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null || ! sudo -n true 2>/dev/null; then
            die "Only root can install them, and sudo is missing or wants a password. Run as root: apt-get install ${missing[*]}"
        fi
        as_root=(sudo -n)
    fi
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -y -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3)
    # An unreachable source need not be one of those that have the packages.
    step 'Fetching the package lists' apt-update.log "${apt[@]}" update || echo 'Going on with the lists at hand.'
    step 'Installing the packages' apt-install.log "${apt[@]}" install --no-install-recommends "${missing[@]}"
}

# The closing lines of a log of CTest: how many tests passed, and which did not.
print_test_summary() {
    sed -n '/ tests passed, /,$p' "$1"
}

# run_tests NAME LOG PRESET: all tests of a built preset. On failure shows what those that failed have said.
run_tests() {
    local log=$logs/$2
    run_logged "$1" "$2" ctest --preset "$3" --no-tests=error && return 0
    sed '/ tests passed, /,$d' "$log" | grep -vE '^ *(Start +[0-9]+: |[0-9]+/[0-9]+ Test .* Passed )|^PASS   : ' | tail -n 300
    return 1
}
