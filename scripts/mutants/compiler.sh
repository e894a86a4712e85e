#!/usr/bin/env bash
# Stands before the compiler: unchanged sources come from the compiler cache, and in a changed one a
# warning is no error, since a removed call often leaves something unused behind.
if [[ -n ${MIRAVEL_MUTANT:-} ]]; then
    exec "$@" -Wno-error
fi
exec ccache "$@"
