#!/usr/bin/env bash
# Runs the tests for Windows under wine, one after the other, and prints what is skipped and why. Fails
# where a test fails, but for what wine itself cannot do: wine_cannot.txt has a line for each, with the
# reason.
#
#   test.sh FOLDER [TEST...]    the logs come into FOLDER/tests
set -euo pipefail
here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
cd "$here/../.."
# shellcheck source=packaging/windows/wine.sh
. "$here/wine.sh"
folder=$(realpath "$1")
logs=$folder/tests
tests=("${@:2}")
[ ${#tests[@]} -gt 0 ] || mapfile -t tests < <(find build/windows/tests -name 'tst_*.exe' -printf '%f\n' |
    sed 's/tst_\(.*\)\.exe/\1/' | sort)

rm -rf "$folder/wine" "$logs"
mkdir -p "$logs"
qt=$PWD/build/package/qt/bin
gcc=$(dirname "$(x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++-6.dll)")
wine_path="$(windows_path "$qt");$(windows_path "$gcc");$(windows_path /usr/x86_64-w64-mingw32/lib)"
start_wine "$folder/wine"
trap stop_wine EXIT
give_to_wine "$logs"
give_to_wine build/windows/tests
# What kills processes, or tries everything, takes its time on a machine that does other things, too.
export QTEST_FUNCTION_TIMEOUT=1800000

for test in "${tests[@]}"; do
    log=$logs/$test.log
    (cd "build/windows/tests/$test" && wine "tst_$test.exe" -maxwarnings 0 \
        -o "$(windows_path "$log"),txt" >"$logs/$test.out" 2>&1) || true
    totals=$(grep -a '^Totals' "$log" 2>/dev/null | tr -d '\r' || true)
    printf '%-16s %s\n' "$test" "${totals:-did not come to its end}"
    [ -n "$totals" ] || echo "FAIL!  : $test did not come to its end" >>"$log"
done

echo "== Skipped"
sed -n 's/^SKIP *: //p' "$logs"/*.log | tr -d '\r'

known=() failed=()
while read -r place; do
    if reason=$(grep -F "$place: " "$here/wine_cannot.txt"); then
        known+=("$reason")
    else
        failed+=("$place")
    fi
done < <(sed -nE 's/^FAIL! *: ([A-Za-z]+::[A-Za-z]+\([^)]*\)|.* did not come to its end).*/\1/p' \
    "$logs"/*.log | tr -d '\r' | sort -u)
if [ ${#known[@]} -gt 0 ]; then
    echo "== What wine cannot do"
    printf '%s\n' "${known[@]}"
fi
if [ ${#failed[@]} -gt 0 ]; then
    echo "== Failed; the logs are in $logs"
    printf '%s\n' "${failed[@]}"
    exit 1
fi
