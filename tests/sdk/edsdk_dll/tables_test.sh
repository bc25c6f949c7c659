#!/usr/bin/env bash
# Holds a DLL to the names that it exports, in order, and to imports from the system's own libraries.
#
#   tables_test.sh OBJDUMP DLL NAME ...

set -euo pipefail
tables=$("$1" -p "$2")
diff <(printf '%s\n' "${@:3}") <(sed -n 's/^\t\[ *[0-9]*\] \([^+].*\)/\1/p' <<<"$tables") || { echo "other exports" && exit 1; }
diff <(printf '%s\n' KERNEL32.dll msvcrt.dll) <(sed -n 's/^\tDLL Name: //p' <<<"$tables") || { echo "other imports" && exit 1; }
