# shellcheck shell=bash
# What the scripts need from Debian or Ubuntu, and how they get it. Sourced by the scripts.

# The library, the host program and the sample desktop.
TARNWICK_BUILD_PACKAGES=(
  cmake ninja-build
  gcc-mingw-w64-x86-64-posix g++-mingw-w64-x86-64-posix
  googletest nlohmann-json3-dev libcli11-dev libfmt-dev
  libz-mingw-w64-dev
)
# Running it on this machine.
TARNWICK_RUN_PACKAGES=(wine wine64 xvfb)
# The tests beside that: sanitizers and fuzz targets, benches, the page in a browser, terminals, schemas, the scripts
# themselves, the manual page.
TARNWICK_TEST_PACKAGES=(
  clang-19 libclang-rt-19-dev clang-format-19 clang-tidy-19 lld-19 llvm-19 libbenchmark-dev libpugixml-dev
  chromium chromium-driver python3 python3-selenium python3-pyte python3-jsonschema python3-pil python3-yaml
  shellcheck python3-markdown-it python3-mdit-py-plugins
  man-db groff-base mandoc
)
# The bindings: C# and Python, Rust with the crates that it stands on. Node.js is got by ensure_node.
TARNWICK_BINDING_PACKAGES=(
  mono-mcs mono-runtime mypy
  rustc cargo rustfmt rust-clippy libstd-rust-dev-windows
  librust-libloading-dev librust-serde-dev librust-serde-derive-dev librust-serde-json-dev
)

say() { printf '== %s\n' "$*"; }

fail() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || echo "$package"
  done
}

# Installs those of the named packages that are not installed; needs nothing when all are.
ensure_packages() {
  command -v dpkg-query >/dev/null && command -v apt-get >/dev/null ||
    fail "this script installs what it needs with apt-get, which is not here: it wants Debian 12 or Ubuntu 24.04 or later"
  local missing
  mapfile -t missing < <(missing_packages "$@")
  [ "${#missing[@]}" -gt 0 ] || return 0
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null ||
      fail "installing ${missing[*]} needs root, and there is no sudo here; run as root: apt-get install ${missing[*]}"
    as_root=(sudo)
  fi
  say "Installing: ${missing[*]}"
  local log
  log=$(mktemp)
  if ! { "${as_root[@]}" apt-get update &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"; } \
    >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    rm -f "$log"
    fail "apt-get could not install: ${missing[*]}"
  fi
  rm -f "$log"
}

# Node and npm from wherever they are; Debian's only where there are none, for they conflict with others' packages.
ensure_node() {
  if command -v node >/dev/null && command -v npm >/dev/null; then return; fi
  ensure_packages nodejs npm
}
