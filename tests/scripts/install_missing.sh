#!/bin/sh
# scripts/install-missing with a package manager that only writes down how it is called: it waits
# while another one holds a lock, and fails at once for any other reason.
#
#   install_missing.sh ROOT
set -eu
install_missing=$1/scripts/install-missing
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin"
export PATH="$work/bin:$PATH" WORK="$work"

program() { # NAME: standard input becomes a program of that name
  { echo '#!/bin/sh' && cat; } >"$work/bin/$1"
  chmod +x "$work/bin/$1"
}
program dpkg-query <<'END'
[ "$4" = here ] && echo 'install ok installed'
END
program id <<'END'
echo 1000
END
program sudo <<'END'
exec "$@"
END
program sleep <<'END'
echo >>"$WORK/sleeps"
END
# Fails as often as "failures" has lines, each with what that line says.
program apt-get <<'END'
echo "$*" >>"$WORK/calls"
message=$(sed -n 1p "$WORK/failures")
[ -n "$message" ] || exit 0
sed -i 1d "$WORK/failures"
echo "$message" >&2
exit 100
END

# run FAILURES PACKAGE...: leaves status, messages, calls and how often it slept.
run() {
  printf '%s' "$1" >"$work/failures"
  shift
  rm -f "$work/sleeps" "$work/calls"
  touch "$work/sleeps" "$work/calls"
  status=0
  "$install_missing" "$@" 2>"$work/messages" || status=$?
  sleeps=$(wc -l <"$work/sleeps")
}

expect() { # WHAT WANTED FOUND
  if [ "$2" != "$3" ]; then
    printf '%s: expected\n%s\nfound\n%s\n' "$1" "$2" "$3" >&2
    exit 1
  fi
}

run '' here
expect 'nothing to install' '0 0 ' "$status $sleeps $(cat "$work/calls" "$work/messages")"

run '' here absent gone
expect 'status' '0 0' "$status $sleeps"
expect 'waits for the lock of dpkg' "-qq -o DPkg::Lock::Timeout=600 update
-qq -o DPkg::Lock::Timeout=600 -y --no-install-recommends install absent gone" "$(cat "$work/calls")"
expect 'says what it installs' 'Installing: absent gone' "$(cat "$work/messages")"

lock='E: Could not get lock /var/lib/apt/lists/lock. It is held by process 7 (apt-get)
'
run "$lock$lock" absent
expect 'waits for the package lists' '0 2 4' "$status $sleeps $(wc -l <"$work/calls")"
expect 'says that it waits' 'Installing: absent
Waiting until another program has installed its packages' "$(cat "$work/messages")"

run 'E: Unable to locate package absent
' absent
expect 'fails at once' '1 0 1' "$status $sleeps $(wc -l <"$work/calls")"
expect 'says why' 'E: Unable to locate package absent' "$(tail -n 1 "$work/messages")"

run "$(yes "$lock" | sed '/^$/d' | head -n 700)" absent
expect 'gives up' '1 600' "$status $sleeps"
