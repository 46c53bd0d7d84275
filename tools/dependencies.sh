# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=sh
# The only list of Debian packages, and the steps shared by run.sh, test.sh and .ci/run. To be sourced from the
# project's root directory.

# Build and run-time packages of the two programs.
build_packages="g++ cmake ninja-build qt6-base-dev qt6-svg-dev qt6-wayland libqcustomplot-dev libqcustomplot2.1-qt6
  libcli11-dev libfmt-dev"

# Additional packages for the tests.
test_packages="libgtest-dev i2c-tools xvfb at-spi2-core dbus gir1.2-atspi-2.0 python3-gi"

# Additional packages for the checks: a compiler cache, formatting, clang-tidy, and compiling the benchmarks.
check_packages="ccache clang-format-14 clang-tidy-14 git libbenchmark-dev"

# Progress goes to standard error, so that standard output carries only the output of the program.
say() { printf '%s: %s\n' "${0##*/}" "$*" >&2; }

# install_missing PACKAGE...: installs missing packages. If none is missing, neither network nor root is needed.
install_missing() {
  if ! command -v dpkg-query >/dev/null 2>&1 || ! command -v apt-get >/dev/null 2>&1; then
    say "not a Debian system, nothing installed; the build needs these Debian packages or their equivalents:" "$@"
    return 0
  fi
  missing=""
  for package in "$@"; do
    dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
      missing="$missing $package"
  done
  [ -n "$missing" ] || return 0

  as_root=""
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null 2>&1; then
      say "packages are missing and sudo is not available; run as root: apt-get update && apt-get install$missing"
      return 1
    fi
    as_root="sudo"
  fi
  say "installing$missing"
  # Continue if the lists cannot be fetched: the packages may still be in the cache.
  $as_root env DEBIAN_FRONTEND=noninteractive apt-get -q update >&2 </dev/null ||
    say "could not update the package lists; trying with the old ones"
  # Word splitting is intended: one argument per package.
  # shellcheck disable=SC2086
  if ! $as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-install-recommends \
    -o DPkg::Lock::Timeout=300 install $missing >&2 </dev/null; then
    say "apt-get could not install:$missing"
    return 1
  fi
}

# configure PRESET: a build directory that was copied or moved with the sources is recreated, because its cache points
# to its old location.
configure() {
  cache="build/$1/CMakeCache.txt"
  if [ -f "$cache" ] && ! grep -Fqx "CMAKE_HOME_DIRECTORY:INTERNAL=$(pwd -P)" "$cache"; then
    say "build/$1 belongs to another directory; recreating it"
    rm -rf "build/$1"
  fi
  cmake --preset "$1" >&2 || {
    say "configuring with preset $1 failed"
    return 1
  }
}

# build PRESET [TARGET...]: configures and builds.
build() {
  preset="$1"
  shift
  configure "$preset" || return 1
  if [ $# -gt 0 ]; then set -- --target "$@"; fi
  cmake --build --preset "$preset" "$@" >&2 || {
    say "building with preset $preset failed"
    return 1
  }
}
