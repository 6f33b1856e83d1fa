#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Holds every source against the formatter, the licence line, shellcheck, yamllint, ansible-lint,
# cppcheck, clazy and clang-tidy. Ends with 1 when one of them has something to say.
#
#   scripts/lint.sh            all of them
#   scripts/lint.sh --quick    without clazy and clang-tidy, which take most of the time
set -u
# shellcheck source=prepare.sh
. "$(dirname "$0")/prepare.sh"
cd "$repository" || exit 1

build=$(build_folder tidy)
# level2 has checks that are a matter of taste for a program of this size:
# - qstring-allocations asks for QStringLiteral in tests, where plain literals read better.
clazy_checks=level2
# In tests, containers are small, patterns are used once, and globals go when the program does:
clazy_test_checks=level1,no-qstring-arg,no-detaching-temporary,no-non-pod-global-static,no-range-loop-detach,no-use-static-qregularexpression,no-container-anti-pattern
failed=0

report() {
    printf '%-14s %s\n' "$1" "$2"
    [ "$2" = clean ] || failed=1
}

# check NAME COMMAND… prints what the command says when it fails.
check() {
    local name=$1 output
    shift
    if output=$("$@" 2>&1); then
        report "$name" clean
    else
        report "$name" "not clean:"
        printf '%s\n' "$output" | grep -vE '^[0-9]+ (warnings|errors?) |^Suppressed|^Use -'
    fi
}

cpp_files() { git ls-files 'src/*.cpp' 'tests/*.cpp' 'bench/*.cpp'; }
cpp_and_headers() { git ls-files '*.cpp' '*.h'; }
shell_files() {
    git ls-files demo test .ci/run 'scripts/*.sh' 'scripts/**/*.sh' bench/run 'bench/*.sh' \
        'tests/packages/*.ba*' 'tests/pages/*.ba*' 'tests/fleet/*' 'deploy/*/*.sh' deploy/support-bundle cmake/packaging/postrm
}

check_licences() {
    local file lacking=0
    for file in $(cpp_and_headers) $(shell_files) $(git ls-files '*CMakeLists.txt' '*.cmake'); do
        if ! head -n 3 "$file" | grep -q 'SPDX-License-Identifier: MIT'; then
            echo "$file lacks its SPDX line"
            lacking=1
        fi
    done
    return "$lacking"
}

# The generated moc files must exist before a source that includes one can be read.
prepare_build() {
    run_quietly cmake --preset tidy -B "$build" -DDRASK_QT="${DRASK_QT-}" \
        -DDRASK_BUILD_FUZZERS=ON -DDRASK_BUILD_BENCHMARK=ON
    # shellcheck disable=SC2046
    run_quietly cmake --build "$build" --target $(ninja -C "$build" -t targets all \
        | sed -n 's/^\([a-z0-9_-]*_autogen\): phony$/\1/p')
}

# Qt Test's macros keep clang-tidy busy for a quarter of an hour: test programs are left to clazy.
tidy_files() { git ls-files 'src/*.cpp' 'bench/*.cpp' 'tests/support/*.cpp'; }
tidy_all() { tidy_files | xargs -P "$(getconf _NPROCESSORS_ONLN)" -n 4 clang-tidy --quiet -p "$build"; }
clazy() {
    xargs -P "$(getconf _NPROCESSORS_ONLN)" -n 4 clazy-standalone -checks="$1" -p "$build"
}
clazy_sources() { git ls-files 'src/*.cpp' | clazy "$clazy_checks"; }
clazy_tests() { git ls-files 'tests/*.cpp' 'bench/*.cpp' | clazy "$clazy_test_checks"; }
format_all() { cpp_and_headers | xargs clang-format --dry-run -Werror; }
shell_all() { shell_files | xargs shellcheck -x; }
yaml_all() { git ls-files '*.yml' .yamllint | xargs yamllint --strict; }
ansible_all() {
    (cd deploy/ansible && ansible-lint --offline --profile production -q --nocolor \
        playbooks/*.yml roles/plugins galaxy.yml meta/runtime.yml)
}
# Those of Ansible's own tests that need nothing from the net; it wants a place of a certain name.
ansible_sane() {
    local place test tests=() version
    version=$(ansible --version | sed -n 's/.*python version = \([0-9]*[.][0-9]*\).*/\1/p')
    place=$(mktemp -d) || return 1
    mkdir -p "$place/ansible_collections/drask"
    cp -r deploy/ansible "$place/ansible_collections/drask/installer"
    for test in compile empty-init line-endings no-illegal-filenames no-smart-quotes shebang shellcheck \
        symlinks use-argspec-type-path; do
        tests+=(--test "$test")
    done
    (cd "$place/ansible_collections/drask/installer" \
        && ansible-test sanity --color no --python "$version" "${tests[@]}" 2>&1)
    local result=$?
    rm -r "$place"
    return "$result"
}
cppcheck_sources() {
    # useStlAlgorithm: a loop over a table reads better than a lambda.
    cppcheck --enable=warning,style,performance,portability --inline-suppr --library=qt \
        --std=c++17 --language=c++ --suppress=useStlAlgorithm --suppress=unknownMacro --quiet \
        --error-exitcode=1 -Isrc src
}

if [ "${1-}" = --quick ]; then install_packages lint; else install_packages build analysis lint; fi
check "clang-format" format_all
check "licence lines" check_licences
check "shellcheck" shell_all
check "oddities" scripts/deliberate.sh
check "yamllint" yaml_all
if command -v ansible-lint >/dev/null; then
    check "ansible-lint" ansible_all
    check "ansible-test" ansible_sane
else
    echo "ansible-lint   skipped: no package of it here"
fi
check "cppcheck" cppcheck_sources
[ "${1-}" != --quick ] || exit "$failed"
prepare_build
if command -v clazy-standalone >/dev/null; then
    check "clazy" clazy_sources
    check "clazy (tests)" clazy_tests
else
    echo "clazy          skipped: no package of it here"
fi
check "clang-tidy" tidy_all
exit "$failed"
