# What the scripts of the benchmarks have in common. Source it with the source tree as the current folder.

. .ci/common.sh

# build_bench <target> <setting>...: the benchmarks measure the library that ./test and ./run build, as a release, in build/.
build_bench() {
    local target=$1
    shift
    local settings=("${together[@]}" -DCMAKE_BUILD_TYPE=Release -DBK_PARSER_BENCH=ON "$@")
    [ -f build/CMakeCache.txt ] || settings+=(-DBK_PARSER_TESTS=OFF -DBK_PARSER_TOOLS=OFF -DBK_PARSER_EXAMPLES=OFF)
    configure build "${settings[@]}" && quietly cmake --build build --target "$target"
}
