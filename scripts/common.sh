# Sourced by the scripts: makes them end at the first error, changes to the root of the repository,
# and handles --help by printing the comment at the top of the script.
set -euo pipefail
script=scripts/$(basename "$0")
cd "$(dirname "${BASH_SOURCE[0]}")/.."

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

if [ "${1:-}" = --help ]; then
    sed -n '2,/^[^#]/s/^# \?//p' "$script"
    exit
fi
