#!/usr/bin/env bash
# Writes Source/HSVN.h anew: one line for each public header.
set -euo pipefail
cd "$(dirname "$0")/../Source"
{
    printf '#pragma once\n\n/// Everything that an application needs: every public header of the library.\n\n'
    ls ./*.h | sed -e 's|^\./||' -e '/^HSVN\.h$/d' | LC_ALL=C sort | sed 's|.*|#include "&"|'
} > HSVN.h.new
mv HSVN.h.new HSVN.h
