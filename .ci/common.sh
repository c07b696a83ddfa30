# Functions that the scripts share. Sourced with the source tree as the current folder.

root=$PWD
jobs=$(nproc 2>/dev/null || echo 2)
newly_installed=""

# Compiles the sources of a folder sixteen together, which is several times as fast. .ci/install checks that each source
# of the library compiles on its own, by building it in another project. .ci/targets does the same for the tool.
together=(-DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=16)

has_header() {
    printf '#if !__has_include(<%s>)\n#error\n#endif\n' "$1" |
        "${CXX:-c++}" -x c++ -std=c++20 -E - >/dev/null 2>&1
}

# Whether clang++ can link a fuzzer, for which it needs a library of its own.
has_fuzzer() {
    printf 'extern "C" int LLVMFuzzerTestOneInput(const char*, unsigned long) { return 0; }\n' |
        clang++ -fsanitize=fuzzer -x c++ - -o /dev/null 2>/dev/null
}

# Whether what a Debian package contains is on this machine, even if it was installed in another way.
is_there() {
    case $1 in
        g++) command -v "${CXX:-c++}" ;;
        ninja-build) command -v ninja ;;
        libgtest-dev) has_header gtest/gtest.h ;;
        libbenchmark-dev) has_header benchmark/benchmark.h ;;
        rapidjson-dev) has_header rapidjson/document.h ;;
        libpugixml-dev) has_header pugixml.hpp ;;
        librapidxml-dev) has_header rapidxml/rapidxml.hpp ;;
        libsimdjson-dev) has_header simdjson.h ;;
        nlohmann-json3-dev) has_header nlohmann/json.hpp ;;
        libtomlplusplus-dev) has_header toml++/toml.h ;;
        libconfig++-dev) has_header libconfig.h++ ;;
        libmsgpack-cxx-dev) has_header msgpack.hpp ;;
        gnuplot-nox) command -v gnuplot ;;
        valgrind) command -v valgrind && has_header valgrind/callgrind.h ;;
        clang) command -v clang++ ;;
        locales) [ -e /usr/share/i18n/locales/de_DE ] ;;
        libclang-rt-14-dev) has_fuzzer ;;
        g++-mingw-w64-x86-64-posix) command -v x86_64-w64-mingw32-g++-posix ;;
        g++-s390x-linux-gnu) command -v s390x-linux-gnu-g++ ;;
        qemu-user-static) command -v qemu-s390x-static ;;
        man-db) command -v man ;;
        groff-base) command -v groff ;;
        libxml2-utils) command -v xmllint ;;
        doxygen-awesome-css) [ -d /usr/share/doxygen-awesome-css ] ;;
        chromium) command -v chromium || command -v chromium-browser ;;
        python3-jsonschema) python3 -c "import jsonschema" 2>/dev/null ;;
        googletest) [ -f /usr/src/googletest/googletest/src/gtest-all.cc ] ;;
        pybind11-dev) [ -f /usr/include/pybind11/pybind11.h ] ;;
        python3-dev) ls /usr/include/python3.*/Python.h ;;
        python3-venv) /usr/bin/python3 -c 'import ensurepip' ;;
        python3-?*) /usr/bin/python3 -c "import ${1#python3-}" ;;
        *) command -v "$1" ;;
    esac >/dev/null
}

# need <Debian package>...: installs what is missing, if that is possible without asking. Otherwise names it in one
# line.
need() {
    local package missing=()
    for package in "$@"; do
        is_there "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    if [ "$(id -u)" -ne 0 ] || ! command -v apt-get >/dev/null; then
        echo "missing, to be installed first (Debian's package names): ${missing[*]}" >&2
        exit 2
    fi
    echo "installing ${missing[*]}" >&2
    export DEBIAN_FRONTEND=noninteractive
    local output
    # One at a time, because two scripts may run in parallel.
    if ! output=$(flock /tmp/bk_parser_packages sh -c 'apt-get update && apt-get install -y --no-install-recommends "$@"' \
        apt "${missing[@]}" 2>&1 </dev/null); then
        echo "missing, and not to be had: ${missing[*]} ($(grep -m 1 '^E: ' <<<"$output"))" >&2
        exit 2
    fi
    newly_installed=yes
}

# Runs a command, and prints its output only if it fails.
quietly() {
    local output
    output=$("$@" 2>&1 </dev/null) && return
    printf '%s\n' "$output" >&2
    echo "failed: $*" >&2
    return 1
}

# Whether a build folder belongs to this tree and has these settings, each given as -DNAME=VALUE.
is_configured() {
    local cache=$1/CMakeCache.txt setting
    shift
    [ -z "$newly_installed" ] && [ -f "$cache" ] || return
    grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=${project:-$root}" "$cache" || return
    grep -q 'DIR-NOTFOUND$' "$cache" && return 1
    for setting in "$@"; do
        setting=${setting#-D}
        grep -q "^${setting%%=*}:[A-Z]*=${setting#*=}\$" "$cache" || return
    done
}

# configure <build folder> <-DNAME=VALUE>...: runs CMake only when necessary, because it takes seconds. `project` is the
# folder of the project, if that is not this one.
configure() {
    local folder=$1 cache=$1/CMakeCache.txt generator=()
    shift
    is_configured "$folder" "$@" && return
    if [ -f "$cache" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=${project:-$root}" "$cache"; then
        rm -rf "$cache" "$folder/CMakeFiles"
    fi
    [ -f "$cache" ] || generator=(-G Ninja)
    quietly cmake -S "${project:-$root}" -B "$folder" "${generator[@]}" "$@"
}

# run_tests <build folder> <ctest argument>...: prints the tests that fail, and sets `passed` and `failed`.
run_tests() {
    local folder=$1 report=$root/$1/tests.xml skipped
    shift
    rm -f "$report"
    ctest --test-dir "$folder" -j "$jobs" --output-on-failure --output-junit "$report" "$@" 2>&1 |
        grep -a --line-buffered -vE '^ +Start +[0-9]+: |^ *[0-9]+/[0-9]+ Test +#.* Passed +[0-9.]+ sec$'
    count_tests run && passed=$counted
    count_tests fail && failed=$counted
    count_tests '(notrun|disabled)' && skipped=$counted
    [ "$skipped" -eq 0 ] || echo "$skipped skipped"
}

# run_programs <build folder>: like run_tests, but with one process per program instead of one per test, for builds that
# start slowly. A program that crashes counts as one failure.
run_programs() {
    local logs=$root/$1/test_logs log
    rm -rf "$logs" && mkdir -p "$logs"
    find "$root/$1" -maxdepth 1 -name '*_test' -type f -print0 |
        xargs -0 -P "$jobs" -I{} sh -c 'timeout 900 "$1" --gtest_brief=1 >"$2/${1##*/}.log" 2>&1 || echo "exit $?" >>"$2/${1##*/}.log"' \
            sh {} "$logs"
    passed=0 failed=0
    for log in "$logs"/*.log; do
        passed=$((passed + $(sed -nE 's/^\[  PASSED  \] ([0-9]+) tests?\.$/\1/p' "$log" | head -n 1 | grep . || echo 0)))
        grep -q '^exit ' "$log" || continue
        cat "$log" >&2
        failed=$((failed + $(grep -acE '^\[  FAILED  \] [^ ]+\.[^ ]+ \(' "$log" | sed 's/^0$/1/')))
    done
}

count_tests() {
    counted=0
    [ ! -f "$report" ] || counted=$(grep -acE "^[[:space:]]*<testcase .* status=\"$1\"" "$report") || true
}
