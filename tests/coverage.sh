#!/usr/bin/env bash
# Tells which lines and branches of src/ the tests reach, and names the lines that none reaches. Needs
# lcov. Arguments go to ctest: "-R corpus" for what the corpus of the fuzzer reaches.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

cmake --preset coverage
cmake --build --preset coverage
find build/coverage -name '*.gcda' -delete
ctest --preset coverage "$@"

# The branches that only an exception would take are left out: the program has none.
lcov --quiet --capture --directory build/coverage/CMakeFiles/varlune_core.dir --base-directory . \
    --rc lcov_branch_coverage=1 --rc geninfo_no_exception_branch=1 --output-file build/coverage/all
lcov --quiet --extract build/coverage/all "$PWD/src/*" --rc lcov_branch_coverage=1 \
    --output-file build/coverage/src
lcov --list build/coverage/src --list-full-path --rc lcov_branch_coverage=1
echo "Lines not reached:"
awk -F '[:,]' '/^SF/ { file = $2 } /^DA/ && $3 == 0 { print file " " $2 }' build/coverage/src |
    while read -r file line; do
        echo "${file#"$PWD/"}:$line: $(sed -n "${line}p" "$file" | sed 's/^ *//')"
    done
