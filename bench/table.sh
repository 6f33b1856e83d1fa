# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# shellcheck disable=SC2154 # use() sets "work", cases.sh "program"
# What ./bench/run prints and writes, from hyperfine's tables. Uses the functions of cases.sh.
: "${repository:?}" "${memory:?}" "${build:?}"

print_head() {
    cat <<TEXT
| case | command | median, ms | processor, ms | $1, program : this | at least |
|---|---|---:|---:|---:|---:|
TEXT
}

# The columns of hyperfine are command,mean,stddev,median,user,system,min,max, in seconds; each row is
# one run here. The first command of a case is the program. The ratio is taken run by run, of the
# processor times or of the times on the wall.
add_rows() {
    awk -F, -v title="$2" -v ratio_of="$3" '
        function median(values, count,   i, j, sorted) {
            for (i = 1; i <= count; ++i) {
                for (j = i; j > 1 && sorted[j - 1] > values[i]; --j) sorted[j] = sorted[j - 1]
                sorted[j] = values[i]
            }
            least = sorted[1]
            return count % 2 ? sorted[(count + 1) / 2] : (sorted[count / 2] + sorted[count / 2 + 1]) / 2
        }
        !($1 in runs) { names[++commands] = $1 }
        {
            run = ++runs[$1]
            wall[$1, run] = $4 * 1000
            cpu[$1, run] = ($5 + $6) * 1000
        }
        END {
            for (c = 1; c <= commands; ++c) {
                name = names[c]
                for (r = 1; r <= run; ++r) {
                    walls[r] = wall[name, r]
                    cpus[r] = cpu[name, r]
                    ratios[r] = ratio_of == "wall" ? wall[names[1], r] / walls[r] : cpu[names[1], r] / cpus[r]
                }
                row = sprintf("| %s | %s | %.1f | %.1f |", c == 1 ? title : "", name, median(walls, run), median(cpus, run))
                ratio = median(ratios, run)
                if (c == 1) print row "  |  |"
                else printf "%s %.2f | %.2f |\n", row, ratio, least
            }
        }' "$memory/$1.csv"
}

# peak_memory COMMAND… prints the largest resident size in MiB.
peak_memory() {
    local report
    if [ "$(uname)" = Darwin ]; then
        report=$(/usr/bin/time -l "$@" 2>&1 >/dev/null) || fail "$report"
        awk '/maximum resident/ {printf "%.1f", $1 / 1024 / 1024}' <<<"$report"
    else
        report=$(/usr/bin/time -f %M "$@" 2>&1 >/dev/null) || fail "$report"
        # Behind what the command said itself.
        awk 'END {printf "%.1f", $1 / 1024}' <<<"$report"
    fi
}

memory_row() {
    local memory title=$1
    shift
    memory=$(peak_memory "$@") || exit 1
    printf '| %s | %s |\n' "$title" "$memory"
}

measure_memory() {
    local count edit edit_command
    printf '| case | peak memory, MiB |\n|---|---:|\n'
    cd "$work/tool" || fail "The sample workstation is gone"
    for count in 100 2000 20000; do
        make_install "$count" 2048
        reset_install
        memory_row "$(title "install_$count")" "$program"
        verify_install
    done
    for edit in maya lightwave; do
        "make_$edit"
        "reset_$edit"
        edit_command=$("commands_$edit" | sed -n 's/^program|//p')
        # shellcheck disable=SC2086 # a command and its words
        memory_row "$(title "$edit")" $edit_command
        "verify_$edit"
    done
    memory_row "(an empty QtCore program)" "$build/bench/drask-bench-empty"
}

# mebibytes FILE…
mebibytes() { cat "$@" | wc -c | awk '{printf "%.1f", $1 / 1024 / 1024}'; }

# The portable archive holds the libraries; the tables of ICU are most of them.
measure_sizes() {
    local version archive idle=() install=() whole=() without=()
    make_idle
    for version in 5 6; do idle+=("$(cd "$work/tool" && peak_memory "$program-qt$version")"); done
    make_install_2000
    for version in 5 6; do
        reset_install
        install+=("$(cd "$work/tool" && peak_memory "$program-qt$version")")
        verify_install
        archive=$(echo "$build/qt$version"/drask-installer-*.tar.gz)
        whole+=("$(mebibytes "$archive")")
        rm -rf "$work/archive"
        mkdir "$work/archive"
        tar -xzf "$archive" --exclude 'libicu*' -C "$work/archive"
        without+=("$(tar -czf - -C "$work/archive" . | mebibytes)")
    done
    cat <<TEXT
| what, MiB | Qt 5 | Qt 6 |
|---|---:|---:|
| peak memory, nothing to do | ${idle[0]} | ${idle[1]} |
| peak memory, install of 2,000 files | ${install[0]} | ${install[1]} |
| the archive | ${whole[0]} | ${whole[1]} |
| the archive, if it could do without ICU | ${without[0]} | ${without[1]} |
TEXT
}

describe_machine() {
    local processor
    processor=$(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo 2>/dev/null | head -n 1)
    [ -n "$processor" ] || processor=$(sysctl -n machdep.cpu.brand_string 2>/dev/null)
    printf 'Measured on %s with %s processors (%s), %s, QtCore %s, files on %s.\n' \
        "$(date +%Y-%m-%d)" "$(getconf _NPROCESSORS_ONLN)" "${processor:-unknown}" "$(uname -s) $(uname -r | cut -d- -f1)" \
        "$(qt_version)" "$(file_system "$memory")"
}

qt_version() {
    local folder
    folder=$(sed -n 's/^Qt[56]Core_DIR:PATH=//p' "$build/CMakeCache.txt")
    cat "$folder"/Qt?CoreConfigVersion*.cmake | sed -n 's/^ *set(PACKAGE_VERSION "*\([0-9.]*\)"*)/\1/p' | head -n 1
}

file_system() { df -T "$1" 2>/dev/null | awk 'NR == 2 {print $2}'; }

# Everything between the two marks in docs/performance.md is the machine's; the rest is ours.
write_document() {
    local document=$repository/docs/performance.md
    {
        sed '/^<!-- begin of figures -->$/q' "$document"
        printf '\n%s\n\n' "$(describe_machine)"
        cat "$1"
        printf '\n'
        sed -n '/^<!-- end of figures -->$/,$p' "$document"
    } >"$memory/document.md" && cp "$memory/document.md" "$document"
}

# cost COUNT CASE NAME prints the count and the processor time, in ms, of one command of a case.
cost() {
    add_rows "$2" "" processor | awk -F ' *[|] *' -v count="$1" -v name="$3" '$3 == name {print count, $5}'
}

draw_plot() {
    local name
    for name in program "bare loop" "cp -r"; do
        cost 100 install_100 "$name"
        cost 2000 install_2000 "$name"
        cost 20000 install_20000 "$name"
        printf '\n\n'
    done >"$memory/plot.data"
    gnuplot <<TEXT
set terminal svg size 640,400 font "sans-serif,12" background "white"
set output "$repository/docs/performance.svg"
set title "Installing files of 2 KiB"
set xlabel "files"
set ylabel "processor time, ms"
set logscale xy
set key left top
set grid
plot "$memory/plot.data" index 0 with linespoints title "program", \
     "" index 1 with linespoints title "bare loop", \
     "" index 2 with linespoints title "cp -r"
TEXT
}
