# Installs Debian packages of packages.txt, builds and tests. Sourced by the scripts at the root.
# shellcheck source=progress.sh
. "$root/tools/progress.sh"

# install_packages PURPOSE...: what is missing of those purposes, after saying so.
install_packages() {
    local purpose wanted=() missing=() package
    for purpose in "$@"; do
        # shellcheck disable=SC2207
        wanted+=($(sed -n "s/^$purpose  *//p" "$root/packages.txt"))
    done
    local installed
    installed=$(dpkg-query -W -f='${Package} ${Status}\n' "${wanted[@]}" 2>/dev/null || true)
    for package in "${wanted[@]}"; do
        case $'\n'$installed in
            *$'\n'"$package install ok installed"*) ;;
            *) missing+=("$package") ;;
        esac
    done
    [ ${#missing[@]} -eq 0 ] && return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "These packages are missing, and there is no sudo to install them: ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get update -qq &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y -q --no-install-recommends "${missing[@]}" | follow_packages
    [ "${PIPESTATUS[0]}" -eq 0 ]
}

# is_configured PRESET OPTIONS: whether the last configuration was one with these options. What it
# read itself the build tool looks after.
is_configured() {
    local folder=$root/build/$1 option
    [ "$folder/build.ninja" -nt "$root/CMakePresets.json" ] || return 1
    for option in $2; do
        option=${option#-D}
        grep -q "^${option%%=*}:[A-Z]*=${option#*=}\$" "$folder/CMakeCache.txt" || return 1
    done
}

# build_preset PRESET OPTIONS [TARGET...]: configures with the options and builds, quietly unless it
# fails.
build_preset() {
    local preset=$1 options=$2 log
    shift 2
    log=$(mktemp)
    # shellcheck disable=SC2086
    { is_configured "$preset" "$options" || cmake --preset "$preset" -S "$root" $options; } \
        >"$log" 2>&1 &&
        cmake --build "$root/build/$preset" ${1:+--target "$@"} 2>&1 | tee -a "$log" |
            follow_build "$root/build/$preset"
    if [ "${PIPESTATUS[0]}" -ne 0 ]; then
        grep -E 'error|FAILED|CMake Error' -A 12 "$log" | head -80 >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}

# run_tests PRESET [NAME]: every test, or those that match the regular expression NAME.
run_tests() {
    local ctest=(ctest --test-dir "$root/build/$1" --output-on-failure ${2:+-R "$2"})
    "${ctest[@]}" --label-exclude real-time -j 2 &&
        "${ctest[@]}" --label-regex real-time -j 3
}

# What the tests and benchmarks are built with; a build that was begun without them gets them.
with_tests="-DQUIBBITS_TESTS=ON -DQUIBBITS_BENCH=ON"
without_tests="-DQUIBBITS_TESTS=OFF -DQUIBBITS_BENCH=OFF"
