#!/usr/bin/env bash
# with-test-mariadb.sh COMMAND...
#
# Runs COMMAND with BRENLOW_TEST_MYSQL naming a MariaDB server that the store tests
# may create and drop databases on. When the variable is already set, that server
# is used as it is. Otherwise a private server is started for the duration of the
# command: its own data folder under a temporary directory, a Unix socket only (no
# TCP port, so it never clashes with another server), lower_case_table_names=1 as
# the suite needs. It is stopped, and its folder removed, when the command ends.
# The exit status is the command's.
set -euo pipefail

if [[ $# -eq 0 ]]; then
    echo "usage: $0 COMMAND..." >&2
    exit 2
fi

if [[ -n "${BRENLOW_TEST_MYSQL:-}" ]]; then
    exec "$@"
fi

as_root=()
if [[ $(id -u) -eq 0 ]]; then
    as_root=(--user=root)
fi

find_tool() {
    local name
    for name in "$@"; do
        if command -v "$name" >/dev/null 2>&1; then
            command -v "$name"
            return 0
        fi
        for dir in /usr/sbin /usr/bin /usr/local/sbin /usr/local/bin; do
            if [[ -x "$dir/$name" ]]; then
                echo "$dir/$name"
                return 0
            fi
        done
    done
    return 1
}

have_tools() {
    find_tool mariadbd mysqld >/dev/null && find_tool mariadb-install-db mysql_install_db >/dev/null &&
        find_tool mariadb-admin mysqladmin >/dev/null
}

if ! have_tools; then
    if [[ $(id -u) -eq 0 ]] && command -v apt-get >/dev/null 2>&1; then
        echo "with-test-mariadb: installing mariadb-server" >&2
        export DEBIAN_FRONTEND=noninteractive
        apt-get update -qq </dev/null
        apt-get install -y -qq mariadb-server </dev/null
    else
        echo "with-test-mariadb: MariaDB is not installed (apt-get install mariadb-server)" >&2
        exit 1
    fi
fi

server=$(find_tool mariadbd mysqld)
install_db=$(find_tool mariadb-install-db mysql_install_db)
admin=$(find_tool mariadb-admin mysqladmin)

work=$(mktemp -d "${TMPDIR:-/tmp}/brenlow-mariadb.XXXXXX")
if [[ ${#work} -gt 80 ]]; then
    # A Unix socket path must stay short (about 100 bytes).
    rmdir "$work"
    work=$(mktemp -d /tmp/brenlow-mariadb.XXXXXX)
fi
chmod 755 "$work"
data="$work/data"
sock="$work/mysql.sock"
pidfile="$work/mariadbd.pid"
log="$work/error.log"
server_pid=""

# shellcheck disable=SC2317  # called by the EXIT trap
stop_server() {
    local pid="$server_pid"
    if [[ -z "$pid" && -s "$pidfile" ]]; then
        pid=$(cat "$pidfile")
    fi
    if [[ -n "$pid" ]] && kill -0 "$pid" 2>/dev/null; then
        kill "$pid" 2>/dev/null || true
        for _ in $(seq 1 300); do
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.1
        done
        if kill -0 "$pid" 2>/dev/null; then
            kill -9 "$pid" 2>/dev/null || true
        fi
        wait "$pid" 2>/dev/null || true
    fi
    rm -rf "$work"
}
trap stop_server EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

if ! "$install_db" --no-defaults --datadir="$data" "${as_root[@]}" \
        --auth-root-authentication-method=normal --skip-test-db \
        --lower-case-table-names=1 >"$work/install.log" 2>&1 </dev/null; then
    echo "with-test-mariadb: mariadb-install-db failed:" >&2
    cat "$work/install.log" >&2
    exit 1
fi

# A test server: durability does not matter, speed does.
"$server" --no-defaults --datadir="$data" --socket="$sock" --skip-networking \
    --lower-case-table-names=1 --pid-file="$pidfile" --log-error="$log" \
    --innodb-flush-log-at-trx-commit=0 --skip-log-bin "${as_root[@]}" </dev/null >/dev/null 2>&1 &
server_pid=$!

ready=0
for _ in $(seq 1 120); do
    if "$admin" --no-defaults --socket="$sock" --user=root ping >/dev/null 2>&1; then
        ready=1
        break
    fi
    if ! kill -0 "$server_pid" 2>/dev/null; then
        break
    fi
    sleep 0.5
done
if [[ $ready -ne 1 ]]; then
    echo "with-test-mariadb: the server did not start; its log:" >&2
    cat "$log" >&2 || true
    exit 1
fi

export BRENLOW_TEST_MYSQL="mysql://root@localhost/?socket=$sock"
echo "with-test-mariadb: BRENLOW_TEST_MYSQL=$BRENLOW_TEST_MYSQL" >&2

status=0
"$@" || status=$?
exit "$status"
