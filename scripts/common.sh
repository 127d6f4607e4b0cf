# Sourced by the scripts: makes them end at the first error, changes to the root of the repository,
# and handles --help by printing the comment at the top of the script.
set -euo pipefail
script=scripts/$(basename "$(realpath "$0")")
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/.."
# The checkout may belong to another user, as in a container.
export GIT_CONFIG_COUNT=1 GIT_CONFIG_KEY_0=safe.directory GIT_CONFIG_VALUE_0=$PWD

# Rejects a call with one line and status 2.
wrong_usage() {
    echo "$script: $1; see $script --help" >&2
    exit 2
}

# expect_at_most COUNT "$@": rejects options, and arguments beyond COUNT.
expect_at_most() {
    local count=$1 argument
    shift
    for argument; do [[ $argument != -* ]] || wrong_usage "unknown option $argument"; done
    [ $# -le "$count" ] || wrong_usage "unexpected argument ${*: -1}"
}

# Ends the script with one line.
fail() {
    echo "$script: $1" >&2
    exit 1
}

# make_folder FOLDER: creates the folder, or ends the script with one line.
make_folder() {
    mkdir -p "$1" && [ -w "$1" ] ||
        fail "cannot write to $(realpath -m "$1"): copy the repository to a folder of your own"
}

# step TITLE COMMAND...: prints the title and runs the command, whose output goes to $log, by default
# build/logs/SCRIPT.log. On a terminal, the last line of the output shows the progress. If the command
# fails, prints the end of its output and $advice, and ends the script.
step() {
    local title=$1 reporter= status=0
    shift
    : "${log:=build/logs/${script#*/}.log}"
    make_folder "$(dirname "$log")"
    echo "${script#*/}: $title"
    if [ -t 1 ]; then
        report_progress &
        reporter=$!
    fi
    "$@" >"$log" 2>&1 </dev/null || status=$?
    if [ -n "$reporter" ]; then
        kill "$reporter"
        wait "$reporter" || true
        printf '\r\033[K'
    fi
    [ $status -ne 0 ] || return 0
    tail -n 20 "$log"
    fail "failed at: $title; the whole output is in $log${advice:+; $advice}"
}

# Shows the last line of $log until the script ends.
report_progress() {
    while kill -0 $$ 2>/dev/null; do
        printf '\r\033[K%.*s' "$((${COLUMNS:-80} - 1))" "$(tail -n 1 "$log" | tr -d '\000-\037')"
        sleep 0.5
    done
} 2>/dev/null

# configure OPTIONS...: configures a build folder and prints the parts that are left out.
configure() {
    step "configuring" cmake -Wno-dev "$@"
    sed -n 's/^-- Left out/  left out/p' "$log"
}

# build FOLDER [TARGET...]: builds the targets, by default all.
build() {
    local files
    files=$(ninja -C "$1" -n "${@:2}" | grep -c '^\[' || true)
    [ "$files" = 0 ] || step "building $files files" ninja -C "$1" "${@:2}"
}

if [ "${1:-}" = --help ]; then
    sed -n '2,/^[^#]/s/^# \?//p' "$script"
    exit
fi
