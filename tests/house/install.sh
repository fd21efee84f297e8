# Sourced by the tests of the installed library: installs the build into a prefix of its own and gives what a stranger
# would have: the command on the path, the library and the module where they are found.
#
#   BUILD-DIRECTORY SOURCE-DIRECTORY COMPILER [COMPILER-FLAGS]
set -euo pipefail
build=$1 source=$2 compiler=$3 flags=${4:-}
work=$(mktemp -d)
children=()
end() {
  ((${#children[@]} == 0)) || kill "${children[@]}" 2>/dev/null || true
  rm -rf "$work"
}
trap end EXIT
fail() { printf '%s: %s\n' "$(basename "$0")" "$*" && exit 1; }

cmake --install "$build" --prefix "$work/prefix" >"$work/log"
library=$(find "$work/prefix" -name libkartix.so)
module=$(find "$work/prefix" -name kartix.py)
PATH=$work/prefix/bin:$PATH
export PATH LD_LIBRARY_PATH=${library%/*} PYTHONPATH=${module%/*} PKG_CONFIG_PATH=${library%/*}/pkgconfig
export HOME=$work XDG_CONFIG_HOME=$work XDG_RUNTIME_DIR=$work
unset KARTIX_REGISTRY KARTIX_LIBRARY DISPLAY WAYLAND_DISPLAY

# build NAME SOURCES: a host as a stranger would build it.
build() {
  if ! cmake -S "$2" -B "$work/$1" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_C_FLAGS="$flags" >>"$work/log" 2>&1 || ! cmake --build "$work/$1" >>"$work/log" 2>&1; then
    fail "$2 does not build: $(<"$work/log")"
  fi
}

# in_python FILE ARGUMENTS
in_python() {
  local preload=
  # Python itself is not built with sanitizers: they have to be there first. What it does not give back is its own.
  [[ -n $flags ]] && preload="$("$compiler" -print-file-name=libasan.so) $("$compiler" -print-file-name=libstdc++.so)"
  LD_PRELOAD=$preload ASAN_OPTIONS=detect_leaks=0 python3 "$@"
}
