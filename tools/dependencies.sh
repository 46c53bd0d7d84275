# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=sh
# The one list of Debian packages, and the steps that run.sh, test.sh and .ci/run share. To be sourced from the
# project's root directory.

# What the two programs are built from and need when they run.
build_packages="g++ cmake ninja-build qt6-base-dev qt6-svg-dev qt6-wayland libqcustomplot-dev libqcustomplot2.1-qt6
  libcli11-dev libfmt-dev"

# What the tests need beyond that.
test_packages="libgtest-dev i2c-tools xvfb"

# What the checks need beyond the tests: a compile cache for those who check more than once, the format, clang-tidy, and
# that the benchmarks still compile.
check_packages="ccache clang-format-14 clang-tidy-14 git libbenchmark-dev"

# Progress goes to standard error, so that standard output carries only what a program prints.
say() { printf '%s: %s\n' "${0##*/}" "$*" >&2; }

# install_missing PACKAGE...: installs those that are not there yet. When all are, it needs no network and no root.
install_missing() {
  if ! command -v dpkg-query >/dev/null 2>&1 || ! command -v apt-get >/dev/null 2>&1; then
    say "this is not a Debian system, so nothing is installed; the build needs what Debian calls:" "$@"
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
      say "packages are missing and there is no sudo; as root, run: apt-get update && apt-get install$missing"
      return 1
    fi
    as_root="sudo"
  fi
  say "installing$missing"
  # A list that cannot be fetched is no reason to stop: the packages may still be in the cache.
  $as_root env DEBIAN_FRONTEND=noninteractive apt-get -q update >&2 </dev/null ||
    say "the package lists could not be brought up to date; trying with the old ones"
  # Word splitting is wanted here: one argument a package.
  # shellcheck disable=SC2086
  if ! $as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-install-recommends \
    -o DPkg::Lock::Timeout=300 install $missing >&2 </dev/null; then
    say "apt-get could not install:$missing"
    return 1
  fi
}

# configure PRESET: a build directory that was copied or moved here with the sources is made anew, because its cache
# points to the place it came from.
configure() {
  cache="build/$1/CMakeCache.txt"
  if [ -f "$cache" ] && ! grep -Fqx "CMAKE_HOME_DIRECTORY:INTERNAL=$(pwd -P)" "$cache"; then
    say "build/$1 belongs to another directory; building it anew"
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
