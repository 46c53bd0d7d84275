#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs missing packages, builds everything and runs all tests. Arguments are passed to ctest:
# ./test.sh -R Numerics
set -eu
cd -P "$(dirname "$0")"
. tools/dependencies.sh

# shellcheck disable=SC2086 # a list, one argument per package
install_missing $build_packages $test_packages
build dev
exec ctest --preset dev --parallel "$(nproc)" "$@"
